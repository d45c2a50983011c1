#include "dialogs/select/typed_selector.h"

#include "dialogs/base/edit_base.h"
#include "dialogs/base/processor_of.h"

namespace QvRefSystem {

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

}  // namespace QvRefSystem
