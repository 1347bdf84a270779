#include "controls/view/column_commands.h"

#include <QItemSelectionModel>
#include <QKeySequence>
#include <algorithm>
#include <utility>

#include "controls/view/columns_dialog.h"
#include "controls/view/header_view.h"
#include "controls/view/row_view.h"

namespace orvane::controls {

namespace {

/// In characters.
constexpr int kWidthStep = 2;

}  // namespace

ColumnCommands::ColumnCommands(RowView& rows, QObject* parent) : QObject(parent), m_rows(rows) {
  const auto hasColumn = [this] { return Current() >= 0; };
  const auto hasColumns = [this] { return m_rows.Names().count() > 0; };
  Add(
      "C&olumns\u2026", QKeySequence("Ctrl+Shift+K"), [this] { Choose(); }, hasColumns);
  Add(
      "&Hide", QKeySequence("Ctrl+Shift+H"), [this] { Hide(); },
      [this] { return Current() >= 0 && Chosen().size() < m_rows.Names().Shown().size(); });
  Add(
      "Move to the &Left", QKeySequence("Alt+Shift+Left"),
      [this] { m_rows.Columns().Move(Current(), -1); },
      [this] { return Current() >= 0 && Current() != m_rows.Names().Shown().front(); });
  Add(
      "Move to the &Right", QKeySequence("Alt+Shift+Right"),
      [this] { m_rows.Columns().Move(Current(), 1); },
      [this] { return Current() >= 0 && Current() != m_rows.Names().Shown().back(); });
  Add(
      "&Keep up to Here in Sight", {}, [this] { m_rows.HoldColumns(Current()); }, hasColumn);
  Add(
      "&Scroll All", {}, [this] { m_rows.HoldColumns(-1); },
      [this] { return m_rows.Names().Held() > 0; });
  Add(
      "&Wider", QKeySequence("Alt+Right"), [this] { Resize(kWidthStep); }, hasColumn);
  Add(
      "&Narrower", QKeySequence("Alt+Left"), [this] { Resize(-kWidthStep); }, hasColumn);
  Add(
      "As Wide as N&eeded", QKeySequence("Ctrl+Shift+W"), [this] { m_rows.FitColumn(Current()); },
      hasColumn);
  Add(
      "As &Fetched", {}, [this] { m_rows.ForgetColumns(); },
      [this] { return !m_rows.Columns().Layout().IsNone(); });
}

void ColumnCommands::Add(const char* sLabel, const QKeySequence& keys, std::function<void()> run,
                         std::function<bool()> enabled) {
  m_rows.Commands().Add(
      {CommandGroup::Layout, QString::fromUtf8(sLabel), keys, std::move(run), std::move(enabled)});
}

int ColumnCommands::Current() const {
  const int nColumn = m_rows.currentIndex().column();
  return nColumn >= 0 && !m_rows.Names().isSectionHidden(nColumn) ? nColumn : -1;
}

std::vector<int> ColumnCommands::Chosen() const {
  const int nLast = m_rows.model()->rowCount() - 1;
  std::vector<int> columns;
  for (const QItemSelectionRange& range : m_rows.selectionModel()->selection()) {
    if (range.top() > 0 || range.bottom() < nLast || m_rows.RowsChosen()) continue;
    for (int n = range.left(); n <= range.right(); ++n) {
      if (!m_rows.Names().isSectionHidden(n)) columns.push_back(n);
    }
  }
  // In a grid of one row a selected cell is no column that was meant.
  const bool bMeant = std::ranges::find(columns, Current()) != columns.end() && nLast > 0;
  return bMeant ? columns : std::vector<int>{Current()};
}

void ColumnCommands::Hide() {
  std::vector<bool> hidden = m_rows.HiddenColumns();
  for (const int nColumn : Chosen()) hidden[static_cast<std::size_t>(nColumn)] = true;
  m_rows.HiddenColumns(hidden);
}

void ColumnCommands::Choose() {
  std::vector<ColumnChoice> choices;
  for (int nVisual = 0; nVisual < m_rows.Names().count(); ++nVisual) {
    const int nColumn = m_rows.Names().logicalIndex(nVisual);
    choices.push_back(
        {nColumn, m_rows.Model().ColumnName(nColumn), !m_rows.Names().isSectionHidden(nColumn)});
  }
  auto* dialog = new ColumnsDialog(choices, &m_rows);
  connect(dialog, &QDialog::accepted, this,
          [this, dialog, rs = std::weak_ptr(m_rows.Model().Recordset())] {
            // Other rows may have come while it was open.
            if (rs.lock() != m_rows.Model().Recordset()) return;
            std::vector<bool> hidden = m_rows.HiddenColumns();
            for (const ColumnChoice& choice : dialog->Choices()) {
              hidden[static_cast<std::size_t>(choice.nColumn)] = !choice.bShown;
            }
            m_rows.HiddenColumns(hidden);
          });
  dialog->open();
}

void ColumnCommands::Resize(int nBy) {
  m_rows.ColumnWidth(Current(), std::clamp(m_rows.ColumnWidth(Current()) + m_rows.WidthOf(nBy),
                                           ColumnLayout::kLeastWidth, ColumnLayout::kMostWidth));
}

}  // namespace orvane::controls
