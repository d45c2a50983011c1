#pragma once

#include <cstdint>
#include <string_view>

namespace QvPlatform {

/// CRC-32 (ISO 3309, as in zlib) of the bytes; 0 for none.
[[nodiscard]] std::uint32_t Crc32(std::string_view bytes);

}  // namespace QvPlatform
