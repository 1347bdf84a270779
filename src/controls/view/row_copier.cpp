#include "controls/view/row_copier.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>
#include <algorithm>

#include "controls/view/clipboard_text.h"
#include "controls/view/copied_cells.h"
#include "controls/view/copied_forms.h"
#include "controls/view/header_view.h"
#include "controls/view/row_view.h"
#include "controls/view/status_strip.h"

namespace orvane::controls {

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

std::optional<QString> RowCopier::Written(
    const QItemSelection& cells, const std::function<std::optional<QString>()>& write) const {
  const platform::RowIndex rows = SelectedRows(cells);
  if (rows > kMostRows) {
    Tell(QStringLiteral("Not copied: %1 are selected, and at most %2 can be copied at once. "
                        "Select fewer, or export them into a file (Ctrl+Shift+E).")
             .arg(RowsText(rows), RowsText(kMostRows)));
    return std::nullopt;
  }
  QGuiApplication::setOverrideCursor(Qt::WaitCursor);
  std::optional<QString> text = write();
  QGuiApplication::restoreOverrideCursor();
  if (!text) {
    Tell(
        QStringLiteral("Not copied: the selection has more than 32 million characters. Select "
                       "fewer cells, or export them into a file (Ctrl+Shift+E)."));
  }
  return text;
}

void RowCopier::Copy(bool bNames) const {
  const Part part = Chosen();
  const QItemSelection& selection = part.cells;
  const std::vector<int>& columns = part.columns;
  if (columns.empty()) return;
  std::optional<QString> text =
      Written(selection, [&] { return ClipboardText(m_rows.Model(), selection, columns, bNames); });
  if (!text) return;
  // One cell goes without its line end, so that it can be put into the middle of a line, and
  // without a table around it.
  const bool bOneCell = columns.size() == 1 && SelectedRows(selection) == 1;
  auto* data = new QMimeData;
  if (bOneCell && !bNames) {
    text->chop(1);
  } else if (const auto page = SelectionAsPage(m_rows.Model(), selection, columns, bNames)) {
    data->setHtml(*page);
  }
  data->setText(*text);
  const bool bExact = bNames || AddCells(*data, m_rows.Model(), selection, columns);
  QGuiApplication::clipboard()->setMimeData(data);
  Tell(bExact ? QString()
              : QStringLiteral("Copied as text: of more than 200,000 cells the kinds of values are "
                               "not kept. Select fewer to paste them exactly, or export them into "
                               "a file (Ctrl+Shift+E)."));
}

void RowCopier::CopyAs(exports::Form form) const {
  const Part part = Chosen();
  const QItemSelection& selection = part.cells;
  const std::vector<int>& columns = part.columns;
  if (columns.empty()) return;
  exports::WriterOptions options;
  options.form = form;
  options.zone = m_rows.Model().Format().Zone();
  options.sInto = m_sInto;
  const std::optional<QString> text =
      Written(selection, [&] { return SelectionAs(options, m_rows.Model(), selection, columns); });
  if (!text) return;
  QGuiApplication::clipboard()->setText(*text);
  Tell({});
}

void RowCopier::Tell(const QString& sWhyNot) const {
  if (m_copied) m_copied(sWhyNot);
}

}  // namespace orvane::controls
