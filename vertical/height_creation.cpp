#include "vertical/height_creation.h"

#include "processors/ref_system_processor.h"

namespace QvRefSystem {

bool THeightCreation::SetPlaneSystem(std::string_view treeText, int unitKey) {
  target_.reset();
  heightUnitKey_ = 0;
  try {
    TStringTree tree;
    ReadTreeText(treeText, &tree);
    target_ = CreateShellReferenceSystem(&tree, nullptr);
  } catch (const std::exception&) {
    return false;
  }
  if (target_ != nullptr) heightUnitKey_ = unitKey;
  return heightUnitKey_ != 0;
}

bool THeightCreation::LoadForReferenceSystem(int refSystemKey) {
  storedTarget_.reset();
  if (refSystemKey == 0) return true;
  TQvRfDataProcessor& systems = *data_.RefSystemProcessor;
  if (!systems.LocateKey(refSystemKey)) return false;
  if (systems.DataSet->FieldByName("VERT_SYSTEM_AUTOKEY").AsInteger() == 0) return true;
  TStringTree tree;
  if (!systems.WriteToTree(&tree, 0, 0)) return false;
  storedTarget_ = CreateShellReferenceSystem(&tree, nullptr);
  return storedTarget_ != nullptr;
}

bool THeightCreation::IsStoredPlaneSame(const TShellReferenceSystem* system) const {
  return storedTarget_ != nullptr && storedTarget_->IsSameAs(system);
}

}  // namespace QvRefSystem
