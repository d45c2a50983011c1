// The heights of geodetic and projected systems: kept, replaced, given up, or made here.

#include "tests/dialogs/edit/plane_system_fixture.h"

namespace refframe_tests {
namespace {

using namespace QvRefSystem;
using namespace testing;

constexpr int kEgm96 = 5773;

constexpr char kNotDefined[] =
    "Plane reference system must be completely defined before specifying height system";

TEST_F(PlaneSystemEditTest, StoredHeightsAreKeptReplacedOrGivenUp) {
  const struct {
    const char* name;
    bool drops;
    bool saves;
  } fates[] = {{"closed", true, false}, {"saved", false, true}, {"given up", true, true}};
  for (const auto& [form, system] : kPlaneForms) {
    GiveHeights(system, HeightTableTree);
    for (const auto& fate : fates) {
      SCOPED_TRACE(std::string(system) + ", " + fate.name);
      const int heights = Field("VERT_SYSTEM_AUTOKEY");
      const bool saved = Change(form, system, [&](QWidget& dialog) {
        EXPECT_TRUE(IsChecked(dialog, "radiobtnHeightGeoid"));
        EXPECT_EQ(TextOf(dialog, "Edit1"), "Alps");
        EXPECT_EQ(HeightRecords(), 2) << "a working copy";
        if (fate.drops) Click(dialog, "radiobtnHeightEllipsoid");
        EXPECT_EQ(IsEnabled(dialog, "Button1"), !fate.drops);
        fate.saves ? Save(dialog) : (void)dialog.close();
      });
      EXPECT_EQ(saved, fate.saves);
      const bool gone = fate.drops && fate.saves;
      EXPECT_EQ(HeightRecords(), gone ? 0 : 1);
      EXPECT_THAT(HeightFiles(), SizeIs(gone ? 0 : 1));
      EXPECT_EQ(database_.Processor(kVerticalReferenceSystem).LocateKey(heights), !fate.saves);
      const int after = Field("VERT_SYSTEM_AUTOKEY");
      EXPECT_EQ(after == 0, gone);
      EXPECT_EQ(after == heights, !fate.saves);
      EXPECT_EQ(KeyOf(kVerticalReferenceSystem, "Alps"), after);
    }
  }
}

TEST_F(PlaneSystemEditTest, HeightsWhoseFileIsLostAreNotRemovedByClosing) {
  const int heights = GiveHeights(kGeodetic, HeightTableTree);
  const auto path = database_.data->GetHeightsPrefix() + HeightFiles().front();
  const std::string heightText = Content(path);
  ASSERT_TRUE(DeleteStorageFile(path, false));
  EXPECT_FALSE(Change(kGeodSystemForm, kGeodetic, [](QWidget& dialog) {
    EXPECT_TRUE(IsChecked(dialog, "radiobtnHeightGeoid"));
    EXPECT_EQ(TextOf(dialog, "Edit1"), "");
    Save(dialog);
    EXPECT_EQ(RefusedControls(dialog, kGeodSystemForm), "Edit1");
  }));
  EXPECT_FALSE(database_.ui.messages.empty());
  EXPECT_EQ(Field("VERT_SYSTEM_AUTOKEY"), heights);
  EXPECT_EQ(HeightRecords(), 1);
  ASSERT_TRUE(SaveStorageFile(path, false, heightText));
}

TEST_F(PlaneSystemEditTest, HeightsOfAnotherPlaneAreNotSaved) {
  const int heights = GiveHeights(kGeodetic, HeightOffsetTree);
  EXPECT_TRUE(Change(kGeodSystemForm, kGeodetic, [](QWidget& dialog) {
    Click(dialog, "radiobtnEllipsoid");
    Save(dialog);
    Choose(dialog, "btnEllipsoid", "Other");
    EXPECT_EQ(TextOf(dialog, "Edit1"), "") << "still of another plane";
    Save(dialog);
    EXPECT_TRUE(dialog.isVisible());
    EXPECT_EQ(RefusedControls(dialog, kGeodSystemForm), "Edit1");
    EXPECT_EQ(TextOf(dialog, "Edit1"), "");
    Click(dialog, "radiobtnDatum");
    Type(dialog, "edLatitudeAbbr", "Breite");
    Save(dialog);
  }));
  EXPECT_NE(Field("VERT_SYSTEM_AUTOKEY"), heights) << "the plane is the old one again";
  EXPECT_EQ(HeightRecords(), 1);
}

TEST_F(PlaneSystemEditTest, AnotherProjectionIsAnotherPlane) {
  GiveHeights(kProjected, HeightOffsetTree);
  Insert(kMapProjection, MakeTree(ProjectionTree), {{6020, "Zone 18"}, {8802, "-75"}, {6022, "R"}});
  EXPECT_FALSE(Change(kProjSystemForm, kProjected, [](QWidget& dialog) {
    Type(dialog, "edFirstCoordName", "typed");
    Choose(dialog, "btnMapProjection", "Zone 18");
    EXPECT_EQ(TextOf(dialog, "edMapProjection"), "Zone 18");
    EXPECT_EQ(TextOf(dialog, "edFirstCoordName"), "R") << "the projection's own";
    EXPECT_EQ(TextOf(dialog, "edSecondCoordName"), "N");
    Save(dialog);
    EXPECT_EQ(RefusedControls(dialog, kProjSystemForm), "Edit1");
  }));
  EXPECT_EQ(HeightRecords(), 1);
}

// Makes an offset in metres, as far as what the dialog shows lets it.
void MakeOffset(QWidget& heights) {
  Check(heights, "radiobtnDataSourceOffset");
  Type(heights, "edDataSourceParamsVertOffsetValue", "-2.5");
  Choose(heights, "btnDataSourceParamsVertOffsetUnits");
  Click(heights, "btnDataCreate");
  Type(heights, "edName", "Quay");
  Save(heights);
}

TEST_F(PlaneSystemEditTest, HeightsThatAreMadeHereShareTheFateOfTheSystem) {
  for (const bool saved : {false, true}) {
    const bool stored = Change(kGeodSystemForm, kGeodetic, [&](QWidget& dialog) {
      Click(dialog, "radiobtnHeightGeoid");
      Open<TformQvRfEdit>(dialog, "Button1", MakeOffset);
      EXPECT_TRUE(dialog.isVisible());
      EXPECT_EQ(TextOf(dialog, "Edit1"), "Quay");
      if (saved) Save(dialog);
    });
    EXPECT_EQ(stored, saved);
    EXPECT_EQ(HeightRecords(), saved ? 1 : 0);
    EXPECT_EQ(Field("VERT_SYSTEM_AUTOKEY") != 0, saved);
  }
}

TEST_F(PlaneSystemEditTest, HeightsAreMadeAnewForAnotherPlane) {
  GiveHeights(kGeodetic, HeightTableTree);
  EXPECT_TRUE(Change(kGeodSystemForm, kGeodetic, [](QWidget& dialog) {
    Click(dialog, "radiobtnEllipsoid");
    Save(dialog);
    EXPECT_EQ(RefusedControls(dialog, kGeodSystemForm), "Edit1") << "no datum any more";
    Open<TformQvRfEdit>(dialog, "Button1", [](QWidget& heights) {
      EXPECT_EQ(TextOf(heights, "edName"), "Alps") << "the copy";
      MakeOffset(heights);
    });
    EXPECT_EQ(TextOf(dialog, "Edit1"), "Quay");
    Save(dialog);
  }));
  EXPECT_EQ(HeightRecords(), 1);
  EXPECT_THAT(HeightFiles(), IsEmpty());
}

TEST_F(PlaneSystemEditTest, HeightsNeedAWholePlane) {
  for (const auto& [form, system] : kPlaneForms) {
    EXPECT_FALSE(Change(form, system, [&, &form = form](QWidget& dialog) {
      Type(dialog, "edHeightAbbr", "");
      Click(dialog, "radiobtnHeightGeoid");
      EXPECT_TRUE(IsEnabled(dialog, "Edit1"));
      Click(dialog, "Button1");
      EXPECT_EQ(database_.ui.messages.back(), kNotDefined);
      EXPECT_EQ(RefusedControls(dialog, form), "edHeightAbbr");
      Save(dialog);
      EXPECT_EQ(RefusedControls(dialog, form), "edHeightAbbr Edit1") << "none made yet";
    }));
  }
  EXPECT_FALSE(Make(kProjSystemForm, [](QWidget& dialog) {
    Click(dialog, "radiobtnHeightGeoid");
    Click(dialog, "Button1");
    EXPECT_TRUE(IsPainted(dialog, "edMapProjection", Qt::red));
  }));
  EXPECT_THAT(database_.ui.messages, SizeIs(3));
}

TEST_F(PlaneSystemEditTest, GeoidsOfTheMachineAreChosenFromAList) {
  std::map<int, std::string> known;
  ASSERT_TRUE(GetSystemGeoidsList(&known));
  const auto geoids = [](QWidget& dialog) -> QComboBox& {
    return Child<QComboBox>(dialog, "comboSystemGeoids");
  };
  for (const auto& [form, system] : kPlaneForms) {
    GiveHeights(system, HeightOffsetTree);
    EXPECT_TRUE(Change(form, system, [&, &form = form](QWidget& dialog) {
      EXPECT_EQ(geoids(dialog).count(), static_cast<int>(known.size()));
      Click(dialog, "radiobtnHeightSystemGeoid");
      Save(dialog);
      EXPECT_EQ(RefusedControls(dialog, form), "comboSystemGeoids");
      geoids(dialog).setFocus(Qt::TabFocusReason);
      QTest::keyClicks(&geoids(dialog), "EGM96");
      Save(dialog);
    }));
    EXPECT_EQ(Field("VERT_SYSTEM_CODE"), kEgm96);
    EXPECT_EQ(Field("VERT_SYSTEM_AUTOKEY"), 0);
    EXPECT_EQ(HeightRecords(), 0) << "dropped";
    EXPECT_TRUE(Change(form, system, [&](QWidget& dialog) {
      EXPECT_TRUE(IsChecked(dialog, "radiobtnHeightSystemGeoid"));
      EXPECT_EQ(geoids(dialog).currentText().toStdString(), known.at(kEgm96));
      Click(dialog, "radiobtnHeightEllipsoid");
      Save(dialog);
    }));
    EXPECT_EQ(Field("VERT_SYSTEM_CODE"), 0);
  }
  Set(kGeodetic, "VERT_SYSTEM_CODE", 1);
  EXPECT_FALSE(Change(kGeodSystemForm, kGeodetic, [&](QWidget& dialog) {
    EXPECT_EQ(geoids(dialog).currentIndex(), -1) << "not on this machine";
    Save(dialog);
    EXPECT_EQ(RefusedControls(dialog, kGeodSystemForm), "comboSystemGeoids");
  }));
  Set(kGeodetic, "VERT_SYSTEM_CODE", 0);
}

TEST_F(PlaneSystemEditTest, ASystemThatVanishesLeavesNoCopyOfItsHeights) {
  const TreePtr tree = MakeTree(SystemTree, 4);
  RemoveField(tree.get(), 102005, 0);
  Insert(kReferenceSystem, tree, {{1020, "Doomed"}});
  const int heights = GiveHeights("Doomed", HeightTableTree);
  EXPECT_FALSE(Change(kGeodSystemForm, "Doomed", [this](QWidget& dialog) {
    Locate("Doomed");
    Systems().Delete();
    database_.ui.answers = {QvPlatform::MessageAnswer::kNo};
    Save(dialog);
    EXPECT_TRUE(dialog.isVisible());
  }));
  EXPECT_EQ(HeightRecords(), 1);
  ASSERT_TRUE(database_.Processor(kVerticalReferenceSystem).LocateKey(heights));
  database_.Processor(kVerticalReferenceSystem).DeleteRecord(nullptr);
  EXPECT_THAT(HeightFiles(), IsEmpty());
}

TEST_F(PlaneSystemEditTest, AFailedPostLeavesHeightsAndRowsAsTheyWere) {
  const int heights = GiveHeights(kGeodetic, HeightTableTree);
  EXPECT_TRUE(Change(kGeodSystemForm, kGeodetic, [this](QWidget& dialog) {
    ChangeElsewhere(Systems(), kGeodetic);
    Click(dialog, "chboxPositiveLongitude");
    Click(dialog, "radiobtnHeightEllipsoid");
    Save(dialog);
    EXPECT_TRUE(dialog.isVisible());
    EXPECT_EQ(HeightRecords(), 2) << "the stored ones and the copy";
    EXPECT_THAT(HeightFiles(), SizeIs(2));
    EXPECT_EQ(PositiveRows(), 0);
    database_.ui.conflictAnswer = QvPlatform::ConflictAnswer::kKeepMine;
    Save(dialog);
  }));
  EXPECT_FALSE(database_.Processor(kVerticalReferenceSystem).LocateKey(heights));
  EXPECT_THAT(HeightFiles(), IsEmpty());
  EXPECT_EQ(PositiveRows(), 1);
}

TEST_F(PlaneSystemEditTest, AWorkingCopyThatCannotBeRemovedGoesWithTheNextDialog) {
  GiveHeights(kGeodetic, HeightTableTree);
  const std::filesystem::path table = database_.data->datasetVerticalRefSystem.DataBuff->StreamName;
  const std::filesystem::path away = table.string() + ".away";
  EXPECT_FALSE(Change(kGeodSystemForm, kGeodetic, [&](QWidget& dialog) {
    EXPECT_EQ(HeightRecords(), 2);
    std::filesystem::rename(table, away);
    Close(dialog);
  }));
  EXPECT_THAT(database_.ui.messages, SizeIs(1)) << "it is told";
  std::filesystem::rename(away, table);
  for (const bool saves : {false, true}) {
    EXPECT_EQ(Change(kGeodSystemForm, kGeodetic,
                     [&](QWidget& dialog) {
                       EXPECT_EQ(HeightRecords(), 2) << "the stored one and a new copy";
                       if (saves) Save(dialog);
                     }),
              saves);
    EXPECT_EQ(HeightRecords(), 1);
    EXPECT_THAT(HeightFiles(), SizeIs(1));
  }
  EXPECT_FALSE(Change(kGeodSystemForm, kGeodetic, [](QWidget&) {}));
  EXPECT_EQ(HeightRecords(), 1) << "what was saved stays";
}

}  // namespace
}  // namespace refframe_tests
