#include "dialogs/select/database_manager.h"

#include "tests/dialogs/dialog_fixture.h"

namespace refframe_tests {
namespace {

using namespace QvRefSystem;

class DatabaseManager : public DialogTest {
 protected:
  void Fill(int mode) {
    TQvGeoRefFrameDialogOptions options;
    options.DialogMode = static_cast<std::int8_t>(mode);
    database_.data->DialogMode = options.DialogMode;
    manager_.Fill(&options);
  }
  QListWidget& List() { return Child<QListWidget>(manager_, "listboxContent"); }
  TformGeoRefFrameDatabaseManager manager_{nullptr};
};

// All object types stand there once, and types ahead of what has them.
TEST_F(DatabaseManager, ListsEveryObjectTypeInBothModes) {
  QStringList expected;
  for (const ObjectDescriptor& object : ObjectDescriptors()) {
    std::string text;
    database_.Processor(object.type).GetDisplayNames(&text, nullptr);
    expected << QString::fromStdString(text);
  }
  expected.sort();
  for (const int mode : {1, 2, 0, 3}) {
    Fill(mode);
    QStringList texts;
    for (int row = 0; row < List().count(); ++row)
      texts << List().item(row)->text();
    const bool listed = mode == 1 || mode == 2;
    for (const char* object : {"reference system", "datum shift", "map projection"})
      EXPECT_EQ(texts.indexOf(object) - texts.indexOf(object + QString(" type")), listed ? 1 : 0);
    texts.sort();
    EXPECT_EQ(texts, listed ? expected : QStringList()) << mode;
    EXPECT_EQ(IsEnabled(manager_, "bitbtnEdit"), listed) << mode;
  }
}

TEST_F(DatabaseManager, OpensWhatIsSelectedWithFullRightsEachTimeInTheSameSelector) {
  Fill(1);
  ScreenUser user;
  const TformQvRfSelector* opened = nullptr;
  const auto look = [&](TformQvRfSelector& form) {
    EXPECT_EQ(form.Processor->ObjectType, 3);
    EXPECT_TRUE(opened == nullptr || opened == &form);
    opened = &form;
    EXPECT_TRUE(IsShown(form, "bitbtnEdit"));
    EXPECT_TRUE(IsShown(form, "bitbtnRemove"));
    Click(form, "bitbtnClose");
  };
  using Manager = TformGeoRefFrameDatabaseManager;
  QListWidgetItem* ellipsoids = List().findItems("ellipsoid", Qt::MatchExactly).at(0);
  user.In<Manager>([&](Manager& form) {
        List().setCurrentItem(ellipsoids);
        Click(form, "bitbtnEdit");
      })
      .In<TformQvRfSelector>(look)
      .In<Manager>([&](Manager&) {
        const QPoint place = List().visualItemRect(ellipsoids).center();
        QTest::mouseClick(List().viewport(), Qt::LeftButton, {}, place);
        QTest::mouseDClick(List().viewport(), Qt::LeftButton, {}, place);
      })
      .In<TformQvRfSelector>(look)
      .In<Manager>([](Manager& form) { Press(form, "listboxContent", Qt::Key_Return); })
      .In<TformQvRfSelector>(look)
      .In<Manager>([](Manager& form) { Press(form, "listboxContent", Qt::Key_Escape); });
  manager_.RunModal();
  EXPECT_NE(opened, nullptr);
}

TEST_F(DatabaseManager, WithoutASelectionThereIsNothingToEdit) {
  Fill(2);
  List().clearSelection();
  EXPECT_FALSE(IsEnabled(manager_, "bitbtnEdit"));
  ScreenUser user(In<TformGeoRefFrameDatabaseManager>([](QWidget& form) {
    Press(form, "listboxContent", Qt::Key_Return);
    Click(form, "bitbtnClose");
  }));
  manager_.RunModal();
}

}  // namespace
}  // namespace refframe_tests
