// The view of a table: what the user sees under the cursor is what the status tells.

#include "dialogs/heights/table_raster_view.h"

#include "dialogs/heights/big_image_scroll.h"
#include "tests/dialogs/edit/edit_dialog_fixture.h"
#include "vertical/bitmap_file.h"

namespace refframe_tests {
namespace {

using namespace QvRefSystem;

class TableRasterView : public DialogTest {
 protected:
  /// Heights that rise by 1 to the east and by 10 to the north, on cells of 2.
  TableRasterView() { Fill(11, 6, 2, 100, 50); }
  void Fill(std::uint32_t countX, std::uint32_t countY, double cell, double west, double south) {
    table_.Resize(countX, countY, cell, cell, west, south);
    for (std::uint32_t i = 0; i < countX; ++i) {
      for (std::uint32_t j = 0; j < countY; ++j)
        table_.Set(i, j, i + 10.0 * j);
    }
  }
  /// Runs the view over the table; `act` leaves it open.
  template <typename Act>
  void View(Act act, TShellReferenceSystem* system = nullptr) {
    raster_.Setup(&table_, false, false, true, 1);
    TformQvRfTableRasterView view(nullptr);
    ScreenUser user(In<TformQvRfTableRasterView>([&](QWidget& form) {
      act(form);
      Close(form);
    }));
    view.Show(&raster_, system);
    for (const char* image : {"MainImage", "LenseImage"})
      EXPECT_FALSE(Child<TBigImageScroll>(view, image).HasRaster()) << "dropped when closed";
  }

  static std::string Status(const QWidget& form) {
    return Child<QStatusBar>(form, "StatusBar").currentMessage().toStdString();
  }
  /// What stands behind the zooms.
  static std::string Reading(const QWidget& form) {
    const std::string status = Status(form);
    return status.substr(std::min(status.find('('), status.size()));
  }
  static TBigImageScroll& Image(const QWidget& form) {
    return Child<TBigImageScroll>(form, "MainImage");
  }
  static QPointF Marker(const QWidget& form) { return Child<TMarker>(form, "Marker1").Position(); }
  static void ClickAt(TBigImageScroll& image, QPointF place) {
    QTest::mouseClick(image.viewport(), Qt::LeftButton, {}, place.toPoint());
  }
  static void Drag(TBigImageScroll& image, QPoint from, QPoint to) {
    QTest::mousePress(image.viewport(), Qt::LeftButton, {}, from);
    QTest::mouseMove(image.viewport(), (from + to) / 2);
    QTest::mouseMove(image.viewport(), to);
    QTest::mouseRelease(image.viewport(), Qt::LeftButton, {}, to);
  }
  static void ZoomTo(TBigImageScroll& image, int numerator, int denominator) {
    const auto factor = [&] { return double(image.Zoom().Numerator) / image.Zoom().Denominator; };
    const double wanted = double(numerator) / denominator;
    for (int step = 0; step < 40 && factor() != wanted; ++step)
      QTest::keyClick(&image, factor() > wanted ? Qt::Key_Minus : Qt::Key_Plus);
    EXPECT_EQ(factor(), wanted);
  }
  static void ChooseMode(QWidget& form, const char* mode) {
    for (auto* button : Child(form, "radiogrViewMode").findChildren<QRadioButton*>()) {
      // A radio button is hit at its mark and its text.
      if (button->text() == QLatin1String(mode))
        QTest::mouseClick(button, Qt::LeftButton, {}, QPoint(8, button->height() / 2));
    }
  }

  THeightTable table_;
  HeightRaster raster_;
  TemporaryFolder folder_;
};

// The numbers of the status do not follow the locale.
TEST_F(TableRasterView, TheStatusTellsZoomsMarkerSizeAndHeight) {
  const QLocale before;
  QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
  View([](QWidget& form) {
    TBigImageScroll& image = Image(form);
    ZoomTo(image, 3, 1);
    ZoomTo(Child<TBigImageScroll>(form, "LenseImage"), 8, 1);
    EXPECT_EQ(
        Status(form),
        "   3:  1      8:  1   (     5.000,     3.000)  [11 x 6]   (110.000, 54.000, 25.000)");
    ZoomTo(image, 1, 2);
    EXPECT_EQ(Status(form).substr(0, 22), "   1:  2      8:  1   ");
    QTest::keyClick(&image, Qt::Key_Right);
    QTest::keyClick(&image, Qt::Key_Up);
    EXPECT_EQ(Reading(form), "(     6.000,     2.000)  [11 x 6]   (112.000, 56.000, 36.000)");
    for (int step = 0; step < 20; ++step) {
      QTest::keyClick(&image, Qt::Key_Right);
      QTest::keyClick(&image, Qt::Key_Up);
    }
    EXPECT_EQ(Reading(form), "(    10.000,     0.000)  [11 x 6]   (120.000, 60.000, 60.000)")
        << "the marker stays in the image";
  });
  QLocale::setDefault(before);
}

TEST_F(TableRasterView, ASystemTellsThePlaceInItsNotation) {
  Fill(11, 6, 0.5, -80, 40);
  const TreePtr tree = MakeTree(SystemTree, 4);
  const auto system = CreateShellReferenceSystem(tree.get(), nullptr);
  ASSERT_NE(system, nullptr);
  View(
      [](QWidget& form) {
        EXPECT_EQ(Reading(form),
                  "(     5.000,     3.000)  [11 x 6]   "
                  "(41°00'00.00000\"N, 77°30'00.00000\"W, 25.0000)");
      },
      system.get());
}

TEST_F(TableRasterView, TheColourUnderTheCursorIsThatOfTheHeightTold) {
  Fill(300, 200, 1, 0, 0);
  const std::array<int, 2> zooms[] = {{1, 1}, {1, 3}, {1, 6}, {3, 1}, {16, 1}};
  const std::pair<QPointF, QPoint> places[] = {
      {{0, 0}, {9, 4}}, {{150, 77}, {-7, 4}}, {{299, 199}, {-7, -4}}};
  View([&](QWidget& form) {
    TBigImageScroll& image = Image(form);
    for (const auto& [numerator, denominator] : zooms) {
      ZoomTo(image, numerator, denominator);
      for (const auto& [centre, aside] : places) {
        image.CentreOn(centre);
        const QPoint place = image.PlaceOf(centre).toPoint() + aside;
        const QImage seen = image.viewport()->grab().toImage();
        ClickAt(image, place);
        const QPoint at = Marker(form).toPoint();
        // Reduced images show every nth pixel of each axis.
        const int px = at.x() / denominator * denominator;
        const int py = at.y() / denominator * denominator;
        std::uint8_t level = 0;
        raster_.ReadPixels({px, py}, {1, 1}, {1, 1}, &level);
        const auto colour = QvCommonUtils::ColourPalette()[level];
        EXPECT_EQ(seen.pixelColor(place), QColor(colour.Red, colour.Green, colour.Blue))
            << numerator << ":" << denominator << " at " << at.x() << ", " << at.y();
        EXPECT_NEAR(table_.Get(at.x(), 199 - at.y()) / table_.MaxValue * 255, level,
                    denominator > 1 ? 9 : 1)
            << "row 0 is the north";
      }
    }
  });
}

// A moved image draws anew only what comes into sight.
TEST_F(TableRasterView, AMovedImageLooksLikeOneDrawnAtOnce) {
  Fill(300, 200, 1, 0, 0);
  View([this](QWidget& form) {
    TBigImageScroll& image = Image(form);
    for (const int steps : {0, 1, 4, -6}) {
      image.ZoomBy(steps);
      image.CentreOn({150, 100});
      (void)image.viewport()->grab();
      for (const QPoint& move : {QPoint(13, -7), QPoint(-200, 40), QPoint(5, 300)}) {
        Drag(image, {210, 120}, QPoint(210, 120) + move);
        const QImage moved = image.viewport()->grab().toImage();
        image.SetDibData(&raster_);
        image.StartRasterShow();
        EXPECT_EQ(moved, image.viewport()->grab().toImage())
            << steps << " steps, by " << move.x() << ", " << move.y();
      }
    }
  });
}

TEST_F(TableRasterView, AnotherZoomOfTheDataKeepsTheMarkersPlace) {
  View([](QWidget& form) {
    QTest::keyClick(&Image(form), Qt::Key_Up);
    auto& slider = Child<QSlider>(form, "trackbarInterpolationScale");
    QTest::keyClick(&slider, Qt::Key_PageUp);
    EXPECT_EQ(TextOf(form, "pnlInterpolationZoom"), "5:1");
    EXPECT_EQ(Reading(form), "(    25.000,    10.000)  [255 x 130]   (110.000, 56.000, 35.000)");
    EXPECT_EQ(Status(form).substr(0, 4),
              QString::asprintf(" %3d", Image(form).Zoom().Numerator * 5).toStdString());
    // Between two nodes, where no smaller zoom has a pixel, and back.
    QTest::keyClick(&Image(form), Qt::Key_Right);
    EXPECT_EQ(Reading(form), "(    26.000,    10.000)  [255 x 130]   (110.400, 56.000, 35.200)");
    slider.setValue(1);
    EXPECT_EQ(Reading(form), "(     5.200,     2.000)  [11 x 6]   (110.000, 56.000, 35.000)");
    slider.setValue(5);
    EXPECT_EQ(Reading(form), "(    26.000,    10.000)  [255 x 130]   (110.400, 56.000, 35.200)");
  });
}

TEST_F(TableRasterView, TheLargestZoomOfTheSmallestTablesIsShown) {
  for (const std::uint32_t count : {2U, 1U}) {
    Fill(count, count, 2, 100, 50);
    View([&](QWidget& form) {
      Child<QSlider>(form, "trackbarInterpolationScale").setValue(25);
      const int size = count == 2 ? 26 : 1;
      EXPECT_EQ(raster_.Width(), size);
      for (int step = 0; step < 30; ++step)
        QTest::keyClick(&Image(form), Qt::Key_Right);
      EXPECT_EQ(Marker(form).x(), size - 1);
      (void)form.grab();
    });
  }
}

TEST_F(TableRasterView, TheViewModeKeepsMarkerAndView) {
  View([this](QWidget& form) {
    TBigImageScroll& image = Image(form);
    ZoomTo(image, 3, 1);
    QTest::keyClick(&image, Qt::Key_Left);
    const std::string status = Status(form);
    const QPoint corner = image.PlaceOf({0, 5}).toPoint();
    const QColor lowest = image.viewport()->grab().toImage().pixelColor(corner);
    EXPECT_NE(lowest.green(), lowest.red());
    ChooseMode(form, "Grayscale");
    EXPECT_TRUE(raster_.Grayscale);
    EXPECT_TRUE(raster_.FlipRows);
    EXPECT_EQ(Status(form), status);
    EXPECT_EQ(image.PlaceOf({0, 5}).toPoint(), corner);
    EXPECT_EQ(image.viewport()->grab().toImage().pixelColor(corner), QColor(0, 0, 0));
    ChooseMode(form, "Color");
    EXPECT_EQ(image.viewport()->grab().toImage().pixelColor(corner), lowest);
  });
}

TEST_F(TableRasterView, TheWheelZoomsAtTheCursorAndDragsMoveImageAndMarker) {
  Fill(300, 200, 1, 0, 0);
  View([](QWidget& form) {
    TBigImageScroll& image = Image(form);
    ZoomTo(image, 6, 1);
    image.CentreOn({150, 100});
    const QPoint cursor(120, 90);
    const QPoint under = image.PixelAt(cursor);
    QWheelEvent wheel(cursor, image.mapToGlobal(cursor), {}, {0, 240}, Qt::NoButton, {},
                      Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(image.viewport(), &wheel);
    EXPECT_EQ(image.Zoom().Numerator, 12) << "two steps";
    EXPECT_EQ(image.PixelAt(cursor), under);

    const std::string status = Status(form);
    Drag(image, cursor, cursor + QPoint(48, 24));
    EXPECT_EQ(image.PixelAt(cursor + QPoint(48, 24)), under);
    EXPECT_EQ(Status(form), status) << "the marker stayed";

    ClickAt(image, {60, 60});
    const QPointF marker = Marker(form);
    Drag(image, {60, 60}, {60 + 36, 60 - 24});
    EXPECT_EQ(Marker(form), marker + QPointF(3, -2));
    const auto& lens = Child<TBigImageScroll>(form, "LenseImage");
    EXPECT_LE(
        (lens.PlaceOf(Marker(form)) - QRectF(lens.viewport()->rect()).center()).manhattanLength(),
        lens.Zoom().Numerator)
        << "the lens follows";
    QTest::keyClick(&image, Qt::Key_Down, Qt::ControlModifier);
    EXPECT_GT(Marker(form).y(), marker.y());
    for (int step = 0; step < 99; ++step)
      QTest::keyClick(&image, Qt::Key_Left, Qt::ControlModifier);
    EXPECT_EQ(Marker(form).x(), 0);
    EXPECT_TRUE(image.viewport()->rect().contains(image.PlaceOf(Marker(form)).toPoint()))
        << "the view follows the marker to the edge";
  });
}

TEST_F(TableRasterView, SavesTheColourImageFromTheHiddenPanel) {
  const std::string path = folder_.Path("out");
  raster_.Setup(&table_, false, true, true, 3);
  TformQvRfTableRasterView view(nullptr);
  constexpr auto kHidden = Qt::ControlModifier | Qt::ShiftModifier;
  ScreenUser user;
  user.In<TformQvRfTableRasterView>([&](QWidget& form) {
        EXPECT_EQ(Child<QSlider>(form, "trackbarInterpolationScale").value(), 3);
        EXPECT_FALSE(IsShown(form, "grboxSaveImageToFile"));
        Press(form, "bitbtnOk", Qt::Key_F12, kHidden);
        EXPECT_TRUE(IsShown(form, "grboxSaveImageToFile"));
        EXPECT_FALSE(IsShown(form, "pnlImageAdjustment"));
        Child<QSpinBox>(form, "SpinSubsample").setValue(2);
        Click(form, "BtnRun");
        EXPECT_EQ(Child<QProgressBar>(form, "ProgressBar1").value(), 0);
        EXPECT_EQ(QApplication::overrideCursor(), nullptr);
        Press(form, "BtnRun", Qt::Key_F12, kHidden);
        EXPECT_FALSE(IsShown(form, "grboxSaveImageToFile"));
        EXPECT_TRUE(IsShown(form, "pnlImageAdjustment"));
        Ok(form);
      })
      .In<QFileDialog>([&](QFileDialog& dialog) {
        EXPECT_EQ(TextOf(dialog, "fileNameEdit"), "view  of a b");
        TakeFile(dialog, path);
      });
  view.setWindowTitle("view: of a/b");
  view.Show(&raster_, nullptr);
  EXPECT_FALSE(IsEnabled(view, "BtnRun"));

  // The same pixels as a plain image in colour.
  HeightRaster plain;
  plain.Setup(&table_, false, false, true, 3);
  ASSERT_TRUE(SaveBitmapFile(plain, 2, folder_.Path("plain.bmp"), nullptr));
  const std::string saved = Content(path + ".bmp");
  EXPECT_EQ(saved, Content(folder_.Path("plain.bmp")));
  EXPECT_EQ(saved.size(), 1078U + 16 * 8)
      << "31 x 16 pixels, every second one, in rows of 16 bytes";
}

TEST_F(TableRasterView, AnImageErrorDropsTheImages) {
  View([](QWidget& form) {
    emit Image(form).OnImageError();
    EXPECT_FALSE(Image(form).HasRaster());
    EXPECT_FALSE(Child<TBigImageScroll>(form, "LenseImage").HasRaster());
    EXPECT_FALSE(IsEnabled(form, "BtnRun"));
    const std::string status = Status(form);
    QTest::keyClick(&Image(form), Qt::Key_Right);
    ChooseMode(form, "Grayscale");
    Child<QSlider>(form, "trackbarInterpolationScale").setValue(7);
    ClickAt(Image(form), {9, 9});
    (void)form.grab();
    EXPECT_EQ(Status(form), status);
  });
}

}  // namespace
}  // namespace refframe_tests
