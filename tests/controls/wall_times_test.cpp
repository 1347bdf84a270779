// Times without a zone on a PostgreSQL server, in the grid of a connection in another zone: shown,
// typed, filtered and put into ranges as they are stored, and drawn as a trend.
#include <QAction>
#include <QLineEdit>
#include <QToolButton>

#include "controls/order/row_filter.h"
#include "tests/controls/catalog_faults.h"
#include "tests/controls/editing_fixture.h"
#include "tests/provider/conformance/postgres_under_test.h"
#include "tests/provider/engines/postgres_cluster.h"

namespace orvane::controls {
namespace {

using platform::Text;

class wall_times : public EditingFixture {
 protected:
  wall_times()
      : EditingFixture(tests::HistorianServer::Make(provider::conformance::PostgresUnderTest())) {
    Do("CREATE TABLE \"P\".\"Log\" (\"Id\" integer PRIMARY KEY, \"At\" timestamp, \"Value\" "
       "float8)");
    // On the second of these days clocks in Berlin skip the hour behind two.
    Do("INSERT INTO \"P\".\"Log\" VALUES (1, '2026-03-29 01:30', 1), (2, '2026-03-29 02:30:00.5', "
       "2), (3, '2026-03-29 04:00', 3), (4, 'infinity', 4)");
    m_query->SortCriterion(platform::SortCriterion{"Id", true});
    Open("Log", "Time Zone = Europe/Berlin;");
  }
  void Do(const Text& sSql) {
    tests::PostgresCluster::Get().Do(tests::DatabaseOf(m_server->Server()), sSql);
  }
  Text At(int nId) {
    return Stored("SELECT CAST(\"At\" AS TEXT) FROM P..\"Log\" WHERE \"Id\" = " +
                  std::to_string(nId));
  }
  void Choose(const char* sFrom, const char* sTo) {
    Window()->findChild<QLineEdit*>("timeFrom")->setText(sFrom);
    auto* to = Window()->findChild<QLineEdit*>("timeTo");
    to->setText(sTo);
    QTest::keyClick(to, Qt::Key_Return);
    Settle();
  }
};

TEST_F(wall_times, are_shown_as_stored_with_a_bar_and_a_trend) {
  EXPECT_EQ(Cell(0, 1), "2026-03-29 01:30:00.000");
  EXPECT_EQ(Cell(1, 1), "2026-03-29 02:30:00.500") << "an hour that clocks there skip";
  EXPECT_EQ(Cell(3, 1), "infinity");
  EXPECT_TRUE(Window()->findChild<QWidget*>("timeBar")->isVisibleTo(Window()));
  EXPECT_TRUE(Window()->findChild<QToolButton*>("asTrend")->isVisibleTo(Window()));
  const QString sTip = Rows().model()->headerData(1, Qt::Horizontal, Qt::ToolTipRole).toString();
  EXPECT_TRUE(sTip.contains("without a time zone")) << sTip.toStdString();
}

TEST_F(wall_times, are_typed_and_stored_digit_by_digit) {
  GoTo(0, 1);
  Type("2026-03-29 02:15:00.000001");
  Press(Qt::Key_Return);
  EXPECT_EQ(At(1), "2026-03-29 02:15:00.000001");
  GoTo(1, 1);
  Type("2026-03-29 12:00+02:00");
  Press(Qt::Key_Return);
  ASSERT_NE(Editor(), nullptr);
  EXPECT_EQ(Rows().findChild<QLabel*>("cellProblem")->text().toStdString(),
            "\"2026-03-29 12:00+02:00\" says how far it is from UTC, but the column keeps times "
            "without a zone; leave that out.");
  Press(Qt::Key_Escape);
  // Copied and pasted back, nothing has changed.
  Rows().selectAll();
  Press(Qt::Key_C, Qt::ControlModifier);
  GoTo(0, 0);
  Press(Qt::Key_V, Qt::ControlModifier);
  EXPECT_EQ(Label("pending"), "");
}

TEST_F(wall_times, are_found_by_what_is_shown) {
  Choose("2026-03-29 02:00", "2026-03-29 03:00");
  EXPECT_EQ(Rows().Model().Places(), 1);
  EXPECT_EQ(Cell(0, 0), "2");
  Window()->findChild<QAction*>("timeClear")->trigger();
  Settle();
  ASSERT_EQ(Rows().Model().Places(), 4);
  std::vector<ColumnFilter> filters;
  filters.push_back(ColumnFilter::Equal(1, Rows().Model().ValueAt(1, 1), Rows().Model().Format()));
  Rows().Filter(std::move(filters));
  EXPECT_EQ(Rows().Model().Places(), 1);
  Rows().Filter({});
  Rows().SortBy(1, false);
  EXPECT_EQ(Cell(0, 1), "infinity") << "behind all others";
  EXPECT_EQ(Cell(1, 0), "3");
  EXPECT_EQ(Cell(3, 0), "1");
}

}  // namespace
}  // namespace orvane::controls
