#include "assembly/database_check.h"

#include "assembly/checks/choices_check.h"
#include "assembly/checks/datums_check.h"
#include "assembly/checks/duplicates_check.h"
#include "assembly/checks/ellipsoids_check.h"
#include "assembly/checks/files_check.h"
#include "assembly/checks/height_check.h"
#include "assembly/checks/keys_check.h"
#include "assembly/checks/parameters_check.h"
#include "assembly/checks/prime_meridians_check.h"
#include "assembly/checks/projections_check.h"
#include "assembly/checks/references_check.h"
#include "assembly/checks/systems_check.h"
#include "assembly/checks/units_check.h"
#include "assembly/checks/values_check.h"
#include "platform/dbset/read_group.h"

namespace QvRefSystem {
namespace {

// All checks, in the order in which they are run and their finds are told.
constexpr Check kChecks[] = {
    CheckFiles,      CheckKeys,           CheckParameters, CheckReferences,  CheckUnits,
    CheckEllipsoids, CheckPrimeMeridians, CheckDatums,     CheckDatumShifts, CheckReferenceSystems,
    CheckValues,     CheckProjections,    CheckChoices,    CheckHeights,     CheckDuplicates,
};

}  // namespace

CheckReport CheckDatabase(TdatamoduleQvRfData& data) {
  const QvPlatform::TQvReadGroup moment(data.OpenedTables());
  CheckReport report;
  const CheckedDatabase database(data);
  Findings found(&report);
  for (const Check check : kChecks) {
    found.BeginCheck();
    check(database, found);
  }
  return report;
}

bool CheckDatabase(TdatamoduleQvRfData& data, std::vector<std::string>* findings) {
  const CheckReport report = CheckDatabase(data);
  const std::vector<std::string> lines = report.Lines();
  findings->insert(findings->end(), lines.begin(), lines.end());
  return report.errors == 0;
}

}  // namespace QvRefSystem
