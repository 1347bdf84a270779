#include "controls/view/row_form.h"

#include <QApplication>
#include <QClipboard>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QTableView>
#include <QToolButton>
#include <QVBoxLayout>
#include <algorithm>

#include "controls/view/cell_editor.h"
#include "controls/view/form_delegate.h"
#include "controls/view/row_form_model.h"
#include "controls/view/row_view.h"

namespace orvane::controls {

namespace {

/// In characters.
constexpr int kMostFormNameWidth = 32;

QToolButton* AddHeadButton(QHBoxLayout& head, Qt::ArrowType arrow, const QString& sName,
                           const QString& sTip) {
  auto* button = new QToolButton;
  button->setArrowType(arrow);
  button->setAutoRaise(true);
  button->setObjectName(sName);
  button->setToolTip(sTip);
  button->setAccessibleName(sTip);
  head.addWidget(button);
  return button;
}

/// What is pressed in the form and meant for the rows: storing, undo and redo, and the window for a
/// cell.
bool IsOfRows(const QKeyEvent& key) {
  const bool bReturn = key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter;
  const auto modifiers = key.modifiers() & ~Qt::KeypadModifier;
  if (bReturn) return modifiers == Qt::AltModifier || modifiers == Qt::ControlModifier;
  const bool bUndo = key.key() == Qt::Key_Z || key.key() == Qt::Key_Y;
  return bUndo && (modifiers & ~Qt::ShiftModifier) == Qt::ControlModifier;
}

}  // namespace

RowForm::RowForm(RowView& rows, QWidget* parent)
    : QWidget(parent),
      m_rows(rows),
      m_model(new RowFormModel(rows.Model(), this)),
      m_found(new QSortFilterProxyModel(this)),
      m_which(new QLabel),
      m_filter(new QLineEdit),
      m_lines(new QTableView),
      m_cells(new FormDelegate(rows.Model(), *m_model, *m_found, m_lines)) {
  setObjectName("rowForm");
  setAccessibleName("Form of the row");
  m_found->setSourceModel(m_model);
  m_found->setFilterKeyColumn(RowFormModel::NameSection);
  m_found->setFilterRole(Qt::EditRole);
  m_found->setFilterCaseSensitivity(Qt::CaseInsensitive);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(4, 4, 4, 4);
  layout->setSpacing(4);
  AddHead();
  m_filter->setObjectName("formFilter");
  m_filter->setPlaceholderText("Find a column");
  m_filter->setAccessibleName("Find a column");
  m_filter->setClearButtonEnabled(true);
  layout->addWidget(m_filter);
  m_lines->setObjectName("formLines");
  m_lines->setAccessibleName("Values of the row");
  m_lines->setModel(m_found);
  m_lines->verticalHeader()->hide();
  m_lines->verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 8);
  // The values have what the names leave; nothing lies sideways of what is seen.
  m_lines->horizontalHeader()->setSectionResizeMode(RowFormModel::ValueSection,
                                                    QHeaderView::Stretch);
  m_lines->setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
  m_lines->setSelectionMode(QAbstractItemView::SingleSelection);
  m_lines->setSelectionBehavior(QAbstractItemView::SelectRows);
  m_lines->setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed |
                           QAbstractItemView::AnyKeyPressed);
  m_lines->setItemDelegate(m_cells);
  m_lines->setWordWrap(false);
  m_lines->setTabKeyNavigation(false);
  m_lines->installEventFilter(this);
  m_filter->installEventFilter(this);
  layout->addWidget(m_lines, 1);
  hide();

  connect(m_filter, &QLineEdit::textChanged, m_found, &QSortFilterProxyModel::setFilterFixedString);
  connect(m_rows.selectionModel(), &QItemSelectionModel::currentChanged, this,
          [this] { FollowRows(); });
  // Whoever exchanges the rows has taken what was typed; the lines may stay, their row does not.
  connect(&m_rows.Model(), &QAbstractItemModel::modelAboutToBeReset, this,
          [this] { CloseEditors(false); });
  connect(
      &m_rows.Model(), &QAbstractItemModel::modelReset, this, [this] { FollowRows(); },
      Qt::QueuedConnection);
  connect(m_lines->selectionModel(), &QItemSelectionModel::currentChanged, this,
          [this] { FollowLine(); });
  connect(
      &m_rows.Model(), &QAbstractItemModel::rowsInserted, this, [this] { FollowRows(); },
      Qt::QueuedConnection);
  connect(m_lines, &QAbstractItemView::doubleClicked, this, [this] {
    if (!CanEdit()) GoToCell();
  });
  m_rows.Commands().Add({CommandGroup::Columns, "Show as &Form", QKeySequence(Qt::Key_F4),
                         [this] { Show(isHidden()); },
                         [this] { return !isHidden() || m_rows.HasRows(); }});
}

void RowForm::AddHead() {
  auto* head = new QHBoxLayout;
  head->setSpacing(2);
  m_which->setObjectName("formRow");
  head->addWidget(m_which, 1);
  m_previous = AddHeadButton(*head, Qt::UpArrow, "formPrevious", "Previous row (Alt+Up)");
  m_next = AddHeadButton(*head, Qt::DownArrow, "formNext", "Next row (Alt+Down)");
  auto* close = AddHeadButton(*head, Qt::NoArrow, "formClose", "Close the form (Esc)");
  close->setText(QStringLiteral("\u2715"));
  static_cast<QVBoxLayout*>(layout())->addLayout(head);
  connect(m_previous, &QToolButton::clicked, this, [this] { Step(-1); });
  connect(m_next, &QToolButton::clicked, this, [this] { Step(1); });
  connect(close, &QToolButton::clicked, this, [this] { Show(false); });
}

void RowForm::Show(bool bShow) {
  if (!bShow) TakeTyped();
  const bool bHadKeys = isAncestorOf(QApplication::focusWidget());
  setVisible(bShow);
  if (m_shown) m_shown();
  if (!bShow) {
    if (bHadKeys) m_rows.setFocus();
    return;
  }
  FollowRows();
  m_lines->resizeColumnToContents(RowFormModel::NameSection);
  m_lines->setColumnWidth(RowFormModel::NameSection,
                          std::min(m_lines->columnWidth(RowFormModel::NameSection),
                                   kMostFormNameWidth * m_lines->fontMetrics().averageCharWidth()));
  m_lines->setFocus();
}

void RowForm::FollowRows() {
  if (isHidden() || m_bFollowing) return;
  m_bFollowing = true;
  const QModelIndex current = m_rows.currentIndex();
  if (current.row() != m_model->Place()) TakeTyped();
  m_model->Place(current.isValid() ? current.row() : -1);
  m_which->setText(
      current.isValid()
          ? QStringLiteral("Row %1").arg(
                QLocale(QLocale::English, QLocale::UnitedStates).toString(current.row() + 1))
          : QStringLiteral("No row"));
  m_previous->setEnabled(current.isValid() && current.row() > 0);
  m_next->setEnabled(current.isValid() && current.row() + 1 < m_rows.Model().rowCount());
  if (current.isValid()) {
    const QModelIndex line =
        m_found->mapFromSource(m_model->index(current.column(), RowFormModel::ValueSection));
    if (line.isValid()) m_lines->setCurrentIndex(line);
  }
  m_bFollowing = false;
}

void RowForm::FollowLine() {
  if (m_lines->currentIndex().column() == RowFormModel::NameSection) {
    // Whoever is at a name means its value.
    m_lines->setCurrentIndex(m_lines->currentIndex().siblingAtColumn(RowFormModel::ValueSection));
    return;
  }
  const QModelIndex line = m_found->mapToSource(m_lines->currentIndex());
  // What a filter does to the lines moves nobody's cell.
  const bool bMoved = m_lines->hasFocus() && !m_bFollowing;
  if (!bMoved || !line.isValid() || m_model->Place() < 0) return;
  m_bFollowing = true;
  m_rows.GoTo(m_model->Place(), line.row());
  m_bFollowing = false;
}

CellDelegate& RowForm::Cells() const {
  return *m_cells;
}

QModelIndex RowForm::CurrentCell() const {
  const QModelIndex line = m_found->mapToSource(m_lines->currentIndex());
  return line.isValid() && m_model->Place() >= 0
             ? m_rows.Model().index(m_model->Place(), line.row())
             : QModelIndex();
}

bool RowForm::CanEdit() const {
  return CurrentCell().flags().testFlag(Qt::ItemIsEditable);
}

void RowForm::EditLine() {
  if (!CanEdit()) return GoToCell();
  if (m_cells->EditsElsewhere(m_lines->currentIndex())) return;
  m_lines->edit(m_lines->currentIndex());
}

void RowForm::SetNull() {
  if (CanEdit()) m_rows.Model().Edit(CurrentCell(), {});
}

// What is being typed goes to the row that it was typed for, or nowhere.
void RowForm::CloseEditors(bool bTake) {
  for (auto* editor : m_lines->viewport()->findChildren<CellEditor*>()) {
    if (editor->isHidden()) continue;  // closed already, and about to go
    if (bTake) emit m_cells->commitData(editor);
    emit m_cells->closeEditor(editor);
  }
}

void RowForm::Step(int nRows) {
  TakeTyped();
  const int nPlace = m_model->Place() + nRows;
  if (m_model->Place() < 0 || nPlace < 0 || nPlace >= m_rows.Model().rowCount()) return;
  m_rows.GoTo(nPlace, std::max(0, m_rows.currentIndex().column()));
}

void RowForm::GoToCell() {
  const QModelIndex line = m_found->mapToSource(m_lines->currentIndex());
  if (!line.isValid() || m_model->Place() < 0) return;
  m_rows.Reveal(line.row());
  m_rows.GoTo(m_model->Place(), line.row());
  m_rows.setFocus();
}

void RowForm::CopyValue() const {
  const QModelIndex line = m_found->mapToSource(m_lines->currentIndex());
  if (!line.isValid() || m_model->Place() < 0) return;
  const RowModel& rows = m_rows.Model();
  QGuiApplication::clipboard()->setText(
      rows.Format().Whole(rows.ValueAt(m_model->Place(), line.row())));
}

bool RowForm::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() != QEvent::KeyPress && event->type() != QEvent::ShortcutOverride) {
    return QWidget::eventFilter(watched, event);
  }
  const auto* key = static_cast<QKeyEvent*>(event);
  const bool bLines = watched == m_lines;
  const auto act = [&]() -> std::function<void()> {
    const bool bAlt = key->modifiers() == Qt::AltModifier;
    if (bAlt && key->key() == Qt::Key_Up) return [this] { Step(-1); };
    if (bAlt && key->key() == Qt::Key_Down) return [this] { Step(1); };
    if (key->key() == Qt::Key_Escape) return [this] { Show(false); };
    const bool bToggle = key->modifiers() == Qt::NoModifier && key->key() == Qt::Key_F4;
    if (bToggle) return [this] { Show(false); };
    if (bLines && key->matches(QKeySequence::Copy)) return [this] { CopyValue(); };
    if (bLines && IsOfRows(*key))
      return [this, key] {
        QKeyEvent press(key->type(), key->key(), key->modifiers(), key->text());
        QCoreApplication::sendEvent(&m_rows, &press);
      };
    const bool bNull = key->modifiers() == Qt::ControlModifier && key->key() == Qt::Key_0;
    if (bLines && bNull) return [this] { SetNull(); };
    const bool bReturn = key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter;
    if (bLines && bReturn) return [this] { EditLine(); };
    if (!bLines && (bReturn || key->key() == Qt::Key_Down)) return [this] { m_lines->setFocus(); };
    return {};
  }();
  if (!act) return QWidget::eventFilter(watched, event);
  event->accept();
  if (event->type() == QEvent::KeyPress) act();
  return true;
}

}  // namespace orvane::controls
