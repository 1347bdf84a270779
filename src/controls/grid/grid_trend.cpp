#include "controls/grid/grid_trend.h"

#include <QApplication>
#include <QShortcut>
#include <QSplitter>
#include <algorithm>
#include <chrono>

#include "controls/statements/time_column.h"
#include "controls/view/row_view.h"
#include "controls/view/status_strip.h"

namespace orvane::controls {

namespace {

/// Rows that come one after the other are drawn together.
constexpr std::chrono::milliseconds kSoon(300);

}  // namespace

GridTrend::GridTrend(QSplitter& splitter, RowView& rows, StatusStrip& status)
    : QObject(&splitter),
      m_splitter(splitter),
      m_rows(rows),
      m_status(status),
      m_spanRows(rows.Model(), this) {
  m_soon.setSingleShot(true);
  m_soon.setInterval(kSoon);
  connect(&m_soon, &QTimer::timeout, this, [this] { GiveRows(); });
  const RowModel& model = rows.Model();
  connect(&model, &QAbstractItemModel::modelReset, this, [this] { RowsChanged(); });
  connect(&model, &QAbstractItemModel::rowsInserted, this, [this] { RowsChanged(); });
  connect(&model, &QAbstractItemModel::dataChanged, this, [this] { RowsChanged(); });
  connect(rows.selectionModel(), &QItemSelectionModel::selectionChanged, this, [this] {
    if (m_bSelecting) return;
    m_marked.reset();
    m_spanRows.Stop();
    if (m_bShown) MarkSelected();
  });
}

trend::TrendView& GridTrend::View() {
  if (m_view == nullptr) {
    m_view = new trend::TrendView;
    m_view->hide();
    m_splitter.addWidget(m_view);
    m_splitter.setStretchFactor(m_splitter.indexOf(m_view), 1);
    m_view->OnRemark(
        [this](const QString& sSentence, bool bWarning) { m_status.Remark(sSentence, bWarning); });
    m_view->AskUnits([this] { return m_askUnits ? m_askUnits() : trend::TrendView::Units(); });
    m_view->OnMarked([this](const std::optional<trend::TrendSpan>& span) {
      m_marked = span;
      SelectMarked();
    });
    auto* form = new QShortcut(QKeySequence(Qt::Key_F4), m_view);
    form->setContext(Qt::WidgetWithChildrenShortcut);
    connect(form, &QShortcut::activated, this, [this] {
      if (m_formKey) m_formKey();
    });
    if (m_range) m_view->OnRange([this](const trend::TrendSpan& span) { m_range(span); });
  }
  return *m_view;
}

bool GridTrend::CanShow() const {
  return m_bShown || trend::TrendView::CanShow(m_rows.Model().Recordset());
}

void GridTrend::TellOfChange() const {
  if (m_changed) m_changed();
}

void GridTrend::RowsChanged() {
  m_bStale = true;
  // Between two fetches there are no rows for a moment; the trend stays until there are others.
  if (!m_rows.Model().Recordset()) return;
  TellOfChange();
  if (!m_bShown) return;
  if (!trend::TrendView::CanShow(m_rows.Model().Recordset())) return Show(false);
  m_soon.start();
}

void GridTrend::GiveRows() {
  if (!m_bShown || !m_bStale) return;
  m_bStale = false;
  View().Reach(m_askReach ? m_askReach() : std::nullopt);
  const RowModel& model = m_rows.Model();
  View().ShowRows(model.Recordset(), model.Format().Zone(), std::nullopt, model.SeenRows());
  if (m_marked) {
    SelectMarked();
  } else {
    MarkSelected();
  }
}

void GridTrend::MarkSelected() {
  View().Mark(SelectedSpan());
}

void GridTrend::SelectMarked() {
  m_spanRows.Stop();
  const auto select = [this](const QItemSelection& rows) {
    m_bSelecting = true;
    m_rows.RowsChosen(!rows.isEmpty());
    m_rows.selectionModel()->select(rows, QItemSelectionModel::ClearAndSelect);
    m_bSelecting = false;
  };
  if (!m_marked) return select({});
  m_spanRows.Look(*m_marked, [this, select](const SpanRows::Found& found) {
    select(found.rows);
    if (!found.rows.isEmpty()) m_rows.scrollTo(found.rows.first().topLeft());
    m_status.Remark(
        found.bTooMany
            ? QStringLiteral("The rows of the marked times lie in more than %1 pieces and are not "
                             "selected; sort them by their time.")
                  .arg(SpanRows::kMostPieces)
            : QString());
  });
}

void GridTrend::Show(bool bTrend) {
  if (m_bShown == bTrend) return;
  m_bShown = bTrend;
  trend::TrendView& view = View();
  const QWidget* left = bTrend ? static_cast<QWidget*>(&m_rows) : &view;
  const QWidget* focus = QApplication::focusWidget();
  const bool bHadKeys = focus && (focus == left || left->isAncestorOf(focus));
  m_rows.setVisible(!bTrend);
  view.setVisible(bTrend);
  if (bTrend) {
    const auto span = m_marked ? std::nullopt : SelectedSpan();
    GiveRows();
    if (!m_marked) MarkSelected();
    if (span) view.ShowSpan(*span);
  }
  if (bHadKeys) (bTrend ? static_cast<QWidget*>(&view) : &m_rows)->setFocus();
  TellOfChange();
}

std::optional<trend::TrendSpan> GridTrend::SelectedSpan() const {
  const RowModel& model = m_rows.Model();
  const auto column = model.Recordset() ? TimeColumnOf(*model.Recordset()) : std::nullopt;
  if (!column) return std::nullopt;
  std::optional<trend::TrendSpan> span;
  int nRows = 0;
  for (const QItemSelectionRange& range : m_rows.selectionModel()->selection()) {
    // The rows stand in some order; their ends tell enough where it is by time, and looking at
    // more than a screenful of others would take its time.
    constexpr int kLookedAt = 10'000;
    const int nStep = std::max(1, range.height() / kLookedAt);
    nRows += range.height();
    for (int nRow = range.top(); nRow <= range.bottom();
         nRow = nRow == range.bottom() ? nRow + 1 : std::min(nRow + nStep, range.bottom())) {
      const auto time = TimeIn(model.ValueAt(nRow, *column), model.Format().Zone());
      if (!time) continue;
      if (!span) span = {*time, *time};
      span->from = std::min(span->from, *time);
      span->to = std::max(span->to, *time);
    }
  }
  return nRows > 1 && nRows < model.rowCount() && span && span->from < span->to ? span
                                                                                : std::nullopt;
}

}  // namespace orvane::controls
