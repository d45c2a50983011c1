#include "platform/data/string_tree_pool.h"

#include <gtest/gtest.h>

#include <thread>
#include <vector>

namespace QvCommonUtils::detail {
namespace {

// Leaks and double releases of these tests are found by the address sanitizer.

TEST(NodePoolTest, GivesAReleasedBlockAgain) {
  std::thread([] {
    void* first = NodePool<48>::Allocate();
    NodePool<48>::Release(first);
    void* second = NodePool<48>::Allocate();
    EXPECT_EQ(first, second);
    void* third = NodePool<48>::Allocate();
    EXPECT_NE(second, third);
    NodePool<48>::Release(second);
    NodePool<48>::Release(third);
  }).join();
}

TEST(NodePoolTest, BlocksMayEndOnAnotherThreadAndBeyondTheLimit) {
  std::vector<void*> blocks;
  for (int i = 0; i < 20000; ++i)
    blocks.push_back(NodePool<64>::Allocate());
  std::thread([&] {
    for (void* block : blocks)
      NodePool<64>::Release(block);
  }).join();
}

/// Releases its block when the thread's other objects are gone or going.
struct LateOwner {
  void* block = nullptr;
  ~LateOwner() {
    if (block != nullptr) NodePool<80>::Release(block);
  }
};

TEST(NodePoolTest, ABlockMayOutliveThePoolOfItsThread) {
  std::thread([] {
    // Made before the pool opens, so that it goes after the pool has shut.
    static thread_local LateOwner owner;
    owner.block = NodePool<80>::Allocate();
    NodePool<80>::Release(NodePool<80>::Allocate());
  }).join();
}

}  // namespace
}  // namespace QvCommonUtils::detail
