#pragma once

#include "dialogs/described_edit.h"
#include "processors/form_descriptions.h"

/// The edit dialogs that are no more than their descriptions.
namespace QvRefSystem {

using TformQvRfPrimeMeridianEdit = TEditOf<kPrimeMeridianForm>;
using TformQvRfDatumShiftMolodenskyEdit = TEditOf<kMolodenskyForm>;
using TformQvRfDatumShiftTypeEdit = TEditOf<kDatumShiftTypeForm>;
using TformQvRfMapProjTypeEdit = TEditOf<kMapProjTypeForm>;
using TformQvRfRefSystemTypeEdit = TEditOf<kRefSystemTypeForm>;

}  // namespace QvRefSystem
