#include "console/forms/editor_find_bar.h"

#include <Qsci/qsciscintilla.h>

#include <QAccessible>
#include <QCheckBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QStyle>
#include <QToolButton>

#include "console/look/picture_side.h"

namespace orvane::console {
namespace {

QString NotFound() {
  return EditorFindBar::tr("Not found");
}

QToolButton* MakeButton(const char* sName, const QString& sLabel, Qt::ArrowType arrow) {
  auto* const button = new QToolButton;
  button->setObjectName(QLatin1String(sName));
  button->setArrowType(arrow);
  button->setAutoRaise(true);
  button->setAccessibleName(sLabel);
  button->setToolTip(sLabel);
  button->setFocusPolicy(Qt::TabFocus);
  return button;
}

}  // namespace

EditorFindBar::EditorFindBar(QsciScintilla& editor, QWidget* parent)
    : QWidget(parent),
      m_editor(editor),
      m_txtFind(new QLineEdit),
      m_chkMatchCase(new QCheckBox(tr("Match case"))),
      m_lblResult(new QLabel) {
  m_txtFind->setObjectName("m_txtFind");
  m_txtFind->setAccessibleName(tr("Find"));
  m_txtFind->setPlaceholderText(tr("Find"));
  m_txtFind->setClearButtonEnabled(true);
  m_chkMatchCase->setObjectName("m_chkMatchCase");
  m_lblResult->setObjectName("m_lblResult");
  // Room for the words from the start: the bar does not shift under the mouse.
  m_lblResult->setMinimumWidth(m_lblResult->fontMetrics().horizontalAdvance(NotFound()));
  auto* const btnPrevious =
      MakeButton("m_btnFindPrevious", tr("Find previous (Shift+F3)"), Qt::UpArrow);
  auto* const btnNext = MakeButton("m_btnFindNext", tr("Find next (F3)"), Qt::DownArrow);
  auto* const btnClose = MakeButton("m_btnFindClose", tr("Close (Esc)"), Qt::NoArrow);
  btnClose->setIcon(style()->standardIcon(QStyle::SP_TitleBarCloseButton));

  auto* const layout = new QHBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(m_txtFind, 1);
  layout->addWidget(btnPrevious);
  layout->addWidget(btnNext);
  layout->addWidget(m_chkMatchCase);
  layout->addWidget(m_lblResult);
  layout->addWidget(btnClose);

  SizeImages();
  connect(m_txtFind, &QLineEdit::textEdited, this, [this] { FindWhileTyping(); });
  connect(m_chkMatchCase, &QCheckBox::toggled, this, [this] { FindWhileTyping(); });
  connect(btnPrevious, &QToolButton::clicked, this, [this] { FindPrevious(); });
  connect(btnNext, &QToolButton::clicked, this, [this] { FindNext(); });
  connect(btnClose, &QToolButton::clicked, this, [this] { Close(); });
  hide();
}

void EditorFindBar::SizeImages() {
  const int iSide = PictureSide(fontMetrics());
  for (auto* const button : findChildren<QToolButton*>(Qt::FindDirectChildrenOnly)) {
    button->setIconSize({iSide, iSide});
  }
}

void EditorFindBar::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::FontChange) SizeImages();
}

void EditorFindBar::Open() {
  const QString sSelected = m_editor.selectedText();
  if (!sSelected.isEmpty() && !sSelected.contains(u'\n')) m_txtFind->setText(sSelected);
  m_lblResult->clear();
  show();
  m_txtFind->setFocus(Qt::ShortcutFocusReason);
  m_txtFind->selectAll();
}

void EditorFindBar::Close() {
  hide();
  m_editor.setFocus(Qt::OtherFocusReason);
}

void EditorFindBar::Find(bool bForward) {
  if (m_txtFind->text().isEmpty()) return Open();
  int iFromLine = 0;
  int iFromIndex = 0;
  int iToLine = 0;
  int iToIndex = 0;
  if (m_editor.hasSelectedText()) {
    m_editor.getSelection(&iFromLine, &iFromIndex, &iToLine, &iToIndex);
  } else {
    m_editor.getCursorPosition(&iFromLine, &iFromIndex);
    iToLine = iFromLine;
    iToIndex = iFromIndex;
  }
  if (bForward) {
    FindFrom(iToLine, iToIndex, true);
  } else {
    FindFrom(iFromLine, iFromIndex, false);
  }
}

void EditorFindBar::FindWhileTyping() {
  m_lblResult->clear();
  if (m_txtFind->text().isEmpty()) return;
  int iLine = 0;
  int iIndex = 0;
  int iToLine = 0;
  int iToIndex = 0;
  // A find that still fits the longer text stays where it is.
  if (m_editor.hasSelectedText()) {
    m_editor.getSelection(&iLine, &iIndex, &iToLine, &iToIndex);
  } else {
    m_editor.getCursorPosition(&iLine, &iIndex);
  }
  FindFrom(iLine, iIndex, true);
}

void EditorFindBar::FindFrom(int iLine, int iIndex, bool bForward) {
  const bool bFound = m_editor.findFirst(m_txtFind->text(), false, m_chkMatchCase->isChecked(),
                                         false, true, bForward, iLine, iIndex);
  m_lblResult->setText(bFound ? QString() : NotFound());
  if (bFound) return;
  // Read out each time, also when the words are there already.
  QAccessibleEvent alert(m_lblResult, QAccessible::Alert);
  QAccessible::updateAccessibility(&alert);
}

void EditorFindBar::keyPressEvent(QKeyEvent* event) {
  switch (event->key()) {
    case Qt::Key_Escape:
      Close();
      break;
    case Qt::Key_Return:
    case Qt::Key_Enter:
      if (auto* const button = qobject_cast<QToolButton*>(focusWidget())) {
        button->click();
      } else {
        Find(!(event->modifiers() & Qt::ShiftModifier));
      }
      break;
    default:
      QWidget::keyPressEvent(event);
  }
}

}  // namespace orvane::console
