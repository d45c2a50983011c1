#include "platform/xini/xini_reader.h"

#include <algorithm>
#include <limits>
#include <pugixml.hpp>
#include <utility>
#include <vector>

#include "platform/text/ascii.h"
#include "platform/text/locale.h"
#include "platform/text/numbers.h"
#include "platform/xini/xini_text.h"

namespace QvPlatform {

namespace {

constexpr unsigned kNone = std::numeric_limits<unsigned>::max();

/// An open section and how far its unnamed members have been walked.
struct Frame {
  pugi::xml_node node;
  /// How the section is called in its parent: its name or "[number]".
  std::string step;
  mutable pugi::xml_node member;
  mutable unsigned memberIndex = kNone;
  mutable unsigned memberCount = kNone;
};

bool IsSection(pugi::xml_node node) {
  return std::string_view(node.name()) == "s";
}
bool IsItem(pugi::xml_node node) {
  return std::string_view(node.name()) == "i";
}
bool IsMember(pugi::xml_node node) {
  return IsSection(node) || IsItem(node);
}

bool IsUnnamed(pugi::xml_node node) {
  return IsMember(node) && !node.attribute("n");
}

pugi::xml_node NextUnnamed(pugi::xml_node node) {
  while (node && !IsUnnamed(node))
    node = node.next_sibling();
  return node;
}

std::string MemberStep(unsigned member) {
  return std::string("[").append(std::to_string(member)).append("]");
}

[[noreturn]] void Fail(const std::string& what) {
  throw XIniError("XML: " + what);
}

/// Size of a piece at the front that cuts no UTF-8 sequence, or 0 for what cannot be UTF-8. The
/// checks of text take no more than some hundred megabytes at once.
std::size_t FrontSize(std::string_view document) {
  constexpr std::size_t kPiece = std::size_t{1} << 26;
  std::size_t size = std::min(document.size(), kPiece);
  while (size > 0 && size < document.size() &&
         (static_cast<unsigned char>(document[size]) & 0xC0) == 0x80) {
    --size;
  }
  return size;
}

/// What pugixml passes over: it ends at a zero byte, and takes control characters and broken
/// UTF-8 as they come.
void CheckCharacters(std::string_view document) {
  const auto isControl = [](char c) {
    return static_cast<unsigned char>(c) < 0x20 && c != '\t' && c != '\n' && c != '\r';
  };
  const auto bad = std::find_if(document.begin(), document.end(), isControl);
  if (bad != document.end())
    Fail("a control character at byte " + std::to_string(bad - document.begin()));
  while (!document.empty()) {
    const std::size_t size = FrontSize(document);
    if (size == 0 || !IsUtf8(document.substr(0, size))) Fail("the document is not in UTF-8");
    document.remove_prefix(size);
  }
}

/// White space at the ends is layout, for the writer escapes that of values.
std::string_view WithoutMargins(std::string_view text) {
  constexpr std::string_view kSpace = " \t\n\r";
  text.remove_prefix(std::min(text.find_first_not_of(kSpace), text.size()));
  text.remove_suffix(text.size() - (text.find_last_not_of(kSpace) + 1));
  return text;
}

/// Whether the text holds no reference and no escape.
bool IsLiteral(std::string_view text) {
  return text.find_first_of("&\\") == text.npos;
}

void CheckTopLevel(const pugi::xml_document& document) {
  int roots = 0;
  for (const pugi::xml_node node : document.children()) {
    if (node.type() == pugi::node_doctype) Fail("a DOCTYPE is not accepted");
    if (node.type() == pugi::node_declaration) {
      const std::string encoding = LowerAscii(node.attribute("encoding").as_string("utf-8"));
      if (encoding != "utf-8" && encoding != "us-ascii") Fail("the encoding is not UTF-8");
    }
    if (node.type() == pugi::node_element) ++roots;
  }
  const pugi::xml_node root = document.document_element();
  if (roots != 1 || std::string_view(root.name()) != "xini") Fail("the root is not one <xini>");
  if (std::string_view(root.attribute("version").value()) != "1") Fail("the version is not 1");
}

void CheckAttributes(pugi::xml_node node) {
  const std::string_view allowed = IsMember(node) ? "n" : "version";
  for (const pugi::xml_attribute attribute : node.attributes()) {
    if (attribute.name() != allowed || attribute.next_attribute())
      Fail(std::string(node.name()).append(": an attribute too many"));
  }
}

/// Checks one node below the root; says whether what it holds is to be looked at.
bool CheckNode(pugi::xml_node node, bool strict) {
  const bool isText = node.type() == pugi::node_pcdata || node.type() == pugi::node_cdata;
  if (isText) {
    if (strict && !IsItem(node.parent())) Fail("text stands outside the items");
    return false;
  }
  if (!IsMember(node)) {
    if (strict) Fail(std::string("unknown element ").append(node.name()));
    return false;
  }
  if (!IsSection(node.parent()) && std::string_view(node.parent().name()) != "xini")
    Fail("an element stands within an item");
  if (strict) CheckAttributes(node);
  return true;
}

/// Walks the whole document without recursion, so that a deep one is refused and not followed.
void CheckContent(pugi::xml_node root, bool strict) {
  if (strict) CheckAttributes(root);
  // Number of elements round the node, all of which are sections when the node is one.
  int depth = 0;
  pugi::xml_node node = root.first_child();
  while (node) {
    const bool enters = CheckNode(node, strict);
    if (enters && IsSection(node) && depth >= kMaxXIniDepth) Fail("the sections nest too deep");
    if (enters && node.first_child()) {
      node = node.first_child();
      ++depth;
      continue;
    }
    while (!node.next_sibling() && node.parent() != root) {
      node = node.parent();
      --depth;
    }
    node = node.next_sibling();
  }
}

}  // namespace

struct TQvXIniReader::Impl {
  std::string buffer;
  pugi::xml_document document;
  std::vector<Frame> frames;
  pugi::xml_node found;
  bool isStrict = true;

  void Parse();
  void Enter(pugi::xml_node node, std::string step);
  [[nodiscard]] const Frame& Current() const { return frames.back(); }
  [[nodiscard]] pugi::xml_node Member(unsigned index) const;
  [[nodiscard]] std::string Name(pugi::xml_node node) const;
  [[nodiscard]] bool HasName(pugi::xml_node member, std::string_view name) const;
  [[nodiscard]] std::string ItemText(pugi::xml_node item, const std::string& step) const;
  [[nodiscard]] pugi::xml_node Found() const;
  [[nodiscard]] std::string Path() const;
  [[noreturn]] void FailAt(const std::string& step, const std::string& what) const;
};

void TQvXIniReader::Impl::Parse() {
  CheckCharacters(buffer);
  // References are resolved by ourselves: pugixml lets unknown ones stand and takes forbidden
  // characters. The DOCTYPE is asked for in order to be refused.
  const unsigned options = pugi::parse_cdata | pugi::parse_eol | pugi::parse_wconv_attribute |
                           pugi::parse_declaration | pugi::parse_doctype;
  const pugi::xml_parse_result result =
      document.load_buffer_inplace(buffer.data(), buffer.size(), options, pugi::encoding_utf8);
  if (!result)
    Fail(std::string(result.description()) + " at byte " + std::to_string(result.offset));
  CheckTopLevel(document);
  CheckContent(document.document_element(), isStrict);
  Enter(document.document_element(), {});
}

void TQvXIniReader::Impl::Enter(pugi::xml_node node, std::string step) {
  frames.push_back({node, std::move(step), {}});
  found = {};
}

pugi::xml_node TQvXIniReader::Impl::Member(unsigned index) const {
  const Frame& frame = Current();
  if (frame.memberIndex == kNone || index < frame.memberIndex) {
    frame.member = NextUnnamed(frame.node.first_child());
    frame.memberIndex = 0;
  }
  while (frame.member && frame.memberIndex < index) {
    const pugi::xml_node next = NextUnnamed(frame.member.next_sibling());
    if (!next) return {};
    frame.member = next;
    ++frame.memberIndex;
  }
  return frame.member;
}

std::string TQvXIniReader::Impl::Name(pugi::xml_node node) const {
  const auto resolved = detail::ResolveReferences(node.attribute("n").value());
  auto name = resolved ? detail::UnescapeItem(*resolved, isStrict) : std::nullopt;
  if (!name) FailAt({}, "a name has a broken escape or reference");
  return *std::move(name);
}

bool TQvXIniReader::Impl::HasName(pugi::xml_node member, std::string_view name) const {
  const pugi::xml_attribute attribute = member.attribute("n");
  if (!attribute) return false;
  const std::string_view raw = attribute.value();
  return IsLiteral(raw) ? raw == name : Name(member) == name;
}

std::string TQvXIniReader::Impl::ItemText(pugi::xml_node item, const std::string& step) const {
  if (!item) FailAt(step, "the item is missing");
  if (!IsItem(item)) FailAt(step, "a section stands in the place of an item");
  const pugi::xml_node only = item.first_child();
  if (only.type() == pugi::node_pcdata && !only.next_sibling() && IsLiteral(only.value()))
    return std::string(WithoutMargins(only.value()));
  std::string text;
  for (const pugi::xml_node part : item.children()) {
    if (part.type() == pugi::node_cdata) {
      text += part.value();
    } else if (part.type() == pugi::node_pcdata) {
      const auto resolved = detail::ResolveReferences(WithoutMargins(part.value()));
      if (!resolved) FailAt(step, "an unknown or forbidden reference");
      text += *resolved;
    }
  }
  auto value = detail::UnescapeItem(text, isStrict);
  if (!value) FailAt(step, "a backslash without two hexadecimal digits");
  return *std::move(value);
}

pugi::xml_node TQvXIniReader::Impl::Found() const {
  if (!found) FailAt({}, "no member has been looked for");
  return found;
}

std::string TQvXIniReader::Impl::Path() const {
  std::string path;
  for (std::size_t i = 1; i < frames.size(); ++i)
    path += "/" + frames[i].step;
  return path.empty() ? "/" : path;
}

void TQvXIniReader::Impl::FailAt(const std::string& step, const std::string& what) const {
  std::string path = Path();
  if (!step.empty()) path.append(path == "/" ? "" : "/").append(step);
  throw XIniError("XML, " + path + ": " + what);
}

TQvXIniReader::TQvXIniReader(TQvStream* stream, bool strict) : impl_(std::make_unique<Impl>()) {
  impl_->buffer = stream->ReadAll();
  impl_->isStrict = strict;
  impl_->Parse();
}

TQvXIniReader::TQvXIniReader(std::string_view document, bool strict)
    : impl_(std::make_unique<Impl>()) {
  impl_->buffer = document;
  impl_->isStrict = strict;
  impl_->Parse();
}

TQvXIniReader::~TQvXIniReader() = default;

unsigned TQvXIniReader::Count() const {
  const Frame& frame = impl_->Current();
  if (frame.memberCount == kNone) {
    frame.memberCount = 0;
    for (auto node = NextUnnamed(frame.node.first_child()); node;
         node = NextUnnamed(node.next_sibling())) {
      ++frame.memberCount;
    }
  }
  return frame.memberCount;
}

bool TQvXIniReader::Exists(unsigned member) const {
  return !impl_->Member(member).empty();
}

bool TQvXIniReader::FindF(std::string_view name) {
  impl_->found = {};
  for (const pugi::xml_node node : impl_->Current().node.children()) {
    if (!IsMember(node) || !impl_->HasName(node, name)) continue;
    if (impl_->found) impl_->FailAt(std::string(name), "the name stands twice");
    impl_->found = node;
  }
  return !impl_->found.empty();
}

void TQvXIniReader::FindFE(std::string_view name) {
  if (!FindF(name)) impl_->FailAt(std::string(name), "the member is missing");
}

void TQvXIniReader::EnterSectionE() {
  const pugi::xml_node node = impl_->Found();
  std::string name = impl_->Name(node);
  if (!IsSection(node)) impl_->FailAt(name, "an item stands in the place of a section");
  impl_->Enter(node, std::move(name));
}

void TQvXIniReader::EnterSectionE(unsigned member) {
  const pugi::xml_node node = impl_->Member(member);
  std::string step = MemberStep(member);
  if (!node) impl_->FailAt(step, "the section is missing");
  if (!IsSection(node)) impl_->FailAt(step, "an item stands in the place of a section");
  impl_->Enter(node, std::move(step));
}

void TQvXIniReader::ExitSectionE() {
  if (impl_->frames.size() <= 1) impl_->FailAt({}, "there is no section to leave");
  impl_->frames.pop_back();
  impl_->found = {};
}

int TQvXIniReader::ReadIntE() {
  const pugi::xml_node item = impl_->Found();
  const std::string name = impl_->Name(item);
  int value = 0;
  if (!TextToInteger(impl_->ItemText(item, name), &value))
    impl_->FailAt(name, "not a 32-bit integer");
  return value;
}

std::string TQvXIniReader::ReadStringE() {
  const pugi::xml_node item = impl_->Found();
  return impl_->ItemText(item, impl_->Name(item));
}

std::string TQvXIniReader::ReadStringE(unsigned member) {
  return impl_->ItemText(impl_->Member(member), MemberStep(member));
}

std::string TQvXIniReader::Path() const {
  return impl_->Path();
}

}  // namespace QvPlatform
