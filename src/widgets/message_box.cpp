#include "widgets/message_box.h"

#include <QAbstractButton>
#include <QGridLayout>
#include <QLabel>
#include <QScreen>
#include <QScrollBar>
#include <QShowEvent>
#include <QTextDocument>
#include <QTextEdit>
#include <cmath>

#include "widgets/window_place.h"

namespace orvane::widgets {
namespace {

constexpr int kCharactersInLine = 70;
/// The part of the screen that a text may take; the rest is for the title and the buttons.
constexpr double kPartOfScreen = 0.7;

class MessageText : public QTextEdit {
 public:
  MessageText(const QString& sText, const QSize& screen) {
    setObjectName("m_txtMessage");
    setReadOnly(true);
    setFrameShape(NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    viewport()->setAutoFillBackground(false);
    setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    document()->setDocumentMargin(0);
    // Before the text: the bar would keep the range of the text in another font.
    ensurePolished();
    document()->setDefaultFont(font());
    setPlainText(sText);
    Fit(screen * kPartOfScreen);
  }

 private:
  void Fit(const QSize& most) {
    document()->setTextWidth(-1);
    const int iLine = qMin(fontMetrics().averageCharWidth() * kCharactersInLine, most.width());
    int iWidth = qMin(static_cast<int>(std::ceil(document()->idealWidth())) + 1, iLine);
    document()->setTextWidth(iWidth);
    const int iHeight = static_cast<int>(std::ceil(document()->size().height()));
    const bool bWhole = iHeight <= most.height();
    // A text that is all there needs no keys and would only stand in the way of Tab.
    setFocusPolicy(bWhole ? Qt::NoFocus : Qt::StrongFocus);
    setTextInteractionFlags(bWhole ? Qt::TextSelectableByMouse
                                   : Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    if (bWhole) {
      setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    } else {
      setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
      iWidth += verticalScrollBar()->sizeHint().width();
    }
    setFixedSize(iWidth, qMin(iHeight, most.height()));
  }
};

}  // namespace

MessageBox::MessageBox(QWidget* parent) : QMessageBox(parent) {
  // A failure's description may hold a "<" that is none of a tag.
  setTextFormat(Qt::PlainText);
}

void MessageBox::setVisible(bool bVisible) {
  if (bVisible) {
    LayOutText();
    EvenButtons();
  }
  QMessageBox::setVisible(bVisible);
}

void MessageBox::showEvent(QShowEvent* event) {
  QMessageBox::showEvent(event);
  if (!event->spontaneous()) Centre();
}

void MessageBox::Centre() {
  const auto* const owner = parentWidget() ? parentWidget()->window() : nullptr;
  const QRect room = screen()->availableGeometry();
  QRect frame(QPoint(), size().grownBy(FrameOver(owner)));
  frame.moveCenter(owner && owner->isVisible() ? owner->frameGeometry().center() : room.center());
  move(MovedInto(room, frame).topLeft());
}

void MessageBox::LayOutText() {
  auto* const grid = qobject_cast<QGridLayout*>(layout());
  auto* const label = findChild<QLabel*>("qt_msgbox_label");
  if (!grid || !label || label->isHidden()) return;
  QString sText = text();
  if (auto* const more = findChild<QLabel*>("qt_msgbox_informativelabel")) {
    sText += "\n\n" + informativeText();
    grid->removeWidget(more);
    more->hide();
  }
  auto* const view = new MessageText(sText, screen()->availableSize());
  auto palette = view->palette();
  palette.setColor(QPalette::Text, palette.color(QPalette::WindowText));
  view->setPalette(palette);
  delete grid->replaceWidget(label, view);
  grid->setAlignment(view, Qt::AlignLeft | Qt::AlignVCenter);
  label->hide();
  if (icon() != NoIcon) return;
  // Without a picture the box would keep room for one.
  for (int i = 0; i < grid->count(); ++i) {
    if (auto* const spacer = grid->itemAt(i)->spacerItem()) spacer->changeSize(0, 0);
  }
  grid->setHorizontalSpacing(0);
  grid->invalidate();
}

void MessageBox::EvenButtons() {
  int iWidest = 0;
  for (const auto* const button : buttons()) iWidest = qMax(iWidest, button->sizeHint().width());
  for (auto* const button : buttons()) button->setMinimumWidth(iWidest);
}

}  // namespace orvane::widgets
