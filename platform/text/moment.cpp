#include "platform/text/moment.h"

#include <chrono>
#include <ctime>

namespace QvPlatform {

namespace {

/// Days from 1899-12-30 to 1970-01-01.
constexpr double kUnixEpochDay = 25569.0;
constexpr double kSecondsPerDay = 86400.0;

}  // namespace

double CurrentMoment() {
  using std::chrono::system_clock;
  const system_clock::time_point now = system_clock::now();
  const std::time_t whole = system_clock::to_time_t(now);
  std::tm local{};
  localtime_r(&whole, &local);
  const double seconds = std::chrono::duration<double>(now.time_since_epoch()).count();
  return (seconds + static_cast<double>(local.tm_gmtoff)) / kSecondsPerDay + kUnixEpochDay;
}

}  // namespace QvPlatform
