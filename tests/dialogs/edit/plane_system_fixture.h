#pragma once

#include "forms/system_forms.h"
#include "platform/geocore/geoids.h"
#include "platform/geocore/shell_reference_system.h"
#include "processors/ref_system_processor.h"
#include "processors/unstored_system.h"
#include "tests/dialogs/edit/edit_dialog_fixture.h"

namespace refframe_tests {

inline constexpr char kGeodetic[] = "NAD27 geodetic";
inline constexpr char kProjected[] = "NAD27 / UTM 17N";

/// The two dialogs, with the stored system of each.
struct PlaneForm {
  const QvRefSystem::FormDescription& form;
  const char* system;
};
inline const PlaneForm kPlaneForms[] = {{QvRefSystem::kGeodSystemForm, kGeodetic},
                                        {QvRefSystem::kProjSystemForm, kProjected}};

/// A database with one geodetic and one projected system, each whole; and again after each test.
class PlaneSystemEditTest : public EditDialogTest {
 protected:
  using enum QvRefSystem::TObjectType;
  PlaneSystemEditTest() {
    while (database_.data->datasetEllipsoid.RecordCount() > 0)
      database_.data->datasetEllipsoid.Delete();
    Insert(kReferenceSystem, MakeTree(SystemTree, 4));
    Insert(kReferenceSystem, MakeTree(SystemTree, 5));
    Insert(kEllipsoid, MakeTree(EllipsoidTree), {{5120, "Other"}, {5110, "6378137"}});
    for (const auto object : {kLinearUnit, kAngularUnit, kPrimeMeridian})
      UseLast(object);
  }
  void TearDown() override { ExpectSound(database_); }
  /// Gives a stored system heights of its own, and makes it current.
  int GiveHeights(const char* name, void (*sample)(TreeBuilder)) {
    const int heights = Insert(kVerticalReferenceSystem, MakeTree(sample));
    Set(name, "VERT_SYSTEM_AUTOKEY", heights);
    return heights;
  }
  void Set(const char* name, const char* field, int value) {
    Locate(name);
    SetField(Systems(), field, std::to_string(value));
  }
  void Locate(const char* name) {
    ASSERT_TRUE(database_.Processor(kReferenceSystem).LocateKey(KeyOf(kReferenceSystem, name)));
  }
  QvPlatform::TQvDataSet& Systems() { return *database_.Processor(kReferenceSystem).DataSet; }
  int Field(const char* field) { return Systems().FieldByName(field).AsInteger(); }
  [[nodiscard]] int HeightRecords() const {
    return database_.data->datasetVerticalRefSystem.RecordCount();
  }
  using EditDialogTest::Change;
  bool Change(const QvRefSystem::FormDescription& form, const char* name, const Act& act) {
    Locate(name);
    return Change(form, act);
  }
  int PositiveRows() {
    auto& values = database_.data->datasetParamValue;
    const int tag = values.FieldByName("PARAM_TAG").GetIndex();
    return static_cast<int>(values.FindAll({QvPlatform::RowMatch::Integer(tag, 7)}).size());
  }
};

}  // namespace refframe_tests
