#include "controls/editing/pending_review.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <utility>

#include "controls/values/tip_text.h"

namespace orvane::controls {

using platform::ColumnIndex;
using platform::RowIndex;
using platform::RowState;

namespace {

constexpr int kRowRole = Qt::UserRole;
/// Nobody reads more, and they would take their time.
constexpr RowIndex kMostListed = 1'000;

QString Name(RowState state) {
  switch (state) {
    case RowState::New:
      return QStringLiteral("New");
    case RowState::Deleted:
      return QStringLiteral("To be deleted");
    case RowState::Edited:
    case RowState::Fetched:
      break;
  }
  return QStringLiteral("Changed");
}

}  // namespace

PendingReview::PendingReview(EditSession& session, CellFormat format, Actions actions,
                             QWidget* parent)
    : QDialog(parent),
      m_session(session),
      m_format(std::move(format)),
      m_actions(std::move(actions)),
      m_life(session.Life()),
      m_list(new QTreeWidget),
      m_more(new QLabel) {
  setObjectName("pendingReview");
  setWindowTitle("Rows Not Stored");
  setAttribute(Qt::WA_DeleteOnClose);
  m_more->setObjectName("moreRows");
  m_list->setObjectName("pendingRows");
  m_list->setAccessibleName("Rows not stored");
  m_list->setRootIsDecorated(false);
  m_list->setUniformRowHeights(true);
  m_list->setSelectionMode(QAbstractItemView::ExtendedSelection);
  m_list->setHeaderLabels({"What", "Values", "Why not stored"});
  // All three stay in sight, whatever was typed; the tips have what is cut.
  m_list->header()->setSectionResizeMode(QHeaderView::Stretch);
  m_list->header()->setSectionResizeMode(0, QHeaderView::ResizeToContents);

  auto* buttons = new QHBoxLayout;
  const auto add = [&](const char* sName, const QString& sLabel, std::function<void()> action) {
    auto* button = new QPushButton(sLabel);
    button->setObjectName(sName);
    connect(button, &QPushButton::clicked, this, [action = std::move(action)] { action(); });
    buttons->addWidget(button);
    return button;
  };
  add("storeAll", "&Store All", [this] {
    // Storing handles events, and one of them may be the end of the grid, or of this.
    const QPointer<PendingReview> self(this);
    const auto storeAll = m_actions.storeAll;
    storeAll();
    if (self) Refresh();
  });
  m_settle = add("settleRow", "Se&ttle\u2026", [this] { m_actions.settle(Chosen().front()); });
  m_goTo = add("goToRow", "&Go to Row", [this] {
    const RowIndex row = Chosen().front();
    accept();
    m_actions.goTo(row);
  });
  m_discard = add("discardRows", "&Discard", [this] { Discard(Chosen()); });
  add("discardAll", "Discard A&ll", [this] { Discard(m_session.Pending()); });
  buttons->addStretch(1);
  add("closeReview", "&Close", [this] { reject(); })->setDefault(true);

  auto* layout = new QVBoxLayout(this);
  layout->addWidget(m_list, 1);
  layout->addWidget(m_more);
  auto* hint = new QLabel("What is discarded here can be brought back with Undo in the grid.");
  hint->setWordWrap(true);
  layout->addWidget(hint);
  layout->addLayout(buttons);
  connect(m_list, &QTreeWidget::itemSelectionChanged, this, [this] { UpdateButtons(); });
  resize(fontMetrics().averageCharWidth() * 105, fontMetrics().height() * 19);
  Refresh();
}

QString PendingReview::ChangesOf(RowIndex row) const {
  const auto& rs = *m_session.Recordset();
  const RowState state = rs.StateAt(row);
  QStringList changes;
  const auto& key = m_session.Updatability().table.key;
  if (state != RowState::New) {
    for (const ColumnIndex column : key)
      changes << Brief(m_format.Shown(rs.OriginalAt(row, column)));
  }
  for (ColumnIndex column = 0; column < rs.FieldCount() && state != RowState::Deleted; ++column) {
    if (!rs.IsEdited(row, column)) continue;
    const QString sNow = Brief(m_format.Shown(rs.ValueAt(row, column)));
    const QString sName = QString::fromStdString(rs.FieldAt(column).Name());
    changes << (state == RowState::New ? sName + QStringLiteral(" = ") + sNow
                                       : sName + QStringLiteral(": ") +
                                             Brief(m_format.Shown(rs.OriginalAt(row, column))) +
                                             QStringLiteral(" \u2192 ") + sNow);
  }
  return changes.join(QStringLiteral(", "));
}

void PendingReview::Refresh() {
  // A grid that goes in the middle of an event takes its windows along only when that is over.
  if (m_life.expired()) return;
  m_list->clear();
  if (!m_session.Recordset() || m_session.Pending().empty()) {
    reject();
    return;
  }
  const RowIndex count = m_session.PendingCount();
  m_more->setVisible(count > kMostListed);
  m_more->setText(QStringLiteral("The first %L1 of %L2 rows are listed.")
                      .arg(static_cast<qlonglong>(kMostListed))
                      .arg(static_cast<qlonglong>(count)));
  for (const RowIndex row : m_session.Pending()) {
    if (m_list->topLevelItemCount() == kMostListed) break;
    const QString sWhy = m_session.RemarkOf(row);
    auto* item = new QTreeWidgetItem(
        m_list, {Name(m_session.Recordset()->StateAt(row)), ChangesOf(row), sWhy});
    item->setData(0, kRowRole, static_cast<qlonglong>(row));
    item->setToolTip(1, item->text(1).toHtmlEscaped());
    item->setToolTip(2, sWhy.toHtmlEscaped());
  }
  m_list->topLevelItem(0)->setSelected(true);
  m_list->setCurrentItem(m_list->topLevelItem(0));
  UpdateButtons();
}

std::vector<RowIndex> PendingReview::Chosen() const {
  std::vector<RowIndex> rows;
  for (const QTreeWidgetItem* item : m_list->selectedItems()) {
    rows.push_back(item->data(0, kRowRole).toLongLong());
  }
  return rows;
}

void PendingReview::Discard(const std::vector<RowIndex>& rows) {
  // Of many rows that handles events, and one of them may be the end of the grid, or of this.
  const QPointer<PendingReview> self(this);
  m_session.Discard(rows);
  if (self) Refresh();
}

void PendingReview::UpdateButtons() {
  if (m_life.expired()) return;
  const auto chosen = Chosen();
  m_discard->setEnabled(!chosen.empty());
  m_goTo->setEnabled(chosen.size() == 1);
  m_settle->setEnabled(chosen.size() == 1 && m_session.ConflictOf(chosen.front()));
}

}  // namespace orvane::controls
