#include "platform/geocore/point_lines.h"

#include <algorithm>

#include "platform/geocore/shell_definition.h"
#include "platform/geocore/shell_notation.h"
#include "platform/text/text.h"

namespace QvRefSystem {
namespace {

constexpr std::string_view kBlanks = " \t\r\n";

// The next word of a line, which loses it; empty at the end.
std::string_view TakeWord(std::string_view* line) {
  line->remove_prefix(std::min(line->find_first_not_of(kBlanks), line->size()));
  const std::string_view word = line->substr(0, line->find_first_of(kBlanks));
  line->remove_prefix(word.size());
  return word;
}

// Metres on the Earth of one unit of the plane's coordinates.
double GroundUnit(const ShellDefinition& system) {
  constexpr double kEarthRadius = 6.4e6;
  const double unit = system.PlaneUnit();
  return system.Kind() == SystemKind::kGeodetic ? unit * kEarthRadius : unit;
}

}  // namespace

bool IsPassedOverLine(std::string_view line) {
  const std::string_view word = TakeWord(&line);
  return word.empty() || word.front() == '#';
}

bool ReadPointLine(std::string_view line, TShellPoint* point, bool* hasThird, std::string* reason) {
  double values[3] = {0, 0, 0};
  int count = 0;
  for (std::string_view word = TakeWord(&line); !word.empty(); word = TakeWord(&line)) {
    if (count == 3) {
      *reason = "more than three numbers";
      return false;
    }
    if (!QvPlatform::TextToDouble(word, &values[count])) {
      constexpr std::size_t kMostShown = 40;
      *reason = "not a number: " + std::string(word.substr(0, kMostShown));
      return false;
    }
    ++count;
  }
  if (count < 2) {
    *reason = "fewer than two numbers";
    return false;
  }
  *point = {values[0], values[1], values[2]};
  *hasThird = count == 3;
  return true;
}

void AppendPoint(const TShellReferenceSystem& system, const TShellPoint& point, bool withThird,
                 std::string* line) {
  constexpr double kResolution = 1e-7;  // metres
  const double ground = GroundUnit(system.Core());
  *line += PlainDecimals(point.First, ground, kResolution);
  *line += ' ';
  *line += PlainDecimals(point.Second, ground, kResolution);
  if (!withThird) return;
  *line += ' ';
  *line += PlainDecimals(point.Third, system.Core().heightUnit, kResolution);
}

}  // namespace QvRefSystem
