#include "platform/xini/xini_writer.h"

#include <stdexcept>
#include <utility>

#include "platform/xini/xini_text.h"

namespace QvPlatform {

struct TQvXIniWriter::Impl {
  TQvStream* stream = nullptr;
  std::string document =
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
      "<xini version=\"1\">";
  /// Of each open section, the root first: whether a member of it stands on a line of its own.
  std::string hasLines = std::string(1, '\0');
  bool isCompact = false;
  bool isFinished = false;

  void Break(std::size_t indent) {
    document += '\n';
    document.append(indent, '\t');
  }

  /// Begins an element; the text or the members follow.
  void OpenElement(char element, std::string_view name) {
    if (!isCompact) {
      hasLines.back() = 1;
      Break(hasLines.size());
    }
    document += '<';
    document += element;
    if (!name.empty()) {
      document += " n=\"";
      detail::AppendItemText(name, &document);
      document += '"';
    }
    document += '>';
  }

  void CloseSection(std::string_view endTag) {
    const bool breaks = hasLines.back() != 0;
    hasLines.pop_back();
    if (breaks) Break(hasLines.size());
    document += endTag;
  }

  void Close() {
    if (isFinished) throw std::logic_error("the XML document is finished already");
    while (hasLines.size() > 1)
      CloseSection("</s>");
    CloseSection("</xini>\n");
    isFinished = true;
  }
};

TQvXIniWriter::TQvXIniWriter(TQvStream* stream, int encoding, int options)
    : impl_(std::make_unique<Impl>()) {
  if (encoding != 0 || options != 0)
    throw std::invalid_argument("XML is written in encoding 0 with options 0 only");
  impl_->stream = stream;
}

TQvXIniWriter::TQvXIniWriter() : TQvXIniWriter(nullptr) {}

TQvXIniWriter::~TQvXIniWriter() = default;

void TQvXIniWriter::SetCompact(bool compact) {
  impl_->isCompact = compact;
}

bool TQvXIniWriter::EnterSection(std::string_view name) {
  if (impl_->isFinished || impl_->hasLines.size() > kMaxXIniDepth) return false;
  impl_->OpenElement('s', name);
  impl_->hasLines.push_back('\0');
  return true;
}

bool TQvXIniWriter::ExitSection() {
  if (impl_->isFinished || impl_->hasLines.size() <= 1) return false;
  impl_->CloseSection("</s>");
  return true;
}

bool TQvXIniWriter::WriteInt(std::string_view name, int value) {
  return WriteString(name, std::to_string(value));
}

bool TQvXIniWriter::WriteString(std::string_view name, std::string_view value) {
  if (impl_->isFinished) return false;
  impl_->OpenElement('i', name);
  detail::AppendItemText(value, &impl_->document);
  impl_->document += "</i>";
  return true;
}

void TQvXIniWriter::Finish() {
  impl_->Close();
  if (impl_->stream != nullptr)
    impl_->stream->Write(impl_->document.data(), impl_->document.size());
}

std::string TQvXIniWriter::TakeDocument() {
  impl_->Close();
  return std::move(impl_->document);
}

}  // namespace QvPlatform
