#pragma once

namespace QvPlatform {

/// Hears what happens to a data set. Positions are places in the table's order, from 0. While
/// controls are disabled nothing is told; enabling them again tells one OnRowsReset if rows
/// changed, else one OnCurrentMoved if the cursor moved.
class TDataSetObserver {
 public:
  virtual ~TDataSetObserver() = default;
  /// Everything may have changed; also told at Open and Close.
  virtual void OnRowsReset() = 0;
  /// A row shows that did not show before.
  virtual void OnRowInserted(int position) = 0;
  /// A row has new content at its old place.
  virtual void OnRowChanged(int position) = 0;
  /// The row that stood there shows no more.
  virtual void OnRowRemoved(int position) = 0;
  /// The cursor stands there now; -1 in an empty table.
  virtual void OnCurrentMoved(int position) = 0;
};

}  // namespace QvPlatform
