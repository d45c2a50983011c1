// Geodetic and projected systems: the ground they stand on, and the trees that are made of them
// before they are stored.

#include "tests/dialogs/edit/plane_system_fixture.h"

namespace refframe_tests {
namespace {

TEST_F(PlaneSystemEditTest, ANewSystemStandsOnNothingYet) {
  const Act act = [](QWidget& dialog) {
    for (const char* radio : {"radiobtnDatum", "radiobtnEllipsoid"})
      EXPECT_FALSE(IsChecked(dialog, radio)) << radio;
    for (const char* button : {"btnDatum", "btnEllipsoid", "Button1", "Edit1", "comboSystemGeoids"})
      EXPECT_FALSE(IsEnabled(dialog, button)) << button;
    EXPECT_TRUE(IsChecked(dialog, "radiobtnHeightEllipsoid"));
    EXPECT_EQ(TextOf(dialog, "edLinearUnit"), "metre");
    EXPECT_EQ(TextOf(dialog, "edPrimeMeridian"), "Greenwich");
    EXPECT_EQ(TextOf(dialog, "edHeightAbbr"), "C") << "as its type tells";
    Save(dialog);
    EXPECT_TRUE(dialog.isVisible());
  };
  EXPECT_FALSE(Make(kGeodSystemForm, [&](QWidget& dialog) {
    act(dialog);
    EXPECT_EQ(TextOf(dialog, "edLatitudeAbbr"), "A");
    EXPECT_EQ(TextOf(dialog, "edAngularUnit"), "degree");
    EXPECT_EQ(RefusedControls(dialog, kGeodSystemForm), "edName edDatum edEllipsoid");
    Click(dialog, "radiobtnDatum");
    EXPECT_EQ(RefusedControls(dialog, kGeodSystemForm), "edName") << "one was chosen";
    Close(dialog);
  }));
  EXPECT_FALSE(Make(kProjSystemForm, [&](QWidget& dialog) {
    act(dialog);
    EXPECT_EQ(RefusedControls(dialog, kProjSystemForm),
              "edName edDatum edEllipsoid edMapProjection edFirstCoordName edSecondCoordName");
    Close(dialog);
  }));
}

TEST_F(PlaneSystemEditTest, AnEllipsoidAloneMakesASystem) {
  ScreenUser user;
  user.In<TformQvRfEdit>([](QWidget& dialog) {
        Type(dialog, "edName", "Bare");
        Click(dialog, "radiobtnEllipsoid");
        EXPECT_TRUE(IsEnabled(dialog, "btnEllipsoid"));
        EXPECT_FALSE(IsEnabled(dialog, "btnDatum"));
        Save(dialog);
        EXPECT_EQ(RefusedControls(dialog, kGeodSystemForm), "edEllipsoid");
        Click(dialog, "btnEllipsoid");
        Save(dialog);
      })
      .In<TformQvRfSelector>([](QWidget& list) { Click(list, "bitbtnOk"); });
  ASSERT_TRUE(FormOf(kGeodSystemForm).CreateNew());
  EXPECT_EQ(Systems().FieldByName("NAME").AsString(), "Bare");
  EXPECT_EQ(Field("TYPE"), 4);
  EXPECT_EQ(Field("DATUM_AUTOKEY"), 0);
  EXPECT_NE(Field("ELLIPSOID_AUTOKEY"), 0);
  EXPECT_EQ(Field("VERT_SYSTEM_AUTOKEY"), 0);
  EXPECT_EQ(PositiveRows(), 0);
}

TEST_F(PlaneSystemEditTest, ADatumBringsItsEllipsoid) {
  const int other = KeyOf(kEllipsoid, "Other");
  const int clarke = KeyOf(kEllipsoid, "Clarke 1866");
  const int datum = KeyOf(kDatum, "North American Datum 1927");
  Set(kGeodetic, "ELLIPSOID_AUTOKEY", other);
  EXPECT_TRUE(Change(
      kGeodSystemForm, kGeodetic,
      [](QWidget& dialog) {
        EXPECT_TRUE(IsChecked(dialog, "radiobtnDatum")) << "a system with both shows the datum";
        EXPECT_EQ(TextOf(dialog, "edEllipsoid"), "Other");
        Click(dialog, "btnDatum");
        EXPECT_EQ(TextOf(dialog, "edEllipsoid"), "Clarke 1866");
        Save(dialog);
      },
      kDatum, "North American Datum 1927"));
  EXPECT_EQ(Field("DATUM_AUTOKEY"), datum);
  EXPECT_EQ(Field("ELLIPSOID_AUTOKEY"), clarke);
  EXPECT_TRUE(Change(kGeodSystemForm, kGeodetic, [](QWidget& dialog) {
    Click(dialog, "radiobtnEllipsoid");
    Save(dialog);
  }));
  EXPECT_EQ(Field("DATUM_AUTOKEY"), 0);
  EXPECT_EQ(Field("ELLIPSOID_AUTOKEY"), clarke);
}

TEST_F(PlaneSystemEditTest, ADatumWithoutEllipsoidIsTold) {
  const int broken = Add(TableId::kDatum, "Broken", {{"ELLIPSOID_AUTOKEY", 9999}});
  for (const auto* form : {&kGeodSystemForm, &kProjSystemForm}) {
    SCOPED_TRACE(form->caption);
    EXPECT_FALSE(Change(
        *form, form->type == 4 ? kGeodetic : kProjected,
        [&](QWidget& dialog) {
          Click(dialog, "btnDatum");
          EXPECT_EQ(TextOf(dialog, "edDatum"), "Broken");
          EXPECT_EQ(TextOf(dialog, "edEllipsoid"), "");
          EXPECT_EQ(RefusedControls(dialog, *form), "edEllipsoid") << "at once";
          Click(dialog, "radiobtnEllipsoid");
          Save(dialog);
          EXPECT_EQ(RefusedControls(dialog, *form), "edEllipsoid");
          Close(dialog);
        },
        kDatum, "Broken"));
  }
  database_.Processor(kDatum).LocateKey(broken);
  database_.data->datasetDatum.Delete();
}

// The three fates of heights.

TEST_F(PlaneSystemEditTest, PositiveLongitudeIsARowBesideTheSystem) {
  auto& values = database_.data->datasetParamValue;
  const auto toggle = [](QWidget& dialog) {
    Click(dialog, "chboxPositiveLongitude");
    Save(dialog);
  };
  EXPECT_TRUE(Change(kGeodSystemForm, kGeodetic, toggle));
  EXPECT_EQ(PositiveRows(), 1);
  EXPECT_TRUE(Change(kGeodSystemForm, kGeodetic, [](QWidget& dialog) {
    EXPECT_TRUE(IsChecked(dialog, "chboxPositiveLongitude"));
    Save(dialog);
  }));
  EXPECT_EQ(PositiveRows(), 1) << "no second one";
  const int tag = values.FieldByName("PARAM_TAG").GetIndex();
  ASSERT_TRUE(values.MoveTo(values.FindFirst({QvPlatform::RowMatch::Integer(tag, 7)})));
  values.Edit();
  values.FieldByName("VALUE").SetString("0");
  values.Post();
  EXPECT_TRUE(Change(kGeodSystemForm, kGeodetic, [&](QWidget& dialog) {
    EXPECT_FALSE(IsChecked(dialog, "chboxPositiveLongitude"));
    toggle(dialog);
  }));
  EXPECT_EQ(PositiveRows(), 1) << "changed in its place";
  // Heights lie in longitudes of one range or the other.
  GiveHeights(kGeodetic, HeightOffsetTree);
  EXPECT_TRUE(Change(kGeodSystemForm, kGeodetic, [&](QWidget& dialog) {
    toggle(dialog);
    EXPECT_EQ(RefusedControls(dialog, kGeodSystemForm), "Edit1");
    toggle(dialog);
  }));
  EXPECT_TRUE(Change(kGeodSystemForm, kGeodetic, [&](QWidget& dialog) {
    Click(dialog, "radiobtnHeightEllipsoid");
    toggle(dialog);
  }));
  EXPECT_EQ(PositiveRows(), 0);
}

TEST_F(PlaneSystemEditTest, AProjectedSystemIsMadeFromAProjection) {
  ScreenUser user;
  user.In<TformQvRfEdit>([](QWidget& dialog) {
        Type(dialog, "edName", "Made");
        Click(dialog, "radiobtnDatum");
        Click(dialog, "btnDatum");
        Click(dialog, "btnMapProjection");
        EXPECT_EQ(TextOf(dialog, "edFirstCoordName"), "E");
        Save(dialog);
      })
      .In<TformQvRfSelector>([](QWidget& list) { Click(list, "bitbtnOk"); })
      .In<TformQvRfSelector>([](QWidget& list) { Click(list, "bitbtnOk"); });
  ASSERT_TRUE(FormOf(kProjSystemForm).CreateNew());
  EXPECT_EQ(Field("TYPE"), 5);
  EXPECT_EQ(Field("ANGULAR_UNIT_AUTOKEY"), 0);
  EXPECT_EQ(Field("MAP_PROJ_AUTOKEY"), KeyOf(kMapProjection, "UTM zone 17N"));
  EXPECT_EQ(Field("PRIMARY_REFSYSTEM_AUTOKEY"), 0);
  EXPECT_EQ(Systems().FieldByName("COORD2_ABBR").AsString(), "N");
}

TEST_F(PlaneSystemEditTest, InSimpleModeAProjectionIsEditedInItsPlace) {
  database_.data->DialogMode = QvRefSystem::kSimpleMode;
  Locate(kProjected);
  ScreenUser user;
  user.In<TformQvRfEdit>([](QWidget& dialog) {
        Click(dialog, "btnMapProjection");
        EXPECT_EQ(TextOf(dialog, "edMapProjection"), "Zone");
        EXPECT_EQ(TextOf(dialog, "edFirstCoordName"), "Rechts");
        Save(dialog);
      })
      .In<TformQvRfEdit>([](QWidget& projection) {
        EXPECT_EQ(TextOf(projection, "edName"), "UTM zone 17N");
        Type(projection, "edName", "Zone");
        Type(projection, "edFirstAxisName", "Rechts");
        Save(projection);
      });
  EXPECT_TRUE(FormOf(kProjSystemForm).EditCurrent());
  EXPECT_EQ(Systems().FieldByName("COORD1_ABBR").AsString(), "Rechts");
  EXPECT_EQ(database_.data->datasetMapProj.RecordCount(), 1);
}

// Trees.

/// The text of a tree without what only a stored system has: codes, heights.
std::string TextWithoutCodes(QvCommonUtils::TStringTree* tree) {
  RemoveSubtree(tree, 101000, 0);
  RemoveSubtree(tree, 1500, 0);
  for (const int id : {101001, 102001, 102005})
    RemoveField(tree, id, 0);
  if (QvCommonUtils::TStringTree* primary = FindSubtree(tree, 1121, 0))
    (void)TextWithoutCodes(primary);
  return WriteTreeText(tree);
}

TEST_F(PlaneSystemEditTest, AnUnstoredSystemIsTheTreeOfItsRecord) {
  for (const char* name : {kGeodetic, kProjected}) {
    for (const bool onDatum : {true, false}) {
      SCOPED_TRACE(name);
      Set(name, "PRIMARY_REFSYSTEM_AUTOKEY", 0);
      Set(name, "ELLIPSOID_AUTOKEY", KeyOf(kEllipsoid, "Other"));
      if (!onDatum) Set(name, "DATUM_AUTOKEY", 0);
      auto& processor = *database_.data->RefSystemProcessor;
      processor.StorePositiveLongitude(KeyOf(kReferenceSystem, kGeodetic), onDatum);
      const auto text = [&](const char* field) { return Systems().FieldByName(field).AsString(); };
      QvRefSystem::UnstoredSystem system{
          .kind = static_cast<SystemKind>(Field("TYPE")),
          .name = text("NAME"),
          .description = text("DESCRIPTION"),
          .abbreviation = text("ABBREVIATION"),
          .axes = {text("COORD1_ABBR"), text("COORD2_ABBR"), text("COORD3_ABBR")},
          .linearUnit = Field("LINEAR_UNIT_AUTOKEY"),
          .angularUnit = Field("ANGULAR_UNIT_AUTOKEY"),
          .ellipsoid = Field("ELLIPSOID_AUTOKEY"),
          .datum = Field("DATUM_AUTOKEY"),
          .primeMeridian = Field("PRIME_MERIDIAN_AUTOKEY"),
          .mapProjection = Field("MAP_PROJ_AUTOKEY"),
          .positiveLongitude = name == kGeodetic && onDatum};
      QvCommonUtils::TStringTree stored;
      QvCommonUtils::TStringTree unstored;
      ASSERT_TRUE(processor.WriteToTree(&stored, 0, 0));
      ASSERT_TRUE(processor.WriteUnstored(&unstored, system));
      EXPECT_NE(QvRefSystem::CreateShellReferenceSystem(&unstored, nullptr), nullptr);
      EXPECT_EQ(TextWithoutCodes(&unstored), TextWithoutCodes(&stored));
      for (int* key : {&system.linearUnit, &system.primeMeridian}) {
        QvCommonUtils::TStringTree broken;
        const int kept = std::exchange(*key, 9999);
        EXPECT_FALSE(processor.WriteUnstored(&broken, system));
        *key = kept;
      }
    }
  }
  // As they were, for the check of the database.
  for (const char* name : {kGeodetic, kProjected})
    Set(name, "DATUM_AUTOKEY", KeyOf(kDatum, "North American Datum 1927"));
}

}  // namespace
}  // namespace refframe_tests
