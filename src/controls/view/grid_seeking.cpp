#include "controls/view/grid_seeking.h"

#include <QInputDialog>
#include <algorithm>
#include <utility>

#include "controls/view/status_strip.h"

namespace orvane::controls {

namespace {

constexpr const char* kSortMenu = "S&ort";

}  // namespace

GridSeeking::GridSeeking(RowView& rows, QWidget* parent, std::function<void(const QString&)> remark)
    : QObject(parent),
      m_rows(rows),
      m_bar(new FindBar(rows, parent)),
      m_filter(new FilterRow(rows)),
      m_remark(std::move(remark)) {
  rows.PutBeneathNames(m_filter);
  m_filter->OnRefused(m_remark);
  AddSorting();
  AddFiltering();
  AddFinding();
}

void GridSeeking::AddSorting() {
  const auto hasColumn = [this] { return m_rows.currentIndex().isValid(); };
  const auto add = [&](const char* sLabel, const QKeySequence& keys, bool bAscending, bool bAdd) {
    m_rows.Commands().Add({CommandGroup::Sort,
                           sLabel,
                           keys,
                           [this, bAscending, bAdd] {
                             m_rows.SortBy(m_rows.currentIndex().column(), bAscending, bAdd);
                           },
                           hasColumn,
                           {},
                           kSortMenu});
  };
  add("Sort A&scending", QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Up), true, false);
  add("Sort &Descending", QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Down), false, false);
  add("T&hen Ascending", {}, true, true);
  add("Then Descendin&g", {}, false, true);
  m_rows.Commands().Add({CommandGroup::Sort,
                         "Order as &Fetched",
                         {},
                         [this] { m_rows.Sort({}); },
                         [this] { return !m_rows.Arranged().sort.empty(); },
                         {},
                         kSortMenu});
}

void GridSeeking::AddFiltering() {
  m_rows.Commands().Add({CommandGroup::Filter, "Filter by This &Value",
                         QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_L),
                         [this] { FilterByCurrent(); },
                         [this] { return m_rows.currentIndex().isValid(); }});
  m_rows.Commands().Add({CommandGroup::Filter, "Filter &Row",
                         QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_F),
                         [this] { ShowFilterRow(m_filter->isHidden()); }});
  m_rows.Commands().Add({CommandGroup::Filter,
                         "Cl&ear Filter",
                         {},
                         [this] { ClearFilter(); },
                         [this] { return !m_rows.Arranged().filters.empty(); }});
}

void GridSeeking::AddFinding() {
  const auto hasRows = [this] { return m_rows.HasRows(); };
  m_rows.Commands().Add(
      {CommandGroup::Find, "F&ind\u2026", QKeySequence::Find, [this] { m_bar->Open(); }, hasRows});
  m_rows.Commands().Add({CommandGroup::Find, "Find Ne&xt", QKeySequence(Qt::Key_F3),
                         [this] { m_bar->FindNext(true); }, hasRows});
  m_rows.Commands().Add({CommandGroup::Find, "Find &Previous", QKeySequence(Qt::SHIFT | Qt::Key_F3),
                         [this] { m_bar->FindNext(false); }, hasRows});
  m_rows.Commands().Add({CommandGroup::Find, "Go &to Row\u2026", QKeySequence(Qt::CTRL | Qt::Key_G),
                         [this] { GoToRow(); }, [this] { return m_rows.Model().Places() > 0; }});
}

void GridSeeking::GoToRow() {
  auto* dialog = new QInputDialog(&m_rows);
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  dialog->setInputMode(QInputDialog::IntInput);
  dialog->setWindowTitle("Go to Row");
  const int nRows = m_rows.Model().Places();
  dialog->setLabelText(QStringLiteral("Number of the row, of %1:").arg(RowsText(nRows)));
  dialog->setIntRange(1, static_cast<int>(RowModel::kMaxRows));
  dialog->setIntValue(m_rows.currentIndex().row() + 1);
  connect(dialog, &QInputDialog::intValueSelected, this, [this](int nNumber) {
    const int nLast = m_rows.Model().Places();
    m_rows.GoTo(std::min(nNumber, nLast) - 1, std::max(0, m_rows.currentIndex().column()));
    if (nNumber > nLast) {
      m_remark(QStringLiteral("There is no row %L1: this is the last one of %2.")
                   .arg(nNumber)
                   .arg(RowsText(nLast)));
    }
  });
  dialog->open();
}

void GridSeeking::ShowArrangement() {
  if (!m_rows.Arranged().filters.empty()) ShowFilterRow(true);
  m_filter->ShowFilters();
}

void GridSeeking::ShowFilterRow(bool bShow) {
  const bool bWasHidden = m_filter->isHidden();
  m_filter->setVisible(bShow);
  m_rows.PutBeneathNames(m_filter);
  if (!bShow) {
    m_rows.setFocus();
  } else if (bWasHidden) {
    m_filter->ShowFilters();
    const int nColumn = m_rows.currentIndex().column();
    if (nColumn >= 0 && m_rows.hasFocus()) m_filter->Box(nColumn).setFocus();
  }
}

void GridSeeking::FilterByCurrent() {
  const QModelIndex current = m_rows.currentIndex();
  std::vector<ColumnFilter> filters = m_rows.Arranged().filters;
  std::erase_if(filters, [&](const auto& filter) { return filter.Column() == current.column(); });
  filters.push_back(ColumnFilter::Equal(current.column(),
                                        m_rows.Model().ValueAt(current.row(), current.column()),
                                        m_rows.Model().Format()));
  m_rows.Filter(std::move(filters));
  ShowArrangement();
  m_rows.setFocus();
}

void GridSeeking::ClearFilter() {
  m_rows.Filter({});
  m_filter->ShowFilters();
}

}  // namespace orvane::controls
