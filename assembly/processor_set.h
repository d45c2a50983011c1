#pragma once

#include <memory>

#include "database/data_module.h"
#include "processors/data_processor.h"

namespace QvRefSystem {

/// Makes the processors over an open data module, in their order, and sets its pointers.
[[nodiscard]] std::shared_ptr<void> MakeProcessors(TdatamoduleQvRfData& data);

/// A data module with this system's processors; nothing is open yet.
[[nodiscard]] std::unique_ptr<TdatamoduleQvRfData> MakeDataModule(QvPlatform::TUserInterface& ui);

}  // namespace QvRefSystem
