#include <istream>
#include <map>
#include <ostream>
#include <vector>

#include "apps/cli/command_error.h"
#include "apps/cli/commands.h"
#include "apps/cli/open_database.h"
#include "platform/geocore/geoids.h"
#include "platform/geocore/point_lines.h"

namespace RefframeCli {

using QvRefSystem::TShellPoint;
using QvRefSystem::TShellReferenceSystem;

namespace {

std::unique_ptr<TShellReferenceSystem> OpenSystem(OpenedDatabase& database,
                                                  const std::string& object) {
  const auto& type = DescriptorOf(QvRefSystem::TObjectType::kReferenceSystem);
  QvCommonUtils::TStringTree tree;
  if (!database.Locate(type, object).WriteToTree(&tree, 0, 0)) {
    throw CommandError(object + ": an object that it refers to is missing");
  }
  std::string error;
  auto system = QvRefSystem::CreateShellReferenceSystem(&tree, nullptr, &error);
  if (!system) throw CommandError(object + ": " + error);
  return system;
}

/// Points on their way, many at a time: the systems work on arrays.
class PointStream {
 public:
  PointStream(const TShellReferenceSystem& from, const TShellReferenceSystem& to, bool notation,
              Terminal terminal)
      : from_(from), to_(to), notation_(notation), terminal_(terminal) {}

  // Lines that are answered together.
  void Run(std::size_t block) {
    while (ReadLines(block))
      WriteLines();
  }
  [[nodiscard]] bool HasFailed() const { return failed_; }

 private:
  // What becomes of a line of input.
  struct Answer {
    // What goes out as it is: a comment, or the reason of a failure.
    std::string text;
    bool isPoint = false;
    bool hasThird = false;
  };

  bool ReadLines(std::size_t most) {
    answers_.clear();
    points_.clear();
    std::string line;
    while (answers_.size() < most && std::getline(terminal_.in, line))
      ReadLine(line);
    return !answers_.empty();
  }

  void ReadLine(const std::string& line) {
    Answer& answer = answers_.emplace_back();
    if (QvRefSystem::IsPassedOverLine(line)) {
      answer.text = line;
      return;
    }
    TShellPoint point;
    std::string reason;
    answer.isPoint = ReadPointLine(line, &point, &answer.hasThird, &reason);
    if (answer.isPoint) {
      points_.push_back(point);
    } else {
      answer.text = "* " + reason;
      failed_ = true;
    }
  }

  void WriteLines() {
    const std::vector<TShellPoint> origins = points_;
    (void)from_.Transform(to_, points_);
    text_.clear();
    std::size_t at = 0;
    for (const Answer& answer : answers_) {
      if (answer.isPoint) {
        WritePoint(origins[at], points_[at], answer.hasThird);
        ++at;
      }
      text_ += answer.text;
      text_ += '\n';
    }
    terminal_.out << text_ << std::flush;
  }

  void WritePoint(const TShellPoint& origin, const TShellPoint& point, bool hasThird) {
    if (IsFailed(point)) {
      text_ += "* " + from_.ExplainFailure(to_, origin);
      failed_ = true;
    } else if (notation_) {
      QvRefSystem::TShellCoords coords;
      std::string texts[3];
      to_.WriteNotation(point, &coords);
      coords.Get(&texts[0], &texts[1], &texts[2]);
      text_ += texts[0] + " " + texts[1] + (hasThird ? " " + texts[2] : std::string());
    } else {
      AppendPoint(to_, point, hasThird, &text_);
    }
  }

  const TShellReferenceSystem& from_;
  const TShellReferenceSystem& to_;
  const bool notation_;
  Terminal terminal_;
  std::vector<Answer> answers_;
  std::vector<TShellPoint> points_;
  std::string text_;
  bool failed_ = false;
};

}  // namespace

int TransformPoints(const Request& request, Terminal terminal) {
  constexpr std::size_t kBlock = 8192;
  TerminalInterface ui(terminal, false);
  OpenedDatabase database(request.database, ui);
  const auto from = OpenSystem(database, request.from);
  const auto to = OpenSystem(database, request.to);
  // Two systems that cannot meet are told of ahead of any point.
  (void)from->Transform(*to, {});
  PointStream stream(*from, *to, request.showNotation, terminal);
  stream.Run(request.lineByLine || terminal.interactive ? 1 : kBlock);
  return stream.HasFailed() ? kFailed : kSucceeded;
}

int ListGeoids(const Request& /*request*/, Terminal terminal) {
  std::map<int, std::string> geoids;
  if (!QvRefSystem::GetSystemGeoidsList(&geoids)) {
    throw CommandError("no grid of a geoid is found on this machine");
  }
  for (const auto& [code, name] : geoids)
    terminal.out << std::to_string(code) << "\t" << name << "\n";
  return kSucceeded;
}

}  // namespace RefframeCli
