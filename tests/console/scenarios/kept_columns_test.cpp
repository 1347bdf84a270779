// The columns of grids and the range of a table's rows, from keys in the real window to a document
// and back.
#include <QAbstractItemView>
#include <QAction>
#include <QComboBox>
#include <QHeaderView>
#include <QTest>

#include "tests/console/scenarios/visible_widget.h"
#include "tests/scenarios/command_fixture.h"

namespace orvane::scenarios::commands {
namespace {

constexpr const char* kBoth = "localhost.Queries.Both";

class kept_columns_scenario : public command_scenario {
 protected:
  static void Press(Qt::Key key, Qt::KeyboardModifiers modifiers) {
    auto* rows = Visible<QAbstractItemView>("rows");
    ASSERT_NE(rows, nullptr);
    QTest::keyClick(rows, key, modifiers);
  }
  static QHeaderView& Names() { return *Visible<QHeaderView>("columnNames"); }
  void ShowBoth() {
    OpenQueries();
    NewQuery("Both", "SELECT Name, Speed FROM Plant..Pumps");
    driver->Select(kBoth);
    Press(Qt::Key_Right, Qt::AltModifier | Qt::ShiftModifier);
    ASSERT_EQ(Names().visualIndex(0), 1);
  }
};

TEST_F(kept_columns_scenario, a_hidden_column_of_a_table_is_hidden_in_the_document_too) {
  OpenTables();
  driver->Select(kPumps);
  Press(Qt::Key_H, Qt::ControlModifier | Qt::ShiftModifier);
  ASSERT_TRUE(Names().isSectionHidden(0));
  driver->Select(kFans);
  EXPECT_FALSE(Names().isSectionHidden(0));
  driver->Select(kPumps);
  EXPECT_TRUE(Names().isSectionHidden(0));
  driver->SaveAndReopen();
  for (const char* sKey : {kStaticNode, kServer, kCatalogs, kPlant}) driver->Expand(sKey);
  driver->Select(kPumps);
  EXPECT_TRUE(Names().isSectionHidden(0));
  EXPECT_EQ(driver->Grid().rows.size(), 3U);
  ExpectNoBoxes();
}

TEST_F(kept_columns_scenario, columns_that_were_moved_go_with_a_query_that_is_renamed) {
  ShowBoth();
  Fill({{"m_txtName", "Renamed"}});
  driver->Choose(kBoth, "Edit...");
  driver->Select(kAllPumps);
  driver->Select("localhost.Queries.Renamed");
  EXPECT_EQ(Names().visualIndex(0), 1);
  driver->SaveAndReopen();
  for (const char* sKey : {kStaticNode, kServer, kQueries}) driver->Expand(sKey);
  driver->Select("localhost.Queries.Renamed");
  EXPECT_EQ(Names().visualIndex(0), 1);
  ExpectNoBoxes();
}

TEST_F(kept_columns_scenario, another_query_of_a_removed_ones_name_begins_anew) {
  ShowBoth();
  driver->AnswerBox(BoxAnswer::Yes);
  driver->Choose(kBoth, "Remove");
  NewQuery("Both", "SELECT Name, Speed FROM Plant..Pumps");
  driver->Select(kBoth);
  EXPECT_EQ(Names().visualIndex(0), 0);
}

TEST_F(kept_columns_scenario, a_range_that_was_kept_stays_when_options_are_confirmed) {
  OpenTables();
  driver->Select(kData);
  auto* ranges = Visible<QComboBox>("timeRange");
  ASSERT_NE(ranges, nullptr);
  ranges->setCurrentIndex(ranges->findText("Last 7 days"));
  emit ranges->activated(ranges->currentIndex());
  auto* bar = Visible<QWidget>("timeBar");
  ASSERT_NE(bar, nullptr);
  bar->findChild<QAction*>("timeKeep")->trigger();
  Answer("m_btnOK");
  driver->Choose(kStaticNode, "Options...");
  Boolean bDefault = true;
  const auto query = SavedTable("Data", &bDefault);
  ASSERT_NE(query, nullptr);
  EXPECT_FALSE(bDefault);
  EXPECT_EQ(query->FilterCondition(), "\"Timestamp\" BETWEEN '*-7d' AND '*'");
}

}  // namespace
}  // namespace orvane::scenarios::commands
