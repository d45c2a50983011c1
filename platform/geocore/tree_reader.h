#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/data/string_tree.h"
#include "platform/data/tree_ids.h"

namespace QvRefSystem {

/// Reads the fields of one level of a tree and remembers the first thing that was missing or
/// wrong, so that a whole object can be read before anybody asks whether it worked. All levels of
/// one reading share the error text; a value read after an error means nothing.
class TreeReader {
 public:
  /// `path` names the level in messages. `tree` may be null: nothing is found then.
  TreeReader(const QvCommonUtils::TStringTree* tree, std::string path, std::string* error);

  /// The text of a field that must be there.
  [[nodiscard]] std::string Text(const TreeIds::Item& item, int index = 0) const;
  /// The fallback for a field that is not there.
  [[nodiscard]] std::string TextOr(const TreeIds::Item& item, std::string_view fallback,
                                   int index = 0) const;
  /// The integer of a field that must be there.
  [[nodiscard]] int Integer(const TreeIds::Item& item, int index = 0) const;
  /// The fallback for a field that is not there or is no integer.
  [[nodiscard]] int IntegerOr(const TreeIds::Item& item, int fallback) const;
  /// The finite number of a field that must be there.
  [[nodiscard]] double Double(const TreeIds::Item& item) const;

  /// A level below that must be there.
  [[nodiscard]] TreeReader Level(const TreeIds::Item& item) const;
  /// A level below, or nothing if it is not there.
  [[nodiscard]] std::optional<TreeReader> LevelIfAny(const TreeIds::Item& item) const;

  /// Refuses the object for another reason than a missing field.
  void Refuse(std::string_view reason) const;
  /// Whether something was missing or wrong.
  [[nodiscard]] bool Failed() const { return !error_->empty(); }
  /// The level that is read; null if it is not there.
  [[nodiscard]] const QvCommonUtils::TStringTree* Tree() const { return tree_; }

 private:
  void RefuseField(std::string_view what, const TreeIds::Item& item, int index) const;

  const QvCommonUtils::TStringTree* tree_;
  std::string path_;
  std::string* error_;
};

}  // namespace QvRefSystem
