#include "apps/cli/exchange_commands.h"

#include <algorithm>
#include <filesystem>
#include <istream>
#include <iterator>
#include <ostream>
#include <sstream>

#include "apps/cli/command_error.h"
#include "apps/cli/open_database.h"
#include "apps/cli/output_file.h"
#include "platform/data/tree_members.h"
#include "platform/dbset/write_group.h"
#include "platform/geocore/model_from_tree.h"
#include "platform/storage/stream.h"
#include "platform/text/text.h"
#include "platform/ui/texts.h"
#include "registry/equivalence.h"

namespace RefframeCli {

using QvCommonUtils::TStringTree;
using QvRefSystem::Dimension;
using QvRefSystem::ObjectDescriptor;
using QvRefSystem::ObjectFileForm;
using QvRefSystem::TObjectType;
using QvRefSystem::TQvRfDataProcessor;

namespace {

namespace TreeIds = QvRefSystem::TreeIds;

std::string CurrentName(const TQvRfDataProcessor& processor) {
  std::string name;
  processor.GetNames(nullptr, &name);
  return name;
}

// The registry knows many a geodetic system twice, with and without heights, and both codes lead to
// one record: what is written has to be what the code means.
Dimension DimensionFor(const TStringTree& tree, const Request& request) {
  if (request.dimension) return *request.dimension;
  int code = 0;
  std::string flat;
  std::string spatial;
  std::string why;
  if (!EpsgCodeOf(request.object, &code) || !TreeToProjJson(&tree, Dimension::kTwo, &flat, &why) ||
      !TreeToProjJson(&tree, Dimension::kThree, &spatial, &why)) {
    return Dimension::kTwo;
  }
  const bool isSpatial = !QvRefSystem::EquivalentToEpsg(flat, code, &why) &&
                         QvRefSystem::EquivalentToEpsg(spatial, code, &why);
  return isSpatial ? Dimension::kThree : Dimension::kTwo;
}

// Writes the processor's current record.
std::string WriteCurrent(TQvRfDataProcessor& processor, const Request& request) {
  TStringTree tree;
  if (!processor.WriteToTree(&tree, 0, 0)) {
    throw CommandError("an object that it refers to is missing, or its kind is not known");
  }
  const ObjectFileForm form = request.form.value_or(ObjectFileForm::kText);
  const Dimension dimension = IsSystemForm(form) ? DimensionFor(tree, request) : Dimension::kTwo;
  RequireForm(form, *request.type);
  return WriteTree(tree, form, dimension);
}

void ExportOne(OpenedDatabase& database, const Request& request, Terminal terminal,
               TerminalInterface& ui) {
  TQvRfDataProcessor& processor = database.Locate(*request.type, request.object);
  const ObjectFileForm form = request.form.value_or(ObjectFileForm::kText);
  std::string content;
  try {
    content = WriteCurrent(processor, request);
  } catch (const std::exception& error) {
    throw CommandError(request.object + ": " + error.what());
  }
  if (!request.output.empty()) {
    if (MayWriteOutput(request, terminal, ui)) SaveObjectFile(request.output, form, content);
    return;
  }
  terminal.out << content;
  if (!content.ends_with('\n')) terminal.out << "\n";
}

// Adds the processor's current record to a folder; false, told, for one that cannot be written.
bool AddCurrent(TQvRfDataProcessor& processor, const Request& request, Terminal terminal,
                QvRefSystem::ObjectFolder* folder) {
  const ObjectFileForm form = request.form.value_or(ObjectFileForm::kText);
  const std::string name = CurrentName(processor);
  const std::string key = std::to_string(processor.GetCurrentKey());
  std::string content;
  try {
    content = WriteCurrent(processor, request);
  } catch (const std::exception& failure) {
    terminal.err << "refframe: " << key << " \"" << name << "\": " << failure.what() << "\n";
    return false;
  }
  folder->Add(name, ObjectFileExtension(form, request.type->typeName), form, content);
  return true;
}

int ExportAll(OpenedDatabase& database, const Request& request, Terminal terminal,
              TerminalInterface& ui) {
  QvRefSystem::ObjectFolder folder(request.output);
  TQvRfDataProcessor& processor = database.Processor(*request.type);
  const int count = processor.DataSet->RecordCount();
  const auto progress =
      ui.StartProgress(0, QvPlatform::SystemText(request.type->displayName), count);
  int written = 0;
  for (int position = 0; position < count; ++position) {
    processor.DataSet->MoveTo(position);
    if (AddCurrent(processor, request, terminal, &folder)) ++written;
    (void)progress->Next();
  }
  folder.Deliver();
  terminal.out << std::to_string(written) << " objects written to " << request.output << "\n";
  return written == count ? kSucceeded : kFailed;
}

// Why a tree was not taken, as far as it can be told.
std::string WhyRefused(const TStringTree& tree, const ObjectDescriptor& type) {
  std::string reason;
  QvRefSystem::SystemModel model;
  if (type.type == TObjectType::kReferenceSystem &&
      !QvRefSystem::ModelFromTree(&tree, &model, &reason) && !reason.empty()) {
    return reason;
  }
  return "it does not hold a whole " + std::string(type.typeName) +
         ", or one of a type whose "
         "table is closed";
}

std::string ReadSource(const std::string& file, Terminal terminal) {
  if (file == "-") {
    return {std::istreambuf_iterator<char>(terminal.in), std::istreambuf_iterator<char>()};
  }
  try {
    return QvRefSystem::LoadObjectFile(file);
  } catch (const QvPlatform::StorageError& error) {
    throw CommandError(error.what());
  }
}

// Reads the tree of a file and gives the type of its object.
const ObjectDescriptor& ReadContent(const std::string& content, const Request& request,
                                    TStringTree* tree) {
  if (QvPlatform::IsBlank(content)) throw CommandError("the file is empty");
  const ObjectFileForm form = request.form.value_or(QvRefSystem::FormOfContent(content));
  if (request.type != nullptr) RequireForm(form, *request.type);
  ReadTree(content, form, tree);
  if (request.type != nullptr) return *request.type;
  const std::optional<TObjectType> type = QvRefSystem::TypeOfTree(*tree);
  if (!type) throw CommandError("it does not hold an object of any type");
  return QvRefSystem::DescriptorOf(*type);
}

// The files that are named, and those in the folders that are, in the order of their names.
std::vector<std::string> FilesToRead(const std::vector<std::string>& named) {
  namespace fs = std::filesystem;
  std::vector<std::string> files;
  for (const std::string& name : named) {
    std::error_code error;
    if (!fs::is_directory(name, error)) {
      files.push_back(name);
      continue;
    }
    const std::size_t first = files.size();
    for (const fs::directory_entry& entry : fs::directory_iterator(name)) {
      const bool hidden = entry.path().filename().string().starts_with('.');
      if (!hidden && entry.is_regular_file()) files.push_back(entry.path().string());
    }
    std::sort(files.begin() + static_cast<std::ptrdiff_t>(first), files.end());
  }
  return files;
}

// Takes files into a database.
class Importer {
 public:
  Importer(const Request& request, Terminal terminal)
      : request_(request),
        terminal_(terminal),
        ui_(terminal, false),
        database_(request.database, ui_),
        files_(FilesToRead(request.files)) {
    if (files_.empty()) throw CommandError("there are no files to import");
  }

  // What can be taken is, one by one.
  int ImportEach() {
    ReadAll(terminal_.out);
    return refused_ == 0 ? kSucceeded : kFailed;
  }

  // All files are looked at, so that all that are refused are told at once.
  int ImportTogether() {
    std::ostringstream lines;
    QvPlatform::TQvWriteGroup group(database_.Data().WritableTables());
    ReadAll(lines);
    if (refused_ == 0) {
      group.Commit();
      terminal_.out << lines.str();
    } else if (files_.size() > 1) {
      terminal_.err << "refframe: nothing was imported: " << std::to_string(refused_) << " of "
                    << std::to_string(files_.size()) << " files are refused (--each takes the "
                    << "others)\n";
    }
    return refused_ == 0 ? kSucceeded : kFailed;
  }

 private:
  void ReadAll(std::ostream& lines) {
    const auto progress = ui_.StartProgress(0, request_.database, static_cast<int>(files_.size()));
    for (const std::string& file : files_) {
      try {
        lines << ImportOne(file);
      } catch (const CommandError& error) {
        terminal_.err << "refframe: " << error.what() << "\n";
        ++refused_;
      }
      (void)progress->Next();
    }
  }

  // Takes the object of a file in and gives the line that tells of it.
  std::string ImportOne(const std::string& file) {
    const std::string content = ReadSource(file, terminal_);
    TStringTree tree;
    int key = 0;
    const ObjectDescriptor* type = nullptr;
    ui_.ForgetReported();
    try {
      type = &ReadContent(content, request_, &tree);
      key = database_.Processor(*type).InsertFromTree(&tree);
    } catch (const std::exception& error) {
      throw CommandError(file + ": " + error.what());
    }
    if (key == 0) throw CommandError(file + ": " + WhyNotTaken(tree, *type));
    // Height systems leave no note: they are added whenever they come.
    int inserted = 1;
    (void)GetInteger(tree, TreeIds::kInsertedNote, &inserted);
    return std::to_string(key) + "\t" + (inserted != 0 ? "inserted" : "found") + "\t" +
           QvPlatform::Encode(CurrentName(database_.Processor(*type))) + "\n";
  }

  // A database that refuses to be written has told so, and the tree is not to blame.
  [[nodiscard]] std::string WhyNotTaken(const TStringTree& tree, const ObjectDescriptor& type) {
    return ui_.HasReported() ? "it is not imported" : WhyRefused(tree, type);
  }

  const Request& request_;
  Terminal terminal_;
  TerminalInterface ui_;
  OpenedDatabase database_;
  std::vector<std::string> files_;
  int refused_ = 0;
};

}  // namespace

int ExportObjects(const Request& request, Terminal terminal) {
  if (request.all && !request.object.empty()) {
    throw UsageError("export: either an object or --all, not both");
  }
  if (!request.all && request.object.empty()) {
    throw UsageError("export: give an object or --all");
  }
  if (request.all && request.output.empty()) {
    throw UsageError("export: --all needs a folder to write to (-o)");
  }
  TerminalInterface ui(terminal, false);
  OpenedDatabase database(request.database, ui);
  if (request.all) return ExportAll(database, request, terminal, ui);
  ExportOne(database, request, terminal, ui);
  return kSucceeded;
}

int ImportFiles(const Request& request, Terminal terminal) {
  Importer importer(request, terminal);
  return request.each ? importer.ImportEach() : importer.ImportTogether();
}

}  // namespace RefframeCli
