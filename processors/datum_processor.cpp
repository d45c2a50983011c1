#include "processors/datum_processor.h"

namespace QvRefSystem {

void TQvRfDatumDataProcessor::DeleteBeside(int /*key*/) {
  if (data_.DialogMode == kSimpleMode) {
    DeleteIfUsedOnce(TObjectType::kDatumShift, "DATUM_SHIFT_AUTOKEY");
  }
}

bool TQvRfDatumDataProcessor::WriteMifUserDatumEllipsoid(TStringTree* tree) {
  const std::string* code = codes_.FindFilled(static_cast<int>(TObjectType::kEllipsoid),
                                              CurrentInteger("ELLIPSOID_AUTOKEY"), ParamTag::kMif);
  return code != nullptr && EnsureField(tree, TreeIds::kMifExportEllipsoid, *code);
}

}  // namespace QvRefSystem
