#pragma once

namespace QvPlatform {

/// What a data set is doing: nothing, since it is closed; showing its rows; changing the current
/// row; making a new one.
enum class DataSetState { kInactive, kBrowse, kEdit, kInsert };

}  // namespace QvPlatform
