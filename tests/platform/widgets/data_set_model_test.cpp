#include "platform/widgets/data_set_model.h"

#include "platform/dbset/data_source.h"
#include "platform/widgets/data_grid.h"
#include "tests/dialogs/edit/edit_dialog_fixture.h"

namespace refframe_tests {
namespace {

using namespace QvRefSystem;
using QvPlatform::DataSetTableModel;

// The table stands in the order: Airy 1830, Bessel 1841, Clarke 1866, Clarke 1880 (IGN), GRS 1980,
// Sphere, WGS 84.
class DataSetModel : public DialogTest {
 protected:
  [[nodiscard]] std::string Names() const {
    std::string names;
    for (int row = 0; row < model_.rowCount(); ++row)
      names += model_.index(row, 0).data().toString().left(2).toStdString();
    return names;
  }
  QvPlatform::TQvDataSet& table_ = database_.data->datasetEllipsoid;
  QvPlatform::TDataSource source_{&table_};
  DataSetTableModel model_{source_, {{"NAME", "Name"}, {"DESCRIPTION", "Description"}}, nullptr};
  // Complains of every breach of the contract between models and views.
  QAbstractItemModelTester tester_{&model_, QAbstractItemModelTester::FailureReportingMode::Fatal};
};

TEST_F(DataSetModel, ShowsTheRowsInTheTablesOrderAndFollowsItsChanges) {
  EXPECT_EQ(Names(), "AiBeClClGRSpWG");
  Add(TableId::kEllipsoid, "Danish");
  EXPECT_EQ(Names(), "AiBeClClDaGRSpWG");
  SetField(table_, "NAME", "Zach 1812");
  EXPECT_EQ(Names(), "AiBeClClGRSpWGZa");
  table_.Delete();
  EXPECT_EQ(Names(), "AiBeClClGRSpWG");
}

TEST_F(DataSetModel, WithoutColumnsShowsEveryField) {
  const DataSetTableModel all(source_, {}, nullptr);
  ASSERT_EQ(all.columnCount(), table_.FieldCount());
  EXPECT_EQ(all.headerData(3, Qt::Horizontal, Qt::DisplayRole).toString(), "NAME");
  EXPECT_EQ(all.index(0, 0).data().toString(), QString::number(table_.Fields(0).AsInteger()));
}

TEST_F(DataSetModel, AFilterMapsRowsToPositionsAndBack) {
  bool stale = false;
  model_.SetRowFilter([&stale](bool rowsChanged) {
    stale = rowsChanged;
    return std::vector<int>{1, 3, 4};
  });
  EXPECT_EQ(Names(), "BeClGR");
  const struct {
    int position;
    int row;
    int atOrBehind;
  } rows[] = {{0, -1, 0}, {1, 0, 0}, {2, -1, 1}, {3, 1, 1}, {4, 2, 2}, {5, -1, 3}};
  for (const auto& row : rows) {
    EXPECT_EQ(model_.RowOfPosition(row.position), row.row) << row.position;
    EXPECT_EQ(model_.RowAtOrBehind(row.position), row.atOrBehind) << row.position;
  }
  table_.MoveTo(2);
  EXPECT_EQ(model_.CurrentRow(), -1);
  model_.MoveToRow(1);
  EXPECT_EQ(table_.Position(), 3);
  stale = false;
  table_.First();
  EXPECT_FALSE(stale) << "a moving cursor makes no name out of date";
  Add(TableId::kEllipsoid, "Danish");
  EXPECT_TRUE(stale) << "what the filter knows of names is out of date";
}

TEST_F(DataSetModel, KeepsStillWhileControlsOrSourceAreDisabled) {
  QSignalSpy resets(&model_, &QAbstractItemModel::modelReset);
  table_.DisableControls();
  Add(TableId::kEllipsoid, "Danish");
  EXPECT_EQ(resets.count(), 0);
  table_.EnableControls();
  EXPECT_EQ(resets.count(), 1);
  EXPECT_EQ(model_.rowCount(), 8);
  source_.SetEnabled(false);
  Add(TableId::kEllipsoid, "Everest");
  EXPECT_EQ(model_.rowCount(), 8);
  source_.SetEnabled(true);
  EXPECT_EQ(model_.rowCount(), 9);
}

TEST_F(DataSetModel, RowsThatAreGoneUnnoticedReadAsEmpty) {
  table_.DisableControls();
  table_.Last();
  table_.Delete();
  EXPECT_EQ(model_.index(6, 0).data().toString(), "");
  table_.Close();
  EXPECT_EQ(model_.index(0, 0).data().toString(), "");
  table_.Open();
  table_.EnableControls();
  EXPECT_EQ(model_.rowCount(), 6);
}

TEST_F(DataSetModel, AGridAndItsTableShareTheCurrentRow) {
  QvPlatform::DataGrid grid(nullptr);
  grid.SetDataSetModel(&model_);
  grid.show();
  table_.MoveTo(4);
  EXPECT_EQ(grid.currentIndex().row(), 4);
  QTest::keyClick(&grid, Qt::Key_Down);
  EXPECT_EQ(table_.Position(), 5);
  Add(TableId::kEllipsoid, "Aaa");
  EXPECT_EQ(grid.currentIndex().row(), 0);
  EXPECT_EQ(table_.Position(), 0);
  table_.First();
  table_.Delete();
  EXPECT_EQ(grid.currentIndex().row(), table_.Position());
}

}  // namespace
}  // namespace refframe_tests
