#include "controls/grid/grid_export.h"

#include <QDir>
#include <QFileDialog>
#include <QHeaderView>
#include <QTimer>
#include <algorithm>
#include <atomic>
#include <chrono>

#include "controls/values/tell_box.h"
#include "controls/view/header_view.h"
#include "controls/view/selection_bands.h"
#include "controls/view/status_strip.h"
#include "platform/failure.h"

namespace orvane::controls {

using exports::Exported;
using platform::ColumnIndex;
using platform::FetchState;

namespace {

constexpr std::chrono::milliseconds kBetweenTold(200);

/// The file was last written here.
QString& LastFolder() {
  static QString sFolder = QDir::homePath();
  return sFolder;
}

QString AskForPath(QWidget* parent, const QString& sSuggested) {
  // A dialog that goes with the grid's window must not stand on the stack.
  const QPointer<QFileDialog> dialog = new QFileDialog(parent, "Export Rows", LastFolder());
  dialog->setAcceptMode(QFileDialog::AcceptSave);
  dialog->selectFile(sSuggested);
  const bool bAccepted = dialog->exec() == QDialog::Accepted;
  const QString sPath = dialog && bAccepted ? dialog->selectedFiles().value(0) : QString();
  delete dialog.data();
  if (!sPath.isEmpty()) LastFolder() = QFileInfo(sPath).absolutePath();
  return sPath;
}

QString DoneText(const Exported& done) {
  const QString sPath = QString::fromStdString(done.path.string());
  if (done.bCut) {
    return QStringLiteral("Exported only the %1, as the source has more: %2")
        .arg(QString::fromStdString(exports::CutMark(done.rows)), sPath);
  }
  return QStringLiteral("Exported %1 to %2").arg(RowsText(done.rows), sPath);
}

/// The columns in the order in which they stand, those of the selection or all in sight.
std::vector<ColumnIndex> ColumnsOf(const RowView& rows, const QItemSelection* selection) {
  std::vector<ColumnIndex> columns;
  for (const int nColumn : rows.Names().Shown()) {
    const bool bSelected =
        !selection || std::ranges::any_of(*selection, [&](const QItemSelectionRange& range) {
          return nColumn >= range.left() && nColumn <= range.right();
        });
    if (bSelected) columns.push_back(nColumn);
  }
  return columns;
}

}  // namespace

GridExport::GridExport(GridWindow& window, ExportSource source)
    : m_window(&window), m_source(std::move(source)) {
  window.Rows().Commands().Add(
      {CommandGroup::Copy, "E&xport Rows\u2026", QKeySequence("Ctrl+Shift+E"), [this] { Run(); },
       [this] { return m_window && m_window->Rows().Model().columnCount() > 0; }});
}

void GridExport::Run() {
  // The grid may go while a dialog is open; then nothing of this object is touched any more.
  const QPointer<GridWindow> window = m_window;
  const std::weak_ptr<void> life = m_life;
  ExportChoice choice = m_before;
  const QString sPath = Ask(choice);
  if (sPath.isEmpty() || life.expired() || !window) return;
  m_before = choice;
  try {
    const std::optional<Exported> done = Write(choice, sPath);
    if (window && done) window->Remark(DoneText(*done), done->bCut);
  } catch (const std::exception& exception) {
    if (!window) return;
    const auto* const failed = dynamic_cast<const platform::Failure*>(&exception);
    if (failed != nullptr && failed->Number() == platform::failure::kCancelled) {
      window->Remark("The export was cancelled; no file was written.", false);
    } else {
      // How many had been written until then says nothing any more.
      window->Remark({}, false);
      TellInBox(*window, "Export Rows", SentenceOf(exception));
    }
  }
}

ExportOffer GridExport::Offer() const {
  const RowView& rows = m_window->Rows();
  ExportOffer offer;
  offer.shown = rows.Model().Places();
  const QItemSelection& selection = rows.selectionModel()->selection();
  const bool bOneCell =
      selection.size() == 1 && selection.front().width() == 1 && selection.front().height() == 1;
  if (!bOneCell) offer.selected = SelectedRows(selection);
  offer.bAll = m_source.canFetch();
  return offer;
}

QString GridExport::Ask(ExportChoice& choice) const {
  const QPointer<GridWindow> window = m_window;
  const std::weak_ptr<void> life = m_life;
  const QPointer<ExportDialog> dialog = new ExportDialog(window, Offer(), choice);
  const bool bAccepted = dialog->exec() == QDialog::Accepted;
  if (dialog) choice = dialog->Choice();
  delete dialog.data();
  if (!bAccepted || life.expired() || !window) return {};
  const QString sName =
      FileNameOf(QString::fromStdString(m_source.subject().sName), choice.writer.form);
  return AskForPath(window, sName);
}

std::optional<Exported> GridExport::Write(const ExportChoice& choice, const QString& sPath) {
  exports::WriterOptions options = choice.writer;
  options.zone = m_source.zone();
  options.sInto = m_source.subject().sInto;
  exports::RowExport target(std::move(options), sPath.toStdString());
  // The grid, and with it this object, may be gone before the last row has come.
  const auto fetch = m_source.fetch;
  // The disk takes its time for the end of a long file.
  const auto finish = [&target, beside = m_source.beside](bool bCut) {
    Exported done;
    beside("Writing the end of the file",
           [&](const std::stop_token& stop) { done = target.Finish(bCut, stop); });
    return done;
  };
  // Written on another thread, told on this one.
  auto written = std::make_shared<std::atomic<platform::RowIndex>>(0);
  QTimer telling;
  QObject::connect(&telling, &QTimer::timeout, [window = m_window, written] {
    const platform::RowIndex rows = *written;
    if (window && rows > 0) {
      window->Remark(QStringLiteral("Exporting: %1 written so far\u2026").arg(RowsText(rows)),
                     false);
    }
  });
  telling.start(kBetweenTold);
  if (choice.rows != ExportRows::All) {
    const std::optional<bool> bCut = WriteHeld(choice, target, *written);
    return bCut ? std::optional(finish(*bCut)) : std::nullopt;
  }
  const FetchState state = fetch([&target, written](const platform::RecordsetPtr& rows) {
    target.Rows(*rows);
    *written = target.RowCount();
  });
  return finish(state == FetchState::Truncated || state == FetchState::Stopped);
}

std::optional<bool> GridExport::WriteHeld(const ExportChoice& choice, exports::RowExport& target,
                                          std::atomic<platform::RowIndex>& written) {
  const RowView& view = m_window->Rows();
  const RowModel& model = view.Model();
  const platform::RecordsetPtr rs = model.Recordset();
  if (!rs) return std::nullopt;
  // The grid may show something else before the last row is written: nothing more is asked of it.
  const auto recordRow = model.RecordRows();
  const bool bSelected = choice.rows == ExportRows::Selected;
  const QItemSelection selection = view.selectionModel()->selection();
  const int nPlaces = model.Places();
  // Where rows still come, they may all have come before the last one of these is written.
  const bool bMore = rs->State() != FetchState::Complete;
  std::vector<std::pair<int, int>> spans{{0, nPlaces - 1}};
  if (bSelected) spans = RowSpans(selection);
  target.Begin(*rs, ColumnsOf(view, bSelected ? &selection : nullptr));
  // Nobody edits the rows while the window waits, and those that are counted stay as they are.
  const auto write = [&](const std::stop_token& stop) {
    for (const auto& [nFirst, nLast] : spans) {
      for (int nPlace = nFirst; nPlace <= nLast; ++nPlace) {
        if (stop.stop_requested()) {
          throw platform::Failure(platform::failure::kCancelled, "The export was cancelled.");
        }
        const platform::RowIndex row = recordRow(nPlace);
        if (row < rs->RecordCount()) target.Row(*rs, row);
        written = target.RowCount();
      }
    }
  };
  // The grid, and with it this object, may go meanwhile.
  const auto beside = m_source.beside;
  beside("Writing rows", write);
  // Who selects all rows means as much by it as who takes those that are shown.
  const bool bAll = spans.size() == 1 && spans[0].first == 0 && spans[0].second >= nPlaces - 1;
  return bAll && bMore;
}

}  // namespace orvane::controls
