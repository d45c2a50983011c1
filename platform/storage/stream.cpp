#include "platform/storage/stream.h"

namespace QvPlatform {

namespace {

/// By how much the buffer grows that all of a stream is read into.
constexpr std::size_t kReadPiece = std::size_t{1} << 20;

}  // namespace

std::string TQvStream::ReadAll() {
  std::string bytes;
  std::size_t filled = 0;
  // The size is only a hint: a file may grow while it is read.
  bytes.resize(static_cast<std::size_t>(Size()) + 1);
  for (;;) {
    if (filled == bytes.size()) bytes.resize(filled + kReadPiece);
    const std::size_t count = Read(bytes.data() + filled, bytes.size() - filled);
    if (count == 0) break;
    filled += count;
  }
  bytes.resize(filled);
  return bytes;
}

}  // namespace QvPlatform
