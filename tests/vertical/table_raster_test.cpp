// The image of a table, against one made the plain way, pixel by pixel.

#include "vertical/table_raster.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

#include "tests/support/test_database.h"
#include "vertical/bitmap_file.h"

namespace refframe_tests {
namespace {

using QvCommonUtils::BitmapHeader;
using QvCommonUtils::PixelRectangle;
using Table = QvCommonUtils::T2DTable<double>;
using Raster = QvCommonUtils::TTableDibData<double>;
using Bytes = std::vector<std::uint8_t>;

std::unique_ptr<Table> MakeTable(std::uint32_t countX, std::uint32_t countY) {
  auto table = std::make_unique<Table>();
  table->Resize(countX, countY, 0.25, 0.5, -12.5, 47);
  for (std::uint32_t i = 0; i < countX; ++i) {
    for (std::uint32_t j = 0; j < countY; ++j) {
      table->Set(i, j, 40 * std::sin(0.7 * i + 1.3 * j) + 0.01 * ((i * 31 + j * 17) % 7));
    }
  }
  return table;
}

// Level of a pixel by the definition: no blocks, no tiles.
int LevelAt(const Table& table, int zoom, bool flip, int px, int py) {
  const int height = (static_cast<int>(table.CountY) - 1) * zoom + 1;
  const int row = flip ? height - 1 - py : py;
  const double value =
      zoom == 1 ? table.Get(static_cast<std::uint32_t>(px), static_cast<std::uint32_t>(row))
                : table.Interpolate(table.OriginX + px * (table.CellX / zoom),
                                    table.OriginY + row * (table.CellY / zoom));
  const double step = (table.MaxValue - table.MinValue) * (1.0 / 255);
  return static_cast<int>(std::trunc((value - table.MinValue) / step));
}

TEST(TableRaster, GivesTheLevelOfEachPixelInAnyZoomDirectionAndStep) {
  const auto table = MakeTable(20, 75);
  for (const int zoom : {1, 2, 7, 25}) {
    for (const bool flip : {true, false}) {
      Raster raster;
      raster.Setup(table.get(), false, false, flip, zoom);
      ASSERT_EQ(raster.Width(), 19 * zoom + 1);
      ASSERT_EQ(raster.Height(), 74 * zoom + 1);
      for (const int step : {0, 1, 3}) {
        const int s = std::max(step, 1);
        // Reaches over the right and lower edge.
        const PixelRectangle rectangle{2, 1, raster.Width() / s + 3, raster.Height() / s + 2};
        BitmapHeader header;
        Bytes pixels;
        raster.Read(rectangle, &header, &pixels, step);
        ASSERT_EQ(header.Width, rectangle.Right - 2);
        ASSERT_EQ(header.Height, rectangle.Bottom - 1);
        const int rowBytes = (header.Width + 3) / 4 * 4;
        ASSERT_EQ(pixels.size(), static_cast<std::size_t>(rowBytes * header.Height));
        int wrong = 0;
        for (int y = 0; y < header.Height; ++y) {
          for (int x = 0; x < rowBytes; ++x) {
            const int px = (x + 2) * s;
            const int py = (y + 1) * s;
            const bool inside = x < header.Width && px < raster.Width() && py < raster.Height();
            const int expected = inside ? LevelAt(*table, zoom, flip, px, py) : 0;
            const int up = header.Height - 1 - y;
            if (pixels[static_cast<std::size_t>(up * rowBytes + x)] != expected) ++wrong;
          }
        }
        EXPECT_EQ(wrong, 0) << "zoom " << zoom << ", flip " << flip << ", step " << step;
      }
    }
  }
}

TEST(TableRaster, ReadsHeightsAndCoordinatesUnderAPixel) {
  const auto table = MakeTable(2, 2);
  Raster raster;
  raster.Setup(table.get(), false, false, true, 25);
  double x = 0;
  double y = 0;
  EXPECT_EQ(raster.HeightAt(25, 0, &x, &y), table->Get(1, 1));
  EXPECT_EQ(x, table->East());
  EXPECT_EQ(y, table->North());
  EXPECT_EQ(raster.HeightAt(0, 25, &x, &y), table->Get(0, 0));
  raster.ChangeView(true, false, 0);
  EXPECT_EQ(raster.Width(), 26);
  EXPECT_EQ(raster.HeightAt(25, 0, &x, &y), table->Get(1, 0));
  raster.ChangeView(true, false, 99);
  EXPECT_EQ(raster.Zoom, Raster::kMaxZoom);
}

TEST(TableRaster, ShowsTablesThatHaveNoSteps) {
  const struct {
    const char* name;
    std::uint32_t countX, countY;
    bool equal;
  } rows[] = {{"one node", 1, 1, true},
              {"one column", 1, 5, false},
              {"one row", 4, 1, false},
              {"equal values", 3, 3, true}};
  for (const auto& row : rows) {
    Table table;
    table.Resize(row.countX, row.countY, 1, 1, 0, 0);
    for (std::uint32_t i = 0; i < row.countX; ++i) {
      for (std::uint32_t j = 0; j < row.countY; ++j)
        table.Set(i, j, row.equal ? 5.0 : i + j);
    }
    for (const int zoom : {1, 4}) {
      Raster raster;
      raster.Setup(&table, false, false, false, zoom);
      BitmapHeader header;
      Bytes pixels;
      raster.Read({0, 0, raster.Width(), raster.Height()}, &header, &pixels, 1);
      EXPECT_EQ(pixels[static_cast<std::size_t>(raster.Width() - 1)] != 0, !row.equal) << row.name;
      double x = 0;
      double y = 0;
      EXPECT_EQ(raster.HeightAt(raster.Width() - 1, raster.Height() - 1, &x, &y), table.MaxValue)
          << row.name;
    }
  }
}

TEST(TableRaster, RefusesAnImageThatIsTooLargeToCount) {
  Table table;
  table.Resize(100'000'000, 1, 1, 1, 0, 0);
  Raster raster;
  EXPECT_THROW(raster.Setup(&table, false, false, true, 25), std::length_error);
}

TEST(TableRaster, HasTheColoursOfItsPalettes) {
  using QvCommonUtils::PaletteColour;
  const auto& colours = QvCommonUtils::ColourPalette();
  EXPECT_EQ(colours[0], (PaletteColour{0, 58, 40}));
  EXPECT_EQ(colours[63], (PaletteColour{186, 201, 0}));
  EXPECT_EQ(colours[127], (PaletteColour{250, 250, 0}));
  EXPECT_EQ(colours[128], (PaletteColour{250, 251, 0}));
  EXPECT_EQ(colours[255], (PaletteColour{151, 16, 0}));
  EXPECT_EQ(QvCommonUtils::GrayscalePalette()[77], (PaletteColour{77, 77, 77}));
}

// A bitmap file of the image, byte by byte; the colours do not follow the view.
std::string PlainBitmap(const Raster& raster, int subsample) {
  const int width = raster.Width() / subsample;
  const int height = raster.Height() / subsample;
  std::string file = "BM";
  const auto put = [&file](int value, int bytes) {
    for (int n = 0; n < bytes; ++n)
      file.push_back(static_cast<char>(value >> 8 * n));
  };
  for (const int word : {0, 0, 1078, 40, width, height})
    put(word, 4);
  put(1, 2);
  put(8, 2);
  file.append(24, '\0');
  for (const auto& colour : QvCommonUtils::ColourPalette()) {
    for (const int channel : {int{colour.Blue}, int{colour.Green}, int{colour.Red}, 0})
      put(channel, 1);
  }
  BitmapHeader header;
  Bytes pixels;
  raster.Read({0, 0, width, height}, &header, &pixels, subsample);
  return file.append(pixels.begin(), pixels.end());
}

TEST(TableRaster, SavesABitmapThatEqualsOneMadeThePlainWay) {
  const TemporaryFolder folder;
  const auto table = MakeTable(90, 201);
  for (const int zoom : {1, 3}) {
    for (const int subsample : {1, 2, 7}) {
      Raster raster;
      raster.Setup(table.get(), false, true, true, zoom);
      const std::string path = folder.Path("image.bmp");
      ASSERT_TRUE(QvCommonUtils::SaveBitmapFile(raster, subsample, path, nullptr));
      std::string file;
      ASSERT_TRUE(QvRefSystem::LoadStorageFile(path, false, &file));
      EXPECT_TRUE(file == PlainBitmap(raster, subsample))
          << "zoom " << zoom << ", every " << subsample;
    }
  }
}

TEST(TableRaster, LeavesNoFileWhereSavingEnds) {
  const TemporaryFolder folder;
  const auto table = MakeTable(10, 300);
  Raster raster;
  raster.Setup(table.get(), false, false, true, 1);
  EXPECT_FALSE(
      QvCommonUtils::SaveBitmapFile(raster, 1, folder.Path("no/such/folder/a.bmp"), nullptr));
  QvRefSystem::TProgressInterface progress;
  static int stripes = 0;
  progress.SetMax = [](int count) { stripes = count; };
  progress.Next = [] { return 1; };
  EXPECT_FALSE(QvCommonUtils::SaveBitmapFile(raster, 1, folder.Path("b.bmp"), &progress));
  EXPECT_EQ(stripes, 3);
  EXPECT_FALSE(std::filesystem::exists(folder.Path("b.bmp")));
}

}  // namespace
}  // namespace refframe_tests
