#include "dialogs/select/selectors.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QPushButton>
#include <QScopedValueRollback>
#include <QScreen>
#include <algorithm>
#include <array>

#include "dialogs/base/guarded.h"
#include "dialogs/base/processor_of.h"
#include "dialogs/edit/bursa_wolf_edit.h"
#include "dialogs/edit/edit_forms.h"
#include "dialogs/edit/ellipsoid_edit.h"
#include "dialogs/select/legacy_tool.h"

namespace QvRefSystem {
namespace {

struct SelectorRow {
  TObjectType type;
  TformQvRfSelector* (*make)(QWidget* owner, const Chooser& chooser);
};

template <typename Selector>
TformQvRfSelector* Make(QWidget* owner, const Chooser& chooser) {
  return new Selector(owner, chooser);
}

constexpr std::array kSelectors{
    SelectorRow{TObjectType::kReferenceSystem, &Make<TformQvRfRefSystemSelector>},
    SelectorRow{TObjectType::kDatum, &Make<TformQvRfDatumSelector>},
    SelectorRow{TObjectType::kEllipsoid, &Make<TformQvRfEllipsoidSelector>},
    SelectorRow{TObjectType::kDatumShift, &Make<TformQvRfDatumShiftSelector>},
    SelectorRow{TObjectType::kPrimeMeridian, &Make<TformQvRfPrimeMeridianSelector>},
    SelectorRow{TObjectType::kMapProjection, &Make<TformQvRfMapProjSelector>},
    SelectorRow{TObjectType::kDatumShiftType, &Make<TformQvRfDatumShiftTypeSelector>},
    SelectorRow{TObjectType::kLinearUnit, &Make<TformQvRfLinearUnitSelector>},
    SelectorRow{TObjectType::kScaleUnit, &Make<TformQvRfScaleUnitSelector>},
    SelectorRow{TObjectType::kAngularUnit, &Make<TformQvRfAngularUnitSelector>},
    SelectorRow{TObjectType::kMapProjectionType, &Make<TformQvRfMapProjTypeSelector>},
    SelectorRow{TObjectType::kReferenceSystemType, &Make<TformQvRfRefSystemTypeSelector>},
    SelectorRow{TObjectType::kVerticalReferenceSystem, &Make<TformQvRfVerticalRefSystemSelector>},
};

class DatabaseChooser final : public Chooser {
 public:
  [[nodiscard]] ObjectList* ListFor(QWidget* owner, TObjectType object) const override {
    return GetSelectorFor(owner, static_cast<int>(object));
  }
  [[nodiscard]] TformQvRfEdit* FormFor(QWidget* owner, TObjectType object,
                                       int type) const override {
    return GetEditForm(owner, *this, object, type);
  }
};

}  // namespace

const Chooser& DialogChooser() {
  static const DatabaseChooser chooser;
  return chooser;
}

bool TformQvRfEllipsoidSelector::SelectSpheres(TStringTree* tree, int id, bool hideOwner, int* key,
                                               int index) {
  return SelectWhere(kSpheres, {tree, id, index, hideOwner, key});
}

bool TformQvRfEllipsoidSelector::SelectWhere(const RowFilter& where, const Choice& choice) {
  auto* form = dynamic_cast<TformQvRfEllipsoidEdit*>(NeedEditForm());
  if (form != nullptr) form->SetSphereOnly(true);
  const bool chosen = ObjectSelector::SelectWhere(where, choice);
  if (form != nullptr) form->SetSphereOnly(false);
  return chosen;
}

TypedSelector::TypedSelector(QWidget* owner, const Chooser& chooser, const SelectorTraits& traits,
                             TObjectType typeObject)
    : TformQvRfSelector(owner, chooser, traits), typeObject_(typeObject) {}

TformQvRfEdit* TypedSelector::EditFormOf(int type) {
  TformQvRfEdit* form =
      type == 0 ? nullptr : GetChooser().FormFor(this, Processor->Descriptor().type, type);
  if (form != nullptr) TellType(*form, type);
  return form;
}

TformQvRfEdit* TypedSelector::FormOfCurrent() {
  return EditFormOf(Processor->DataSet->FieldByName("TYPE").AsInteger());
}

int TypedSelector::TypeOfNew() {
  ObjectList* types = GetChooser().ListFor(this, typeObject_);
  if (types == nullptr || !types->Select({})) return 0;
  return ProcessorOf(typeObject_).GetCurrentKey();  // the key of a type is its TYPE
}

TformQvRfDatumShiftSelector::TformQvRfDatumShiftSelector(QWidget* owner, const Chooser& chooser)
    : TypedSelector(owner, chooser, {.type = TObjectType::kDatumShift},
                    TObjectType::kDatumShiftType) {}

void TformQvRfDatumShiftSelector::TellType(TformQvRfEdit& form, int type) {
  auto* bursaWolf = dynamic_cast<TformQvRfDatumShiftBursaWolfEdit*>(&form);
  if (bursaWolf != nullptr) bursaWolf->SetShiftType(type);
}

TformQvRfRefSystemSelector::TformQvRfRefSystemSelector(QWidget* owner, const Chooser& chooser)
    : TypedSelector(owner, chooser, {.type = TObjectType::kReferenceSystem, .ownSource = true},
                    TObjectType::kReferenceSystemType) {
  bitbtnImport->installEventFilter(this);
}

bool TformQvRfRefSystemSelector::eventFilter(QObject* watched, QEvent* event) {
  if (watched == bitbtnImport && event->type() == QEvent::KeyPress &&
      bitbtnImportKeyDown(static_cast<const QKeyEvent&>(*event))) {
    return true;
  }
  return TypedSelector::eventFilter(watched, event);
}

bool TformQvRfRefSystemSelector::bitbtnImportKeyDown(const QKeyEvent& event) {
  const Qt::KeyboardModifiers both = Qt::ControlModifier | Qt::ShiftModifier;
  if (event.key() != Qt::Key_F2 || (event.modifiers() & both) != both) return false;
  Guarded(Data().Ui(), [this] { RunLegacyTool(this, Data()); });
  return true;
}

bool TformQvRfRefSystemSelector::SelectFiltered(TStringTree* tree, int id, int type, bool hideOwner,
                                                int* key, int index) {
  return SelectWhere(OfType(type), {tree, id, index, hideOwner, key});
}

bool TformQvRfRefSystemSelector::SelectWhere(const RowFilter& where, const Choice& choice) {
  const QScopedValueRollback fixed(fixedType_, where.value);
  return TypedSelector::SelectWhere(where, choice);
}

int TformQvRfRefSystemSelector::TypeOfNew() {
  return fixedType_ != 0 ? fixedType_ : TypedSelector::TypeOfNew();
}

void TformQvRfRefSystemSelector::FormShow(bool first) {
  TypedSelector::FormShow(first);
  if (!first) return;
  const QScreen* shown = screen() != nullptr ? screen() : QGuiApplication::primaryScreen();
  const QRect room = shown->availableGeometry();
  const QPoint middle = room.center() - rect().center();
  // On a screen that is too small the beginning of each line shows.
  move(std::max(middle.x(), room.left()), std::max(middle.y(), room.top()));
}

TformQvRfSelector* GetSelectorFor(QWidget* owner, int objectType) {
  if (owner != nullptr) {
    for (QObject* child : owner->children()) {
      auto* selector = dynamic_cast<TformQvRfSelector*>(child);
      if (selector != nullptr && selector->Processor->ObjectType == objectType) return selector;
    }
  }
  if (datamoduleQvRfData == nullptr || ProcessorFor(*datamoduleQvRfData, objectType) == nullptr) {
    return nullptr;
  }
  for (const SelectorRow& row : kSelectors) {
    if (static_cast<int>(row.type) == objectType) return row.make(owner, DialogChooser());
  }
  return nullptr;
}

}  // namespace QvRefSystem
