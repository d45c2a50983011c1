#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <ostream>
#include <string>
#include <string_view>

namespace QvCommonUtils {

/// A label: a string that is set once and then only read. It holds up to 40 bytes in place, which
/// covers all labels of the system, so that a tree of hundreds of fields costs no allocation for
/// them. Longer ones go to the heap. Converts from and to the usual strings.
class TLabel {
 public:
  /// An empty label.
  TLabel() noexcept = default;
  /// A copy of the text.
  TLabel(std::string_view text) { Assign(text); }
  /// A copy of the text.
  TLabel(const std::string& text) { Assign(text); }
  /// A copy of a text that ends in a zero byte.
  TLabel(const char* text) { Assign(text); }
  TLabel(const TLabel& other) { Assign(other.View()); }
  TLabel& operator=(const TLabel& other) {
    if (this != &other) *this = other.View();
    return *this;
  }
  /// `text` must not lie within this label.
  TLabel& operator=(std::string_view text) {
    Clear();
    Assign(text);
    return *this;
  }
  TLabel& operator=(const std::string& text) { return *this = std::string_view(text); }
  TLabel& operator=(const char* text) { return *this = std::string_view(text); }
  ~TLabel() { Clear(); }

  /// The text, for as long as the label lives unchanged.
  [[nodiscard]] std::string_view View() const { return {data(), size_}; }
  /// The same as View.
  operator std::string_view() const { return View(); }
  /// A copy of the text.
  operator std::string() const { return std::string(View()); }

  /// The first byte; no zero byte ends the text.
  [[nodiscard]] const char* data() const { return IsInPlace() ? place_.bytes : place_.heap; }
  /// How many bytes the text has.
  [[nodiscard]] std::size_t size() const { return size_; }
  /// Whether the text has no byte.
  [[nodiscard]] bool empty() const { return size_ == 0; }

  friend bool operator==(const TLabel& a, const TLabel& b) { return a.View() == b.View(); }
  friend bool operator==(const TLabel& a, std::string_view b) { return a.View() == b; }
  friend bool operator==(const TLabel& a, const std::string& b) { return a.View() == b; }
  friend bool operator==(const TLabel& a, const char* b) { return a.View() == b; }
  friend std::ostream& operator<<(std::ostream& out, const TLabel& label) {
    return out << label.View();
  }

 private:
  static constexpr std::size_t kInPlace = 40;

  [[nodiscard]] bool IsInPlace() const { return size_ <= kInPlace; }
  void Assign(std::string_view text) {
    char* target = place_.bytes;
    if (text.size() > kInPlace) place_.heap = target = std::allocator<char>().allocate(text.size());
    if (!text.empty()) std::memcpy(target, text.data(), text.size());
    size_ = text.size();
  }
  void Clear() noexcept {
    if (!IsInPlace()) std::allocator<char>().deallocate(place_.heap, size_);
    size_ = 0;
  }

  union Place {
    char bytes[kInPlace];
    char* heap;
  };
  std::size_t size_ = 0;
  Place place_;
};

/// The values of a field, indexed like an array. One value, by far the commonest case, lies in
/// place; more lie in one block on the heap.
class FieldValues {
 public:
  /// `count` empty values.
  explicit FieldValues(std::size_t count) : size_(count) {
    if (count > 1) many_ = std::make_unique<std::string[]>(count);
  }
  /// One value.
  explicit FieldValues(std::string&& value) : size_(1), one_(std::move(value)) {}
  /// One value, copied.
  explicit FieldValues(std::string_view value) : size_(1), one_(value) {}

  /// `i` must be below size().
  [[nodiscard]] std::string& operator[](std::size_t i) { return begin()[i]; }
  /// The same of values that are only read.
  [[nodiscard]] const std::string& operator[](std::size_t i) const { return begin()[i]; }
  /// How many values there are.
  [[nodiscard]] std::size_t size() const { return size_; }
  /// Whether there is no value.
  [[nodiscard]] bool empty() const { return size_ == 0; }
  /// The first value, for as long as the object lives unmoved.
  [[nodiscard]] std::string* begin() { return many_ ? many_.get() : &one_; }
  /// The same of values that are only read.
  [[nodiscard]] const std::string* begin() const { return many_ ? many_.get() : &one_; }
  /// The end behind the last value.
  [[nodiscard]] std::string* end() { return begin() + size_; }
  /// The same of values that are only read.
  [[nodiscard]] const std::string* end() const { return begin() + size_; }

 private:
  std::size_t size_;
  std::string one_;
  std::unique_ptr<std::string[]> many_;
};

}  // namespace QvCommonUtils
