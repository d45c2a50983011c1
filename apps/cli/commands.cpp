#include "apps/cli/commands.h"

#include <ostream>

#include "apps/cli/command_error.h"
#include "apps/cli/object_types.h"
#include "apps/cli/open_database.h"
#include "assembly/database_check.h"
#include "assembly/database_copy.h"
#include "assembly/database_repair.h"
#include "platform/storage/database_recovery.h"
#include "platform/text/text.h"
#include "processors/name_filter.h"
#include "processors/object_users.h"
#include "registry/epsg_registry.h"

namespace RefframeCli {

using QvPlatform::Encode;
using QvPlatform::RowView;
using QvPlatform::TQvDataSet;
using QvRefSystem::ObjectDescriptor;
using QvRefSystem::TableOf;
using QvRefSystem::TQvRfDataProcessor;

namespace {

// Texts go out with their tabs and line feeds escaped, so that a line stays a line.
void PutLine(std::ostream& out, std::initializer_list<std::string> columns) {
  const char* separator = "";
  for (const std::string& column : columns) {
    out << separator << column;
    separator = "\t";
  }
  out << "\n";
}

void PutRefused(std::ostream& out, const QvRefSystem::RegistryReport& report) {
  for (const QvRefSystem::RegistryRefusal& refusal : report.refused) {
    PutLine(out,
            {"epsg:" + std::to_string(refusal.code), Encode(refusal.name), Encode(refusal.reason)});
  }
}

/// The columns by which objects of a type are listed.
class ListedColumns {
 public:
  ListedColumns(TQvDataSet& dataSet, const ObjectDescriptor& type)
      : key_(dataSet.FieldByName(TableOf(type.table).keyField).GetIndex()),
        name_(dataSet.FieldByName("NAME").GetIndex()),
        description_(dataSet.FieldByName("DESCRIPTION").GetIndex()) {}

  [[nodiscard]] std::string Key(RowView row) const { return std::to_string(row.GetInteger(key_)); }
  [[nodiscard]] std::string Name(RowView row) const { return Encode(row.GetText(name_)); }
  [[nodiscard]] std::string Description(RowView row) const {
    return Encode(row.GetText(description_));
  }

 private:
  int key_;
  int name_;
  int description_;
};

void Repair(QvRefSystem::TdatamoduleQvRfData& data, const Request& request, Terminal terminal) {
  const auto backUp = [&terminal](QvRefSystem::TdatamoduleQvRfData& all,
                                  const std::string& target) {
    for (const std::string& note : BackupDatabase(all, target))
      terminal.err << "refframe: " << note << "\n";
  };
  const QvRefSystem::RepairReport report =
      RepairDatabase(data, {.dryRun = request.dryRun, .backup = backUp});
  if (!report.backup.empty()) terminal.err << "refframe: the backup is " << report.backup << "\n";
  for (const std::string& step : report.steps)
    terminal.out << step << "\n";
}

}  // namespace

int InitDatabase(const Request& request, Terminal terminal) {
  TerminalInterface ui(terminal, false);
  QvRefSystem::RegistryOptions options;
  options.resourceForm = IsContainer(request.database);
  options.empty = request.empty;
  QvRefSystem::RegistryReport report;
  std::string error;
  if (!BuildRegistryDatabase(request.database, options, ui, &report, &error)) {
    throw CommandError(request.database + ": " + error);
  }
  if (request.empty) return kSucceeded;
  terminal.out << std::to_string(report.systems) << " reference systems are in, "
               << std::to_string(report.refused.size()) << " of the registry are not"
               << (request.listRefused && !report.refused.empty() ? ":\n" : "\n");
  if (request.listRefused) PutRefused(terminal.out, report);
  return kSucceeded;
}

int RecoverInterrupted(const Request& request, Terminal terminal) {
  bool told = false;
  const auto tell = [&](const std::string& step) {
    told = true;
    terminal.out << step << "\n";
  };
  QvPlatform::detail::RecoverDatabase(request.database, tell);
  if (!told) terminal.out << "nothing is left of an interrupted change\n";
  return kSucceeded;
}

int ListObjects(const Request& request, Terminal terminal) {
  TerminalInterface ui(terminal, false);
  OpenedDatabase database(request.database, ui);
  TQvDataSet& dataSet = database.Data().DataSet(request.type->table);
  const ListedColumns columns(dataSet, *request.type);
  QvRefSystem::NameFilter filter(dataSet);
  for (const int position : filter.Match(request.search.value_or(""))) {
    const RowView row = dataSet.Row(position);
    PutLine(terminal.out, {columns.Key(row), columns.Name(row), columns.Description(row)});
  }
  return kSucceeded;
}

int ShowInfo(const Request& request, Terminal terminal) {
  TerminalInterface ui(terminal, false);
  OpenedDatabase database(request.database, ui);
  QvRefSystem::TStrings lines;
  if (!database.Locate(*request.type, request.object).GetInfoLines(&lines)) {
    throw CommandError("the record cannot be described: its kind is not known");
  }
  for (const std::string& line : lines)
    terminal.out << line << "\n";
  return kSucceeded;
}

int ListUsers(const Request& request, Terminal terminal) {
  TerminalInterface ui(terminal, false);
  OpenedDatabase database(request.database, ui);
  const int key = database.Locate(*request.type, request.object).GetCurrentKey();
  for (const QvPlatform::UsedByRow& user :
       QvRefSystem::UsersByCatalogue(database.Data(), request.type->table, key)) {
    PutLine(terminal.out, {TypeArgument(user.typeName), std::to_string(user.key), Encode(user.name),
                           Encode(user.description)});
  }
  return kSucceeded;
}

int DeleteObject(const Request& request, Terminal terminal) {
  TerminalInterface ui(terminal, request.yes);
  OpenedDatabase database(request.database, ui);
  TQvRfDataProcessor& processor = database.Locate(*request.type, request.object);
  const int key = processor.GetCurrentKey();
  if (!(request.force ? processor.DeleteWithConsent(nullptr) : processor.DeleteUnused(nullptr))) {
    const bool told = ui.HasReported();
    throw CommandError(told ? std::string()
                            : "a " + std::string(request.type->typeName) + " cannot be deleted");
  }
  // An answer of No is no failure of the operation, but one that nobody gave is.
  processor.DataSet->First();
  if (processor.GetCurrentKey() != key && !processor.LocateKey(key)) return kSucceeded;
  return ui.HasReported() ? kFailed : kSucceeded;
}

int CheckWhole(const Request& request, Terminal terminal) {
  TerminalInterface ui(terminal, false);
  OpenedDatabase database(request.database, ui);
  if (request.repair) Repair(database.Data(), request, terminal);
  const QvRefSystem::CheckReport report = QvRefSystem::CheckDatabase(database.Data());
  for (const std::string& line : report.Lines())
    terminal.out << line << "\n";
  const std::string summary = request.database + ": " + report.Summary();
  if (report.errors > 0) throw CommandError(summary);
  if (report.notes > 0) terminal.err << "refframe: " << summary << "\n";
  return kSucceeded;
}

}  // namespace RefframeCli
