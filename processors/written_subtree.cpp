#include "processors/written_subtree.h"

#include <atomic>

namespace QvRefSystem {
namespace {

// No two trees have one number, whichever threads wrote them: processors remember it.
struct Writing {
  int depth = 0;
  unsigned long number = 0;
};
thread_local Writing currentWriting;

}  // namespace

WritingScope::WritingScope() {
  static std::atomic<unsigned long> last = 0;
  if (currentWriting.depth++ == 0) currentWriting.number = ++last;
}

WritingScope::~WritingScope() {
  --currentWriting.depth;
}

void WrittenSubtree::Remember(int key, const QvCommonUtils::TStringTree* subtree) {
  writing_ = currentWriting.number;
  key_ = key;
  subtree_ = subtree;
}

const QvCommonUtils::TStringTree* WrittenSubtree::Find(int key) const {
  const bool repeats =
      currentWriting.depth > 0 && key != 0 && key_ == key && writing_ == currentWriting.number;
  return repeats ? subtree_ : nullptr;
}

}  // namespace QvRefSystem
