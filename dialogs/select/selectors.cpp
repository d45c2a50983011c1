#include "dialogs/select/selectors.h"

#include "dialogs/edit/edit_forms.h"

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

#define REFFRAME_SELECTOR(stem, code) \
  SelectorRow{TObjectType::code, &Make<TformQvRf##stem##Selector>},
constexpr SelectorRow kSelectors[] = {REFFRAME_OBJECT_TYPES(REFFRAME_SELECTOR)};
#undef REFFRAME_SELECTOR

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
