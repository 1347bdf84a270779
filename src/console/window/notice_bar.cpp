#include "console/window/notice_bar.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QStyle>
#include <QToolButton>

#include "console/look/image_list.h"

namespace orvane::console {

NoticeBar::NoticeBar(QWidget* parent) : QFrame(parent), m_lblSentence(new QLabel(this)) {
  setObjectName("noticeBar");
  setAccessibleName(tr("Notice"));
  setAutoFillBackground(true);
  auto colors = palette();
  colors.setColor(QPalette::Window, QColor(0xFD, 0xF3, 0xD8));
  colors.setColor(QPalette::WindowText, QColor(0x4A, 0x38, 0x10));
  setPalette(colors);
  auto* layout = new QHBoxLayout(this);
  layout->setContentsMargins(10, 5, 6, 5);
  layout->setSpacing(8);
  auto* picture = new QLabel(this);
  picture->setPixmap(ImageList::Named("lock").pixmap(16, 16));
  layout->addWidget(picture);
  m_lblSentence->setTextFormat(Qt::PlainText);
  m_lblSentence->setWordWrap(true);
  m_lblSentence->setTextInteractionFlags(Qt::TextSelectableByMouse);
  layout->addWidget(m_lblSentence, 1);
  auto* close = new QToolButton(this);
  close->setAutoRaise(true);
  close->setIcon(style()->standardIcon(QStyle::SP_TitleBarCloseButton));
  close->setAccessibleName(tr("Dismiss"));
  close->setToolTip(tr("Dismiss"));
  layout->addWidget(close);
  connect(close, &QToolButton::clicked, this, &QWidget::hide);
  hide();
}

void NoticeBar::Show(const QString& sSentence) {
  m_lblSentence->setText(sSentence);
  setVisible(!sSentence.isEmpty());
}

QString NoticeBar::Sentence() const {
  return isHidden() ? QString() : m_lblSentence->text();
}

}  // namespace orvane::console
