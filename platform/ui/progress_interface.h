#pragma once

namespace QvRefSystem {

/// How long computations report their course and are cancelled: plain functions, so that it can
/// cross the border of a library. Any of them may be null.
struct TProgressInterface {
  /// Keeps the place of a function that is not used; null.
  void* Reserved0 = nullptr;
  /// Called after each step; a result other than 0 cancels.
  int (*Next)() = nullptr;
  /// Keeps the place of a function that is not used; null.
  void* Reserved2 = nullptr;
  /// Called once, ahead of the first step, with the number of steps.
  void (*SetMax)(int count) = nullptr;
  /// Keeps the place of a function that is not used; null.
  void* Reserved4 = nullptr;
};

}  // namespace QvRefSystem
