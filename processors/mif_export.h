#pragma once

#include "database/data_module.h"
#include "platform/data/string_tree.h"
#include "platform/data/system_kinds.h"
#include "processors/code_rows.h"

namespace QvRefSystem {

/// What of a reference system hosts need that write the MIF/MID format: its kind, and the keys of
/// what it refers to.
struct MifSystem {
  SystemKind kind = SystemKind::kLocalCartesian;
  int linearUnit = 0;
  int datum = 0;
  int mapProjection = 0;
};

/// The subtree of a system for hosts that write the MIF/MID format.
class MifExport {
 public:
  /// Both must outlive this object.
  MifExport(TdatamoduleQvRfData& data, const CodeRows& codes) : data_(data), codes_(codes) {}

  /// Adds the subtree to the tree of the system, and to a geodetic one its system type. A system of
  /// which a code is not known gets no subtree. Moves the cursors of datums and map projections.
  void Write(QvCommonUtils::TStringTree* tree, const MifSystem& system) const;

 private:
  [[nodiscard]] bool Fill(QvCommonUtils::TStringTree* tree, QvCommonUtils::TStringTree* exported,
                          const MifSystem& system) const;
  [[nodiscard]] bool WriteUnit(QvCommonUtils::TStringTree* exported, const MifSystem& system) const;
  [[nodiscard]] bool WriteGeodeticType(QvCommonUtils::TStringTree* tree,
                                       QvCommonUtils::TStringTree* exported) const;
  [[nodiscard]] bool WriteProjectionType(QvCommonUtils::TStringTree* exported, int key) const;
  [[nodiscard]] bool WriteDatum(QvCommonUtils::TStringTree* exported, int key) const;

  TdatamoduleQvRfData& data_;
  const CodeRows& codes_;
};

}  // namespace QvRefSystem
