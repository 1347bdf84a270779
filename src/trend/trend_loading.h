// Makes the lines of a trend out of rows, so that nobody waits for it: reads the rows in slices
// while somebody looks, and puts the points in order on a worker. Part of the trend's view;
// user-interface thread.
#pragma once

#include <QObject>
#include <QString>
#include <QTimer>
#include <functional>
#include <memory>
#include <thread>
#include <vector>

#include "trend/trend_data.h"

namespace orvane::trend {

/// One sentence for what has ended work on a trend.
QString SentenceOfTrend(const std::exception& exception);

class TrendLoading : public QObject {
 public:
  struct Loaded {
    std::vector<TrendLine> lines{};
    std::size_t nTagsLeftOut = 0;
    platform::RowIndex cutAfter = 0;  ///< rows, where their source has more
    QString sWhyNot{};                ///< what kept the lines from being made
  };
  struct Calls {
    /// True while somebody looks; otherwise nothing is read until Go().
    std::function<bool()> seen;
    /// With the part of the rows that has been read, from 0 to 1.
    std::function<void(double part)> progress;
    /// Once for each Load, when the lines are there; it may be the end of this.
    std::function<void(Loaded loaded)> done;
  };

  TrendLoading(Calls calls, QObject* parent);

  /// Begins with other rows; what was being done with others is dropped. Without `seen` all of
  /// them are read.
  void Load(platform::RecordsetPtr rs, TrendColumns columns, const zones::TimeZone& zone,
            SeenRows seen = {});
  void Drop();
  bool Busy() const { return m_reader != nullptr; }
  /// Goes on, after nobody has looked.
  void Go();

 private:
  void ReadSlice();
  void Order();
  void End(Loaded loaded);

  Calls m_calls;
  QTimer m_slices;
  std::shared_ptr<TrendReader> m_reader;
  bool m_bOrdering = false;
  int m_nRun = 0;         ///< told from by what was posted for an earlier one
  std::jthread m_worker;  ///< the last member: it is waited for before the others go
};

}  // namespace orvane::trend
