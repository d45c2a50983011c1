#include "dialogs/select/selectors.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QPushButton>
#include <QScopedValueRollback>
#include <QScreen>
#include <algorithm>
#include <array>

#include "dialogs/base/guarded.h"
#include "dialogs/edit/datum_edit.h"
#include "dialogs/edit/edit_forms.h"
#include "dialogs/edit/ellipsoid_edit.h"
#include "dialogs/select/legacy_tool.h"

namespace QvRefSystem {
namespace {

struct SelectorRow {
  TObjectType type;
  TformQvRfSelector* (*make)(QWidget* owner);
};

template <typename Selector>
TformQvRfSelector* Make(QWidget* owner) {
  return new Selector(owner);
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

}  // namespace

bool TformQvRfEllipsoidSelector::SelectSpheres(TStringTree* tree, int id, bool hideOwner, int* key,
                                               int index) {
  auto* form = dynamic_cast<TformQvRfEllipsoidEdit*>(NeedEditForm());
  if (form != nullptr) form->SetSphereOnly(true);
  const bool chosen = SelectWhere("SPHEROID", 1, tree, id, hideOwner, key, index);
  if (form != nullptr) form->SetSphereOnly(false);
  return chosen;
}

TypedSelector::TypedSelector(QWidget* owner, const SelectorTraits& traits, TObjectType typeObject)
    : TformQvRfSelector(owner, traits), typeObject_(typeObject) {}

TformQvRfEdit* TypedSelector::EditFormOf(int type) {
  TformQvRfEdit* form = type == 0 ? nullptr : GetEditForm(this, Processor->Descriptor().type, type);
  if (form != nullptr) TellType(*form, type);
  return form;
}

int TypedSelector::TypeOfNew() {
  TformQvRfSelector* types = GetSelectorFor(this, static_cast<int>(typeObject_));
  if (types == nullptr || !types->Select(nullptr, 0, true, nullptr, 0)) return 0;
  return types->Processor->GetCurrentKey();  // the key of a type is its TYPE
}

bool TypedSelector::NewByType() {
  const int key = Processor->GetCurrentKey();
  TformQvRfEdit* form = EditFormOf(TypeOfNew());
  const bool made = form != nullptr && form->CreateNew();
  if (!made) Processor->LocateKey(key);
  return made;
}

bool TypedSelector::EditByType() {
  const int key = Processor->GetCurrentKey();
  TformQvRfEdit* form = EditFormOf(Processor->DataSet->FieldByName("TYPE").AsInteger());
  const bool edited = form != nullptr && form->EditCurrent();
  Processor->LocateKey(key);
  return edited;
}

void TypedSelector::bitbtnNewClick() {
  if (NewByType()) {
    Saved();
    ShowCurrentRecord();
  }
  UpdateEditButtons();
}

void TypedSelector::bitbtnEditClick() {
  if (EditByType()) {
    Saved();
    ShowCurrentRecord();
  }
  UpdateEditButtons();
}

TformQvRfDatumShiftSelector::TformQvRfDatumShiftSelector(QWidget* owner)
    : TypedSelector(owner, {.type = TObjectType::kDatumShift}, TObjectType::kDatumShiftType) {}

void TformQvRfDatumShiftSelector::TellType(TformQvRfEdit& form, int type) {
  auto* bursaWolf = dynamic_cast<TformQvRfDatumShiftBursaWolfEdit*>(&form);
  if (bursaWolf != nullptr) bursaWolf->SetShiftType(type);
}

TformQvRfRefSystemSelector::TformQvRfRefSystemSelector(QWidget* owner)
    : TypedSelector(owner, {.type = TObjectType::kReferenceSystem, .ownSource = true},
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
  const QScopedValueRollback fixed(fixedType_, type);
  return SelectWhere("TYPE", type, tree, id, hideOwner, key, index);
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
    if (static_cast<int>(row.type) == objectType) return row.make(owner);
  }
  return nullptr;
}

}  // namespace QvRefSystem
