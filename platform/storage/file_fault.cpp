#include "platform/storage/file_fault.h"

#include <new>
#include <utility>

namespace QvPlatform::detail {

namespace {

/// Of an extended code of SQLite's, the part that tells the kind.
constexpr int kKindBits = 0xFF;

FileFault& Noted() {
  thread_local FileFault fault;
  return fault;
}

}  // namespace

void NoteFileFault(int code, const char* path, const char* reason) noexcept {
  FileFault& fault = Noted();
  try {
    fault.kind = code & kKindBits;
    fault.path = path;
    fault.reason = reason;
  } catch (const std::bad_alloc&) {
    fault.kind = 0;
  }
}

FileFault TakeFileFault(int code) {
  FileFault fault = std::exchange(Noted(), {});
  return fault.kind == (code & kKindBits) ? std::move(fault) : FileFault{};
}

}  // namespace QvPlatform::detail
