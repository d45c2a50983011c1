#include "platform/storage/crc32.h"

#include <zlib.h>

namespace QvPlatform {

std::uint32_t Crc32(std::string_view bytes) {
  return static_cast<std::uint32_t>(
      crc32_z(0, reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size()));
}

}  // namespace QvPlatform
