#include "controls/grid/view_switch.h"

#include <QAction>
#include <QLineEdit>
#include <QMenu>
#include <QToolButton>

#include "ado/recordset_builder.h"
#include "controls/grid/query_results.h"
#include "tests/controls/grid_fixture.h"
#include "tests/fakes/until.h"
#include "trend/trend_plot.h"
#include "trend/trend_view.h"

namespace orvane::controls {
namespace {

using platform::DataType;
using platform::Timestamp;

class view_switch : public GridFixture {
 protected:
  void Run(bool bTimes = true) {
    ado::RecordsetBuilder builder({{"Timestamp", bTimes ? DataType::DBTimeStamp : DataType::WChar},
                                   {"Value", DataType::Double}});
    for (int n = 0; n < 5; ++n) {
      builder.AppendRow(
          {bTimes ? platform::Value(Timestamp(std::chrono::seconds(n))) : platform::Value("x"),
           1.0 * n});
    }
    m_results.Connection(m_connection);
    m_results.SqlText("SELECT *");
    m_server.answer = builder.Finish();
    m_results.Execute();
    Show(m_results);
    WindowOf(m_results)->activateWindow();
    ViewOf(m_results)->setFocus();
    ASSERT_TRUE(tests::Until([&] { return ViewOf(m_results)->hasFocus(); }));
  }
  QToolButton* Button(const char* sName) {
    return WindowOf(m_results)->findChild<QToolButton*>(sName);
  }
  bool IsSeen(const char* sName) {
    const auto* widget = WindowOf(m_results)->findChild<QWidget*>(sName);
    return widget != nullptr && widget->isVisibleTo(WindowOf(m_results));
  }
  /// What is shown, by the buttons: all others are not chosen.
  std::string Chosen() {
    std::string sChosen;
    for (const char* sName : {"asRows", "asForm", "asTrend"}) {
      if (Button(sName)->isChecked()) sChosen += sName;
    }
    return sChosen;
  }
  /// The trend has the keys, once its rows are read.
  bool TrendHasKeys() {
    return tests::Until([] {
      const QWidget* focus = QApplication::focusWidget();
      return focus && focus->objectName() == "trendPlot";
    });
  }
  /// Goes on by Tab until the widget has the keys.
  testing::AssertionResult TabTo(const QWidget* wanted) {
    for (int n = 0; n < 40; ++n) {
      const QWidget* focus = QApplication::focusWidget();
      if (focus == wanted || (focus && focus->focusProxy() == wanted)) {
        return testing::AssertionSuccess();
      }
      QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    }
    return testing::AssertionFailure() << "Tab does not lead there.";
  }
  controls::QueryResults m_results{Services()};
};

TEST_F(view_switch, each_look_is_reached_by_tab_and_chosen_by_space) {
  Run();
  ASSERT_EQ(Chosen(), "asRows");
  ASSERT_TRUE(TabTo(Button("asTrend")));
  QTest::keyClick(Button("asTrend"), Qt::Key_Space);
  EXPECT_EQ(Chosen(), "asTrend");
  EXPECT_TRUE(IsSeen("trend"));
  EXPECT_FALSE(IsSeen("rows"));
  ASSERT_TRUE(TrendHasKeys()) << "the keys go along";
  ASSERT_TRUE(TabTo(Button("asForm")));
  QTest::keyClick(Button("asForm"), Qt::Key_Space);
  EXPECT_EQ(Chosen(), "asForm");
  EXPECT_TRUE(IsSeen("rowForm"));
  EXPECT_TRUE(IsSeen("rows")) << "the form stands beside them";
  EXPECT_FALSE(IsSeen("trend"));
  ASSERT_TRUE(TabTo(Button("asRows")));
  QTest::keyClick(Button("asRows"), Qt::Key_Space);
  EXPECT_EQ(Chosen(), "asRows");
  EXPECT_FALSE(IsSeen("rowForm"));
  EXPECT_TRUE(ViewOf(m_results)->hasFocus());
}

TEST_F(view_switch, keys_choose_as_well) {
  Run();
  QTest::keyClick(ViewOf(m_results), Qt::Key_F4, Qt::ShiftModifier);
  EXPECT_EQ(Chosen(), "asTrend");
  ASSERT_TRUE(TrendHasKeys());
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_F4);
  EXPECT_EQ(Chosen(), "asForm");
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_F4, Qt::ShiftModifier);
  EXPECT_EQ(Chosen(), "asTrend");
  EXPECT_FALSE(IsSeen("rowForm"));
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_F4, Qt::ShiftModifier);
  EXPECT_EQ(Chosen(), "asRows");
  EXPECT_TRUE(ViewOf(m_results)->hasFocus());
  QTest::keyClick(ViewOf(m_results), Qt::Key_F4);
  EXPECT_EQ(Chosen(), "asForm");
}

TEST_F(view_switch, tells_its_keys_in_menu_and_tips) {
  Run();
  QMenu menu;
  ViewOf(m_results)->Commands().Fill(menu);
  QStringList entries;
  for (const QAction* action : menu.actions()) entries << action->text();
  EXPECT_TRUE(entries.contains("Show as &Trend\tShift+F4")) << entries.join('|').toStdString();
  EXPECT_TRUE(entries.contains("Show as &Form\tF4"));
  EXPECT_TRUE(Button("asTrend")->toolTip().endsWith("(Shift+F4)"));
  EXPECT_TRUE(Button("asForm")->toolTip().endsWith("(F4)"));
}

TEST_F(view_switch, rows_without_times_have_no_trend_but_a_form) {
  Run(false);
  EXPECT_TRUE(IsSeen("asRows"));
  EXPECT_TRUE(IsSeen("asForm"));
  EXPECT_FALSE(IsSeen("asTrend"));
  QTest::keyClick(ViewOf(m_results), Qt::Key_F4, Qt::ShiftModifier);
  EXPECT_EQ(Chosen(), "asRows");
  EXPECT_FALSE(IsSeen("trend"));
}

TEST_F(view_switch, the_trend_s_buttons_are_reached_by_tab) {
  Run();
  QTest::keyClick(ViewOf(m_results), Qt::Key_F4, Qt::ShiftModifier);
  ASSERT_TRUE(TrendHasKeys());
  QToolButton* steps = nullptr;
  const auto* bar = WindowOf(m_results)->findChild<QWidget*>("trendBar");
  for (auto* button : bar->findChildren<QToolButton*>()) {
    if (button->text() == "Steps") steps = button;
  }
  ASSERT_NE(steps, nullptr);
  ASSERT_TRUE(TabTo(steps));
  QTest::keyClick(steps, Qt::Key_Space);
  EXPECT_TRUE(steps->isChecked());
}

}  // namespace
}  // namespace orvane::controls
