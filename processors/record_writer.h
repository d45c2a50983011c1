#pragma once

#include <span>

#include "platform/data/string_tree.h"
#include "processors/code_rows.h"
#include "processors/own_members.h"
#include "processors/table_columns.h"

namespace QvRefSystem {

/// Writes the members of a record into one level of a tree, as their rows say. Nothing is taken
/// back on failure: the tree is to be thrown away then.
class RecordWriter {
 public:
  /// All that is given must outlive this object.
  RecordWriter(TObjectType type, const TableColumns& columns, const CodeRows& codes,
               OwnMembers& own);

  /// Writes the members in their order; false at the first that cannot be written.
  [[nodiscard]] bool WriteItems(QvCommonUtils::TStringTree* tree, std::span<const TreeItem> items,
                                const RecordView& record);
  /// Writes one member; false if it stands in the tree already or cannot be written.
  [[nodiscard]] bool WriteItem(QvCommonUtils::TStringTree* tree, const TreeItem& item,
                               const RecordView& record);
  /// Writes a kField item, or one with a column that its processor treats as such.
  [[nodiscard]] bool WriteField(QvCommonUtils::TStringTree* tree, const TreeItem& item,
                                const RecordView& record) const;

 private:
  [[nodiscard]] bool WriteMember(QvCommonUtils::TStringTree* tree, const TreeItem& item, int column,
                                 const RecordView& record);
  static bool WriteText(QvCommonUtils::TStringTree* tree, const TreeItem& item, int column,
                        const RecordView& record);
  void WriteCode(QvCommonUtils::TStringTree* tree, const TreeItem& item,
                 const RecordView& record) const;

  int type_;
  int keyField_;
  const TableColumns& columns_;
  const CodeRows& codes_;
  OwnMembers& own_;
};

}  // namespace QvRefSystem
