#include "tests/dialogs/dialog_fixture.h"

#include <fstream>

namespace refframe_tests {

namespace {

// One application for the whole program, made before the first test.
class QtEnvironment : public testing::Environment {
 public:
  void SetUp() override { application_ = std::make_unique<QApplication>(argc_, argv_); }
  void TearDown() override { application_.reset(); }

 private:
  int argc_ = 1;
  char name_[6] = "tests";
  char* argv_[2] = {name_, nullptr};
  std::unique_ptr<QApplication> application_;
};
const testing::Environment* const kEnvironment =
    testing::AddGlobalTestEnvironment(new QtEnvironment);

constexpr int kPause = 2;           // milliseconds between two looks
constexpr int kMostLooks = 15'000;  // a loaded machine may take its time

}  // namespace

ScreenUser::ScreenUser() {
  QTimer::singleShot(0, this, [this] { Look(); });
}

ScreenUser::~ScreenUser() {
  EXPECT_TRUE(steps_.empty()) << steps_.size() << " steps not reached";
}

void ScreenUser::Look() {
  // Made anew each time: one timer would not fire again inside a dialog that its own step opened.
  QTimer::singleShot(kPause, this, [this] { Look(); });
  QWidget* window = QApplication::activeModalWidget();
  if (window != nullptr && !window->isVisible()) window = nullptr;
  if (!steps_.empty() && window != nullptr) {
    const auto step = steps_.front();
    steps_.pop_front();
    const int before = patience_;
    patience_ = 0;
    if (step(window)) return;
    steps_.push_front(step);
    patience_ = before;
  }
  if (window == nullptr && steps_.empty()) return;
  if (++patience_ < kMostLooks / (steps_.empty() ? 10 : 1)) return;
  patience_ = 0;
  ADD_FAILURE() << "the user waits for a dialog that does not come, or does not know what to do in "
                << (window == nullptr ? "none" : window->windowTitle().toStdString());
  steps_.clear();
  if (auto* dialog = qobject_cast<QDialog*>(window)) dialog->reject();
}

void Click(const QWidget& window, const char* objectName, Qt::KeyboardModifiers modifiers) {
  auto& button = Child<QAbstractButton>(window, objectName);
  EXPECT_TRUE(button.isVisible()) << objectName;
  EXPECT_TRUE(button.isEnabled()) << objectName;
  QTest::mouseClick(&button, Qt::LeftButton, modifiers);
}

void Press(const QWidget& window, const char* objectName, Qt::Key key,
           Qt::KeyboardModifiers modifiers) {
  QTest::keyClick(&Child(window, objectName), key, modifiers);
}

void TakeFile(QFileDialog& dialog, const std::string& path, int filter) {
  if (filter >= 0) {
    dialog.selectNameFilter(dialog.nameFilters().at(filter));
    emit dialog.filterSelected(dialog.nameFilters().at(filter));
  }
  Child<QLineEdit>(dialog, "fileNameEdit").setText(QString::fromStdString(path));
  QMetaObject::invokeMethod(&dialog, "accept");
}

std::string Content(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

std::string TextOf(const QWidget& window, const char* objectName) {
  QWidget& control = Child(window, objectName);
  const char* property = qobject_cast<QPlainTextEdit*>(&control) != nullptr ? "plainText" : "text";
  return control.property(property).toString().toStdString();
}

void Search(const QWidget& window, const char* text) {
  QTest::keyClicks(&Child(window, "comboSearch"), QString::fromUtf8(text));
}

bool IsShown(const QWidget& window, const char* objectName) {
  return Child(window, objectName).isVisible();
}

bool IsEnabled(const QWidget& window, const char* objectName) {
  return Child(window, objectName).isEnabled();
}

std::string Which(bool (*isSo)(const QWidget&, const char*), const QWidget& window,
                  std::initializer_list<const char*> objectNames) {
  std::string names;
  for (const char* name : objectNames)
    if (isSo(window, name)) names += (names.empty() ? "" : " ") + std::string(name);
  return names;
}

std::string ListedNames(const QWidget& window) {
  const QAbstractItemModel* model = Child<QAbstractItemView>(window, "dbgridList").model();
  std::string names;
  for (int row = 0; row < model->rowCount(); ++row) {
    if (row > 0) names += ", ";
    names += model->index(row, 0).data().toString().toStdString();
  }
  return names;
}

std::string MarkedName(const QWidget& window) {
  const auto& list = Child<QAbstractItemView>(window, "dbgridList");
  const QModelIndexList rows = list.selectionModel()->selectedRows();
  if (rows.size() != 1 || rows.front().row() != list.currentIndex().row()) return "(none)";
  return rows.front().data().toString().toStdString();
}

DialogTest::DialogTest() {
  QvRefSystem::datamoduleQvRfData = database_.data.get();
  for (const char* name :
       {"WGS 84", "Airy 1830", "Clarke 1880 (IGN)", "Bessel 1841", "GRS 1980", "Clarke 1866"}) {
    Add(QvRefSystem::TableId::kEllipsoid, name);
  }
  Add(QvRefSystem::TableId::kEllipsoid, "Sphere", {{"SPHEROID", 1}});
  database_.data->datasetEllipsoid.First();
}

DialogTest::~DialogTest() {
  QvRefSystem::datamoduleQvRfData = nullptr;
}

int DialogTest::Add(QvRefSystem::TableId table, const std::string& name,
                    const std::vector<std::pair<std::string, int>>& fields) {
  QvPlatform::TQvDataSet& dataSet = database_.data->DataSet(table);
  dataSet.Append();
  dataSet.FieldByName("NAME").SetString(name);
  dataSet.FieldByName("DESCRIPTION").SetString("About " + name);
  for (const auto& [field, value] : fields)
    dataSet.FieldByName(field).SetInteger(value);
  dataSet.Post();
  return dataSet.Fields(0).AsInteger();
}

int DialogTest::Insert(QvRefSystem::TObjectType type, const TreePtr& tree,
                       const std::vector<std::pair<int, const char*>>& fields) {
  for (const auto& [id, text] : fields) {
    RemoveField(tree.get(), id, 0);
    TreeBuilder(tree.get()).Field(id, text);
  }
  const int key = database_.Processor(type).InsertFromTree(tree.get());
  EXPECT_GT(key, 0);
  return key;
}

int DialogTest::KeyOf(QvRefSystem::TObjectType type, const std::string& name) {
  QvPlatform::TQvDataSet& dataSet = *database_.Processor(type).DataSet;
  const auto row =
      dataSet.FindFirst({QvPlatform::RowMatch::Text(dataSet.FieldByName("NAME").GetIndex(), name)});
  return row ? row.GetInteger(0) : 0;
}

std::string DialogTest::CurrentName(QvRefSystem::TObjectType type) const {
  return database_.Processor(type).DataSet->FieldByName("NAME").AsString();
}

bool ListTest::ChooseIn(QvRefSystem::TformQvRfSelector& list, const Act& act,
                        QvRefSystem::Choice choice) {
  ScreenUser user(In<QvRefSystem::TformQvRfSelector>([&act](QvRefSystem::TformQvRfSelector& form) {
    act(form);
    if (form.isVisible()) form.reject();
  }));
  return list.Select(choice);
}

bool ListTest::Choose(const Act& act, QvRefSystem::Choice choice) {
  database_.data->datasetEllipsoid.First();
  return ChooseIn(ellipsoids_, act, choice);
}

double ListTest::LastUse(QvRefSystem::TObjectType type) const {
  return database_.Processor(type).DataSet->FieldByName("LAST_USE").AsFloat();
}

}  // namespace refframe_tests
