#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QtTest>
#include <QtWidgets>
#include <deque>
#include <functional>
#include <string>
#include <vector>

#include "dialogs/select/selectors.h"
#include "tests/support/sample_trees.h"
#include "tests/support/test_database.h"

/// A user at the screen: real clicks and keys on real dialogs.
namespace refframe_tests {

/// What the user does in a dialog of a kind.
template <typename Dialog, typename Act>
struct Step {
  Act act;
};
template <typename Dialog, typename Act>
[[nodiscard]] Step<Dialog, Act> In(Act act) {
  return {act};
}

/// What the user does in the modal dialogs to come, in order. Each step waits until the active
/// modal window is of its kind. A step that finds none in time fails the test and closes whatever
/// stands, so that no test hangs.
class ScreenUser : public QObject {
 public:
  ScreenUser();
  template <typename Dialog, typename Act>
  explicit ScreenUser(Step<Dialog, Act> step) : ScreenUser() {
    In<Dialog>(step.act);
  }
  ~ScreenUser() override;

  template <typename Dialog, typename Act>
  ScreenUser& In(Act act) {
    steps_.push_back([act](QWidget* window) {
      auto* dialog = dynamic_cast<Dialog*>(window);
      if (dialog == nullptr) return false;
      act(*dialog);
      return true;
    });
    return *this;
  }

 private:
  void Look();
  /// False until the window is the one that the step is for.
  std::deque<std::function<bool(QWidget*)>> steps_;
  int patience_ = 0;
};

template <typename Widget = QWidget>
[[nodiscard]] Widget& Child(const QWidget& window, const char* objectName) {
  auto* child = window.findChild<Widget*>(QString::fromLatin1(objectName));
  if (child == nullptr) throw std::runtime_error(std::string("no control ") + objectName);
  return *child;
}

/// Clicks a button that the user can see and that is enabled; anything else fails the test.
void Click(const QWidget& window, const char* objectName,
           Qt::KeyboardModifiers modifiers = Qt::NoModifier);
/// A step of a ScreenUser that does no more than such a click.
[[nodiscard]] inline auto Clicks(const char* objectName) {
  return [objectName](const QWidget& window) { Click(window, objectName); };
}
/// A key in a control of the window.
void Press(const QWidget& window, const char* objectName, Qt::Key key,
           Qt::KeyboardModifiers modifiers = Qt::NoModifier);
/// Takes a path in a dialog of files, under one of its filters, counted from 0, if that is given.
void TakeFile(QFileDialog& dialog, const std::string& path, int filter = -1);
/// The bytes of a file.
[[nodiscard]] std::string Content(const std::string& path);
/// The text of a memo, an edit, a label or a button.
[[nodiscard]] std::string TextOf(const QWidget& window, const char* objectName);
/// Types into the search field, behind what is there.
void Search(const QWidget& window, const char* text);
[[nodiscard]] bool IsShown(const QWidget& window, const char* objectName);
[[nodiscard]] bool IsEnabled(const QWidget& window, const char* objectName);
/// Those of the controls for which it is so, joined by blanks.
[[nodiscard]] std::string Which(bool (*isSo)(const QWidget&, const char*), const QWidget& window,
                                std::initializer_list<const char*> objectNames);
/// The names that the list shows, joined by ", ", and the one that it marks.
[[nodiscard]] std::string ListedNames(const QWidget& window);
[[nodiscard]] std::string MarkedName(const QWidget& window);

/// Tests of dialogs over a small database: seven ellipsoids, of which one is a sphere.
class DialogTest : public testing::Test {
 protected:
  DialogTest();
  ~DialogTest() override;

  /// Appends a record with that name and integer fields; returns its key.
  int Add(QvRefSystem::TableId table, const std::string& name,
          const std::vector<std::pair<std::string, int>>& fields = {});
  /// Stores a whole object, with other texts in some fields of its tree; returns its key.
  int Insert(QvRefSystem::TObjectType type, const TreePtr& tree,
             const std::vector<std::pair<int, const char*>>& fields = {});
  [[nodiscard]] int KeyOf(QvRefSystem::TObjectType type, const std::string& name);
  [[nodiscard]] std::string CurrentName(QvRefSystem::TObjectType type) const;

  TestDatabase database_;
};

/// Tests of lists: those of the ellipsoids and of the systems, and a user who works in one.
class ListTest : public DialogTest {
 protected:
  using Act = std::function<void(QvRefSystem::TformQvRfSelector& form)>;

  /// Runs a list for a choice. The user leaves by Esc what `act` has not ended.
  bool ChooseIn(QvRefSystem::TformQvRfSelector& list, const Act& act,
                QvRefSystem::Choice choice = {.hideOwner = false});
  /// The same for ellipsoids, from the first one on, or from that of the choice's key.
  bool Choose(const Act& act, QvRefSystem::Choice choice = {.hideOwner = false});
  [[nodiscard]] double LastUse(QvRefSystem::TObjectType type) const;

  QvRefSystem::TformQvRfEllipsoidSelector ellipsoids_{nullptr, QvRefSystem::DialogChooser()};
  QvRefSystem::TformQvRfRefSystemSelector systems_{nullptr, QvRefSystem::DialogChooser()};
};

}  // namespace refframe_tests
