#include "apps/cli/terminal_interface.h"

#include <algorithm>
#include <chrono>
#include <istream>
#include <ostream>
#include <utility>

#include "apps/cli/object_types.h"
#include "platform/ui/texts.h"

namespace RefframeCli {

using QvPlatform::MessageAnswer;
using QvPlatform::MessageButtons;
using QvPlatform::MessageKind;

namespace {

// One line that is written again each time a further hundredth is done. Work whose number of steps
// is not known shows that it goes on.
class TerminalProgress final : public QvPlatform::TProgress {
 public:
  TerminalProgress(std::ostream& err, std::string title, int count)
      : err_(err), title_(std::move(title)), count_(count) {}
  ~TerminalProgress() override {
    if (shown_ >= 0) err_ << "\r\x1b[K" << std::flush;
  }
  bool Next() override {
    ++done_;
    if (count_ > 0) {
      Show(static_cast<int>(100LL * std::min(done_, count_) / count_), " %");
    } else if (const auto now = std::chrono::steady_clock::now(); now - last_ > kPause) {
      last_ = now;
      Show(done_, " blocks");
    }
    return true;
  }
  void SetMax(int count) override {
    count_ = count;
    done_ = 0;
    shown_ = -1;
  }

 private:
  static constexpr std::chrono::milliseconds kPause{100};

  void Show(int number, const char* unit) {
    if (number <= shown_) return;
    shown_ = number;
    err_ << "\r" << title_ << ": " << std::to_string(number) << unit << std::flush;
  }

  std::ostream& err_;
  std::string title_;
  int count_;
  int done_ = 0;
  int shown_ = -1;
  std::chrono::steady_clock::time_point last_;
};

class SilentProgress final : public QvPlatform::TProgress {
 public:
  bool Next() override { return true; }
};

}  // namespace

TerminalInterface::TerminalInterface(Terminal terminal, bool assumeYes)
    : terminal_(terminal), assumeYes_(assumeYes) {}

bool TerminalInterface::Confirm(const std::string& question) {
  if (assumeYes_) return true;
  if (!terminal_.interactive) {
    hasReported_ = true;
    terminal_.err << "refframe: " << question << " There is nobody to ask; --yes says it\n";
    return false;
  }
  terminal_.err << question << " [y/N] " << std::flush;
  std::string answer;
  std::getline(terminal_.in, answer);
  return answer == "y" || answer == "Y" || answer == "yes";
}

MessageAnswer TerminalInterface::ShowMessage(MessageKind kind, const std::string& text,
                                             MessageButtons buttons) {
  if (buttons == MessageButtons::kYesNo) {
    return Confirm(text) ? MessageAnswer::kYes : MessageAnswer::kNo;
  }
  hasReported_ |= kind == MessageKind::kError;
  terminal_.err << "refframe: " << text << "\n";
  return MessageAnswer::kOk;
}

QvPlatform::UsedByAnswer TerminalInterface::ShowUsedBy(QvPlatform::TComponent* /*owner*/,
                                                       std::span<const QvPlatform::UsedByRow> rows,
                                                       bool /*viewAllowed*/) {
  hasReported_ = true;
  terminal_.err << "refframe: " << QvPlatform::SystemText(QvPlatform::TextId::kUsedBy) << "\n";
  constexpr std::size_t kMost = 20;
  for (const QvPlatform::UsedByRow& row : rows.first(std::min(rows.size(), kMost))) {
    terminal_.err << "  " << TypeArgument(row.typeName) << " " << std::to_string(row.key) << " \""
                  << row.name << "\"\n";
  }
  if (rows.size() > kMost) {
    terminal_.err << "  and " << std::to_string(rows.size() - kMost)
                  << " more (refframe used-by lists them)\n";
  }
  return QvPlatform::UsedByAnswer::kClosed;
}

std::unique_ptr<QvPlatform::TProgress> TerminalInterface::StartProgress(int /*options*/,
                                                                        const std::string& title,
                                                                        int count) {
  // What changes a database that was only to be read is told to everyone.
  if (title == QvPlatform::SystemText(QvPlatform::TextId::kConversion)) {
    terminal_.err << "refframe: " << title << "\n";
  }
  if (!terminal_.interactive) return std::make_unique<SilentProgress>();
  return std::make_unique<TerminalProgress>(terminal_.err, title, count);
}

}  // namespace RefframeCli
