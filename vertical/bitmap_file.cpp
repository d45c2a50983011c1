#include "vertical/bitmap_file.h"

#include <algorithm>
#include <cstdint>
#include <exception>
#include <vector>

#include "platform/storage/file_stream.h"

namespace QvCommonUtils {
namespace {

constexpr int kStripeRows = 128;
constexpr std::uint32_t kHeaderBytes = 54;

void Put16(std::string* out, std::uint32_t value) {
  out->push_back(static_cast<char>(value & 0xFF));
  out->push_back(static_cast<char>(value >> 8 & 0xFF));
}

void Put32(std::string* out, std::uint32_t value) {
  Put16(out, value & 0xFFFF);
  Put16(out, value >> 16);
}

// The two headers and the palette of the file.
std::string BitmapHead(int width, int height) {
  std::string head = "BM";
  Put32(&head, 0);
  Put32(&head, 0);
  Put32(&head, kHeaderBytes + 4 * static_cast<std::uint32_t>(ColourPalette().size()));
  Put32(&head, 40);
  Put32(&head, static_cast<std::uint32_t>(width));
  Put32(&head, static_cast<std::uint32_t>(height));
  Put16(&head, 1);
  Put16(&head, 8);
  head.append(kHeaderBytes - head.size(), '\0');
  for (const PaletteColour& colour : ColourPalette()) {
    Put32(&head, colour.Blue | static_cast<std::uint32_t>(colour.Green) << 8 |
                     static_cast<std::uint32_t>(colour.Red) << 16);
  }
  return head;
}

}  // namespace

bool SaveBitmapFile(const TTableDibData<double>& raster, int subsample, const std::string& path,
                    QvRefSystem::TProgressInterface* progress) {
  const int step = std::max(subsample, 1);
  const int width = raster.Width() / step;
  const int height = raster.Height() / step;
  const int stripes = (height + kStripeRows - 1) / kStripeRows;
  if (progress != nullptr && progress->SetMax != nullptr) progress->SetMax(stripes);
  try {
    QvPlatform::TQvFileStream file;
    if (!file.Open(path, QvPlatform::QvOpenMode::kCreate)) return false;
    const std::string head = BitmapHead(width, height);
    file.Write(head.data(), head.size());
    BitmapHeader header;
    std::vector<std::uint8_t> pixels;
    for (int stripe = stripes - 1; stripe >= 0; --stripe) {
      const int top = stripe * kStripeRows;
      raster.Read({0, top, width, std::min(top + kStripeRows, height)}, &header, &pixels, step);
      file.Write(pixels.data(), pixels.size());
      if (progress != nullptr && progress->Next != nullptr && progress->Next() != 0) return false;
    }
    file.Commit();
    return true;
  } catch (const std::exception&) {
    return false;
  } catch (int) {
    return false;
  }
}

}  // namespace QvCommonUtils
