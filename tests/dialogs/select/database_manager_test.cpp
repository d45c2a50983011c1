#include "dialogs/select/database_manager.h"

#include <gtest/gtest.h>

#include <QListWidget>
#include <QPushButton>

#include "tests/dialogs/dialog_fixture.h"

namespace refframe_tests {
namespace {

using QvRefSystem::TformGeoRefFrameDatabaseManager;
using QvRefSystem::TformQvRfSelector;
using QvRefSystem::TQvGeoRefFrameDialogOptions;

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

// The object types in the order of the list; one without a processor does not stand there.
constexpr std::pair<int, const char*> kEntries[] = {{12, "reference system type"},
                                                    {1, "reference system"},
                                                    {2, "datum"},
                                                    {3, "ellipsoid"},
                                                    {7, "datum shift type"},
                                                    {4, "datum shift"},
                                                    {5, "prime meridian"},
                                                    {8, "linear unit"},
                                                    {10, "angular unit"},
                                                    {9, "scale unit"},
                                                    {11, "map projection type"},
                                                    {6, "map projection"},
                                                    {16, "vertical reference system"}};

TEST_F(DatabaseManager, ListsEveryObjectTypeInBothModes) {
  QStringList expected;
  for (const auto& [type, text] : kEntries) {
    if (QvRefSystem::ProcessorFor(*database_.data, type) != nullptr) expected << text;
  }
  ASSERT_GE(expected.size(), 12);
  for (const int mode : {1, 2, 0, 3}) {
    Fill(mode);
    QStringList texts;
    for (int row = 0; row < List().count(); ++row)
      texts << List().item(row)->text();
    const bool listed = mode == 1 || mode == 2;
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
  const auto ellipsoids = [this] {
    const auto found = List().findItems("ellipsoid", Qt::MatchExactly);
    List().setCurrentItem(found.at(0));
    return List().visualItemRect(found.at(0)).center();
  };
  using Manager = TformGeoRefFrameDatabaseManager;
  user.In<Manager>([&](Manager& form) {
        (void)ellipsoids();
        Click(form, "bitbtnEdit");
      })
      .In<TformQvRfSelector>(look)
      .In<Manager>([&](Manager&) {
        const QPoint place = ellipsoids();
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
  ScreenUser user;
  user.In<TformGeoRefFrameDatabaseManager>([](QWidget& form) {
    Press(form, "listboxContent", Qt::Key_Return);
    Click(form, "bitbtnClose");
  });
  manager_.RunModal();
}

}  // namespace
}  // namespace refframe_tests
