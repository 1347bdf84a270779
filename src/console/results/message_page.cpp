#include "console/results/message_page.h"

#include <QFontInfo>
#include <QIcon>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "console/look/breakable_text.h"

namespace orvane::console {

namespace {

/// Fits into the pane at its least width.
constexpr int kLongWord = 12;

}  // namespace

MessagePage::MessagePage(QWidget* parent)
    : QWidget(parent),
      m_lblPicture(new QLabel(this)),
      m_lblText(new QLabel(this)),
      m_lblDetail(new QLabel(this)),
      m_btnAction(new QPushButton(this)) {
  setObjectName("messagePage");
  setAutoFillBackground(true);
  setBackgroundRole(QPalette::Base);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(32, 32, 32, 32);
  layout->setSpacing(10);
  layout->addStretch(2);
  for (auto* label : {m_lblPicture, m_lblText, m_lblDetail}) {
    label->setAlignment(Qt::AlignCenter);
    label->setWordWrap(label != m_lblPicture);
    layout->addWidget(label);
  }
  // What comes from a component is text, whatever signs it holds.
  m_lblText->setTextFormat(Qt::PlainText);
  m_lblDetail->setTextFormat(Qt::PlainText);
  m_lblDetail->setForegroundRole(QPalette::PlaceholderText);
  m_lblDetail->setTextInteractionFlags(Qt::TextSelectableByMouse);
  auto font = m_lblText->font();
  // A desktop may count the size of its letters in dots.
  font.setPointSizeF(QFontInfo(font).pointSizeF() * 1.15);
  m_lblText->setFont(font);
  layout->addSpacing(4);
  m_btnAction->setObjectName("messageButton");
  // Enter presses it, as in a dialog.
  m_btnAction->setAutoDefault(true);
  layout->addWidget(m_btnAction, 0, Qt::AlignHCenter);
  layout->addStretch(3);
  connect(m_btnAction, &QPushButton::clicked, this, &MessagePage::ButtonPressed,
          Qt::QueuedConnection);
}

void MessagePage::Show(const QIcon& icon, const QString& sText, const QString& sDetail,
                       const QString& sButton) {
  m_lblPicture->setPixmap(icon.pixmap(QSize(40, 40), devicePixelRatioF()));
  m_sText = sText;
  m_lblText->setText(Breakable(sText, kLongWord));
  m_lblDetail->setText(Breakable(sDetail, kLongWord));
  m_lblDetail->setVisible(!sDetail.isEmpty());
  m_btnAction->setText(sButton);
  m_btnAction->setVisible(!sButton.isEmpty());
}

QString MessagePage::Text() const {
  return m_sText;
}

}  // namespace orvane::console
