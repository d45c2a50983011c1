#include "apps/cli/height_commands.h"

#include <zlib.h>

#include <cmath>
#include <memory>
#include <ostream>

#include "apps/cli/command_error.h"
#include "apps/cli/open_database.h"
#include "apps/cli/output_file.h"
#include "platform/data/height_table_reader.h"
#include "platform/geocore/model_from_tree.h"
#include "platform/geocore/shell_reference_system.h"
#include "platform/text/text.h"
#include "platform/ui/progress_display.h"
#include "platform/ui/texts.h"
#include "vertical/height_file.h"

namespace RefframeCli {

using QvPlatform::DoubleToText;
using QvPlatform::SystemText;
using QvPlatform::TextId;
using QvRefSystem::LoadHeightTable;
using QvRefSystem::LoadHeightText;
using QvRefSystem::ParseHeightTable;
using QvRefSystem::ProgressDisplay;
using QvRefSystem::SaveHeightTable;
using QvRefSystem::THeightTable;
using QvRefSystem::TShellReferenceSystem;

namespace {

std::string ThreeDecimals(double value) {
  char digits[64];
  std::snprintf(digits, sizeof digits, "%.3f", value);
  return digits;
}

void Say(std::ostream& out, const char* what, const std::string& value) {
  out << what << ": " << value << "\n";
}

// Reading and writing tell the user themselves what a stream refused.
void Require(bool done, const TerminalInterface& ui, const std::string& reason) {
  if (!done) throw CommandError(ui.HasReported() ? std::string() : reason);
}

void ReadTable(const std::string& path, TerminalInterface& ui, THeightTable* table) {
  Require(LoadHeightTable(table, path, false, ui), ui,
          path + ": it does not hold a table of heights");
}

void SayGrid(std::ostream& out, const THeightTable& table) {
  Say(out, "North", DoubleToText(table.North()));
  Say(out, "South", DoubleToText(table.South()));
  Say(out, "East", DoubleToText(table.East()));
  Say(out, "West", DoubleToText(table.West()));
  Say(out, "Cell north-south", DoubleToText(table.CellY));
  Say(out, "Cell east-west", DoubleToText(table.CellX));
  Say(out, "Nodes north-south", std::to_string(table.CountY));
  Say(out, "Nodes east-west", std::to_string(table.CountX));
}

void SayRange(std::ostream& out, const THeightTable& table) {
  Say(out, "Least", ThreeDecimals(table.MinValue));
  Say(out, "Greatest", ThreeDecimals(table.MaxValue));
}

/// The first and the last index of nodes whose coordinate lies in a window.
struct Nodes {
  std::uint32_t first = 0;
  std::uint32_t last = 0;
};

Nodes NodesBetween(double from, double to, double origin, double cell, std::uint32_t count) {
  // A node on the edge of the window belongs to it, whatever its coordinate was rounded to.
  const double first = std::max(0.0, std::ceil((from - origin) / cell - 1e-9));
  const double last = std::min(count - 1.0, std::floor((to - origin) / cell + 1e-9));
  if (!(first <= last)) throw CommandError("no node of the table lies in the window");
  return {static_cast<std::uint32_t>(first), static_cast<std::uint32_t>(last)};
}

void ViewTable(const THeightTable& table, const Nodes& columns, const Nodes& rows,
               std::uint32_t step, std::ostream& out) {
  const auto coordinate = [](double origin, double cell, std::uint32_t number) {
    char digits[64];
    std::snprintf(digits, sizeof digits, "%.12g", origin + number * cell);
    return std::string(digits);
  };
  for (std::uint64_t i = columns.first; i <= columns.last; i += step)
    out << "\t" << coordinate(table.OriginX, table.CellX, static_cast<std::uint32_t>(i));
  out << "\n";
  for (std::int64_t j = rows.last; j >= static_cast<std::int64_t>(rows.first); j -= step) {
    const auto row = static_cast<std::uint32_t>(j);
    out << coordinate(table.OriginY, table.CellY, row);
    for (std::uint64_t i = columns.first; i <= columns.last; i += step)
      out << "\t" << ThreeDecimals(table.Get(static_cast<std::uint32_t>(i), row));
    out << "\n";
  }
}

/// Where heights come from and go to.
class HeightWork {
 public:
  HeightWork(const Request& request, Terminal terminal)
      : request_(request.heights), ui_(terminal, false), database_(request.database, ui_) {
    target_ = System(request_.target, &unit_);
    source_ = System(request_.file.empty() ? request_.system : request_.plane, nullptr);
    if (request_.file.empty()) return;
    ReadTable(request_.file, ui_, &table_);
  }

  // Gives `table` the grid that was asked for, or the one that follows from the source.
  void MakeGrid(THeightTable* table) {
    std::vector<std::string> grid = request_.grid;
    if (grid.empty()) {
      grid.resize(6);
      if (!DeriveGrid(&grid)) {
        throw CommandError("the grid does not follow from the source; give it by --grid");
      }
    }
    target_->InitializeHeightTableGrid(grid[0], grid[1], grid[2], grid[3], grid[4], grid[5], table);
    if (table->Data != nullptr) return;
    std::string numbers;
    for (const std::string& number : grid)
      numbers += " " + number;
    throw CommandError("no grid can be made of" + numbers +
                       " (north, south, east, west, cell north-south, cell east-west)");
  }

  void Interpolate(THeightTable* result) {
    ProgressDisplay progress(ui_, ProgressDisplay::kFree,
                             SystemText(TextId::kRecalculatingHeights));
    if (FromFile()) {
      source_->InterpolateHeights(&table_, target_.get(), result, ProgressDisplay::Next);
    } else {
      source_->InterpolateHeights(target_.get(), result, ProgressDisplay::Next);
    }
  }

  void Approximate(std::string* offset, std::string* rms, std::string* max, THeightTable* errors) {
    ProgressDisplay progress(ui_, ProgressDisplay::kCounted,
                             SystemText(TextId::kApproximatingHeights));
    TProgressInterface* steps = progress.Interface();
    const bool done =
        FromFile()
            ? source_->ApproximateHeights(&table_, target_.get(), offset, rms, max, errors, steps)
            : source_->ApproximateHeights(target_.get(), offset, rms, max, errors, steps);
    if (!done) throw CommandError("the heights cannot be approximated on this grid");
  }

  void Save(const std::string& path, const THeightTable& table) {
    Require(SaveHeightTable(&table, path, false, nullptr, ui_), ui_,
            path + ": the table cannot be written");
  }
  /// Name of the unit in which heights of the target are.
  [[nodiscard]] const std::string& HeightUnit() const { return unit_; }

 private:
  using TProgressInterface = QvRefSystem::TProgressInterface;

  [[nodiscard]] bool FromFile() const { return !request_.file.empty(); }

  bool DeriveGrid(std::vector<std::string>* grid) {
    std::string* texts = grid->data();
    return FromFile()
               ? source_->RecalculateHeightTableGrid(&table_, target_.get(), texts, texts + 1,
                                                     texts + 2, texts + 3, texts + 4, texts + 5)
               : source_->RecalculateHeightTableGrid(target_.get(), texts, texts + 1, texts + 2,
                                                     texts + 3, texts + 4, texts + 5);
  }

  // `unit`, if given, takes the name of the system's unit of heights.
  std::unique_ptr<TShellReferenceSystem> System(const std::string& object, std::string* unit) {
    using QvRefSystem::TObjectType;
    const auto& type = QvRefSystem::DescriptorOf(TObjectType::kReferenceSystem);
    QvRefSystem::TQvRfDataProcessor& processor = database_.Locate(type, object);
    QvCommonUtils::TStringTree tree;
    if (!processor.WriteToTree(&tree, 0, 0)) {
      throw CommandError(object + ": an object that it refers to is missing");
    }
    ProgressDisplay progress(ui_, ProgressDisplay::kCounted, SystemText(TextId::kLoadingHeights));
    std::string error;
    QvRefSystem::SystemModel model;
    if (unit != nullptr && ModelFromTree(&tree, &model, &error)) *unit = model.linearUnit.name;
    auto system = CreateShellReferenceSystem(&tree, progress.Interface(), &error);
    if (!system) throw CommandError(object + ": " + error);
    return system;
  }

  const HeightRequest& request_;
  TerminalInterface ui_;
  OpenedDatabase database_;
  std::unique_ptr<TShellReferenceSystem> target_;
  std::unique_ptr<TShellReferenceSystem> source_;
  THeightTable table_;
  std::string unit_;
};

void RequireOneSource(const HeightRequest& request, const char* command) {
  const std::string name = std::string("heights ") + command;
  if (request.file.empty() == request.system.empty()) {
    throw UsageError(name + ": give either --source with --plane, or --source-system");
  }
  if (request.file.empty() != request.plane.empty()) {
    throw UsageError(name +
                     ": --source and --plane go together: the file, and the system in "
                     "whose plane its grid lies");
  }
}

}  // namespace

int ShowHeightFile(const Request& request, Terminal terminal) {
  TerminalInterface ui(terminal, false);
  std::string content;
  THeightTable table;
  Require(LoadHeightText(request.heights.file, false, &content, ui) &&
              ParseHeightTable(&table, content, nullptr),
          ui, request.heights.file + ": it does not hold a table of heights");
  SayGrid(terminal.out, table);
  SayRange(terminal.out, table);
  const auto crc = static_cast<std::uint32_t>(
      crc32_z(0, reinterpret_cast<const Bytef*>(content.data()), content.size()));
  Say(terminal.out, "CRC-32 of the text", std::to_string(crc));
  return kSucceeded;
}

int ViewHeightFile(const Request& request, Terminal terminal) {
  const HeightRequest& heights = request.heights;
  TerminalInterface ui(terminal, false);
  THeightTable table;
  ReadTable(heights.file, ui, &table);
  Nodes columns{0, table.CountX - 1};
  Nodes rows{0, table.CountY - 1};
  if (!heights.window.empty()) {
    const std::vector<double>& window = heights.window;
    rows = NodesBetween(window[1], window[0], table.OriginY, table.CellY, table.CountY);
    columns = NodesBetween(window[3], window[2], table.OriginX, table.CellX, table.CountX);
  }
  ViewTable(table, columns, rows, static_cast<std::uint32_t>(heights.step), terminal.out);
  return kSucceeded;
}

int InterpolateHeightFile(const Request& request, Terminal terminal) {
  RequireOneSource(request.heights, "interpolate");
  TerminalInterface ui(terminal, false);
  if (!MayWriteOutput(request, terminal, ui)) return kSucceeded;
  HeightWork work(request, terminal);
  THeightTable result;
  work.MakeGrid(&result);
  work.Interpolate(&result);
  work.Save(request.output, result);
  SayGrid(terminal.out, result);
  SayRange(terminal.out, result);
  return kSucceeded;
}

int ApproximateHeightFile(const Request& request, Terminal terminal) {
  RequireOneSource(request.heights, "approximate");
  TerminalInterface ui(terminal, false);
  if (!MayWriteOutput(request, terminal, ui)) return kSucceeded;
  HeightWork work(request, terminal);
  THeightTable errors;
  work.MakeGrid(&errors);
  std::string offset;
  std::string rms;
  std::string max;
  work.Approximate(&offset, &rms, &max, &errors);
  if (!request.output.empty()) work.Save(request.output, errors);
  for (const auto& [what, value] :
       {std::pair("Offset", &offset), {"RMS error", &rms}, {"Max error", &max}}) {
    Say(terminal.out, what, *value + " " + work.HeightUnit());
  }
  return kSucceeded;
}

}  // namespace RefframeCli
