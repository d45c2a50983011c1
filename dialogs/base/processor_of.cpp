#include "dialogs/base/processor_of.h"

#include <stdexcept>

namespace QvRefSystem {

TQvRfDataProcessor& ProcessorOf(TObjectType object) {
  TQvRfDataProcessor* processor = datamoduleQvRfData == nullptr
                                      ? nullptr
                                      : ProcessorFor(*datamoduleQvRfData, static_cast<int>(object));
  if (processor == nullptr) throw std::invalid_argument("no processor of this object type");
  return *processor;
}

}  // namespace QvRefSystem
