#pragma once

#include "platform/data/string_tree.h"
#include "processors/object_descriptor.h"

class QPoint;
class QWidget;

/// What an edit dialog may ask of the lists and of the other edit dialogs, all of which stand above
/// it. The folder of the lists implements it; whoever makes an edit dialog hands it in.
namespace QvRefSystem {

class TformQvRfEdit;

/// How a list is to let its user choose, and where the chosen object goes.
struct Choice {
  /// Takes the chosen object; null for a caller who only wants it current. A tree whose object
  /// cannot be written whole keeps its content.
  QvCommonUtils::TStringTree* tree = nullptr;
  /// The member of the tree that becomes the object. With 0 the object is the tree's whole content.
  int id = 0;
  /// Tells several members of that id apart; counted from 0.
  int index = 0;
  /// Whether the owner's window hides while the list shows.
  bool hideOwner = true;
  /// The key of the record that the list opens on, 0 for the current one; afterwards that of the
  /// chosen record, or 0 after a cancel. Null for a caller who has no key.
  int* key = nullptr;
};

/// The rows of a table whose integer field `field` has the value `value`.
struct RowFilter {
  /// The name of a field that the table has; any other name throws where the filter is used.
  const char* field;
  /// What the field holds in the rows that show.
  int value;
};

/// The ellipsoids that are spheres.
inline constexpr RowFilter kSpheres{"SPHEROID", 1};

/// The objects of one TYPE, for objects that have types.
constexpr RowFilter OfType(int type) {
  return {"TYPE", type};
}

/// The list of the objects of one type. It holds no record: the chosen one is afterwards the
/// current record of the object's processor.
class ObjectList {
 public:
  virtual ~ObjectList() = default;
  /// Lets the user choose a record. False after a cancel, after a failure, which the user was told,
  /// and for a list that is running already.
  virtual bool Select(const Choice& choice) = 0;
  /// Lets the user choose among some rows only; objects that are made on the way are such rows too.
  /// Afterwards no row is hidden, and the chosen record, or else the first one, is current.
  virtual bool SelectWhere(const RowFilter& where, const Choice& choice) = 0;
  /// Lets the user make an object, without showing the list. Where objects have types, the user
  /// chooses one first. False without a new object; the record that was current is current again.
  [[nodiscard]] virtual bool NewByType() = 0;
  /// Lets the user edit the current object in the dialog of its TYPE, without showing the list.
  /// False if nothing was saved. The object stays current whatever became of it.
  [[nodiscard]] virtual bool EditByType() = 0;
  /// Moves the list's window, also while it is hidden: dialogs that it opens take that place.
  virtual void PlaceAt(const QPoint& place) = 0;
};

/// The way to the lists and the edit dialogs of all objects. It outlives every dialog.
class Chooser {
 public:
  virtual ~Chooser() = default;
  /// The owner's list of that object type; made on first need, and then the owner's child. Null
  /// without an open database.
  [[nodiscard]] virtual ObjectList* ListFor(QWidget* owner, TObjectType object) const = 0;
  /// The owner's edit dialog of that object type, made like a list; `type` is the TYPE of the
  /// object where there is a dialog for each. Null if there is none.
  [[nodiscard]] virtual TformQvRfEdit* FormFor(QWidget* owner, TObjectType object,
                                               int type) const = 0;
};

}  // namespace QvRefSystem
