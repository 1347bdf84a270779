#include "controls/grid/time_bar.h"

#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QSpinBox>
#include <QTest>
#include <QToolButton>
#include <QWheelEvent>

namespace orvane::controls {
namespace {

using platform::Text;

class time_bar : public testing::Test {
 protected:
  time_bar() {
    m_bar.OnRange([this](const std::optional<TimeRange>& range) {
      ++m_nChosen;
      m_chosen = range;
    });
    m_bar.OnFollow([this](TimeBar::Follow pause) { m_follow = pause; });
    m_bar.OnKeep([this] { ++m_nKept; });
    m_bar.Zone(zones::TimeZone("Europe/Madrid"));
    m_bar.resize(1400, 40);
    m_bar.show();
  }
  template <class Widget>
  Widget& Find(const char* sName) const {
    return *m_bar.findChild<Widget*>(sName);
  }
  void Pick(const char* sName) {
    auto& ranges = Find<QComboBox>("timeRange");
    ranges.setFocus();
    const int nItem = ranges.findText(sName);
    ASSERT_GE(nItem, 0);
    ranges.setCurrentIndex(nItem);
    emit ranges.activated(nItem);
  }
  void Type(const char* sName, const char* sText) {
    auto& box = Find<QLineEdit>(sName);
    box.selectAll();
    QTest::keyClicks(&box, sText);
  }
  void Press(const char* sName) { QTest::mouseClick(Button(sName), Qt::LeftButton); }
  QToolButton* Button(const char* sName) const {
    const auto* action = m_bar.findChild<QAction*>(sName);
    for (auto* button : m_bar.findChildren<QToolButton*>()) {
      if (button->defaultAction() == action) return button;
    }
    return nullptr;
  }
  bool CanPress(const char* sName) const { return m_bar.findChild<QAction*>(sName)->isEnabled(); }
  std::string Told() const {
    auto& label = Find<QLabel>("timeTold");
    return label.isVisibleTo(&m_bar) ? label.text().toStdString() : "";
  }
  /// "from|to" of the last range chosen.
  Text Chosen() const { return m_chosen ? m_chosen->sFrom + "|" + m_chosen->sTo : "none"; }
  Text Boxes() const {
    return (Find<QLineEdit>("timeFrom").text() + "|" + Find<QLineEdit>("timeTo").text())
        .toStdString();
  }

  platform::Timestamp m_now = date::sys_days(date::year{2024} / 5 / 15) + std::chrono::hours(12);
  TimeBar m_bar{[this] { return m_now; }};
  std::optional<TimeRange> m_chosen;
  int m_nChosen = 0;
  int m_nKept = 0;
  TimeBar::Follow m_follow;
};

// Rolling over the bar on the way to the rows would fetch for each notch.
TEST_F(time_bar, what_has_no_focus_takes_no_wheel) {
  const auto roll = [](QWidget& over) {
    const QPointF middle = over.rect().center();
    QWheelEvent wheel(middle, over.mapToGlobal(middle), {}, {0, -120}, {}, {}, Qt::NoScrollPhase,
                      false);
    QCoreApplication::sendEvent(&over, &wheel);
  };
  auto& ranges = Find<QComboBox>("timeRange");
  auto& seconds = Find<QSpinBox>("followSeconds");
  m_bar.activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&m_bar));
  Find<QLineEdit>("timeFrom").setFocus();
  const int nSeconds = seconds.value();
  roll(ranges);
  roll(seconds);
  EXPECT_EQ(m_nChosen, 0);
  EXPECT_EQ(seconds.value(), nSeconds);
  ranges.setFocus();
  roll(ranges);
  EXPECT_EQ(m_nChosen, 1);
  seconds.setFocus();
  roll(seconds);
  EXPECT_EQ(seconds.value(), nSeconds - 1);
}

TEST_F(time_bar, offers_what_is_often_asked_for) {
  const std::vector<std::pair<const char*, Text>> offered = {{"Last 10 minutes", "*-10m|*"},
                                                             {"Last hour", "*-1h|*"},
                                                             {"Today", "t|t+1d"},
                                                             {"Last 7 days", "*-7d|*"}};
  for (const auto& [sName, sRange] : offered) {
    Pick(sName);
    EXPECT_EQ(Chosen(), sRange);
    EXPECT_EQ(Boxes(), sRange);
  }
  Pick("As the query says");
  EXPECT_EQ(Chosen(), "none");
  EXPECT_EQ(m_nChosen, 5);
}

TEST_F(time_bar, takes_what_is_typed_with_enter) {
  Type("timeFrom", "y");
  Type("timeTo", "t");
  EXPECT_EQ(m_nChosen, 0);
  EXPECT_EQ(Told(), "Press Enter to fetch.");
  QTest::keyClick(&Find<QLineEdit>("timeTo"), Qt::Key_Return);
  EXPECT_EQ(Chosen(), "y|t");
  EXPECT_EQ(Told(), "");
  EXPECT_EQ(Find<QComboBox>("timeRange").currentText(), "From – to");
}

TEST_F(time_bar, keeps_what_is_being_typed_when_rows_come) {
  m_bar.activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&m_bar));
  Find<QLineEdit>("timeFrom").setFocus();
  Type("timeFrom", "2024-05");
  m_bar.OwnRange(TimeRange{"t", "*"});
  EXPECT_EQ(Boxes(), "2024-05|*");
  QTest::keyClick(&Find<QLineEdit>("timeFrom"), Qt::Key_Escape);
  EXPECT_EQ(Boxes(), "t|*");
}

TEST_F(time_bar, keeps_what_is_selected_when_rows_of_the_same_range_come) {
  Pick("Last hour");
  m_bar.activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&m_bar));
  auto& from = Find<QLineEdit>("timeFrom");
  from.setFocus();
  from.selectAll();
  m_bar.Zone(zones::TimeZone("Europe/Madrid"));
  m_bar.OwnRange(std::nullopt);
  m_bar.Range(TimeRange{"*-1h", "*"});
  EXPECT_EQ(from.selectedText(), "*-1h");
  QTest::keyClicks(&from, "*-2h");
  EXPECT_EQ(Boxes(), "*-2h|*");
}

TEST_F(time_bar, says_what_is_wrong_while_it_is_typed) {
  Type("timeFrom", "*-1hour");
  EXPECT_EQ(Told(), "The start is no time: the unit must be s, m, h, d, w, mo or y.");
  EXPECT_EQ(Find<QLineEdit>("timeFrom").accessibleDescription().toStdString(), Told());
  QTest::keyClick(&Find<QLineEdit>("timeFrom"), Qt::Key_Return);
  EXPECT_EQ(m_nChosen, 0);
  EXPECT_EQ(Find<QLineEdit>("timeFrom").text(), "*-1hour") << "what was typed stays";
  Type("timeFrom", "t");
  Type("timeTo", "y");
  EXPECT_EQ(Told(), "The end lies before the start; put the later time last.");
  QTest::keyClick(&Find<QLineEdit>("timeTo"), Qt::Key_Escape);
  EXPECT_EQ(Boxes(), "|");
  EXPECT_EQ(Told(), "");
}

TEST_F(time_bar, goes_back_and_forward_by_the_width) {
  EXPECT_FALSE(CanPress("timeBack"));
  Pick("Today");
  Press("timeBack");
  EXPECT_EQ(Chosen(), "2024-05-14 00:00:00|2024-05-15 00:00:00");
  Press("timeForward");
  EXPECT_EQ(Chosen(), "2024-05-15 00:00:00|2024-05-16 00:00:00");
}

TEST_F(time_bar, starts_from_the_table_s_own_range) {
  m_bar.OwnRange(TimeRange{"*-1h", "*"});
  EXPECT_EQ(Boxes(), "*-1h|*");
  EXPECT_EQ(Find<QComboBox>("timeRange").currentText(), "As the query says");
  EXPECT_FALSE(CanPress("timeClear"));
  EXPECT_FALSE(CanPress("timeKeep"));
  Press("timeBack");
  EXPECT_EQ(Chosen(), "2024-05-15 12:00:00|2024-05-15 13:00:00");
  EXPECT_TRUE(CanPress("timeKeep"));
  Press("timeKeep");
  EXPECT_EQ(m_nKept, 1);
  Press("timeClear");
  EXPECT_EQ(Chosen(), "none");
  EXPECT_EQ(Boxes(), "*-1h|*");
}

TEST_F(time_bar, all_of_it_is_reached_by_tab) {
  Pick("Last hour");
  m_bar.activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&m_bar));
  Find<QComboBox>("timeRange").setFocus();
  for (const char* sName : {"timeBack", "timeForward", "timeClear", "timeKeep"}) {
    auto* button = Button(sName);
    for (int n = 0; n < 20 && !button->hasFocus(); ++n) {
      QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    }
    EXPECT_TRUE(button->hasFocus()) << sName;
  }
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
  EXPECT_EQ(m_nKept, 1);
}

TEST_F(time_bar, all_of_it_is_in_sight_in_a_narrow_window) {
  for (const int nWidth : {1400, 640, 420, 230}) {
    m_bar.resize(nWidth, m_bar.heightForWidth(nWidth));
    QCoreApplication::processEvents();
    for (const auto* part : m_bar.findChildren<QWidget*>()) {
      const bool bPart = qobject_cast<const QComboBox*>(part) ||
                         part->inherits("QAbstractButton") ||
                         part->objectName().startsWith("time") || part->inherits("QSpinBox");
      if (!bPart || part->inherits("QLabel")) continue;
      if (part->objectName() == "timeMore") {
        EXPECT_FALSE(part->isVisible()) << "there is nothing more to be shown";
        continue;
      }
      EXPECT_TRUE(part->isVisible()) << part->objectName().toStdString();
      const QRect at(part->mapTo(&m_bar, QPoint(0, 0)), part->size());
      EXPECT_TRUE(m_bar.rect().contains(at)) << nWidth << " " << part->objectName().toStdString();
    }
    QTest::mouseClick(&Find<QCheckBox>("follow"), Qt::LeftButton, {}, {8, 8});
    EXPECT_TRUE(m_follow) << nWidth;
    QTest::mouseClick(&Find<QCheckBox>("follow"), Qt::LeftButton, {}, {8, 8});
    EXPECT_FALSE(m_follow) << nWidth;
  }
  EXPECT_LT(m_bar.heightForWidth(1400), m_bar.heightForWidth(420));
}

TEST_F(time_bar, tells_how_often_to_follow) {
  auto& follow = Find<QCheckBox>("follow");
  auto& seconds = Find<QSpinBox>("followSeconds");
  EXPECT_EQ(seconds.minimum(), 1);
  EXPECT_EQ(seconds.maximum(), 3600);
  seconds.setValue(5);
  EXPECT_EQ(m_follow, std::nullopt);
  follow.click();
  EXPECT_EQ(m_follow, std::chrono::seconds(5));
  seconds.setValue(7);
  EXPECT_EQ(m_follow, std::chrono::seconds(7));
  m_follow = std::chrono::seconds(99);
  m_bar.StopFollowing();
  EXPECT_FALSE(follow.isChecked());
  EXPECT_EQ(m_follow, std::chrono::seconds(99)) << "who stops it knows";
}

}  // namespace
}  // namespace orvane::controls
