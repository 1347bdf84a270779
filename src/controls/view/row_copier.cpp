#include "controls/view/row_copier.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>
#include <algorithm>
#include <optional>

#include "controls/values/tell_box.h"
#include "controls/view/copied_data.h"
#include "controls/view/copied_forms.h"
#include "controls/view/header_view.h"
#include "controls/view/row_view.h"
#include "controls/view/status_strip.h"

namespace orvane::controls {

using platform::RowIndex;

/// What is being copied.
struct RowCopier::Work {
  std::vector<RowBand> bands;
  std::vector<int> columns;
  RowIndex rows = 0;
  std::size_t band = 0;  ///< of the next row
  int nPlace = 0;        ///< of it
  RowIndex done = 0;
  bool bTold = false;  ///< that it goes on

  bool bOneCell = false;
  std::optional<CellsReader> cells;
  std::optional<ClipboardText> text;
  bool bExact = false;                ///< with the kinds of values
  bool bInexact = false;              ///< without them, though they were wanted
  std::optional<ClipboardRows> form;  ///< instead of the others
  zones::TimeZone zone;

  bool IsDone() const { return band == bands.size(); }
  bool IsTooLong() { return form ? form->IsTooLong() : text->IsTooLong(); }
  std::size_t WriteNext(const RowModel& model);
  std::unique_ptr<QMimeData> Written(std::shared_ptr<void> life);
};

std::size_t RowCopier::Work::WriteNext(const RowModel& model) {
  const RowBand& rowBand = bands[band];
  std::size_t bytes = 0;
  if (!form) {
    bytes = cells->WriteRow(rowBand, nPlace, *text);
  } else if (!model.IsEmptyRow(nPlace)) {
    bytes = form->Row(*model.Recordset(), model.RecordRow(nPlace));
  }
  ++done;
  if (nPlace++ == rowBand.nLast) {
    ++band;
    if (!IsDone()) nPlace = bands[band].nFirst;
  }
  return bytes;
}

std::unique_ptr<QMimeData> RowCopier::Work::Written(std::shared_ptr<void> life) {
  CopiedText copied;
  CopiedData::Forms forms;
  if (form) {
    copied.sText = form->Take();
  } else {
    copied = text->Take();
    if (bOneCell) copied.sText.pop_back();
    forms.bPage = !bOneCell && LeastOfPage(copied) <= kMostCopiedCharacters;
    forms.bExact = bExact;
  }
  return std::make_unique<CopiedData>(std::move(copied), forms, std::move(zone), std::move(life));
}

RowCopier::RowCopier(const RowView& rows) : m_rows(rows) {
  m_slices.setInterval(0);
  connect(&m_slices, &QTimer::timeout, this, [this] { Slice(); });
  // Rows that come behind the others change nothing of those that are copied.
  const auto changed = [this] {
    if (m_work) End("Not copied: the rows have changed meanwhile; copy them again.");
  };
  const RowModel& model = m_rows.Model();
  connect(&model, &QAbstractItemModel::modelAboutToBeReset, this, changed);
  connect(&model, &QAbstractItemModel::rowsAboutToBeRemoved, this, changed);
  connect(&model, &QAbstractItemModel::dataChanged, this, changed);
}

RowCopier::~RowCopier() = default;

RowCopier::Part RowCopier::Chosen() const {
  // The empty row at the end holds nothing.
  const RowModel& model = m_rows.Model();
  QItemSelection selection;
  for (const QItemSelectionRange& range : m_rows.selectionModel()->selection()) {
    const int nBottom = std::min(range.bottom(), model.Places() - 1);
    if (nBottom < range.top()) continue;
    selection.select(model.index(range.top(), range.left()), model.index(nBottom, range.right()));
  }
  if (const QModelIndex at = m_rows.currentIndex(); selection.isEmpty() && at.isValid()) {
    selection.select(at, at);
  }
  // What is not seen is not copied, and what is seen stands as it is seen.
  std::vector<int> columns = m_rows.Names().Shown();
  std::erase_if(columns, [among = SelectedColumns(selection)](int nColumn) {
    return !std::ranges::binary_search(among, nColumn);
  });
  return {std::move(selection), std::move(columns)};
}

std::unique_ptr<RowCopier::Work> RowCopier::WorkOn(const Part& part) const {
  if (part.columns.empty()) return nullptr;
  const RowIndex rows = SelectedRows(part.cells);
  if (rows > kMostRows) {
    Tell(QStringLiteral("Not copied: %1 are selected, and at most %2 can be copied at once. "
                        "Select fewer, or export them into a file (Ctrl+Shift+E).")
             .arg(RowsText(rows), RowsText(kMostRows)));
    return nullptr;
  }
  auto work = std::make_unique<Work>();
  work->bands = BandsOf(part.cells, part.columns);
  work->columns = part.columns;
  for (const RowBand& band : work->bands) work->rows += band.nLast - band.nFirst + 1;
  if (!work->bands.empty()) work->nPlace = work->bands.front().nFirst;
  return work;
}

void RowCopier::Copy(bool bNames) {
  const Part part = Chosen();
  std::unique_ptr<Work> work = WorkOn(part);
  if (!work) return;
  const RowModel& model = m_rows.Model();
  // One cell goes without its line end, so that it can be put into the middle of a line, and
  // without a table around it.
  work->bOneCell = work->columns.size() == 1 && work->rows == 1 && !bNames;
  work->cells.emplace(model, work->columns);
  work->text.emplace(work->columns.size());
  work->zone = model.Format().Zone();
  if (bNames) {
    work->text->Names(model, work->columns);
  } else {
    work->bExact =
        work->rows * static_cast<RowIndex>(work->columns.size()) <= CopiedData::kMostExact;
    work->bInexact = !work->bExact;
  }
  Begin(std::move(work));
}

void RowCopier::CopyAs(exports::Form form) {
  const Part part = Chosen();
  std::unique_ptr<Work> work = WorkOn(part);
  if (!work) return;
  exports::WriterOptions options;
  options.form = form;
  options.zone = m_rows.Model().Format().Zone();
  options.sInto = m_sInto;
  work->form.emplace(options, m_rows.Model(), part.columns);
  Begin(std::move(work));
}

void RowCopier::Begin(std::unique_ptr<Work> work) {
  Stop();
  m_work = std::move(work);
  Slice();
  if (m_work) m_slices.start();
}

void RowCopier::Slice() {
  std::size_t cells = 0;
  std::size_t bytes = 0;
  try {
    while (!m_work->IsDone()) {
      if (cells >= kCellsInSlice || bytes >= kBytesInSlice) {
        m_work->bTold = true;
        if (m_progress) m_progress(m_work->done, m_work->rows);
        return;
      }
      bytes += m_work->WriteNext(m_rows.Model());
      cells += m_work->columns.size();
      if (!m_work->IsTooLong()) continue;
      return End(
          "Not copied: the selection has more than 32 million characters. Select fewer cells, or "
          "export them into a file (Ctrl+Shift+E).");
    }
    QGuiApplication::clipboard()->setMimeData(m_work->Written(m_life).release());
  } catch (const std::exception& failed) {
    return End(QStringLiteral("Not copied. ") + SentenceOf(failed));
  }
  End(m_work->bInexact
          ? QStringLiteral("Copied as text: of more than 200,000 cells the kinds of values are "
                           "not kept. Select fewer to paste them exactly, or export them into "
                           "a file (Ctrl+Shift+E).")
          : QString());
}

bool RowCopier::Stop() {
  if (!m_work) return false;
  End("Stopped: nothing was copied.");
  return true;
}

void RowCopier::End(const QString& sWhyNot) {
  m_slices.stop();
  const bool bTold = m_work->bTold;
  m_work.reset();
  if (m_progress && bTold) m_progress(0, 0);
  Tell(sWhyNot);
}

void RowCopier::Tell(const QString& sWhyNot) const {
  if (m_copied) m_copied(sWhyNot);
}

}  // namespace orvane::controls
