#pragma once

#include <cstddef>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "platform/data/string_tree_label.h"
#include "platform/text/text.h"
#include "platform/xini/xini_reader.h"
#include "platform/xini/xini_writer.h"

/// The form in which an object and all that it refers to travels.
namespace QvCommonUtils {

using QvPlatform::TQvXIniReader;
using QvPlatform::TQvXIniWriter;

/// A text or XML form that is cut, too deep, or claims more than it holds. The message says what
/// is wrong and where (line of a text, path of an XML document).
class TreeFormatError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Deepest nesting of subtrees that the readers accept.
inline constexpr int kMaxTreeDepth = 256;

/// A vector of pointers that owns what they point to.
template <typename T>
class TPtrVector {
 public:
  /// How many items there are.
  [[nodiscard]] std::size_t size() const { return items_.size(); }
  /// Whether there is no item.
  [[nodiscard]] bool empty() const { return items_.empty(); }
  /// The item at an index below size(); the vector keeps it.
  [[nodiscard]] T* operator[](std::size_t i) const { return items_[i].get(); }
  /// Takes an item over behind the last one, and returns it.
  T* push_back(std::unique_ptr<T> item) {
    // Most nodes hold a handful of items: one allocation instead of a growing series.
    if (items_.capacity() == 0) items_.reserve(kFirstCapacity);
    return items_.emplace_back(std::move(item)).get();
  }
  /// Destroys the item at an index below size().
  void erase(std::size_t i) { items_.erase(items_.begin() + static_cast<std::ptrdiff_t>(i)); }
  /// Destroys all items.
  void clear() { items_.clear(); }
  /// Exchanges the items with those of another vector; pointers to items stay good.
  void swap(TPtrVector& other) noexcept { items_.swap(other.items_); }
  /// The first owner, for walks.
  [[nodiscard]] auto begin() const { return items_.begin(); }
  /// The end behind the last owner.
  [[nodiscard]] auto end() const { return items_.end(); }

 private:
  static constexpr std::size_t kFirstCapacity = 8;
  std::vector<std::unique_ptr<T>> items_;
};

/// A field of a tree: an address (id, index), a label and any number of values.
template <typename V>
class TDataField;

/// The base keeps the values; how one becomes text is for the derived class to say. Its own answer
/// is no text at all.
template <>
class TDataField<std::string> {
 public:
  /// Writes the field's line of the text form at `position` of `buffer`, or only counts when
  /// `buffer` is null. Returns the number of bytes; 0 for a field that never reaches a file.
  /// Throws TreeFormatError for a line of 2 GiB or more, which WriteTreeText can write.
  virtual int WriteText(char* buffer, int position, int depth) const;
  /// Writes the field's items into the writer's current section; nothing for a note.
  [[nodiscard]] virtual bool WriteIni(TQvXIniWriter* writer) const;
  /// One value's text at `position` of `buffer` (null only counts). Returns its length.
  virtual int WriteValueText(int valueIndex, char* buffer, int position) const;
  /// The value; empty for an index that is not there.
  [[nodiscard]] virtual std::string GetValueText(int valueIndex) const;
  /// Takes a value from its run of the text form.
  virtual void SetValueFromText(const char* text, int length, int valueIndex);
  /// Puts a value; nothing happens for an index that is not there.
  virtual void SetValueText(const std::string& text, int valueIndex);
  virtual ~TDataField() = default;
  TDataField(const TDataField&) = delete;
  TDataField& operator=(const TDataField&) = delete;

  /// WriteValueText for values of any size; a null `out` counts.
  virtual std::size_t PutValueText(int valueIndex, char* out) const;
  /// At least as many bytes as PutValueText writes, found faster where that can be.
  [[nodiscard]] virtual std::size_t BoundValueText(int valueIndex) const;
  /// A note for the caller, which no writer puts into a file: a number of it is negative.
  [[nodiscard]] bool IsNote() const { return (Id | Index | Count) < 0; }

  /// The first part of the address: what the field means.
  int Id = 0;
  /// The second part of the address: which of several fields of one meaning.
  int Index = 0;
  /// Number of values.
  int Count = 0;
  /// As many values as Count says, none for a negative count.
  FieldValues Values;
  /// What the field is called, for people who read the text.
  TLabel Label;

 protected:
  /// `count` empty values; none for a negative count.
  TDataField(int id, int index, int count, std::string_view label);
  TDataField(int id, int index, std::string_view value, std::string_view label);
};

template <typename V>
class TDataTree;

/// A node of a tree. Siblings are found by (Id, Index), first match wins; subtrees and fields have
/// separate address spaces. Trees are not copied; MergeTree copies content.
template <>
class TDataTree<std::string> {
 public:
  /// Writes the node's items and sections into the writer's current section. False at the first
  /// failure of the writer.
  [[nodiscard]] virtual bool WriteIni(TQvXIniWriter* writer) const;
  /// The operations that create give a new node or field that the caller adds to Subtrees or
  /// Fields. A subtree has this tree as parent; one deeper than kMaxTreeDepth is refused by
  /// TreeFormatError, so that no tree can grow too deep for those who walk it.
  virtual std::unique_ptr<TDataTree> CreateSubtree(int id, int index, std::string_view label) = 0;
  /// Parses the node whose first line begins at `*position` and moves behind it. Throws
  /// TreeFormatError.
  virtual std::unique_ptr<TDataTree> CreateSubtree(std::string_view text,
                                                   std::size_t* position) = 0;
  /// Reads the reader's current section, which is the member `section` of its parent.
  virtual std::unique_ptr<TDataTree> CreateSubtree(TQvXIniReader* reader, unsigned section) = 0;
  /// `values` may be null for empty values. A negative count makes a note without values.
  virtual std::unique_ptr<TDataField<std::string>> CreateField(int id, int index,
                                                               const std::string* values, int count,
                                                               std::string_view label) = 0;
  virtual std::unique_ptr<TDataField<std::string>> CreateField(int id, int index,
                                                               std::string_view value,
                                                               std::string_view label) = 0;
  /// Parses the field whose "(" stands at `*position`, behind the TABs of its line, and moves
  /// behind the line. Throws TreeFormatError.
  virtual std::unique_ptr<TDataField<std::string>> CreateField(std::string_view text,
                                                               std::size_t* position) = 0;
  virtual std::unique_ptr<TDataField<std::string>> CreateField(TQvXIniReader* reader,
                                                               unsigned section) = 0;
  virtual ~TDataTree() = default;
  TDataTree(const TDataTree&) = delete;
  TDataTree& operator=(const TDataTree&) = delete;

  /// Null at the root.
  TDataTree* Parent = nullptr;
  /// The nodes below, in the order in which they are written.
  TPtrVector<TDataTree> Subtrees;
  /// The fields, in the order in which they are written.
  TPtrVector<TDataField<std::string>> Fields;
  /// The first part of the address: what the node means.
  int Id = 0;
  /// The second part of the address: which of several nodes of one meaning.
  int Index = 0;
  /// What the node is called, for people who read the text.
  TLabel Label;

 protected:
  TDataTree() = default;
};

/// A string field: the text of a value is the value through Encode.
class TStringField final : public TDataField<std::string> {
 public:
  /// As many empty values as `count` says; a negative count makes a note without values.
  TStringField(int id, int index, int count, std::string_view label);
  /// A field of one value.
  TStringField(int id, int index, std::string_view value, std::string_view label);

  int WriteValueText(int valueIndex, char* buffer, int position) const override;
  [[nodiscard]] std::string GetValueText(int valueIndex) const override;
  void SetValueFromText(const char* text, int length, int valueIndex) override;
  void SetValueText(const std::string& text, int valueIndex) override;
  std::size_t PutValueText(int valueIndex, char* out) const override;
  [[nodiscard]] std::size_t BoundValueText(int valueIndex) const override;
  /// SetValueFromText for texts of any size.
  void SetValueFromView(std::string_view text, int valueIndex);

  /// Memory of a node comes from the pool of its thread.
  static void* operator new(std::size_t size);
  /// Gives the memory back to the pool of the calling thread.
  static void operator delete(void* memory, std::size_t size) noexcept;

 private:
  [[nodiscard]] bool HasValue(int valueIndex) const {
    return valueIndex >= 0 && static_cast<std::size_t>(valueIndex) < Values.size();
  }
};

/// The tree that processors, hosts and files exchange, with typed access to its own level.
class TStringTree : public TDataTree<std::string> {
 public:
  TStringTree() = default;

  /// The three readers give false for a missing field or, for numbers, a first value that does
  /// not parse as a whole (blanks around it are allowed); `out` is then unchanged. An integer is a
  /// 32-bit decimal, a double is finite and in C notation whatever the locale.
  [[nodiscard]] bool GetInteger(int id, int index, int* out) const;
  /// Reads a double, as said above.
  [[nodiscard]] bool GetDouble(int id, int index, double* out) const;
  /// Reads the first value as it is, as said above.
  [[nodiscard]] bool GetString(int id, int index, std::string* out) const;
  /// Adds a field whatever is there already.
  void InsertInteger(std::string_view label, int id, int index, int value);
  /// Adds a field of one value whatever is there already.
  void InsertString(std::string_view label, int id, int index, std::string_view value);

  std::unique_ptr<TDataTree> CreateSubtree(int id, int index, std::string_view label) override;
  std::unique_ptr<TDataTree> CreateSubtree(std::string_view text, std::size_t* position) override;
  std::unique_ptr<TDataTree> CreateSubtree(TQvXIniReader* reader, unsigned section) override;
  std::unique_ptr<TDataField<std::string>> CreateField(int id, int index, const std::string* values,
                                                       int count, std::string_view label) override;
  std::unique_ptr<TDataField<std::string>> CreateField(int id, int index, std::string_view value,
                                                       std::string_view label) override;
  std::unique_ptr<TDataField<std::string>> CreateField(std::string_view text,
                                                       std::size_t* position) override;
  std::unique_ptr<TDataField<std::string>> CreateField(TQvXIniReader* reader,
                                                       unsigned section) override;

  /// Memory of a node comes from the pool of its thread.
  static void* operator new(std::size_t size);
  /// Gives the memory back to the pool of the calling thread.
  static void operator delete(void* memory, std::size_t size) noexcept;

 private:
  friend void ReadTreeText(std::string_view text, TStringTree* tree);
  friend void ReadTreeXml(QvPlatform::TQvXIniReader* reader, TStringTree* tree);

  /// Fill an empty node from the text at `*position`, or from the reader's current section.
  void ReadText(std::string_view text, std::size_t* position);
  void ReadIni(TQvXIniReader* reader);
  /// Takes over address, label and content of `other`, whatever this node held.
  void Adopt(TStringTree* other);
};

/// Destroys the first subtree (field) at that address, if any.
void RemoveSubtree(TStringTree* tree, int id, int index);
/// Destroys the first field at that address, if any.
void RemoveField(TStringTree* tree, int id, int index);
/// True if it had to add; false, and nothing changes, if one is there.
bool EnsureSubtree(TStringTree* tree, int id, int index, std::string_view label);
/// Adds a field of one value, as EnsureSubtree does a subtree.
bool EnsureField(TStringTree* tree, int id, int index, std::string_view value,
                 std::string_view label);
/// The first match or null.
[[nodiscard]] TStringTree* FindSubtree(const TStringTree* tree, int id, int index);
/// The first field at that address, or null.
[[nodiscard]] TDataField<std::string>* FindField(const TStringTree* tree, int id, int index);
/// Moves the cursor down; false and unmoved if there is no such subtree.
[[nodiscard]] bool EnterSubtree(TStringTree** cursor, int id, int index);
/// Moves the cursor to its parent; false at the root.
bool LeaveSubtree(TStringTree** cursor);
/// Removes all subtrees and fields; Id, Index and Label stay.
void ClearTree(TStringTree* tree);
/// Copies every field and subtree of `source` into `target`, to any depth. A subtree whose address
/// is there already is filled further; fields are added behind those that are there, notes too.
/// `source` and `target` are different trees. Throws TreeFormatError where `target` becomes too
/// deep.
void MergeTree(const TStringTree* source, TStringTree* target);
/// Whether both hold the same fields and subtrees in the same order, labels included. Left aside
/// are notes, which no file holds, and the address and label of the two nodes themselves.
[[nodiscard]] bool SameTree(const TStringTree* a, const TStringTree* b);

}  // namespace QvCommonUtils
