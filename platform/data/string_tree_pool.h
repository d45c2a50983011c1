#pragma once

#include <cstddef>
#include <new>

// Memory checkers see each node by itself only if no node is kept for the next one.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define REFFRAME_NODE_POOL 0
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer) || \
    __has_feature(memory_sanitizer)
#define REFFRAME_NODE_POOL 0
#endif
#endif
#ifndef REFFRAME_NODE_POOL
#define REFFRAME_NODE_POOL 1
#endif

namespace QvCommonUtils::detail {

/// Keeps the memory of destroyed nodes of one size for the next ones, since a tree is built,
/// written and destroyed for every object that is exported. Each block comes from the global
/// operator new by itself, so a node may be destroyed on another thread than its maker's. A
/// thread keeps at most kMaxKept blocks and gives them back when it ends.
template <std::size_t kSize>
class NodePool {
 public:
  /// Memory for one node, kept or fresh. Throws std::bad_alloc.
  [[nodiscard]] static void* Allocate() {
    State& state = state_;
    if (state.head == nullptr) return ::operator new(kSize);
    Node* node = state.head;
    state.head = node->next;
    --state.kept;
    return node;
  }

  /// Keeps the memory of one node, or gives it back.
  static void Release(void* memory) noexcept {
    if (state_.kept >= state_.limit && !Open()) {
      ::operator delete(memory);
      return;
    }
    state_.head = new (memory) Node{state_.head};
    ++state_.kept;
  }

 private:
  static constexpr std::size_t kMaxKept = 8192;

  struct Node {
    Node* next;
  };
  static_assert(kSize >= sizeof(Node));

  /// Trivially destructible, so that nodes of static objects can still be released after the
  /// thread's other objects are gone.
  struct State {
    Node* head = nullptr;
    std::size_t kept = 0;
    std::size_t limit = 0;
    bool opened = false;
  };

  /// Gives everything back at the end of the thread and keeps the pool shut from then on.
  struct Closer {
    ~Closer() {
      while (state_.head != nullptr) {
        Node* node = state_.head;
        state_.head = node->next;
        ::operator delete(node);
      }
      state_.kept = state_.limit = 0;
    }
  };

  /// True if the pool was untouched on this thread and takes nodes from now on.
  static bool Open() noexcept {
    if (state_.opened) return false;
    static thread_local Closer closer;
    static_cast<void>(closer);
    state_.opened = true;
    state_.limit = kMaxKept;
    return true;
  }

  static constinit inline thread_local State state_{};
};

/// The class-level operators of node type `T`. A derived class of another size is left to the
/// global operators.
template <typename T>
[[nodiscard]] void* AllocateNode(std::size_t size) {
  if (REFFRAME_NODE_POOL && size == sizeof(T)) return NodePool<sizeof(T)>::Allocate();
  return ::operator new(size);
}

template <typename T>
/// Gives back what AllocateNode gave for that size.
void ReleaseNode(void* memory, std::size_t size) noexcept {
  if (REFFRAME_NODE_POOL && size == sizeof(T)) {
    NodePool<sizeof(T)>::Release(memory);
  } else {
    ::operator delete(memory);
  }
}

}  // namespace QvCommonUtils::detail
