#pragma once

#include "processors/form_description.h"

/// The edit dialogs of the simpler kinds of reference systems.
namespace QvRefSystem {

/// The group of the radio buttons that tell the handedness of a system's axes.
inline constexpr int kHandedness = 1;

extern const TFormDescription kCartSystemForm;
extern const TFormDescription kGeocSystemForm;
extern const TFormDescription kLocalSystemForm;
extern const TFormDescription kTopoSystemForm;

}  // namespace QvRefSystem
