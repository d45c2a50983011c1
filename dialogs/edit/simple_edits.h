#pragma once

#include "dialogs/base/described_edit.h"
#include "forms/form_descriptions.h"

/// The edit dialogs that are no more than their descriptions.
namespace QvRefSystem {

using TformQvRfPrimeMeridianEdit = EditOf<kPrimeMeridianForm>;
using TformQvRfDatumShiftMolodenskyEdit = EditOf<kMolodenskyForm>;
using TformQvRfDatumShiftTypeEdit = EditOf<kDatumShiftTypeForm>;
using TformQvRfMapProjTypeEdit = EditOf<kMapProjTypeForm>;
using TformQvRfRefSystemTypeEdit = EditOf<kRefSystemTypeForm>;

}  // namespace QvRefSystem
