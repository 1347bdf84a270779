#include "controls/view/find_bar.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QToolButton>

#include "controls/view/giving_label.h"
#include "controls/view/header_view.h"
#include "controls/view/status_strip.h"

namespace orvane::controls {

FindBar::FindBar(RowView& rows, QWidget* parent)
    : QWidget(parent),
      m_rows(rows),
      m_finder(rows.Model(), this),
      m_text(new QLineEdit(this)),
      m_outcome(new GivingLabel(this)) {
  setObjectName("findBar");
  m_text->setObjectName("findText");
  m_text->setAccessibleName("Text to find in the rows here");
  m_text->setPlaceholderText("Find in the rows here");
  m_text->setClearButtonEnabled(true);
  m_outcome->setObjectName("findOutcome");
  m_outcome->setTextFormat(Qt::PlainText);
  m_outcome->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);

  auto* layout = new QHBoxLayout(this);
  layout->setContentsMargins(8, 3, 8, 3);
  layout->addWidget(m_text, 2);
  const auto addButton = [&](const QString& sLabel, const char* sName, auto action) {
    auto* button = new QToolButton(this);
    button->setText(sLabel);
    button->setObjectName(sName);
    button->setFocusPolicy(Qt::TabFocus);
    connect(button, &QToolButton::clicked, this, action);
    layout->addWidget(button);
  };
  addButton("&Previous", "findPrevious", [this] { FindNext(false); });
  addButton("&Next", "findNext", [this] { FindNext(true); });
  layout->addWidget(m_outcome, 3);
  addButton("&Close", "findClose", [this] { Close(); });
  connect(m_text, &QLineEdit::textEdited, this, [this] {
    m_finder.Cancel();
    Tell(Scope());
  });
  m_finder.OnLost([this] { Tell(QStringLiteral("Ended: the rows have changed; look again")); });
  rows.installEventFilter(this);
  hide();
}

QString FindBar::Scope() const {
  const auto& rs = m_rows.Model().Recordset();
  const bool bAll = !rs || rs->State() == platform::FetchState::Complete;
  return (bAll ? QStringLiteral("Looks through the %1 here")
               : QStringLiteral("Only the %1 here; the server has more"))
      .arg(RowsText(m_rows.Model().Places()));
}

void FindBar::Open() {
  show();
  Tell(Scope());
  m_text->setFocus(Qt::ShortcutFocusReason);
  m_text->selectAll();
}

void FindBar::Close() {
  m_finder.Cancel();
  hide();
  m_rows.setFocus(Qt::OtherFocusReason);
}

void FindBar::FindNext(bool bForward) {
  if (m_text->text().isEmpty()) return Open();
  std::vector<int> columns = m_rows.Names().Shown();
  const QModelIndex current = m_rows.currentIndex();
  show();
  Tell(QStringLiteral("Looking\u2026 Escape ends it"));
  m_finder.Find(
      TextSought(m_text->text()), std::move(columns), {current.row(), current.column()}, bForward,
      [this](std::optional<CellPlace> cell, bool bWrapped) {
        if (!cell) {
          return Tell(
              QStringLiteral("Not found in the %1 here").arg(RowsText(m_rows.Model().Places())));
        }
        Tell(bWrapped ? QStringLiteral("Went on from the other end") : Scope());
        m_rows.GoTo(cell->nRow, cell->nColumn);
      });
}

void FindBar::Tell(const QString& sOutcome) {
  m_outcome->setText(sOutcome);
  m_outcome->setToolTip(sOutcome);
}

void FindBar::keyPressEvent(QKeyEvent* event) {
  const bool bShift = event->modifiers().testFlag(Qt::ShiftModifier);
  switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
      if (auto* button = qobject_cast<QToolButton*>(focusWidget())) return button->click();
      return FindNext(!bShift);
    case Qt::Key_F3:
      return FindNext(!bShift);
    case Qt::Key_Escape:
      // The first one ends a search that is on its way.
      if (!StopLooking()) Close();
      return;
    default:
      QWidget::keyPressEvent(event);
  }
}

bool FindBar::StopLooking() {
  if (!m_finder.Busy()) return false;
  m_finder.Cancel();
  Tell(QStringLiteral("Ended before all rows were looked at"));
  return true;
}

bool FindBar::eventFilter(QObject* watched, QEvent* event) {
  // Whoever goes on with F3 has the keys in the rows.
  if (event->type() == QEvent::KeyPress &&
      static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape && StopLooking()) {
    return true;
  }
  return QWidget::eventFilter(watched, event);
}

}  // namespace orvane::controls
