#include "controls/grid/time_bar.h"

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QSignalBlocker>
#include <QSpinBox>
#include <QToolBar>
#include <QVBoxLayout>
#include <array>

#include "controls/values/clock_input.h"

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

TimeRange RangeOf(const OfferedRange& offered) {
  return {offered.sFrom, offered.sTo};
}

/// A bar keeps Tab from its buttons otherwise.
void ReachByTab(QToolBar& bar, QAction* action) {
  QWidget* button = bar.widgetForAction(action);
  button->setFocusPolicy(Qt::TabFocus);
  button->setAccessibleDescription(action->toolTip());
}

QLineEdit* AddEnd(QToolBar& bar, const QString& sLabel, const char* sName, const char* sTip) {
  auto* label = new QLabel(sLabel);
  label->setContentsMargins(6, 0, 4, 0);
  auto* box = new QLineEdit;
  box->setObjectName(sName);
  box->setAccessibleName(sTip);
  box->setToolTip(QStringLiteral("%1: *, t, y or a date such as 2024-05-31 12:00, then steps such "
                                 "as -1h")
                      .arg(QString::fromUtf8(sTip)));
  label->setBuddy(box);
  bar.addWidget(label);
  bar.addWidget(box);
  return box;
}

}  // namespace

TimeBar::TimeBar(std::function<platform::Timestamp()> clock, QWidget* parent)
    : QWidget(parent),
      m_now(std::move(clock)),
      m_bar(new QToolBar),
      m_ranges(new QComboBox),
      m_told(new QLabel),
      m_following(new QCheckBox("&Follow")),
      m_seconds(new QSpinBox) {
  setObjectName("timeBar");
  setAccessibleName("Time range");
  m_bar->setToolButtonStyle(Qt::ToolButtonTextOnly);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  layout->addWidget(m_bar);
  // Beneath, where it has the whole width: what does not fit into the bar goes into its menu.
  layout->addWidget(m_told);
  AddRanges();
  AddEnds();
  AddFollowing();
  Show();
}

void TimeBar::AddRanges() {
  m_ranges->setObjectName("timeRange");
  m_ranges->setAccessibleName("Time range");
  m_ranges->setToolTip("The times of which rows are shown");
  m_ranges->addItem("As the query says");
  for (const OfferedRange& offered : kOffered) m_ranges->addItem(offered.sName);
  m_ranges->addItem("From \u2013 to");
  m_bar->addWidget(m_ranges);
  connect(m_ranges, &QComboBox::activated, this, [this](int nItem) {
    if (nItem == kOwn) return Choose(std::nullopt);
    if (nItem != kTyped) return Choose(RangeOf(kOffered[static_cast<std::size_t>(nItem) - 1]));
    m_from->setFocus();
    m_from->selectAll();
  });
  const auto add = [this](const QString& sText, const char* sName, const QString& sTip,
                          auto handler) {
    QAction* action = m_bar->addAction(sText);
    action->setObjectName(sName);
    action->setToolTip(sTip);
    connect(action, &QAction::triggered, this, handler);
    ReachByTab(*m_bar, action);
    return action;
  };
  m_back = add("\u25c0", "timeBack", "The range before this one", [this] {
    if (const auto shown = Shown()) {
      if (const auto range = RangeBefore(*shown, Now())) Choose(range);
    }
  });
  m_forward = add("\u25b6", "timeForward", "The range behind this one", [this] {
    if (const auto shown = Shown()) {
      if (const auto range = RangeBehind(*shown, Now())) Choose(range);
    }
  });
}

void TimeBar::AddEnds() {
  m_from = AddEnd(*m_bar, "Fro&m", "timeFrom", "Start of the times");
  m_to = AddEnd(*m_bar, "&to", "timeTo", "End of the times");
  for (QLineEdit* box : {m_from, m_to}) {
    box->setMinimumWidth(box->fontMetrics().averageCharWidth() * (kEndCharacters + 3));
    box->setMaximumWidth(box->fontMetrics().averageCharWidth() * (kEndCharacters + 10));
    box->installEventFilter(this);
    connect(box, &QLineEdit::textEdited, this, [this] { Check(); });
    connect(box, &QLineEdit::returnPressed, this, [this] { ChooseTyped(); });
  }
  m_told->setObjectName("timeTold");
  m_told->setTextFormat(Qt::PlainText);
  m_told->setWordWrap(true);
  m_told->setContentsMargins(8, 2, 8, 4);
  m_clear = m_bar->addAction("Clear");
  m_clear->setObjectName("timeClear");
  m_clear->setToolTip("Shows the rows as the query says");
  connect(m_clear, &QAction::triggered, this, [this] { Choose(std::nullopt); });
  m_keepIt = m_bar->addAction("Keep");
  m_keepIt->setObjectName("timeKeep");
  m_keepIt->setToolTip("Makes this range the filter of the table's query");
  connect(m_keepIt, &QAction::triggered, this, [this] {
    if (m_keep) m_keep();
  });
  for (QAction* action : {m_clear, m_keepIt}) ReachByTab(*m_bar, action);
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
  m_bar->addWidget(m_following);
  m_bar->addWidget(m_seconds);
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
    if (!end.hasFocus() || !end.isModified()) end.setText(QString::fromStdString(sEnd));
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
