#pragma once

#include "dialogs/select/selector.h"

/// The selectors of all object types, and the way from an object type to its selector.
namespace QvRefSystem {

/// The selector of one object type; a class of its own for each.
template <TObjectType Type, bool IsTypeList = false>
class ObjectSelector : public TformQvRfSelector {
 public:
  static constexpr SelectorTraits kTraits{.type = Type, .typeList = IsTypeList};
  ObjectSelector(QWidget* owner, const Chooser& chooser)
      : TformQvRfSelector(owner, chooser, kTraits) {}
};

using TformQvRfAngularUnitSelector = ObjectSelector<TObjectType::kAngularUnit>;
using TformQvRfLinearUnitSelector = ObjectSelector<TObjectType::kLinearUnit>;
using TformQvRfScaleUnitSelector = ObjectSelector<TObjectType::kScaleUnit>;
using TformQvRfPrimeMeridianSelector = ObjectSelector<TObjectType::kPrimeMeridian>;
using TformQvRfDatumSelector = ObjectSelector<TObjectType::kDatum>;
using TformQvRfMapProjSelector = ObjectSelector<TObjectType::kMapProjection>;
using TformQvRfVerticalRefSystemSelector = ObjectSelector<TObjectType::kVerticalReferenceSystem>;
using TformQvRfDatumShiftTypeSelector = ObjectSelector<TObjectType::kDatumShiftType, true>;
using TformQvRfMapProjTypeSelector = ObjectSelector<TObjectType::kMapProjectionType, true>;
using TformQvRfRefSystemTypeSelector = ObjectSelector<TObjectType::kReferenceSystemType, true>;

class TformQvRfEllipsoidSelector final : public ObjectSelector<TObjectType::kEllipsoid> {
 public:
  using ObjectSelector::ObjectSelector;
  /// Select over the spheres alone.
  bool SelectSpheres(TStringTree* tree, int id, bool hideOwner, int* key, int index);
  /// Over spheres alone, what is made or edited on the way is a sphere.
  bool SelectWhere(const RowFilter& where, const Choice& choice) override;
};

/// Base of the two selectors whose objects have an edit dialog for each TYPE.
class TypedSelector : public TformQvRfSelector {
 public:
  TypedSelector(QWidget* owner, const Chooser& chooser, const SelectorTraits& traits,
                TObjectType typeObject);

 protected:
  [[nodiscard]] TformQvRfEdit* FormOfNew() override { return EditFormOf(TypeOfNew()); }
  [[nodiscard]] TformQvRfEdit* FormOfCurrent() override;
  /// TYPE of a new object; 0 for none.
  [[nodiscard]] virtual int TypeOfNew();
  /// Tells an edit dialog that serves several types which one it is for.
  virtual void TellType(TformQvRfEdit& /*form*/, int /*type*/) {}

 private:
  /// Null for a number that is no type.
  [[nodiscard]] TformQvRfEdit* EditFormOf(int type);

  const TObjectType typeObject_;
};

class TformQvRfDatumShiftSelector final : public TypedSelector {
 public:
  TformQvRfDatumShiftSelector(QWidget* owner, const Chooser& chooser);

 protected:
  void TellType(TformQvRfEdit& form, int type) override;
  /// The view stays as it was.
  void Saved() override {}
};

/// The selector of reference systems: stands in the middle of the screen, over a data source of its
/// own, and can be confined to one kind of system.
class TformQvRfRefSystemSelector final : public TypedSelector {
 public:
  TformQvRfRefSystemSelector(QWidget* owner, const Chooser& chooser);
  /// Select over the systems of one TYPE; a new one is then of that TYPE without a question.
  bool SelectFiltered(TStringTree* tree, int id, int type, bool hideOwner, int* key, int index);
  bool SelectWhere(const RowFilter& where, const Choice& choice) override;

 protected:
  [[nodiscard]] int TypeOfNew() override;
  void FormShow(bool first) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  [[nodiscard]] bool bitbtnImportKeyDown(const QKeyEvent& event);

  /// The one TYPE that the list is confined to, 0 for all.
  int fixedType_ = 0;
};

/// The first selector of that object type among the owner's children, or a new one that it owns. A
/// null owner always gives a new one, the caller's to destroy. Null for a code that is no object
/// type, or one that has no processor.
[[nodiscard]] TformQvRfSelector* GetSelectorFor(QWidget* owner, int objectType);

/// The chooser over all selectors and edit dialogs; it lives as long as the program.
[[nodiscard]] const Chooser& DialogChooser();

}  // namespace QvRefSystem
