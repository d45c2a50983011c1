#include "platform/dbset/record_mark.h"

namespace QvPlatform::detail {

std::vector<std::int64_t> WrittenSince(std::span<const RecordMark> known,
                                       std::span<const RecordMark> found,
                                       std::vector<std::int64_t>* removed) {
  std::vector<std::int64_t> written;
  auto next = known.begin();
  for (const RecordMark& mark : found) {
    for (; next != known.end() && next->id < mark.id; ++next)
      removed->push_back(next->id);
    const bool there = next != known.end() && next->id == mark.id;
    if (!there || next->version != mark.version || next->sum != mark.sum) {
      written.push_back(mark.id);
    }
    if (there) ++next;
  }
  for (; next != known.end(); ++next)
    removed->push_back(next->id);
  return written;
}

}  // namespace QvPlatform::detail
