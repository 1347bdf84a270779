#include "controls/grid/time_bar.h"

#include <QAction>
#include <QCheckBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QSignalBlocker>
#include <QToolButton>
#include <QVBoxLayout>
#include <algorithm>
#include <array>

#include "controls/grid/flow_layout.h"
#include "widgets/drop_down_box.h"
#include "widgets/number_box.h"
#include "zones/clock_input.h"

namespace orvane::controls {

namespace {

struct OfferedRange {
  const char* sName;
  const char* sFrom;
  const char* sTo;
};

/// A day is one on the calendar, so that the ranges beside it are days.
constexpr std::array<OfferedRange, 4> kOffered = {{{"Last 10 minutes", "*-10m", "*"},
                                                   {"Last hour", "*-1h", "*"},
                                                   {"Today", "t", "t+1d"},
                                                   {"Last 7 days", "*-7d", "*"}}};
constexpr int kOwn = 0;
constexpr int kTyped = static_cast<int>(kOffered.size()) + 1;
constexpr int kLeastSeconds = 1;
constexpr int kMostSeconds = 3600;
constexpr int kFirstSeconds = 10;
constexpr int kEndCharacters = 19;
constexpr int kMargin = 4;

TimeRange RangeOf(const OfferedRange& offered) {
  return {offered.sFrom, offered.sTo};
}

}  // namespace

TimeBar::TimeBar(std::function<platform::Timestamp()> clock, QWidget* parent)
    : QWidget(parent),
      m_now(std::move(clock)),
      m_ranges(new widgets::DropDownBox),
      m_told(new QLabel),
      m_following(new QCheckBox("&Follow")),
      m_seconds(new widgets::NumberBox) {
  setObjectName("timeBar");
  if (parent) parent->installEventFilter(this);
  setAccessibleName("Time range");
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  auto* parts = new QWidget;
  m_parts = new FlowLayout(parts);
  m_parts->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
  m_parts->setSpacing(kMargin);
  layout->addWidget(parts);
  layout->addWidget(m_told);
  AddRanges();
  AddEnds();
  AddFollowing();
  Show();
}

void TimeBar::AddRanges() {
  m_ranges->setObjectName("timeRange");
  m_ranges->setSizeAdjustPolicy(QComboBox::AdjustToContents);
  m_ranges->setAccessibleName("Time range");
  m_ranges->setToolTip("The times of which rows are shown");
  m_ranges->addItem("As the query says");
  for (const OfferedRange& offered : kOffered) m_ranges->addItem(offered.sName);
  m_ranges->addItem("From \u2013 to");
  connect(m_ranges, &QComboBox::activated, this, [this](int nItem) {
    if (nItem == kOwn) return Choose(std::nullopt);
    if (nItem != kTyped) return Choose(RangeOf(kOffered[static_cast<std::size_t>(nItem) - 1]));
    m_more->setChecked(true);
    m_from->setFocus();
    m_from->selectAll();
  });
  const auto go = [this](auto neighbour) {
    if (const auto shown = Shown()) {
      if (const auto range = neighbour(*shown, Now())) Choose(range);
    }
  };
  m_more = new QToolButton;
  m_more->setObjectName("timeMore");
  m_more->setText("\u2026");
  m_more->setToolTip("Shows the rest of the bar, or hides it");
  m_more->setAccessibleName("More of the time range");
  m_more->setAccessibleDescription(m_more->toolTip());
  m_more->setCheckable(true);
  m_more->setAutoRaise(true);
  m_more->setFocusPolicy(Qt::TabFocus);
  m_more->hide();
  connect(m_more, &QToolButton::toggled, this, [this] { Fold(); });
  AddPart({m_ranges,
           AddButton(m_back, "\u25c0", "timeBack", "The range before this one",
                     [go] { go(RangeBefore); }),
           AddButton(m_forward, "\u25b6", "timeForward", "The range behind this one",
                     [go] { go(RangeBehind); }),
           m_more});
}

QToolButton* TimeBar::AddButton(QAction*& action, const QString& sText, const char* sName,
                                const QString& sTip, std::function<void()> handler) {
  action = new QAction(sText, this);
  action->setObjectName(sName);
  action->setToolTip(sTip);
  connect(action, &QAction::triggered, this, std::move(handler));
  auto* button = new QToolButton;
  button->setDefaultAction(action);
  button->setAutoRaise(true);
  button->setFocusPolicy(Qt::TabFocus);
  button->setAccessibleDescription(sTip);
  return button;
}

void TimeBar::AddPart(std::initializer_list<QWidget*> widgets) {
  auto* part = new QWidget;
  auto* layout = new QHBoxLayout(part);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(kMargin);
  for (QWidget* widget : widgets) layout->addWidget(widget);
  m_parts->addWidget(part);
  m_inOrder.push_back(part);
}

int TimeBar::WholeHeight() const {
  const int nInner = width() - 2 * kMargin;
  int nX = 0;
  int nHeight = 0;
  int nLine = 0;
  for (const QWidget* part : m_inOrder) {
    const QSize size = part->sizeHint();
    if (nX > 0 && nX + size.width() > nInner) {
      nHeight += nLine + kMargin;
      nX = nLine = 0;
    }
    nX += size.width() + kMargin;
    nLine = std::max(nLine, size.height());
  }
  return nHeight + nLine + 2 * kMargin;
}

int TimeBar::HeightOfOthers() const {
  const QLayout* layout = parentWidget()->layout();
  int nHeight = 0;
  for (int n = 0; n < layout->count(); ++n) {
    QLayoutItem* item = layout->itemAt(n);
    if (item->widget() != this && !item->isEmpty()) nHeight += item->minimumSize().height();
  }
  return nHeight;
}

void TimeBar::Fold() {
  if (!parentWidget() || !parentWidget()->layout()) return;
  // Neither depends on what is in sight now, so that nothing goes to and fro.
  const int nWhole = WholeHeight();
  const int nWindow = parentWidget()->height();
  const bool bFolds = nWhole > nWindow * 2 / 5 || nWhole + HeightOfOthers() > nWindow;
  m_more->setVisible(bFolds);
  for (QWidget* part : m_inOrder) {
    if (part != m_inOrder.front()) part->setVisible(!bFolds || m_more->isChecked());
  }
}

bool TimeBar::event(QEvent* event) {
  if (event->type() == QEvent::ParentChange && parentWidget()) {
    parentWidget()->installEventFilter(this);
  }
  if (event->type() == QEvent::Resize || event->type() == QEvent::Show) Fold();
  return QWidget::event(event);
}

void TimeBar::AddEnd(QLineEdit*& box, const QString& sLabel, const char* sName, const char* sTip) {
  auto* label = new QLabel(sLabel);
  box = new QLineEdit;
  box->setObjectName(sName);
  box->setAccessibleName(sTip);
  box->setToolTip(QStringLiteral("%1: *, t, y or a date such as 2024-05-31 12:00, then steps such "
                                 "as -1h")
                      .arg(QString::fromUtf8(sTip)));
  const int nCharacter = box->fontMetrics().averageCharWidth();
  box->setMinimumWidth(nCharacter * (kEndCharacters + 3));
  box->setMaximumWidth(nCharacter * (kEndCharacters + 10));
  box->installEventFilter(this);
  connect(box, &QLineEdit::textEdited, this, [this] { Check(); });
  connect(box, &QLineEdit::returnPressed, this, [this] { ChooseTyped(); });
  label->setBuddy(box);
  AddPart({label, box});
}

void TimeBar::AddEnds() {
  AddEnd(m_from, "Fro&m", "timeFrom", "Start of the times");
  AddEnd(m_to, "&to", "timeTo", "End of the times");
  m_told->setObjectName("timeTold");
  m_told->setTextFormat(Qt::PlainText);
  m_told->setWordWrap(true);
  m_told->setContentsMargins(8, 2, 8, 4);
  auto* clear = AddButton(m_clear, "Clear", "timeClear", "Shows the rows as the query says",
                          [this] { Choose(std::nullopt); });
  m_keepButton = AddButton(m_keepIt, "Keep", "timeKeep",
                           "Makes this range the filter of the table's query", [this] {
                             if (m_keep) m_keep();
                           });
  AddPart({clear, m_keepButton});
}

void TimeBar::AddFollowing() {
  m_following->setObjectName("follow");
  m_following->setToolTip("Fetches the rows again and again while they are shown");
  m_seconds->setObjectName("followSeconds");
  m_seconds->setAccessibleName("Seconds between fetches");
  m_seconds->setRange(kLeastSeconds, kMostSeconds);
  m_seconds->setValue(kFirstSeconds);
  m_seconds->setPrefix("every ");
  m_seconds->setSuffix(" s");
  m_seconds->setKeyboardTracking(false);
  AddPart({m_following, m_seconds});
  connect(m_following, &QCheckBox::toggled, this, [this] { TellOfFollowing(); });
  connect(m_seconds, &QSpinBox::valueChanged, this, [this] {
    if (m_following->isChecked()) TellOfFollowing();
  });
}

void TimeBar::TellOfFollowing() {
  if (!m_follow) return;
  m_follow(m_following->isChecked() ? Follow(std::chrono::seconds(m_seconds->value()))
                                    : std::nullopt);
}

void TimeBar::StopFollowing() {
  const QSignalBlocker quiet(m_following);
  m_following->setChecked(false);
}

void TimeBar::OfferKeep(bool bOffered) {
  m_keepIt->setVisible(bOffered);
  m_keepButton->setVisible(bOffered);
}

void TimeBar::Refuse(const QString& sWhy) {
  m_sRefused = sWhy;
  Show();
}

void TimeBar::Zone(const zones::TimeZone& zone) {
  m_zone = zone;
  Check();
}

void TimeBar::OwnRange(const std::optional<TimeRange>& range) {
  m_own = range;
  Show();
}

void TimeBar::Range(const std::optional<TimeRange>& range) {
  m_range = range;
  Show();
}

TimeRange TimeBar::Typed() const {
  return {m_from->text().trimmed().toStdString(), m_to->text().trimmed().toStdString()};
}

std::optional<TimeRange> TimeBar::Shown() const {
  return m_range ? m_range : m_own;
}

void TimeBar::Choose(std::optional<TimeRange> range) {
  m_range = std::move(range);
  m_from->setModified(false);
  m_to->setModified(false);
  Show();
  if (m_chosen) m_chosen(m_range);
}

void TimeBar::ChooseTyped() {
  const TimeRange typed = Typed();
  if (std::holds_alternative<TimeRangeError>(ReadTimeRange(typed, Now()))) return Check();
  Choose(typed == TimeRange() ? std::nullopt : std::optional(typed));
}

void TimeBar::Check() {
  const TimeRange typed = Typed();
  const auto read = ReadTimeRange(typed, Now());
  QString sTold = m_sRefused;
  if (!m_sRefused.isEmpty()) {
    // Nothing can be typed that would be better.
  } else if (const auto* error = std::get_if<TimeRangeError>(&read)) {
    sTold = QString::fromStdString(error->sSentence);
  } else if (typed != Shown().value_or(TimeRange())) {
    sTold = QStringLiteral("Press Enter to fetch.");
  }
  const bool bWrong = m_sRefused.isEmpty() && std::holds_alternative<TimeRangeError>(read);
  m_told->setText(sTold);
  m_told->setForegroundRole(bWrong ? QPalette::WindowText : QPalette::PlaceholderText);
  QFont font = m_from->font();
  font.setBold(bWrong);
  m_told->setFont(font);
  m_told->setVisible(!sTold.isEmpty());
  // Spoken with the box that it is about.
  const bool bTo = bWrong && std::get<TimeRangeError>(read).bTo;
  m_from->setAccessibleDescription(bTo ? QString() : sTold);
  m_to->setAccessibleDescription(bTo ? sTold : QString());
}

void TimeBar::Show() {
  const TimeRange shown = Shown().value_or(TimeRange());
  // Rows that were fetched take nothing away from whoever is typing.
  const auto show = [](QLineEdit& end, const platform::Text& sEnd) {
    if (end.hasFocus() && end.isModified()) return;
    // The same text, set again, would take his selection away.
    const QString sText = QString::fromStdString(sEnd);
    if (end.text() != sText) end.setText(sText);
    end.setModified(false);
  };
  show(*m_from, shown.sFrom);
  show(*m_to, shown.sTo);
  int nItem = m_range ? kTyped : kOwn;
  for (std::size_t n = 0; n < kOffered.size(); ++n) {
    if (m_range == RangeOf(kOffered[n])) nItem = static_cast<int>(n) + 1;
  }
  m_ranges->setCurrentIndex(nItem);
  const auto before = RangeBefore(shown, Now());
  m_back->setEnabled(before.has_value());
  m_forward->setEnabled(RangeBehind(shown, Now()).has_value());
  m_clear->setEnabled(m_range.has_value());
  m_keepIt->setEnabled(m_range.has_value());
  const bool bOffered = m_sRefused.isEmpty();
  for (QWidget* part : {static_cast<QWidget*>(m_ranges), static_cast<QWidget*>(m_from),
                        static_cast<QWidget*>(m_to)}) {
    part->setEnabled(bOffered);
  }
  for (QAction* action : {m_back, m_forward}) action->setEnabled(bOffered && action->isEnabled());
  Check();
}

bool TimeBar::eventFilter(QObject* watched, QEvent* event) {
  if (watched == parentWidget()) {
    const bool bRoom = event->type() == QEvent::Resize || event->type() == QEvent::LayoutRequest;
    if (bRoom && isVisible()) Fold();
    return QWidget::eventFilter(watched, event);
  }
  if (event->type() == QEvent::KeyPress &&
      static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape) {
    m_from->setModified(false);
    m_to->setModified(false);
    Show();
    return true;
  }
  return QWidget::eventFilter(watched, event);
}

}  // namespace orvane::controls
