#include "assembly/processor_set.h"

#include "processors/datum_processor.h"
#include "processors/datum_shift_processor.h"
#include "processors/ellipsoid_processor.h"
#include "processors/map_projection_processor.h"
#include "processors/prime_meridian_processor.h"
#include "processors/ref_system_processor.h"
#include "processors/type_processors.h"
#include "processors/unit_processors.h"
#include "vertical/vertical_processor.h"

namespace QvRefSystem {

namespace {

// All processors of one database, in the order of their making; they go in the opposite one.
using Owned = std::vector<std::unique_ptr<TQvRfDataProcessor>>;

template <typename Processor>
void Make(TdatamoduleQvRfData& data, Owned* owned, Processor** pointer) {
  auto processor = std::make_unique<Processor>(data);
  *pointer = processor.get();
  owned->push_back(std::move(processor));
}

}  // namespace

std::shared_ptr<void> MakeProcessors(TdatamoduleQvRfData& data) {
  auto owned = std::make_shared<Owned>();
  Make(data, owned.get(), &data.DatumShiftProcessor);
  Make(data, owned.get(), &data.DatumShiftTypeProcessor);
  Make(data, owned.get(), &data.DatumProcessor);
  Make(data, owned.get(), &data.LinearUnitProcessor);
  Make(data, owned.get(), &data.AngularUnitProcessor);
  Make(data, owned.get(), &data.ScaleUnitProcessor);
  Make(data, owned.get(), &data.MapProjProcessor);
  Make(data, owned.get(), &data.MapProjTypeProcessor);
  Make(data, owned.get(), &data.PrimeMeridianProcessor);
  Make(data, owned.get(), &data.EllipsoidProcessor);
  Make(data, owned.get(), &data.RefSystemTypeProcessor);
  Make(data, owned.get(), &data.RefSystemProcessor);
  Make(data, owned.get(), &data.VerticalRefSystemProcessor);
  return owned;
}

std::unique_ptr<TdatamoduleQvRfData> MakeDataModule(QvPlatform::TUserInterface& ui) {
  return std::make_unique<TdatamoduleQvRfData>(ui, MakeProcessors);
}

TQvRfDataProcessor* ProcessorFor(TdatamoduleQvRfData& data, int objectType) {
  switch (ObjectTypeOf(objectType)) {
    case TObjectType::kReferenceSystem:
      return data.RefSystemProcessor;
    case TObjectType::kDatum:
      return data.DatumProcessor;
    case TObjectType::kEllipsoid:
      return data.EllipsoidProcessor;
    case TObjectType::kDatumShift:
      return data.DatumShiftProcessor;
    case TObjectType::kPrimeMeridian:
      return data.PrimeMeridianProcessor;
    case TObjectType::kMapProjection:
      return data.MapProjProcessor;
    case TObjectType::kDatumShiftType:
      return data.DatumShiftTypeProcessor;
    case TObjectType::kLinearUnit:
      return data.LinearUnitProcessor;
    case TObjectType::kScaleUnit:
      return data.ScaleUnitProcessor;
    case TObjectType::kAngularUnit:
      return data.AngularUnitProcessor;
    case TObjectType::kMapProjectionType:
      return data.MapProjTypeProcessor;
    case TObjectType::kReferenceSystemType:
      return data.RefSystemTypeProcessor;
    case TObjectType::kVerticalReferenceSystem:
      return data.VerticalRefSystemProcessor;
    case TObjectType::kNone:
      break;
  }
  return nullptr;
}

}  // namespace QvRefSystem
