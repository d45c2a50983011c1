#pragma once

#include "platform/ctui/ctui.h"
#include "platform/data/string_tree.h"

namespace QvRefSystem {

/// Writes the tree of a system that came from a legacy block; objects that the registry has are the
/// registry's own. `tree` is cleared first. The averages are the mean coordinates of the data in
/// units of the system. False, with `tree` unchanged, for a record that tells no whole system: not
/// one kind, an ellipsoid or a unit without a size, an unknown projection method, a parameter too
/// few, a zone that does not exist, an average that is no number.
[[nodiscard]] bool FillReferenceSystemTree(const QvPlatform::SQvCTUI_ProjectionInfo1* info,
                                           QvCommonUtils::TStringTree* tree, double averageX,
                                           double averageY, double averageZ);

}  // namespace QvRefSystem
