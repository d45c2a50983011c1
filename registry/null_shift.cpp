#include "registry/null_shift.h"

#include <string>

#include "registry/registry_units.h"

namespace QvRefSystem {

DatumShiftModel MakeNullShift(std::string_view datumName) {
  constexpr int kMetre = 9001;
  DatumShiftModel shift;
  shift.type = 1;
  // The name holds that of the datum: equal shifts are one record, and a shift that turns up later
  // for one datum must not move the others.
  shift.name = std::string(datumName) + ": no shift to WGS 84 known";
  shift.description =
      "No transformation to WGS 84 is known for this datum: coordinates pass unshifted and may be "
      "off by hundreds of metres";
  shift.tx = shift.ty = shift.tz = "0";
  shift.linearUnit = *FindRegistryUnit(kMetre);
  return shift;
}

}  // namespace QvRefSystem
