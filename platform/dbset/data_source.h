#pragma once

#include "platform/dbset/notices.h"

namespace QvPlatform {

class TDataSetObserver;
class TQvDataSet;

/// Binds observers to a data set. A disabled source tells nothing; enabling it tells OnRowsReset.
class TDataSource {
 public:
  /// Observers of a source without a data set hear nothing.
  explicit TDataSource(TQvDataSet* dataSet = nullptr);
  ~TDataSource();
  TDataSource(const TDataSource&) = delete;
  TDataSource& operator=(const TDataSource&) = delete;

  /// The data set that is observed; null without one, and once it is destroyed.
  [[nodiscard]] TQvDataSet* DataSet() const { return audience_.dataSet; }
  /// Whether the observers are told anything.
  [[nodiscard]] bool Enabled() const { return audience_.enabled; }
  /// Starts or stops the telling.
  void SetEnabled(bool enabled);
  /// The observer stays the caller's and has to be removed before it goes. One that is there
  /// already is not added again.
  void AddObserver(TDataSetObserver* observer);
  /// Does nothing for one that is not there. May be called by an observer while it is told.
  void RemoveObserver(TDataSetObserver* observer);

 private:
  detail::Audience audience_;
};

}  // namespace QvPlatform
