// The window of a grid: the SQL statement, the rows, and the status strip beneath them. Both grid
// controls show theirs in one. User-interface thread.
#pragma once

#include <QElapsedTimer>
#include <QTimer>
#include <QWidget>
#include <functional>
#include <memory>
#include <optional>

#include "controls/grid/grid_events.h"
#include "controls/view/row_view.h"

class QSplitter;

namespace orvane::controls {

class EmptyNotice;
class GridSeeking;
class GridTeller;
class GridTrend;
class RowForm;
class SqlPane;
class StatusStrip;

/// What is told of the rows beside themselves.
struct Fetching {
  std::function<QString()> when;  ///< as it is said now; none where it is not known
  std::optional<RowsOrigin> origin;
};

class GridWindow : public QWidget {
 public:
  /// Keeps `life` as long as it lives.
  GridWindow(const QString& sName, std::shared_ptr<GridEvents> events, std::shared_ptr<void> life);

  bool SqlShown() const { return m_bSqlShown; }
  void SqlShown(bool bShow);
  void Sql(const QString& sSql);

  void ShowNothing();
  /// Lets go of the rows before others are fetched. A short wait is not seen: what was on the
  /// screen stays until there is something else, or until it has taken a moment.
  void ShowRunning(const QString& sMessage);
  /// Says in the place of rows why there are none, with a button that calls the action, once.
  void Ask(const QString& sTitle, const QString& sSentence, const QString& sButton,
           std::function<void()> action);
  /// Called when the fetch whose rows come is to be stopped; none lets nobody stop it.
  void OnCancel(std::function<void()> handler);
  /// Shows rows while they are fetched, and their number as it grows.
  void ShowComing(const platform::RecordsetPtr& rs, const CellFormat& format);
  /// The texts are shown in the place of rows when there are none.
  void ShowRows(const platform::RecordsetPtr& rs, const CellFormat& format, const RowsState* state,
                const Fetching& fetching, const QString& sNoRowsTitle,
                const QString& sNoRowsSentence);
  /// With bLost, and where that is possible, a button beneath connects again.
  void ShowFailure(const QString& sTitle, const QString& sSentence, bool bLost = false);
  /// Says something beneath the rows, until there is something else to be said of them.
  void Remark(const QString& sRemark, bool bWarning);

  /// Beneath rows that the row limit has cut stands a button that counts them all.
  void OfferCount(std::function<void()> count) { m_count = std::move(count); }
  /// Beneath rows whose connection is gone stands a button that connects again.
  void OfferReconnect(std::function<void()> reconnect) { m_reconnect = std::move(reconnect); }
  /// Says, as long as these rows are shown, why no others can be had over the connection.
  void Lost(const QString& sSentence);
  /// Places a bar above everything else; it becomes the window's.
  void Above(QWidget* bar);
  /// Called when the rows stand in another order, or others of them are seen.
  void OnArranged(std::function<void()> handler) { m_arranged = std::move(handler); }
  /// Says what is being done with rows, with a button that ends it; nothing any more when empty.
  void Working(const QString& sWhat, const QString& sStopTip, std::function<void()> stop);
  /// To the empty row at the end, in which a new one is typed.
  void GoToNewRow();
  /// One row as a form.
  RowForm& Form() const { return *m_form; }
  /// The rows as a trend.
  GridTrend& Trend() const { return *m_trend; }
  StatusStrip& Status() { return *m_status; }
  RowView& Rows() { return *m_rows; }
  const RowView& Rows() const { return *m_rows; }

  /// The strip beneath the rows, for a place outside the window until it is taken back.
  QWidget* LendStatusLine();
  void TakeStatusLineBack();

  /// True while the rows are sorted, filtered, looked through or copied, which others in their
  /// place would end.
  bool WorksOnRows() const;
  /// True while a listener is being called: the window may be in the middle of an event.
  bool Raising() const;
  void Raise(platform::Signal<> GridEvents::*event);
  /// Rows were edited: whoever listens may see the current cell otherwise.
  void Edited();
  /// Tells nobody anything any more.
  void Abandon();

  /// No part of it holds the window open.
  QSize minimumSizeHint() const override;

 protected:
  bool event(QEvent* event) override;

 private:
  void LetGoOfRows();
  void TellOfRows();
  bool IsToldOtherwise() const;
  void ShowPosition();
  void TellOfNoRows();
  void TellOfArrangement(const QString& sWhyNot);
  void FitSqlPane();
  void StopWaiting();

  std::shared_ptr<void> m_life;
  QSplitter* m_beside;
  QSplitter* m_splitter;
  SqlPane* m_sqlPane;
  RowView* m_rows;
  EmptyNotice* m_notice;
  GridSeeking* m_seeking;
  QWidget* m_lineOverStatus;
  StatusStrip* m_status;
  RowForm* m_form;
  GridTrend* m_trend;
  GridTeller* m_teller;
  QTimer m_patience;
  QElapsedTimer m_sinceSent;
  bool m_bComing = false;  ///< the rows that are shown are being fetched
  bool m_bExchanging = false;
  bool m_bSqlShown = false;
  bool m_bSplitByUser = false;
  Fetching m_fetching;
  bool m_bToldOfClosing = false;
  QString m_sToldWhen;
  QString m_sLost;  ///< what happened to the connection of the rows; empty for nothing
  std::function<void()> m_arranged;
  std::function<void()> m_count;
  std::function<void()> m_reconnect;
};

}  // namespace orvane::controls
