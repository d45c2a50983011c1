#pragma once

#include "processors/data_processor.h"

namespace QvRefSystem {

/// The processor of an object type of the open database. Throws std::invalid_argument if no
/// database is open, or if it has no such objects.
[[nodiscard]] TQvRfDataProcessor& ProcessorOf(TObjectType object);

}  // namespace QvRefSystem
