#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QComboBox>

#include "assembly/database_check.h"
#include "database/storage_files.h"
#include "forms/system_forms.h"
#include "platform/geocore/geoids.h"
#include "platform/geocore/shell_reference_system.h"
#include "processors/ref_system_processor.h"
#include "processors/unstored_system.h"
#include "tests/dialogs/edit/edit_dialog_fixture.h"
#include "tests/support/sample_trees.h"

namespace refframe_tests {

using QvRefSystem::FormDescription;
using QvRefSystem::kGeodSystemForm;
using QvRefSystem::kProjSystemForm;
using QvRefSystem::SystemKind;
using QvRefSystem::TableId;
using QvRefSystem::TformQvRfEdit;
using QvRefSystem::TformQvRfSelector;
using testing::IsEmpty;
using testing::SizeIs;
using enum QvRefSystem::TObjectType;

inline constexpr char kGeodetic[] = "NAD27 geodetic";
inline constexpr char kProjected[] = "NAD27 / UTM 17N";
inline constexpr int kEgm96 = 5773;

inline constexpr char kNotDefined[] =
    "Plane reference system must be completely defined before specifying height system";

/// A database with one geodetic and one projected system, each whole; and again after each test.
class PlaneSystemEditTest : public DialogTest {
 protected:
  using Act = std::function<void(QWidget&)>;

  PlaneSystemEditTest() {
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
  TformQvRfEdit& FormOf(const FormDescription& form) {
    return *QvRefSystem::GetEditForm(&owner_, form.object, form.type);
  }
  bool Change(const FormDescription& form, const char* name, const Act& act) {
    Locate(name);
    ScreenUser user;
    user.In<TformQvRfEdit>(act);
    return FormOf(form).EditCurrent();
  }
  /// The same with one selector that opens from the dialog, in which an object is chosen.
  bool Change(const FormDescription& form, const char* name, const Act& act,
              QvRefSystem::TObjectType object, const char* choice) {
    Locate(name);
    ScreenUser user;
    user.In<TformQvRfEdit>(act).In<TformQvRfSelector>([=, this](QWidget& list) {
      database_.Processor(object).LocateKey(KeyOf(object, choice));
      Click(list, "bitbtnOk");
    });
    return FormOf(form).EditCurrent();
  }
  bool Make(const FormDescription& form, const Act& act) {
    ScreenUser user;
    user.In<TformQvRfEdit>(act);
    return FormOf(form).CreateNew();
  }
  int PositiveRows() {
    auto& values = database_.data->datasetParamValue;
    return static_cast<int>(
        values
            .FindAll({QvPlatform::RowMatch::Integer(values.FieldByName("PARAM_TAG").GetIndex(), 7)})
            .size());
  }

  QWidget owner_;
};

inline void Save(QWidget& dialog) {
  Click(dialog, "bitbtnSave");
}
inline void Close(QWidget& dialog) {
  Click(dialog, "bitbtnClose");
}
inline bool IsChecked(const QWidget& dialog, const char* button) {
  return Child<QAbstractButton>(dialog, button).isChecked();
}
inline QComboBox& Geoids(const QWidget& dialog) {
  return Child<QComboBox>(dialog, "comboSystemGeoids");
}

}  // namespace refframe_tests
