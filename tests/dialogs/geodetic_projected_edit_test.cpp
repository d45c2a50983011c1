// Geodetic and projected systems: the ground they stand on, the three fates of their heights, and
// the trees that are made of them before they are stored.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QComboBox>

#include "database/storage_files.h"
#include "platform/geocore/geoids.h"
#include "platform/geocore/shell_reference_system.h"
#include "processors/database_check.h"
#include "processors/ref_system_processor.h"
#include "processors/ref_system_unstored.h"
#include "processors/system_forms.h"
#include "tests/dialogs/edit_dialog_fixture.h"
#include "tests/support/sample_trees.h"

namespace refframe_tests {
namespace {

using QvRefSystem::kGeodSystemForm;
using QvRefSystem::kProjSystemForm;
using QvRefSystem::SystemKind;
using QvRefSystem::TableId;
using QvRefSystem::TFormDescription;
using QvRefSystem::TformQvRfEdit;
using QvRefSystem::TformQvRfSelector;
using testing::IsEmpty;
using testing::SizeIs;
using enum QvRefSystem::TObjectType;

constexpr char kGeodetic[] = "NAD27 geodetic";
constexpr char kProjected[] = "NAD27 / UTM 17N";
constexpr int kEgm96 = 5773;

constexpr char kNotDefined[] =
    "Plane reference system must be completely defined before specifying height system";

/// A database with one geodetic and one projected system, each whole; and again after each test.
class PlaneSystemEdit : public DialogTest {
 protected:
  using Act = std::function<void(QWidget&)>;

  PlaneSystemEdit() {
    while (database_.data->datasetEllipsoid.RecordCount() > 0)
      database_.data->datasetEllipsoid.Delete();
    Insert(kReferenceSystem, MakeTree(SystemTree, 4));
    Insert(kReferenceSystem, MakeTree(SystemTree, 5));
    TreePtr ellipsoid = MakeTree(EllipsoidTree);
    for (const int id : {5120, 5110})
      RemoveField(ellipsoid.get(), id, 0);
    TreeBuilder(ellipsoid.get()).Field(5120, "Other").Field(5110, "6378137");
    Insert(kEllipsoid, ellipsoid);
    for (const auto object : {kLinearUnit, kAngularUnit, kPrimeMeridian}) {
      auto& table = *database_.Processor(object).DataSet;
      table.First();
      table.Edit();
      table.FieldByName("LAST_USE").SetFloat(45000);
      table.Post();
    }
  }
  void TearDown() override {
    std::vector<std::string> findings;
    EXPECT_TRUE(QvRefSystem::CheckDatabase(*database_.data, &findings))
        << testing::PrintToString(findings);
  }
  int Insert(QvRefSystem::TObjectType object, const TreePtr& tree) {
    return database_.Processor(object).InsertFromTree(tree.get());
  }
  /// Gives a stored system heights of its own, and makes it current.
  int GiveHeights(const char* name, void (*sample)(TreeBuilder)) {
    const int heights = Insert(kVerticalReferenceSystem, MakeTree(sample));
    Set(name, "VERT_SYSTEM_AUTOKEY", heights);
    return heights;
  }
  void Set(const char* name, const char* field, int value) {
    Locate(name);
    Systems().Edit();
    Systems().FieldByName(field).SetInteger(value);
    Systems().Post();
  }
  void Locate(const char* name) {
    ASSERT_TRUE(database_.Processor(kReferenceSystem).LocateKey(KeyOf(kReferenceSystem, name)));
  }
  QvPlatform::TQvDataSet& Systems() { return *database_.Processor(kReferenceSystem).DataSet; }
  int Field(const char* field) { return Systems().FieldByName(field).AsInteger(); }
  [[nodiscard]] std::vector<std::string> HeightFiles() const {
    return QvRefSystem::ListStorageFiles(database_.data->GetHeightsPrefix(), false);
  }
  [[nodiscard]] int HeightRecords() const {
    return database_.data->datasetVerticalRefSystem.RecordCount();
  }
  TformQvRfEdit& FormOf(const TFormDescription& form) {
    return *QvRefSystem::GetEditForm(&owner_, form.object, form.type);
  }
  bool Change(const TFormDescription& form, const char* name, const Act& act) {
    Locate(name);
    ScreenUser user;
    user.In<TformQvRfEdit>(act);
    return FormOf(form).EditCurrent();
  }
  /// The same with one selector that opens from the dialog, in which an object is chosen.
  bool Change(const TFormDescription& form, const char* name, const Act& act,
              QvRefSystem::TObjectType object, const char* choice) {
    Locate(name);
    ScreenUser user;
    user.In<TformQvRfEdit>(act).In<TformQvRfSelector>([=, this](QWidget& list) {
      database_.Processor(object).LocateKey(KeyOf(object, choice));
      Click(list, "bitbtnOk");
    });
    return FormOf(form).EditCurrent();
  }
  bool Make(const TFormDescription& form, const Act& act) {
    ScreenUser user;
    user.In<TformQvRfEdit>(act);
    return FormOf(form).CreateNew();
  }
  int PositiveRows() {
    auto& values = database_.data->datasetParamValue;
    return static_cast<int>(
        values.FindAll({QvPlatform::TMatch::Integer(values.FieldByName("PARAM_TAG").GetIndex(), 7)})
            .size());
  }

  QWidget owner_;
};

void Save(QWidget& dialog) {
  Click(dialog, "bitbtnSave");
}
void Close(QWidget& dialog) {
  Click(dialog, "bitbtnClose");
}
bool IsChecked(const QWidget& dialog, const char* button) {
  return Child<QAbstractButton>(dialog, button).isChecked();
}
QComboBox& Geoids(const QWidget& dialog) {
  return Child<QComboBox>(dialog, "comboSystemGeoids");
}

TEST_F(PlaneSystemEdit, ANewSystemStandsOnNothingYet) {
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
    Close(dialog);
  }));
  EXPECT_FALSE(Make(kProjSystemForm, [&](QWidget& dialog) {
    act(dialog);
    EXPECT_EQ(RefusedControls(dialog, kProjSystemForm),
              "edName edDatum edEllipsoid edMapProjection edFirstCoordName edSecondCoordName");
    Close(dialog);
  }));
}

TEST_F(PlaneSystemEdit, AnEllipsoidAloneMakesASystem) {
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

TEST_F(PlaneSystemEdit, ADatumBringsItsEllipsoid) {
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

TEST_F(PlaneSystemEdit, ADatumWithoutEllipsoidIsTold) {
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

TEST_F(PlaneSystemEdit, ClosingLeavesTheStoredHeights) {
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

TEST_F(PlaneSystemEdit, SavingPutsTheCopyInTheirPlace) {
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

TEST_F(PlaneSystemEdit, HeightsThatAreGivenUpGoWithTheirFile) {
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

TEST_F(PlaneSystemEdit, HeightsWhoseFileIsLostAreNotRemovedByClosing) {
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

TEST_F(PlaneSystemEdit, HeightsOfAnotherPlaneAreNotSaved) {
  const int heights = GiveHeights(kGeodetic, HeightOffsetTree);
  EXPECT_TRUE(Change(
      kGeodSystemForm, kGeodetic,
      [&](QWidget& dialog) {
        Click(dialog, "radiobtnEllipsoid");
        Click(dialog, "btnEllipsoid");
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

TEST_F(PlaneSystemEdit, AnotherProjectionIsAnotherPlane) {
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

TEST_F(PlaneSystemEdit, HeightsThatAreMadeHereShareTheFateOfTheSystem) {
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

TEST_F(PlaneSystemEdit, HeightsAreMadeAnewForAnotherPlane) {
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

TEST_F(PlaneSystemEdit, HeightsNeedAWholePlane) {
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

TEST_F(PlaneSystemEdit, GeoidsOfTheMachineAreChosenFromAList) {
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

TEST_F(PlaneSystemEdit, PositiveLongitudeIsARowBesideTheSystem) {
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
  ASSERT_TRUE(values.MoveTo(values.FindFirst({QvPlatform::TMatch::Integer(tag, 7)})));
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

TEST_F(PlaneSystemEdit, ASystemThatVanishesLeavesNoCopyOfItsHeights) {
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

TEST_F(PlaneSystemEdit, AFailedPostLeavesHeightsAndRowsAsTheyWere) {
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

TEST_F(PlaneSystemEdit, AProjectedSystemIsMadeFromAProjection) {
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

TEST_F(PlaneSystemEdit, InSimpleModeAProjectionIsEditedInItsPlace) {
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

TEST_F(PlaneSystemEdit, AnUnstoredSystemIsTheTreeOfItsRecord) {
  for (const char* name : {kGeodetic, kProjected}) {
    for (const bool onDatum : {true, false}) {
      SCOPED_TRACE(name);
      Set(name, "PRIMARY_REFSYSTEM_AUTOKEY", 0);
      Set(name, "ELLIPSOID_AUTOKEY", KeyOf(kEllipsoid, "Other"));
      if (!onDatum) Set(name, "DATUM_AUTOKEY", 0);
      auto& processor = *database_.data->RefSystemProcessor;
      processor.StorePositiveLongitude(KeyOf(kReferenceSystem, kGeodetic), onDatum);
      const auto text = [&](const char* field) { return Systems().FieldByName(field).AsString(); };
      QvRefSystem::TUnstoredSystem system{
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
