// The line beneath a grid's rows: how many there are, how long they took and when they were
// fetched, where the current cell is, and plainly when the row limit cut them.
#pragma once

#include <QLabel>
#include <QPushButton>
#include <QToolButton>
#include <QWidget>
#include <chrono>
#include <functional>
#include <initializer_list>
#include <utility>

#include "platform/ado/recordset.h"
#include "zones/time_zone.h"

namespace orvane::controls {

/// "1,000 rows", "1 row".
QString RowsText(platform::RowIndex rows);
/// "under 1 ms", "12 ms", "1.23 s", "2 min 5 s".
QString TimeText(std::chrono::microseconds elapsed);
/// "12 ms, at 14:02:11"; without the second where that is not known.
QString TookText(std::chrono::microseconds elapsed, const QString& sFetched);
/// "at 14:02:11", or with the day when that is not today: "on 2026-11-20 at 14:02:11".
QString FetchedText(zones::LocalTime fetched, zones::LocalTime now);

class StatusStrip : public QWidget {
 public:
  explicit StatusStrip(QWidget* parent = nullptr);

  void Empty();
  /// What is going on instead of rows.
  void Message(const QString& sMessage);
  /// sFetched tells when, and may be empty. The notice is shown with a mark of warning; an empty
  /// one is not shown.
  void Rows(platform::RowIndex rows, std::chrono::microseconds elapsed, const QString& sFetched,
            const QString& sNotice);
  /// Says something about these rows in the place of their notice, with its mark of warning or
  /// without; an empty remark brings the notice back.
  void Remark(const QString& sRemark, bool bWarning = true);
  /// Rows that are being fetched: how many are here, since when, and how many come in a second;
  /// with a button that stops them.
  void Coming(platform::RowIndex rows, std::chrono::microseconds elapsed);
  void OnCancel(std::function<void()> handler) { m_cancelled = std::move(handler); }
  /// In which order the rows stand and which of them are seen; empty as they came.
  void Arrangement(const QString& sArrangement);
  /// What is being done with the rows that are here, with a button that ends it.
  void Working(const QString& sWhat, const QString& sStopTip, std::function<void()> stop);
  /// Why the rows can only be looked at, as a sentence; empty when they can be edited.
  void ReadOnly(const QString& sWhy);
  /// How many rows were changed and are not stored; with 0 nothing is said.
  void Pending(platform::RowIndex rows);
  /// Called when the number of rows that are not stored was pressed.
  void OnPendingPressed(std::function<void()> handler) { m_pendingPressed = std::move(handler); }
  /// Row from 0; -1 when there is no current row.
  void Position(int nRow, int nRows);

  /// Adds buttons at the end of the strip that choose how the rows are looked at; they become the
  /// strip's.
  void AddSwitch(std::initializer_list<QWidget*> buttons);

  /// Offers something beside the notice by a button, until there is something else to be said of
  /// the rows.
  void Offer(const QString& sButton, const QString& sTip, std::function<void()> action);

  /// Calls nobody any more.
  void Abandon();

  QSize minimumSizeHint() const override;

 protected:
  bool event(QEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void SetWarningIcon();
  /// Where there is no room for everything, what matters least gives way whole: the current row,
  /// then the time taken.
  void Fit();
  void ShowNotice(const QString& sNotice, bool bWarning = true);
  void ShowReadOnly();

  QString m_sNotice;
  QLabel* m_rows;
  QLabel* m_time;
  QPushButton* m_cancel;
  std::function<void()> m_cancelled;
  bool m_bWorking = false;  ///< the button ends that, not a fetch
  QLabel* m_arrangement;
  QLabel* m_warning;
  QLabel* m_notice;
  QPushButton* m_pending;
  QLabel* m_readOnly;
  QToolButton* m_offer;
  std::function<void()> m_offered;
  QLabel* m_position;
  std::function<void()> m_pendingPressed;
};

}  // namespace orvane::controls
