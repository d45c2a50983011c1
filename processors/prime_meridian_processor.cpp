#include "processors/prime_meridian_processor.h"

#include "platform/ui/texts.h"

namespace QvRefSystem {

bool TQvRfPrimeMeridianDataProcessor::GetInfoLines(TStrings* lines) {
  if (!TQvRfDataProcessor::GetInfoLines(lines)) return false;
  TQvRfDataProcessor& units = ProcessorOf(TObjectType::kAngularUnit);
  if (units.LocateKey(CurrentInteger("UNIT_AUTOKEY"))) {
    lines->push_back(QvPlatform::SystemText(QvPlatform::TextId::kInfoLongitude) + ": " +
                     CurrentText("LONGITUDE") + " (" +
                     units.DataSet->FieldByName("ABBREVIATION").AsString() + ")");
  }
  return true;
}

}  // namespace QvRefSystem
