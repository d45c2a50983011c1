#include "apps/cli/keeping_commands.h"

#include <ostream>

#include "apps/cli/open_database.h"
#include "assembly/database_copy.h"
#include "assembly/salvage.h"

namespace RefframeCli {

using QvRefSystem::CopyPlace;
using QvRefSystem::PlaceOf;

namespace {

void Tell(const QvRefSystem::CopyNotes& notes, const std::string& where, Terminal terminal) {
  for (const std::string& note : notes)
    terminal.err << "refframe: " << where << ": " << note << "\n";
}

}  // namespace

int CopyWhole(const Request& request, Terminal terminal) {
  TerminalInterface ui(terminal, false);
  OpenedDatabase database(request.database, ui);
  Tell(CopyDatabase(database.Data(), PlaceOf(request.otherDatabase)), request.database, terminal);
  return kSucceeded;
}

int BackUpWhole(const Request& request, Terminal terminal) {
  TerminalInterface ui(terminal, false);
  OpenedDatabase database(request.database, ui);
  const CopyPlace place = request.force ? CopyPlace::kMayReplace : CopyPlace::kMustBeFree;
  Tell(BackupDatabase(database.Data(), request.otherDatabase, place), request.database, terminal);
  return kSucceeded;
}

int RestoreWhole(const Request& request, Terminal terminal) {
  TerminalInterface ui(terminal, false);
  const QvRefSystem::RestoreReport report =
      RestoreDatabase(request.otherDatabase, PlaceOf(request.database), ui);
  Tell(report.notes, request.otherDatabase, terminal);
  if (!report.kept.empty()) {
    terminal.out << "the former database is kept as " << report.kept << "\n";
  }
  return kSucceeded;
}

int SalvageWhole(const Request& request, Terminal terminal) {
  TerminalInterface ui(terminal, false);
  const QvRefSystem::SalvageReport report =
      SalvageDatabase(PlaceOf(request.database), PlaceOf(request.otherDatabase), ui);
  Tell(report.notes, request.database, terminal);
  for (const QvRefSystem::SalvagedCount& table : report.tables) {
    terminal.out << table.table << "\t" << std::to_string(table.records) << "\t"
                 << (table.lost.empty() ? "whole" : table.lost) << "\n";
  }
  return report.whole ? kSucceeded : kFailed;
}

}  // namespace RefframeCli
