#include "controls/view/empty_notice.h"

#include <QContextMenuEvent>
#include <QFontInfo>
#include <QKeyEvent>
#include <QPainter>
#include <QTextDocument>
#include <QVBoxLayout>
#include <cmath>
#include <memory>
#include <utility>

#include "controls/view/cell_delegate.h"

namespace orvane::controls {

namespace {

constexpr int kMargin = 24;
/// In characters.
constexpr int kTextWidth = 80;
/// More is not laid out: a filter may be megabytes, and the statement above has it.
constexpr qsizetype kMostCharacters = 10'000;

int TextWidth(const QWidget& widget) {
  return kTextWidth * widget.fontMetrics().averageCharWidth();
}

QLabel* AddLabel(QWidget* parent, const char* sName) {
  auto* label = new QLabel(parent);
  label->setObjectName(sName);
  label->setTextFormat(Qt::PlainText);
  label->setAlignment(Qt::AlignHCenter | Qt::AlignVCenter);
  label->setWordWrap(true);
  label->setTextInteractionFlags(Qt::TextSelectableByMouse);
  return label;
}

/// Shows that it has the keys also where they came by a click, which styles do not tell, and is
/// pressed by Enter as in a dialog.
class FocusedButton : public QPushButton {
 public:
  using QPushButton::QPushButton;

 protected:
  void keyPressEvent(QKeyEvent* event) override {
    const bool bEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (bEnter && !event->isAutoRepeat()) return click();
    QPushButton::keyPressEvent(event);
  }
  void paintEvent(QPaintEvent* event) override {
    QPushButton::paintEvent(event);
    if (!hasFocus()) return;
    QPainter painter(this);
    DrawFocus(painter, rect(), palette().color(QPalette::Highlight));
  }
};

}  // namespace

SentenceView::SentenceView(QWidget* parent) : QTextEdit(parent) {
  setObjectName("emptySentence");
  setFrameShape(NoFrame);
  setReadOnly(true);
  setTextInteractionFlags(Qt::TextSelectableByMouse);
  setFocusPolicy(Qt::ClickFocus);
  setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setMaximumWidth(TextWidth(*this));
  viewport()->setAutoFillBackground(false);
  QSizePolicy policy(QSizePolicy::Expanding, QSizePolicy::Preferred);
  policy.setHeightForWidth(true);
  setSizePolicy(policy);
}

void SentenceView::contextMenuEvent(QContextMenuEvent* event) {
  // Ignored, it goes to what lies beneath.
  if (!textCursor().hasSelection() && m_menuBeneath && m_menuBeneath()) return event->ignore();
  QTextEdit::contextMenuEvent(event);
}

void SentenceView::Say(const QString& sSentence) {
  const bool bCut = sSentence.size() > kMostCharacters;
  setPlainText(bCut ? sSentence.left(kMostCharacters) + QChar(0x2026) : sSentence);
  selectAll();
  setAlignment(Qt::AlignHCenter);
  moveCursor(QTextCursor::Start);
  updateGeometry();
}

QSize SentenceView::sizeHint() const {
  const int nWidth = TextWidth(*this);
  return {nWidth, heightForWidth(nWidth)};
}

QSize SentenceView::minimumSizeHint() const {
  return {0, 2 * fontMetrics().height()};
}

void SentenceView::changeEvent(QEvent* event) {
  QTextEdit::changeEvent(event);
  if (event->type() == QEvent::FontChange) setMaximumWidth(TextWidth(*this));
}

int SentenceView::heightForWidth(int nWidth) const {
  const std::unique_ptr<QTextDocument> document(this->document()->clone());
  document->setTextWidth(nWidth);
  return static_cast<int>(std::ceil(document->size().height()));
}

EmptyNotice::EmptyNotice(QWidget* parent)
    : QWidget(parent),
      m_title(AddLabel(this, "emptyTitle")),
      m_sentence(new SentenceView(this)),
      m_button(new FocusedButton(this)) {
  QFont large = font();
  large.setPointSizeF(QFontInfo(large).pointSizeF() * 1.2);
  large.setWeight(QFont::DemiBold);
  m_title->setFont(large);
  m_title->setForegroundRole(QPalette::Text);
  m_title->setContextMenuPolicy(Qt::NoContextMenu);
  m_button->setObjectName("emptyButton");
  m_button->setAutoDefault(false);
  connect(m_button, &QPushButton::clicked, this, [this] { Press(); });

  auto* column = new QVBoxLayout;
  column->setSpacing(8);
  column->addStretch(2);
  column->addWidget(m_title);
  column->addWidget(m_sentence);
  column->addSpacing(4);
  column->addWidget(m_button, 0, Qt::AlignHCenter);
  column->addStretch(3);
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
  row->addStretch(1);
  row->addLayout(column, 20);
  row->addStretch(1);
  hide();
}

void EmptyNotice::Say(const QString& sTitle, const QString& sSentence) {
  m_action = nullptr;
  m_title->setText(sTitle);
  m_sentence->Say(sSentence);
  m_sentence->setVisible(!sSentence.isEmpty());
  m_button->hide();
  setVisible(!sTitle.isEmpty());
}

void EmptyNotice::Ask(const QString& sTitle, const QString& sSentence, const QString& sButton,
                      std::function<void()> action) {
  Say(sTitle, sSentence);
  m_action = std::move(action);
  m_button->setText(sButton);
  m_button->show();
}

void EmptyNotice::Press() {
  // Taken out first: the action says something else, and must not be called by a second press.
  if (const auto action = std::exchange(m_action, nullptr)) action();
}

}  // namespace orvane::controls
