#include <filesystem>
#include <istream>
#include <iterator>
#include <ostream>

#include "apps/cli/command_error.h"
#include "apps/cli/commands.h"
#include "apps/cli/open_database.h"
#include "platform/data/tree_members.h"
#include "platform/geocore/model_from_tree.h"
#include "platform/text/text.h"
#include "platform/ui/texts.h"
#include "registry/equivalence.h"

namespace RefframeCli {

using QvCommonUtils::TStringTree;
using QvRefSystem::Dimension;
using QvRefSystem::ObjectDescriptor;
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
  const ObjectForm form = request.form.value_or(ObjectForm::kText);
  const Dimension dimension = IsSystemForm(form) ? DimensionFor(tree, request) : Dimension::kTwo;
  return WriteObject(tree, *request.type, form, dimension);
}

void ExportOne(OpenedDatabase& database, const Request& request, Terminal terminal) {
  TQvRfDataProcessor& processor = database.Locate(*request.type, request.object);
  const ObjectForm form = request.form.value_or(ObjectForm::kText);
  std::string content;
  try {
    content = WriteCurrent(processor, request);
  } catch (const std::exception& error) {
    throw CommandError(request.object + ": " + error.what());
  }
  if (!request.output.empty()) return SaveObject(request.output, form, content);
  terminal.out << content;
  if (!content.ends_with('\n')) terminal.out << "\n";
}

int ExportAll(OpenedDatabase& database, const Request& request, Terminal terminal,
              TerminalInterface& ui) {
  std::error_code error;
  std::filesystem::create_directories(request.output, error);
  if (error) throw CommandError(request.output + ": " + error.message());

  TQvRfDataProcessor& processor = database.Processor(*request.type);
  const ObjectForm form = request.form.value_or(ObjectForm::kText);
  const int count = processor.DataSet->RecordCount();
  const auto progress =
      ui.StartProgress(0, QvPlatform::SystemText(request.type->displayName), count);
  FileNames names(request.output);
  int failed = 0;
  for (int position = 0; position < count; ++position) {
    processor.DataSet->MoveTo(position);
    const std::string name = CurrentName(processor);
    const std::string key = std::to_string(processor.GetCurrentKey());
    try {
      const std::string content = WriteCurrent(processor, request);
      SaveObject(names.Next(name, *request.type, form), form, content);
    } catch (const std::exception& failure) {
      terminal.err << "refframe: " << key << " \"" << name << "\": " << failure.what() << "\n";
      ++failed;
    }
    progress->Next();
  }
  terminal.out << std::to_string(count - failed) << " objects written to " << request.output
               << "\n";
  return failed == 0 ? kSucceeded : kFailed;
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
  if (file != "-") return LoadObject(file);
  return {std::istreambuf_iterator<char>(terminal.in), std::istreambuf_iterator<char>()};
}

void ImportOne(TQvRfDataProcessor& processor, const Request& request, const std::string& file,
               Terminal terminal) {
  const std::string content = ReadSource(file, terminal);
  TStringTree tree;
  int key = 0;
  try {
    ReadObject(content, *request.type, request.form, &tree);
    key = processor.InsertFromTree(&tree);
  } catch (const std::exception& error) {
    throw CommandError(file + ": " + error.what());
  }
  if (key == 0) throw CommandError(file + ": " + WhyRefused(tree, *request.type));
  // Height systems leave no note: they are added whenever they come.
  int inserted = 1;
  (void)GetInteger(tree, TreeIds::kInsertedNote, &inserted);
  terminal.out << std::to_string(key) << "\t" << (inserted != 0 ? "inserted" : "found") << "\t"
               << QvPlatform::Encode(CurrentName(processor)) << "\n";
}

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
  ExportOne(database, request, terminal);
  return kSucceeded;
}

int ImportFiles(const Request& request, Terminal terminal) {
  TerminalInterface ui(terminal, false);
  OpenedDatabase database(request.database, ui);
  TQvRfDataProcessor& processor = database.Processor(*request.type);
  int result = kSucceeded;
  for (const std::string& file : request.files) {
    try {
      ImportOne(processor, request, file, terminal);
    } catch (const CommandError& error) {
      terminal.err << "refframe: " << error.what() << "\n";
      result = kFailed;
    }
  }
  return result;
}

}  // namespace RefframeCli
