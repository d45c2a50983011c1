// Geodetic and projected systems: the ground they stand on, and the trees that are made of them
// before they are stored.

#include "tests/dialogs/edit/plane_system_fixture.h"

namespace refframe_tests {
namespace {

using namespace QvRefSystem;

TEST_F(PlaneSystemEditTest, ANewSystemStandsOnNothingYet) {
  const std::pair<const FormDescription&, const char*> rows[] = {
      {kGeodSystemForm, "edName edDatum edEllipsoid"},
      {kProjSystemForm,
       "edName edDatum edEllipsoid edMapProjection edFirstCoordName edSecondCoordName"}};
  for (const auto& [form, refused] : rows) {
    SCOPED_TRACE(form.caption);
    EXPECT_FALSE(Make(form, [&form = form, refused = refused](QWidget& dialog) {
      EXPECT_EQ(Which(IsChecked, dialog, {"radiobtnDatum", "radiobtnEllipsoid"}), "");
      EXPECT_EQ(Which(IsEnabled, dialog,
                      {"btnDatum", "btnEllipsoid", "Button1", "Edit1", "comboSystemGeoids"}),
                "");
      EXPECT_TRUE(IsChecked(dialog, "radiobtnHeightEllipsoid"));
      EXPECT_EQ(TextOf(dialog, "edLinearUnit") + TextOf(dialog, "edPrimeMeridian"),
                "metreGreenwich");
      EXPECT_EQ(TextOf(dialog, "edHeightAbbr"), "C") << "as its type tells";
      if (&form == &kGeodSystemForm) {
        EXPECT_EQ(TextOf(dialog, "edLatitudeAbbr") + TextOf(dialog, "edAngularUnit"), "Adegree");
      }
      Save(dialog);
      EXPECT_TRUE(dialog.isVisible());
      EXPECT_EQ(RefusedControls(dialog, form), refused);
      Click(dialog, "radiobtnDatum");
      EXPECT_FALSE(IsPainted(dialog, "edEllipsoid", Qt::red)) << "one was chosen";
    }));
  }
}

TEST_F(PlaneSystemEditTest, AnEllipsoidAloneMakesASystem) {
  ASSERT_TRUE(Make(kGeodSystemForm, [](QWidget& dialog) {
    Type(dialog, "edName", "Bare");
    Click(dialog, "radiobtnEllipsoid");
    EXPECT_TRUE(IsEnabled(dialog, "btnEllipsoid"));
    EXPECT_FALSE(IsEnabled(dialog, "btnDatum"));
    Save(dialog);
    EXPECT_EQ(RefusedControls(dialog, kGeodSystemForm), "edEllipsoid");
    Choose(dialog, "btnEllipsoid", "Other");
    Save(dialog);
  }));
  EXPECT_EQ(Record(kGeodSystemForm, {"NAME", "TYPE", "DATUM_AUTOKEY", "VERT_SYSTEM_AUTOKEY"}),
            "NAME=Bare TYPE=4 DATUM_AUTOKEY=0 VERT_SYSTEM_AUTOKEY=0");
  EXPECT_EQ(Field("ELLIPSOID_AUTOKEY"), KeyOf(kEllipsoid, "Other"));
  EXPECT_EQ(PositiveRows(), 0);
}

TEST_F(PlaneSystemEditTest, ADatumBringsItsEllipsoid) {
  const int clarke = KeyOf(kEllipsoid, "Clarke 1866");
  Set(kGeodetic, "ELLIPSOID_AUTOKEY", KeyOf(kEllipsoid, "Other"));
  EXPECT_TRUE(Change(kGeodSystemForm, kGeodetic, [](QWidget& dialog) {
    EXPECT_TRUE(IsChecked(dialog, "radiobtnDatum")) << "a system with both shows the datum";
    EXPECT_EQ(TextOf(dialog, "edEllipsoid"), "Other");
    Choose(dialog, "btnDatum");
    EXPECT_EQ(TextOf(dialog, "edEllipsoid"), "Clarke 1866");
    Save(dialog);
  }));
  EXPECT_EQ(Field("DATUM_AUTOKEY"), KeyOf(kDatum, "North American Datum 1927"));
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
  for (const auto& [form, system] : kPlaneForms) {
    SCOPED_TRACE(form.caption);
    EXPECT_FALSE(Change(form, system, [&form = form](QWidget& dialog) {
      Choose(dialog, "btnDatum", "Broken");
      EXPECT_EQ(TextOf(dialog, "edDatum") + TextOf(dialog, "edEllipsoid"), "Broken");
      EXPECT_EQ(RefusedControls(dialog, form), "edEllipsoid") << "at once";
      Click(dialog, "radiobtnEllipsoid");
      Save(dialog);
      EXPECT_EQ(RefusedControls(dialog, form), "edEllipsoid");
    }));
  }
  database_.Processor(kDatum).LocateKey(broken);
  database_.data->datasetDatum.Delete();
}

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
  SetField(values, "VALUE", "0");
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
  ASSERT_TRUE(Make(kProjSystemForm, [](QWidget& dialog) {
    Type(dialog, "edName", "Made");
    Click(dialog, "radiobtnDatum");
    Choose(dialog, "btnDatum");
    Choose(dialog, "btnMapProjection");
    EXPECT_EQ(TextOf(dialog, "edFirstCoordName"), "E");
    Save(dialog);
  }));
  EXPECT_EQ(Record(kProjSystemForm,
                   {"TYPE", "ANGULAR_UNIT_AUTOKEY", "PRIMARY_REFSYSTEM_AUTOKEY", "COORD2_ABBR"}),
            "TYPE=5 ANGULAR_UNIT_AUTOKEY=0 PRIMARY_REFSYSTEM_AUTOKEY= COORD2_ABBR=N");
  EXPECT_EQ(Field("MAP_PROJ_AUTOKEY"), KeyOf(kMapProjection, "UTM zone 17N"));
}

TEST_F(PlaneSystemEditTest, InSimpleModeAProjectionIsEditedInItsPlace) {
  database_.data->DialogMode = kSimpleMode;
  EXPECT_TRUE(Change(kProjSystemForm, kProjected, [](QWidget& dialog) {
    Open<TformQvRfEdit>(dialog, "btnMapProjection", [](QWidget& projection) {
      EXPECT_EQ(TextOf(projection, "edName"), "UTM zone 17N");
      Type(projection, "edName", "Zone");
      Type(projection, "edFirstAxisName", "Rechts");
      Save(projection);
    });
    EXPECT_EQ(TextOf(dialog, "edMapProjection"), "Zone");
    EXPECT_EQ(TextOf(dialog, "edFirstCoordName"), "Rechts");
    Save(dialog);
  }));
  EXPECT_EQ(Systems().FieldByName("COORD1_ABBR").AsString(), "Rechts");
  EXPECT_EQ(database_.data->datasetMapProj.RecordCount(), 1);
}

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

/// What a dialog would hold of the system that is current.
UnstoredSystem Unstored(QvPlatform::TQvDataSet& systems, bool positiveLongitude) {
  const auto text = [&](const char* field) { return systems.FieldByName(field).AsString(); };
  const auto key = [&](const char* field) { return systems.FieldByName(field).AsInteger(); };
  return {.kind = static_cast<SystemKind>(key("TYPE")),
          .name = text("NAME"),
          .description = text("DESCRIPTION"),
          .abbreviation = text("ABBREVIATION"),
          .axes = {text("COORD1_ABBR"), text("COORD2_ABBR"), text("COORD3_ABBR")},
          .linearUnit = key("LINEAR_UNIT_AUTOKEY"),
          .angularUnit = key("ANGULAR_UNIT_AUTOKEY"),
          .ellipsoid = key("ELLIPSOID_AUTOKEY"),
          .datum = key("DATUM_AUTOKEY"),
          .primeMeridian = key("PRIME_MERIDIAN_AUTOKEY"),
          .mapProjection = key("MAP_PROJ_AUTOKEY"),
          .positiveLongitude = positiveLongitude};
}

TEST_F(PlaneSystemEditTest, AnUnstoredSystemIsTheTreeOfItsRecord) {
  auto& processor = *database_.data->RefSystemProcessor;
  const int datum = KeyOf(kDatum, "North American Datum 1927");
  for (const char* name : {kGeodetic, kProjected}) {
    Set(name, "PRIMARY_REFSYSTEM_AUTOKEY", 0);
    Set(name, "ELLIPSOID_AUTOKEY", KeyOf(kEllipsoid, "Other"));
    // The last one leaves the system as it was, for the check of the database.
    for (const bool onDatum : {false, true}) {
      SCOPED_TRACE(name);
      Set(name, "DATUM_AUTOKEY", onDatum ? datum : 0);
      processor.StorePositiveLongitude(KeyOf(kReferenceSystem, kGeodetic), onDatum);
      UnstoredSystem system = Unstored(Systems(), name == kGeodetic && onDatum);
      QvCommonUtils::TStringTree stored;
      QvCommonUtils::TStringTree unstored;
      ASSERT_TRUE(processor.WriteToTree(&stored, 0, 0));
      ASSERT_TRUE(processor.WriteUnstored(&unstored, system));
      EXPECT_NE(CreateShellReferenceSystem(&unstored, nullptr), nullptr);
      EXPECT_EQ(TextWithoutCodes(&unstored), TextWithoutCodes(&stored));
      for (int* key : {&system.linearUnit, &system.primeMeridian}) {
        QvCommonUtils::TStringTree broken;
        const int kept = std::exchange(*key, 9999);
        EXPECT_FALSE(processor.WriteUnstored(&broken, system));
        *key = kept;
      }
    }
  }
}

}  // namespace
}  // namespace refframe_tests
