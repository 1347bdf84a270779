// Works out in which order rows stand, and which of them: reads the recordset in slices on its own
// thread, so that the window goes on, and sorts what it read on a worker. Few rows are done at
// once; of many, what is worked out lies in the memory of the rows, or in files. Used by the view
// of the rows; user-interface thread.
#pragma once

#include <QObject>
#include <QTimer>
#include <atomic>
#include <functional>
#include <memory>
#include <optional>
#include <thread>
#include <utility>
#include <vector>

#include "controls/order/arrangement.h"
#include "controls/order/row_order.h"
#include "controls/order/sort_keys.h"

namespace orvane::controls {

class RowArranger final : public QObject {
 public:
  /// The order, or none with a sentence that says why there is none.
  using Done = std::function<void(std::shared_ptr<const RowOrder> order, const QString& sWhyNot)>;

  explicit RowArranger(QObject* parent);
  ~RowArranger() override;

  /// Calls `done` with the order of the rows fetched so far, before it returns where they are few;
  /// new rows stand behind them. What was being worked out is dropped.
  void Arrange(platform::RecordsetPtr rs, const Arrangement& arrangement, const CellFormat& format,
               Done done);
  bool Busy() const { return m_work != nullptr; }
  /// What was worked out beside the window is told when the condition is over.
  void HoldWhile(std::function<bool()> condition) { m_holding = std::move(condition); }
  /// Drops what is being worked out; `done` is not called.
  void Cancel();

 private:
  struct Work;
  bool Slice();
  bool SliceOf(Work& work);
  void Next();
  void StartSorting();
  /// Puts the rows in order by the keys, on any thread; what failed is told by the work.
  void SortByKeys(Work& work);
  void SortedBy();
  void Finish(const QString& sWhyNot = {});

  std::function<bool()> m_holding;
  std::unique_ptr<Work> m_work;
  std::thread m_worker;
  std::atomic<bool> m_bStop = false;
  int m_nRun = 0;  ///< told from by what was posted for an earlier one
};

}  // namespace orvane::controls
