#include <algorithm>
#include <chrono>
#include <numeric>
#include <random>
#include <sstream>

#include "platform/data/string_tree_text.h"
#include "platform/dbset/write_group.h"
#include "platform/storage/crc32.h"
#include "processors/map_projection_processor.h"
#include "processors/ref_system_processor.h"
#include "tests/faults/driver.h"
#include "vertical/vertical_processor.h"

namespace refframe_faults {

using namespace refframe_tests;
using namespace QvRefSystem;
using QvPlatform::RowMatch;
using QvPlatform::TQvDataSet;
using QvPlatform::TQvWriteGroup;

bool IsContainer(const std::string& path) {
  return path.ends_with(".qvdb");
}

OpenDatabase::OpenDatabase(const std::string& path) : data(MakeDataModule(ui)) {
  data->DatabasePath = path;
  if (!data->OpenDatabase(path, kFullMode, IsContainer(path)))
    throw std::runtime_error(data->LastError().empty() ? "does not open" : data->LastError());
  ui.messages.clear();
}

void OpenDatabase::Expect(bool succeeded) const {
  if (!succeeded) throw std::runtime_error(ui.messages.empty() ? "refused" : ui.messages.back());
}

namespace {

// Each system has heights of its own.
void GiveHeights(TStringTree* tree, const std::string& name, int number) {
  std::string text = HeightText();
  text.replace(text.find("20.125"), 6, std::to_string(number) + ".5");
  const std::string checksum = std::to_string(static_cast<int>(QvPlatform::Crc32(text)));
  std::ranges::replace_if(
      text, [](char c) { return c == '\t' || c == '\n'; }, ' ');
  HeightTableTree(TreeBuilder(tree));
  ReplaceField(tree, 1502, "Heights " + name);
  ReplaceField(tree, 1511, text);
  ReplaceField(tree, 1512, checksum);
}

}  // namespace

TreePtr NumberedSystem(const std::string& prefix, int number, int kind, bool hasHeights) {
  TreePtr tree = MakeTree(SystemTree, kind);
  const std::string text = std::to_string(number);
  const auto rename = [&](TStringTree* object, int id, const char* letter) {
    if (object != nullptr) ReplaceField(object, id, prefix + letter + text);
    return object;
  };
  rename(tree.get(), 1020, "");
  rename(FindSubtree(tree.get(), 1103, 0), 5120, "E");
  if (TStringTree* const datum = rename(FindSubtree(tree.get(), 1107, 0), 5620, "D")) {
    rename(FindSubtree(datum, 1102, 0), 5420, "H");
    rename(FindSubtree(datum, 5610, 0), 5120, "E");
    ReplaceField(tree.get(), 102005, std::to_string(40000 + number % 10000));
  }
  rename(FindSubtree(tree.get(), 1300, 0), 6020, "P");
  if (hasHeights && (kind == 4 || kind == 5)) {
    (void)TreeBuilder(tree.get()).Sub(1500);
    GiveHeights(FindSubtree(tree.get(), 1500, 0), prefix + text, number);
  }
  return tree;
}

namespace {

// A number that looks like one drawn by lot.
unsigned Mixed(unsigned long long number) {
  number = (number + 0x9E3779B97F4A7C15ULL) * 0xBF58476D1CE4E5B9ULL;
  number = (number ^ (number >> 27)) * 0x94D049BB133111EBULL;
  return static_cast<unsigned>((number ^ (number >> 31)) >> 8);
}

std::vector<int> SortedKeys(TQvDataSet& table) {
  std::vector<int> keys;
  const int field = table.FieldByName("AUTOKEY").GetIndex();
  for (int i = 0; i < table.RecordCount(); ++i)
    keys.push_back(table.Row(i).GetInteger(field));
  std::ranges::sort(keys);
  return keys;
}

void SetField(TQvDataSet& table, const char* field, const std::string& value) {
  table.Edit();
  table.FieldByName(field).SetString(value);
  table.Post();
}

/// One operation on an open database; `lot` decides on what.
struct Operation {
  OpenDatabase& database;
  int seed;
  int number;
  unsigned lot;

  [[nodiscard]] TdatamoduleQvRfData& Data() const { return *database.data; }
  [[nodiscard]] std::string Text() const { return "operation " + std::to_string(number); }
  // Makes one of the records current, if there is any.
  [[nodiscard]] bool Pick(TQvRfDataProcessor& processor, TQvDataSet& table) const {
    const std::vector<int> keys = SortedKeys(table);
    return !keys.empty() && processor.LocateKey(keys[lot % keys.size()]);
  }
  void Import(int which) const {
    const unsigned kindLot = Mixed(seed * 7919ULL + which);
    const TreePtr tree = NumberedSystem("S", which, 1 + static_cast<int>(kindLot % 6), kindLot % 3);
    database.Expect(Data().RefSystemProcessor->InsertFromTree(tree.get()) != 0);
  }
  void ImportNew() const { Import(number); }
  void ImportKnown() const { Import(static_cast<int>(lot % (number + 1U))); }
  void Edit() const {
    if (Pick(*Data().RefSystemProcessor, Data().datasetRefSystem))
      SetField(Data().datasetRefSystem, "DESCRIPTION", Text());
  }
  void EditProjection() const {
    if (!Pick(*Data().MapProjProcessor, Data().datasetMapProj)) return;
    TQvDataSet& values = Data().datasetParamValue;
    TQvWriteGroup group({&Data().datasetMapProj, &values});
    SetField(Data().datasetMapProj, "DESCRIPTION", Text());
    const int owner = values.FieldByName("OWNER_ID").GetIndex();
    const int code = values.FieldByName("PARAM_CODE").GetIndex();
    const int key = Data().MapProjProcessor->GetCurrentKey();
    if (values.MoveTo(
            values.FindFirst({RowMatch::Integer(owner, key), RowMatch::Integer(code, 8802)})))
      SetField(values, "VALUE", std::to_string(number % 179));
    group.Commit();
  }
  void EditAll() const {
    TQvWriteGroup group(Data().WritableTables());
    for (const int key : SortedKeys(Data().datasetRefSystem))
      if (Data().RefSystemProcessor->LocateKey(key))
        SetField(Data().datasetRefSystem, "ABBREVIATION", "op" + std::to_string(number));
    group.Commit();
  }
  void Delete() const {
    if (Pick(*Data().RefSystemProcessor, Data().datasetRefSystem))
      database.Expect(Data().RefSystemProcessor->DeleteRecord(nullptr));
  }
  void ReplaceHeights() const {
    auto& processor = *Data().VerticalRefSystemProcessor;
    if (!Pick(processor, Data().datasetVerticalRefSystem)) return;
    THeightTable table;
    table.Resize(20, 30, 1, 1, 10, 40);
    for (unsigned x = 0; x < table.CountX; ++x)
      for (unsigned y = 0; y < table.CountY; ++y)
        table.Set(x, y, number % 50 + x * .01 + y * .1);
    HeightRecord record;
    record.Name = "Heights of " + Text();
    record.Abbreviation = "H";
    record.Table = &table;
    record.Grid = {"10", "29", "40", "69", "1", "1"};
    database.Expect(processor.Store(record, false));
  }
};

}  // namespace

void Operate(OpenDatabase& database, int seed, int number) {
  static constexpr void (Operation::*kKinds[])() const = {
      &Operation::ImportNew,      &Operation::ImportNew, &Operation::ImportNew,
      &Operation::ImportNew,      &Operation::ImportNew, &Operation::ImportKnown,
      &Operation::Edit,           &Operation::Edit,      &Operation::EditProjection,
      &Operation::ReplaceHeights, &Operation::Delete,    &Operation::EditAll,
  };
  database.ui.messages.clear();
  const unsigned lot = Mixed(seed * 1000003ULL + number);
  const bool hasFew = database.data->datasetRefSystem.RecordCount() < 3;
  const Operation operation{database, seed, number, Mixed(lot)};
  (operation.*kKinds[hasFew ? 0 : lot % std::size(kKinds)])();
}

namespace {

/// One of several processes at its work.
class Neighbour {
 public:
  Neighbour(std::string path, bool isOpen) : path_(std::move(path)) {
    if (isOpen) open_ = std::make_unique<OpenDatabase>(path_);
  }
  [[nodiscard]] double Longest() const { return longest_; }

  // Does it, and prints what became of it.
  void Try(char kind, const std::string& name, char refusal = 'X') {
    const auto start = std::chrono::steady_clock::now();
    std::string said = kind + (" " + name);
    try {
      if (open_) {
        Change(*open_, kind, name);
      } else {
        Command(kind, name);
      }
    } catch (const std::exception& error) {
      said = refusal + (" " + said) + ": " + error.what();
    }
    const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
    longest_ = std::max(longest_, taken.count());
    Say(said + '\n');
  }

 private:
  [[nodiscard]] static TreePtr Tree(const std::string& name) {
    const std::string prefix = name.substr(0, name.find('_') + 1);
    const int number = std::stoi(name.substr(prefix.size()));
    return NumberedSystem(prefix, number, 4 + number % 2, number % 5 == 0);
  }
  static void Change(OpenDatabase& database, char kind, const std::string& name) {
    database.ui.messages.clear();
    auto& processor = *ProcessorFor(*database.data, kind == 'U' ? 2 : 1);
    TQvDataSet& table = kind == 'U' ? database.data->datasetDatum : database.data->datasetRefSystem;
    if (kind == 'I') return database.Expect(processor.InsertFromTree(Tree(name).get()) != 0);
    if (!table.MoveTo(
            table.FindFirst({RowMatch::Text(table.FieldByName("NAME").GetIndex(), name)})))
      throw std::runtime_error("is not there");
    if (kind == 'E') return SetField(table, "DESCRIPTION", "edited");
    database.Expect(processor.DeleteRecord(nullptr));
  }
  void Command(char kind, const std::string& name) const {
    CommandResult result;
    if (kind == 'E') {
      OpenDatabase database(path_);
      return Change(database, kind, name);
    }
    if (kind == 'I') {
      result = RunCommandLine({"import", path_, "reference-system", "-"},
                              WriteTreeText(Tree(name).get()) + '\0');
    } else {
      const char* const type = kind == 'U' ? "datum" : "reference-system";
      result = RunCommandLine({"delete", path_, type, "name:" + name, "--yes"});
    }
    if (result.exitCode != 0) throw std::runtime_error(result.errors);
  }

  std::string path_;
  std::unique_ptr<OpenDatabase> open_;
  double longest_ = 0;
};

}  // namespace

void WriteBeside(const std::string& path, int process, int count, const std::string& how,
                 bool isOpen) {
  Neighbour neighbour(path, isOpen);
  std::vector<int> order(count);
  std::iota(order.begin(), order.end(), 0);
  std::ranges::shuffle(order, std::mt19937(process));
  for (const int number : order) {
    const bool isShared = how == "same" || number % 4 == 0;
    const std::string prefix = isShared ? "shared_" : "p" + std::to_string(process) + "_";
    const std::string name = prefix + std::to_string(number);
    neighbour.Try('I', name);
    if (how == "same") continue;
    if (!isShared && number % 3 == 0) neighbour.Try('E', name);
    if (!isShared && number % 4 == 1) neighbour.Try('D', name);
    if (isShared && number % 8 == 0) {
      // Others import the same, and may use the datum again.
      neighbour.Try('D', name, 'R');
      neighbour.Try('U', prefix + "D" + std::to_string(number), 'R');
    }
  }
  Say("W " + std::to_string(neighbour.Longest()) + "\n");
}

}  // namespace refframe_faults
