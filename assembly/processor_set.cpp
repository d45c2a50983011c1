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
void Make(TdatamoduleQvRfData& data, TObjectType type, Owned* owned, Processor** pointer) {
  auto processor = std::make_unique<Processor>(data);
  *pointer = processor.get();
  data.Processors[static_cast<std::size_t>(type)] = processor.get();
  owned->push_back(std::move(processor));
}

}  // namespace

std::shared_ptr<void> MakeProcessors(TdatamoduleQvRfData& data) {
  auto owned = std::make_shared<Owned>();
#define REFFRAME_MAKE(stem, type) Make(data, TObjectType::type, owned.get(), &data.stem##Processor);
  REFFRAME_OBJECT_TYPES(REFFRAME_MAKE)
#undef REFFRAME_MAKE
  return owned;
}

std::unique_ptr<TdatamoduleQvRfData> MakeDataModule(QvPlatform::TUserInterface& ui) {
  return std::make_unique<TdatamoduleQvRfData>(ui, MakeProcessors);
}

}  // namespace QvRefSystem
