#include "platform/dbset/row_view.h"

#include "platform/dbset/row.h"

namespace QvPlatform {

int RowView::GetInteger(int field) const {
  return row_ != nullptr ? detail::CellInteger(row_->At(field)) : 0;
}

double RowView::GetFloat(int field) const {
  return row_ != nullptr ? detail::CellFloat(row_->At(field)) : 0.0;
}

const std::string& RowView::GetText(int field) const {
  return detail::CellText(row_ != nullptr ? row_->At(field) : detail::kNoContent);
}

long long RowView::Version() const {
  return row_ != nullptr ? row_->version : 0;
}

std::string RowView::GetString(int field) const {
  return row_ != nullptr ? detail::CellString(row_->At(field)) : std::string();
}

}  // namespace QvPlatform
