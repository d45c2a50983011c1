#pragma once

namespace QvPlatform {

/// The current moment in days since 1899-12-30 00:00 local time, the day count of LAST_USE fields.
[[nodiscard]] double CurrentMoment();

}  // namespace QvPlatform
