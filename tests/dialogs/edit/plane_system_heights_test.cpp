// The three fates of the heights of geodetic and projected systems: kept, dropped, abandoned.

#include "platform/geocore/geoids.h"
#include "tests/dialogs/edit/plane_system_fixture.h"

namespace refframe_tests {
namespace {

TEST_F(PlaneSystemEditTest, ClosingLeavesTheStoredHeights) {
  for (const auto* form : {&kGeodSystemForm, &kProjSystemForm}) {
    const char* name = form->type == 4 ? kGeodetic : kProjected;
    const int heights = GiveHeights(name, HeightTableTree);
    const auto files = HeightFiles();
    const int records = HeightRecords();
    EXPECT_FALSE(Change(*form, name, [&](QWidget& dialog) {
      EXPECT_TRUE(IsChecked(dialog, "radiobtnHeightGeoid"));
      EXPECT_EQ(TextOf(dialog, "Edit1"), "Alps");
      EXPECT_EQ(HeightRecords(), records + 1) << "a working copy";
      Click(dialog, "radiobtnHeightEllipsoid");
      EXPECT_FALSE(IsEnabled(dialog, "Button1"));
      dialog.close();
    }));
    EXPECT_EQ(HeightRecords(), records);
    EXPECT_EQ(HeightFiles(), files);
    EXPECT_EQ(Field("VERT_SYSTEM_AUTOKEY"), heights);
  }
}

TEST_F(PlaneSystemEditTest, SavingPutsTheCopyInTheirPlace) {
  for (const auto* form : {&kGeodSystemForm, &kProjSystemForm}) {
    const char* name = form->type == 4 ? kGeodetic : kProjected;
    const int heights = GiveHeights(name, HeightTableTree);
    const int records = HeightRecords();
    const std::size_t files = HeightFiles().size();
    EXPECT_TRUE(Change(*form, name, Save)) << form->caption;
    EXPECT_NE(Field("VERT_SYSTEM_AUTOKEY"), heights);
    EXPECT_FALSE(database_.Processor(kVerticalReferenceSystem).LocateKey(heights));
    EXPECT_EQ(HeightRecords(), records);
    EXPECT_EQ(HeightFiles().size(), files);
    ASSERT_TRUE(
        database_.Processor(kVerticalReferenceSystem).LocateKey(Field("VERT_SYSTEM_AUTOKEY")));
    EXPECT_EQ(CurrentName(kVerticalReferenceSystem), "Alps");
  }
}

TEST_F(PlaneSystemEditTest, HeightsThatAreGivenUpGoWithTheirFile) {
  for (const auto* form : {&kGeodSystemForm, &kProjSystemForm}) {
    const char* name = form->type == 4 ? kGeodetic : kProjected;
    GiveHeights(name, HeightTableTree);
    EXPECT_TRUE(Change(*form, name, [](QWidget& dialog) {
      Click(dialog, "radiobtnHeightEllipsoid");
      Save(dialog);
    })) << form->caption;
    EXPECT_EQ(Field("VERT_SYSTEM_AUTOKEY"), 0);
    EXPECT_EQ(HeightRecords(), 0);
    EXPECT_THAT(HeightFiles(), IsEmpty());
  }
}

TEST_F(PlaneSystemEditTest, HeightsWhoseFileIsLostAreNotRemovedByClosing) {
  const int heights = GiveHeights(kGeodetic, HeightTableTree);
  const auto path = database_.data->GetHeightsPrefix() + HeightFiles().front();
  ASSERT_TRUE(QvRefSystem::DeleteStorageFile(path, false));
  EXPECT_FALSE(Change(kGeodSystemForm, kGeodetic, [](QWidget& dialog) {
    EXPECT_TRUE(IsChecked(dialog, "radiobtnHeightGeoid"));
    EXPECT_EQ(TextOf(dialog, "Edit1"), "");
    Save(dialog);
    EXPECT_EQ(RefusedControls(dialog, kGeodSystemForm), "Edit1");
    Close(dialog);
  }));
  EXPECT_FALSE(database_.ui.messages.empty());
  EXPECT_EQ(Field("VERT_SYSTEM_AUTOKEY"), heights);
  EXPECT_EQ(HeightRecords(), 1);
  ASSERT_TRUE(QvRefSystem::SaveStorageFile(path, false, HeightText()));
}

TEST_F(PlaneSystemEditTest, HeightsOfAnotherPlaneAreNotSaved) {
  const int heights = GiveHeights(kGeodetic, HeightOffsetTree);
  EXPECT_TRUE(Change(
      kGeodSystemForm, kGeodetic,
      [&](QWidget& dialog) {
        Click(dialog, "radiobtnEllipsoid");
        Save(dialog);
        Click(dialog, "btnEllipsoid");
        EXPECT_EQ(TextOf(dialog, "Edit1"), "") << "still of another plane";
        Save(dialog);
        EXPECT_TRUE(dialog.isVisible());
        EXPECT_EQ(RefusedControls(dialog, kGeodSystemForm), "Edit1");
        EXPECT_EQ(TextOf(dialog, "Edit1"), "");
        Click(dialog, "radiobtnDatum");
        Type(dialog, "edLatitudeAbbr", "Breite");
        Save(dialog);
      },
      kEllipsoid, "Other"));
  EXPECT_NE(Field("VERT_SYSTEM_AUTOKEY"), heights) << "the plane is the old one again";
  EXPECT_EQ(HeightRecords(), 1);
}

TEST_F(PlaneSystemEditTest, AnotherProjectionIsAnotherPlane) {
  GiveHeights(kProjected, HeightOffsetTree);
  TreePtr projection = MakeTree(ProjectionTree);
  for (const int id : {6020, 8802})
    RemoveField(projection.get(), id, 0);
  RemoveField(projection.get(), 6022, 0);
  TreeBuilder(projection.get()).Field(6020, "UTM zone 18N").Field(8802, "-75").Field(6022, "R");
  Insert(kMapProjection, projection);
  EXPECT_FALSE(Change(
      kProjSystemForm, kProjected,
      [](QWidget& dialog) {
        Type(dialog, "edFirstCoordName", "typed");
        Click(dialog, "btnMapProjection");
        EXPECT_EQ(TextOf(dialog, "edMapProjection"), "UTM zone 18N");
        EXPECT_EQ(TextOf(dialog, "edFirstCoordName"), "R") << "the projection's own";
        EXPECT_EQ(TextOf(dialog, "edSecondCoordName"), "N");
        Save(dialog);
        EXPECT_EQ(RefusedControls(dialog, kProjSystemForm), "Edit1");
        Close(dialog);
      },
      kMapProjection, "UTM zone 18N"));
  EXPECT_EQ(HeightRecords(), 1);
}

// Makes an offset in metres, as far as what the dialog shows lets it.
void MakeOffset(QWidget& heights, const char* name) {
  auto& radio = Child<QAbstractButton>(heights, "radiobtnDataSourceOffset");
  QTest::mouseClick(&radio, Qt::LeftButton, {}, QPoint(8, radio.height() / 2));
  Type(heights, "edDataSourceParamsVertOffsetValue", "-2.5");
  Click(heights, "btnDataSourceParamsVertOffsetUnits");
  Click(heights, "btnDataCreate");
  Type(heights, "edName", name);
  Save(heights);
}

TEST_F(PlaneSystemEditTest, HeightsThatAreMadeHereShareTheFateOfTheSystem) {
  for (const bool saved : {false, true}) {
    Locate(kGeodetic);
    ScreenUser user;
    user.In<TformQvRfEdit>([&](QWidget& dialog) {
          Click(dialog, "radiobtnHeightGeoid");
          Click(dialog, "Button1");
          EXPECT_TRUE(dialog.isVisible());
          EXPECT_EQ(TextOf(dialog, "Edit1"), "Quay");
          saved ? Save(dialog) : Close(dialog);
        })
        .In<TformQvRfEdit>([](QWidget& heights) { MakeOffset(heights, "Quay"); })
        .In<TformQvRfSelector>([](QWidget& units) { Click(units, "bitbtnOk"); });
    EXPECT_EQ(FormOf(kGeodSystemForm).EditCurrent(), saved);
    EXPECT_EQ(HeightRecords(), saved ? 1 : 0);
    EXPECT_EQ(Field("VERT_SYSTEM_AUTOKEY") != 0, saved);
  }
}

TEST_F(PlaneSystemEditTest, HeightsAreMadeAnewForAnotherPlane) {
  GiveHeights(kGeodetic, HeightTableTree);
  Locate(kGeodetic);
  ScreenUser user;
  user.In<TformQvRfEdit>([](QWidget& dialog) {
        Click(dialog, "radiobtnEllipsoid");
        Save(dialog);
        EXPECT_EQ(RefusedControls(dialog, kGeodSystemForm), "Edit1") << "no datum any more";
        Click(dialog, "Button1");
        EXPECT_EQ(TextOf(dialog, "Edit1"), "Quay");
        Save(dialog);
      })
      .In<TformQvRfEdit>([](QWidget& heights) {
        EXPECT_EQ(TextOf(heights, "edName"), "Alps") << "the copy";
        MakeOffset(heights, "Quay");
      })
      .In<TformQvRfSelector>([](QWidget& units) { Click(units, "bitbtnOk"); });
  EXPECT_TRUE(FormOf(kGeodSystemForm).EditCurrent());
  EXPECT_EQ(HeightRecords(), 1);
  EXPECT_THAT(HeightFiles(), IsEmpty());
}

TEST_F(PlaneSystemEditTest, HeightsNeedAWholePlane) {
  for (const auto* form : {&kGeodSystemForm, &kProjSystemForm}) {
    const char* axis = form->type == 4 ? "edLatitudeAbbr" : "edHeightAbbr";
    EXPECT_FALSE(Change(*form, form->type == 4 ? kGeodetic : kProjected, [&](QWidget& dialog) {
      Type(dialog, axis, "");
      Click(dialog, "radiobtnHeightGeoid");
      EXPECT_TRUE(IsEnabled(dialog, "Edit1"));
      Click(dialog, "Button1");
      EXPECT_EQ(database_.ui.messages.back(), kNotDefined);
      EXPECT_EQ(RefusedControls(dialog, *form), axis);
      Save(dialog);
      EXPECT_EQ(RefusedControls(dialog, *form), axis + std::string(" Edit1")) << "none made yet";
      Close(dialog);
    }));
  }
  EXPECT_THAT(database_.ui.messages, SizeIs(2));
  EXPECT_FALSE(Make(kProjSystemForm, [&](QWidget& dialog) {
    Click(dialog, "radiobtnHeightGeoid");
    Click(dialog, "Button1");
    EXPECT_TRUE(IsPainted(dialog, "edMapProjection", Qt::red));
    Close(dialog);
  }));
  EXPECT_THAT(database_.ui.messages, SizeIs(3));
}

TEST_F(PlaneSystemEditTest, GeoidsOfTheMachineAreChosenFromAList) {
  std::map<int, std::string> known;
  ASSERT_TRUE(QvRefSystem::GetSystemGeoidsList(&known));
  for (const auto* form : {&kGeodSystemForm, &kProjSystemForm}) {
    const char* name = form->type == 4 ? kGeodetic : kProjected;
    GiveHeights(name, HeightOffsetTree);
    EXPECT_TRUE(Change(*form, name, [&](QWidget& dialog) {
      EXPECT_EQ(Geoids(dialog).count(), static_cast<int>(known.size()));
      Click(dialog, "radiobtnHeightSystemGeoid");
      EXPECT_TRUE(Geoids(dialog).isEnabled());
      Save(dialog);
      EXPECT_EQ(RefusedControls(dialog, *form), "comboSystemGeoids");
      Geoids(dialog).setFocus(Qt::TabFocusReason);
      QTest::keyClicks(&Geoids(dialog), "EGM96");
      Save(dialog);
    }));
    EXPECT_EQ(Field("VERT_SYSTEM_CODE"), kEgm96);
    EXPECT_EQ(Field("VERT_SYSTEM_AUTOKEY"), 0);
    EXPECT_EQ(HeightRecords(), 0) << "dropped";
    EXPECT_TRUE(Change(*form, name, [&](QWidget& dialog) {
      EXPECT_TRUE(IsChecked(dialog, "radiobtnHeightSystemGeoid"));
      EXPECT_EQ(Geoids(dialog).currentText().toStdString(), known.at(kEgm96));
      Click(dialog, "radiobtnHeightEllipsoid");
      Save(dialog);
    }));
    EXPECT_EQ(Field("VERT_SYSTEM_CODE"), 0);
  }
  Set(kGeodetic, "VERT_SYSTEM_CODE", 1);
  EXPECT_FALSE(Change(kGeodSystemForm, kGeodetic, [](QWidget& dialog) {
    EXPECT_EQ(Geoids(dialog).currentIndex(), -1) << "not on this machine";
    Save(dialog);
    EXPECT_EQ(RefusedControls(dialog, kGeodSystemForm), "comboSystemGeoids");
    Close(dialog);
  }));
  Set(kGeodetic, "VERT_SYSTEM_CODE", 0);
}

TEST_F(PlaneSystemEditTest, ASystemThatVanishesLeavesNoCopyOfItsHeights) {
  const TreePtr tree = MakeTree(SystemTree, 4);
  for (const int id : {1020, 102005})
    RemoveField(tree.get(), id, 0);
  TreeBuilder(tree.get()).Field(1020, "Doomed");
  Insert(kReferenceSystem, tree);
  const int heights = GiveHeights("Doomed", HeightTableTree);
  EXPECT_FALSE(Change(kGeodSystemForm, "Doomed", [&](QWidget& dialog) {
    Locate("Doomed");
    Systems().Delete();
    Save(dialog);
    EXPECT_TRUE(dialog.isVisible());
    Close(dialog);
  }));
  EXPECT_EQ(HeightRecords(), 1);
  ASSERT_TRUE(database_.Processor(kVerticalReferenceSystem).LocateKey(heights));
  database_.Processor(kVerticalReferenceSystem).DeleteRecord(nullptr);
  EXPECT_THAT(HeightFiles(), IsEmpty());
}

TEST_F(PlaneSystemEditTest, AFailedPostLeavesHeightsAndRowsAsTheyWere) {
  const int heights = GiveHeights(kGeodetic, HeightTableTree);
  EXPECT_TRUE(Change(kGeodSystemForm, kGeodetic, [&](QWidget& dialog) {
    // Somebody else changes the record in a data set of his own.
    QvPlatform::TQvDataBuffer buffer;
    buffer.StreamName = Systems().DataBuff->StreamName;
    QvPlatform::TQvDataSet other(buffer);
    other.Open();
    other.First();
    while (other.FieldByName("NAME").AsString() != kGeodetic)
      other.Next();
    other.Edit();
    other.FieldByName("DESCRIPTION").SetString("theirs");
    other.Post();
    other.Close();
    Click(dialog, "chboxPositiveLongitude");
    Click(dialog, "radiobtnHeightEllipsoid");
    Save(dialog);
    EXPECT_TRUE(dialog.isVisible());
    EXPECT_FALSE(Child(dialog, "bitbtnSave").toolTip().isEmpty());
    EXPECT_EQ(HeightRecords(), 2) << "the stored ones and the copy";
    EXPECT_THAT(HeightFiles(), SizeIs(2));
    EXPECT_EQ(PositiveRows(), 0);
    Save(dialog);
  }));
  EXPECT_FALSE(database_.Processor(kVerticalReferenceSystem).LocateKey(heights));
  EXPECT_THAT(HeightFiles(), IsEmpty());
  EXPECT_EQ(PositiveRows(), 1);
}

// Projections.

}  // namespace
}  // namespace refframe_tests
