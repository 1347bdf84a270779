#include "controls/grid/grid_editing.h"

#include <QItemSelectionModel>
#include <QTimer>
#include <algorithm>
#include <utility>

#include "controls/grid/edit_keys.h"
#include "controls/grid/grid_window.h"
#include "controls/view/cell_delegate.h"
#include "controls/view/cell_editor.h"
#include "controls/view/header_view.h"
#include "controls/view/row_form.h"
#include "controls/view/status_strip.h"
#include "controls/view/value_dialog.h"
#include "platform/long_operation.h"

namespace orvane::controls {

using platform::ColumnIndex;
using platform::RecordsetPtr;
using platform::RowIndex;
using platform::RowState;

namespace {

constexpr QAbstractItemView::EditTriggers kTriggers = QAbstractItemView::DoubleClicked |
                                                      QAbstractItemView::EditKeyPressed |
                                                      QAbstractItemView::AnyKeyPressed;

}  // namespace

GridEditing::GridEditing(GridWindow& window, RowOutbox::Server server, Events events,
                         CellFilling::Asker asker, std::shared_ptr<QStringList> lastQueries)
    : QObject(&window),
      m_window(window),
      m_rows(&window.Rows()),
      m_events(std::move(events)),
      m_session([this](std::span<const RowIndex> rows) { RowsChanged(rows); }),
      m_filling(new CellFilling(window, m_session, std::move(asker), std::move(lastQueries))),
      m_questions(new RowQuestions(
          window, m_session,
          {[this] { m_outbox->SendAll(); }, [this](RowIndex row) { GoTo(row); },
           [this](RowIndex row) { m_outbox->Leave(row); },
           [this](const auto& rows) { Delete(rows); }, [this] { Raise(m_events.deleted); }},
          this)),
      m_outbox(new RowOutbox(
          m_session, std::move(server),
          {[this](RowState before) { TellOfStored(before); }, [this] { Raise(m_events.deleted); },
           [this](RowIndex row) { m_questions->AskToSettle(row); },
           [this](const QString& sSentence) { m_window.Lost(sSentence); },
           [this](bool bSending) {
             m_window.Rows().setProperty(platform::LongOperation::kKeepsKeys, bSending);
           },
           [this](RowIndex sent, RowIndex of) { TellOfProgress(sent, of); }},
          this)) {
  m_filling->setParent(this);
  RowView& rows = m_window.Rows();
  new EditKeys(window, m_session, {[this] { StartEditing(); }, [this] { Move(false); }}, this);
  connect(rows.selectionModel(), &QItemSelectionModel::currentChanged, this,
          [this](const QModelIndex& /*current*/, const QModelIndex& previous) {
            if (!m_current && previous.isValid()) m_current = RecordRowOf(previous);
            FollowCurrent();
            TellOfCurrent();
          });
  m_window.OnArranged([this] { FollowCurrent(); });
  for (CellDelegate* cells : Cells()) {
    cells->OnTyped([this] { TellOfPending(); });
    // Not from within the view, which is about to open a line.
    cells->OnTooLong([this](const QModelIndex& index) {
      QMetaObject::invokeMethod(
          this, [this, at = QPersistentModelIndex(index)] { OpenCell(at); }, Qt::QueuedConnection);
    });
    connect(cells, &QAbstractItemDelegate::closeEditor, this, [this] { TellOfPending(); });
  }
  AddCommands();
  m_session.OnTakeTyped([this] { TakeTyped(); });
  m_window.Rows().Model().Editing(&m_session);
  m_window.Status().OnPendingPressed([this] { m_questions->Review(); });
}

GridEditing::~GridEditing() {
  if (!m_rows) return;
  m_window.OnArranged({});
  m_rows->Model().Editing(nullptr);
  for (CellDelegate* cells : Cells()) {
    cells->OnTyped({});
    cells->OnTooLong({});
  }
}

// Of the rows, and of the form of one of them.
std::array<CellDelegate*, 2> GridEditing::Cells() const {
  return {static_cast<CellDelegate*>(m_rows->itemDelegate()), &m_window.Form().Cells()};
}

void GridEditing::Show(const RecordsetPtr& rs, controls::Updatability updatability,
                       ValueInput input, std::shared_ptr<EditNotes> notes) {
  m_outbox->Clear();
  m_current.reset();
  m_session.Show(rs, std::move(updatability), std::move(input), std::move(notes));
  RowView& rows = m_window.Rows();
  const auto& can = m_session.Updatability();
  rows.setEditTriggers(can.bUpdate || can.bInsert ? kTriggers : QAbstractItemView::NoEditTriggers);
  // A statement that gives no rows leaves none to be looked at.
  m_window.Status().ReadOnly(rs->FieldCount() > 0 ? can.sWhyNot : QString());
  // Where these rows are in sight already, an empty one may have to come or go.
  if (rows.Model().Recordset() == rs) rows.Model().TakeRowsIn();
  TellOfPending();
}

void GridEditing::ShowNothing() {
  m_outbox->Clear();
  m_current.reset();
  m_session.ShowNothing();
  m_window.Rows().setEditTriggers(QAbstractItemView::NoEditTriggers);
  m_window.Status().ReadOnly({});
  TellOfPending();
}

void GridEditing::AddCommands() {
  GridCommands& commands = m_window.Rows().Commands();
  const auto canEdit = [this] {
    const QModelIndex index = m_window.Rows().currentIndex();
    return index.isValid() && m_window.Rows().model()->flags(index).testFlag(Qt::ItemIsEditable);
  };
  const auto pending = [this] { return m_session.PendingCount() > 0; };
  const auto edits = [this] { return m_session.Updatability().bUpdate; };
  commands.Add(
      {CommandGroup::Edit, "&Edit Cell", Qt::Key_F2, [this] { StartEditing(); }, canEdit, edits});
  commands.Add({CommandGroup::Edit, "Cell in a &Window\u2026", Qt::ALT | Qt::Key_Return,
                [this] { OpenCell(m_window.Rows().currentIndex()); },
                [this] { return m_window.Rows().currentIndex().isValid(); }});
  commands.Add({CommandGroup::Edit, "&Add a Row", Qt::Key_Insert, [this] { m_window.GoToNewRow(); },
                [this] { return m_session.OffersNewRow(); },
                [this] { return m_session.Updatability().bInsert; }});
  commands.Add({CommandGroup::Edit, "Set to &Null", Qt::CTRL | Qt::Key_0, [this] { SetNull(); },
                canEdit, edits});
  commands.Add({CommandGroup::Edit, "&Paste", QKeySequence::Paste, [this] { m_filling->Paste(); },
                canEdit, edits});
  commands.Add({CommandGroup::Edit,
                "Fill from a &Query\u2026",
                {},
                [this] { m_filling->CellQuery(); },
                canEdit,
                edits});
  commands.Add({CommandGroup::Edit, "&Undo", QKeySequence::Undo, [this] { Move(true); },
                [this] { return m_session.Recordset() && m_session.Notes()->steps.CanUndo(); },
                edits});
  commands.Add(
      {CommandGroup::Edit, "&Redo", QKeySequence(Qt::CTRL | Qt::Key_Y), [this] { Move(false); },
       [this] { return m_session.Recordset() && m_session.Notes()->steps.CanRedo(); }, edits});
  commands.Add({CommandGroup::Edit, "Discard Changes of &Row", Qt::Key_Escape,
                [this] { DiscardRow(); }, pending, edits});
  commands.Add({CommandGroup::Edit, "&Store Changes", Qt::CTRL | Qt::Key_Return,
                [this] { m_outbox->SendAll(); }, pending, edits});
  commands.Add({CommandGroup::Edit,
                "Rows &Not Stored\u2026",
                {},
                [this] { m_questions->Review(); },
                pending,
                edits});
  commands.Add({CommandGroup::Edit, "&Delete Rows\u2026", Qt::Key_Delete,
                [this] { m_questions->DeleteSelectedRows(); },
                [this] { return m_window.Rows().RowsSelected(); },
                [this] { return DeleteAllowed(); }});
}

CellEditor* GridEditing::Typed() const {
  for (auto* editor : m_window.findChildren<CellEditor*>()) {
    if (!editor->isHidden()) return editor;  // a hidden one is closed already, and about to go
  }
  return nullptr;
}

void GridEditing::TakeTyped() {
  CellEditor* editor = Typed();
  if (!editor) return;
  // It lies in the viewport of its view.
  auto* delegate =
      qobject_cast<QAbstractItemView*>(editor->parentWidget()->parentWidget())->itemDelegate();
  emit delegate->commitData(editor);
  emit delegate->closeEditor(editor);
}

void GridEditing::StartEditing() {
  RowView& rows = m_window.Rows();
  const QModelIndex index = rows.currentIndex();
  if (!index.isValid() || !rows.model()->flags(index).testFlag(Qt::ItemIsEditable)) return;
  if (!Cells()[0]->EditsElsewhere(index)) rows.edit(index);
}

void GridEditing::OpenCell(const QModelIndex& index) {
  TakeTyped();
  const RowModel& model = m_window.Rows().Model();
  const auto* open = m_window.findChild<ValueDialog*>();
  if (!index.isValid() || (open && open->isVisible())) return;
  const RecordsetPtr rs = model.Recordset();
  auto* dialog =
      new ValueDialog({model.ValueAt(index.row(), index.column()),
                       ColumnTakes(rs->FieldAt(index.column())), ValueInput(model.Format().Zone())},
                      model.ColumnName(index.column()), &m_window);
  if (!index.flags().testFlag(Qt::ItemIsEditable)) dialog->OnlyShow();
  connect(dialog, &QDialog::accepted, this,
          [this, dialog, rs, row = model.RecordRow(index.row()), nColumn = index.column()] {
            if (m_session.Recordset() != rs || !dialog->Taken()) return;
            m_session.Edit(row, nColumn, *dialog->Taken());
          });
  dialog->open();
}

std::vector<CellEdit> GridEditing::SelectedCells() {
  RowView& rows = m_window.Rows();
  std::vector<CellEdit> cells;
  RowIndex selected = 0;
  for (const QItemSelectionRange& range : rows.selectionModel()->selection()) {
    const bool bEmptyRow = rows.Model().IsEmptyRow(range.bottom());
    selected += RowIndex{range.height() - (bEmptyRow ? 1 : 0)} * range.width();
  }
  if (selected > CellFilling::kMostCells) {
    m_window.Status().Remark(
        QStringLiteral("Nothing was changed: more than %L1 cells are selected; select fewer.")
            .arg(CellFilling::kMostCells));
    return {};
  }
  for (const QItemSelectionRange& range : rows.selectionModel()->selection()) {
    for (int nRow = range.top(); nRow <= range.bottom(); ++nRow) {
      if (rows.Model().IsEmptyRow(nRow)) continue;
      for (int nColumn = range.left(); nColumn <= range.right(); ++nColumn) {
        // What is not seen is not changed either.
        if (rows.Names().isSectionHidden(nColumn)) continue;
        cells.push_back({rows.Model().RecordRow(nRow), nColumn, {}});
      }
    }
  }
  const QModelIndex current = rows.currentIndex();
  if (cells.empty() && current.isValid()) {
    cells.push_back({rows.Model().RecordRow(current.row()), current.column(), {}});
  }
  return cells;
}

void GridEditing::SetNull() {
  const std::vector<CellEdit> cells = SelectedCells();
  if (cells.empty()) return;
  const QPointer<GridEditing> self(this);
  if (!m_session.Edit(cells) && self) {
    m_window.Remark("Nothing was changed: it was cancelled.", false);
  }
}

void GridEditing::Move(bool bUndo) {
  const QPointer<GridEditing> self(this);
  const auto row = bUndo ? m_session.Undo(CurrentRow()) : m_session.Redo(CurrentRow());
  if (self) GoTo(row);
}

void GridEditing::Delete(const std::vector<RowIndex>& rows) {
  const QPointer<GridEditing> self(this);
  if (!m_outbox->Delete(rows) && self) {
    m_window.Remark("Nothing was deleted: it was cancelled.", false);
  }
}

void GridEditing::DiscardRow() {
  const QModelIndex current = m_window.Rows().currentIndex();
  if (!current.isValid()) return;
  const RowIndex rows[] = {m_window.Rows().Model().RecordRow(current.row())};
  if (rows[0] < m_session.Recordset()->RecordCount()) m_session.Discard(rows);
}

std::optional<RowIndex> GridEditing::CurrentRow() const {
  const QModelIndex current = m_window.Rows().currentIndex();
  return current.isValid() ? std::optional(RecordRowOf(current)) : std::nullopt;
}

void GridEditing::GoTo(std::optional<RowIndex> row) {
  if (!row) return;
  RowView& rows = m_window.Rows();
  const int nPlace = rows.Model().PlaceOf(*row);
  if (nPlace >= 0) rows.GoTo(nPlace, std::max(0, rows.currentIndex().column()));
}

void GridEditing::TellOfStored(RowState before) {
  const auto& names = m_session.Updatability().table.names;
  if (std::ranges::find(names, platform::Text()) != names.end()) {
    m_window.Status().Remark(
        QStringLiteral("The row was stored. What the query works out of it is shown as it was "
                       "before; refresh to see it anew."),
        false);
  }
  if (before == RowState::New) Raise(m_events.inserted);
}

void GridEditing::Raise(const std::function<void()>& event) {
  if (event) event();
}

// ---- what is told

RowIndex GridEditing::RecordRowOf(const QModelIndex& index) const {
  return m_window.Rows().Model().RecordRow(index.row());
}

void GridEditing::RowsChanged(std::span<const RowIndex> rows) {
  const QModelIndex current = m_window.Rows().currentIndex();
  if (!m_current && current.isValid()) m_current = RecordRowOf(current);
  RowModel& model = m_window.Rows().Model();
  model.TakeRowsIn(rows);
  model.TellOfChange(rows);
  TellOfPending();
  TellOfCurrent();
  m_window.Edited();
}

void GridEditing::TellOfProgress(RowIndex sent, RowIndex of) {
  const auto number = [](RowIndex rows) { return static_cast<qlonglong>(rows); };
  if (sent < of) {
    m_window.Working(
        QStringLiteral("Storing rows: %L1 of %L2\u2026").arg(number(sent)).arg(number(of)),
        "Stops it; what is not stored yet stays as it is", [this] { m_outbox->Stop(); });
    return;
  }
  m_window.Working({}, {}, {});
  m_questions->RowsStored();
  const RowIndex left = m_session.PendingCount();
  if (left == 0) return;
  m_window.Status().Remark(RowsText(left) + (left == 1 ? QStringLiteral(" is not stored.")
                                                       : QStringLiteral(" are not stored.")));
}

void GridEditing::FollowCurrent() {
  const QModelIndex current = m_window.Rows().currentIndex();
  const auto before = m_current;
  m_current.reset();
  if (current.isValid()) m_current = RecordRowOf(current);
  if (before && before != m_current) m_outbox->Leave(*before);
}

void GridEditing::TellOfPending() {
  m_window.Status().Pending(m_session.PendingCount());
  if (m_session.Recordset() && m_events.pending) m_events.pending(Unsent());
}

RowIndex GridEditing::Unsent() const {
  const RowIndex rows = m_session.PendingCount();
  const CellEditor* typed = Typed();
  const QModelIndex current = m_window.Rows().currentIndex();
  if (!typed || !typed->Touched() || !current.isValid()) return rows;
  const RowIndex row = m_window.Rows().Model().RecordRow(current.row());
  return m_session.IsPending(row) ? rows : rows + 1;
}

void GridEditing::TellOfCurrent() {
  const QModelIndex current = m_window.Rows().currentIndex();
  if (!m_session.Recordset()) return;
  m_window.Status().Remark(
      current.isValid() ? m_session.RemarkOf(m_window.Rows().Model().RecordRow(current.row()))
                        : QString());
}

}  // namespace orvane::controls
