#include "platform/dbset/data_buffer.h"

namespace QvPlatform {

TQvDataBuffer::TQvDataBuffer() = default;
TQvDataBuffer::~TQvDataBuffer() = default;

void TQvDataBuffer::Close() {}

void TQvDataBuffer::SetSortField(int index, bool descending, bool /*rebuild: done at Open*/) {
  sortField_ = index;
  descending_ = descending;
}

void TQvDataBuffer::SetFilter(int index, int value, TQvDbIntFilter::TFilterOp /*op: the only one*/,
                              bool /*rebuild: done at Open*/) {
  filterField_ = index;
  filterValue_ = value;
}

void TQvDataBuffer::ClearFilter(bool /*rebuild: done at Open*/) {
  filterField_ = -1;
  filterValue_ = 0;
}

}  // namespace QvPlatform
