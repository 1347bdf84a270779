// Named queries that change data, from the tree down to the provider and its files. Only a real
// engine knows what a statement would do, so this stands beside the cases that every console is put
// to.
#include <QPushButton>
#include <QTextEdit>

#include "tests/console/scenarios/visible_widget.h"
#include "tests/scenarios/command_fixture.h"

namespace orvane::scenarios::commands {
namespace {

constexpr const char* kGrow = "localhost.Queries.Grow";

class reader_first : public command_scenario {
 protected:
  /// Makes a query that changes data, and shows it.
  void ShowGrowingQuery(const Text& sSql) {
    OpenQueries();
    NewQuery("Grow", sSql);
    driver->Select(kGrow);
  }
  static void ExpectQuestion() {
    const auto* sentence = Visible<QTextEdit>("emptySentence");
    ASSERT_NE(sentence, nullptr);
    EXPECT_EQ(sentence->toPlainText(), "This query changes data. It has not been run.");
    EXPECT_NE(Visible<QPushButton>("emptyButton"), nullptr);
  }
  static void Run() {
    auto* button = Visible<QPushButton>("emptyButton");
    ASSERT_NE(button, nullptr);
    button->click();
  }
  Texts Pumps() {
    driver->Select(kAllPumps);
    driver->Refresh();
    return FirstColumn();
  }
};

TEST_F(reader_first, selecting_refreshing_renaming_and_reopening_change_nothing) {
  ShowGrowingQuery("INSERT INTO Plant..Pumps VALUES ('P4', 4.5)");
  ExpectQuestion();
  driver->Refresh();
  ExpectQuestion();
  Fill({{"m_txtName", "Grown"}});
  driver->Choose(kGrow, "Edit...");
  ExpectQuestion();
  driver->SaveAndReopen();
  for (const char* sKey : {kStaticNode, kServer, kQueries}) driver->Expand(sKey);
  driver->Select("localhost.Queries.Grown");
  ExpectQuestion();
  EXPECT_EQ(Pumps(), (Texts{"P1", "P2", "P3"}));
  ExpectNoBoxes();
}

TEST_F(reader_first, a_press_runs_the_query_once) {
  ShowGrowingQuery("INSERT INTO Plant..Pumps VALUES ('P4', 4.5)");
  Run();
  EXPECT_EQ(Visible<QPushButton>("emptyButton"), nullptr);
  EXPECT_EQ(Pumps(), (Texts{"P1", "P2", "P3", "P4"}));
  driver->Select(kGrow);
  EXPECT_EQ(Visible<QPushButton>("emptyButton"), nullptr) << "what it brought is kept";
  driver->Refresh();
  ExpectQuestion();
  EXPECT_EQ(Pumps(), (Texts{"P1", "P2", "P3", "P4"}));
  ExpectNoBoxes();
}

TEST_F(reader_first, every_kind_of_change_is_asked_about) {
  const Texts changes = {
      "DELETE FROM Plant..Pumps",
      "UPDATE Plant..Pumps SET Speed = 0 RETURNING Name",
      "REPLACE INTO Plant..Pumps VALUES ('P1', 0)",
      "WITH n AS (SELECT 'P5' AS Name) INSERT INTO Plant..Pumps SELECT Name, 1 FROM n",
      "CREATE TABLE Plant..Extra (Name TEXT)",
      "DROP TABLE Plant..Fans",
      "DROP DATABASE Plant",
      "CREATE DATABASE Mill",
  };
  driver->OpenDocument([&](PropertyBag& pb, platform::ObjectFactory& objects) {
    WriteDocument(pb, objects);
    const Text sQueries = "ServersNode_ServerNodes_ServerNode1_QueryNodes_";
    Long lCount = 2;
    for (const Text& sSql : changes) {
      const Text sQuery = sQueries + "QueryNode" + std::to_string(++lCount);
      pb.WriteProperty(sQuery + "_QueryName", "Change " + std::to_string(lCount));
      pb.WriteProperty(sQuery + "_Query", sSql);
    }
    pb.WriteProperty(sQueries + "QueryNodeCount", lCount);
  });
  for (const char* sKey : {kStaticNode, kServer, kQueries}) driver->Expand(sKey);
  for (std::size_t n = 0; n < changes.size(); ++n) {
    SCOPED_TRACE(changes[n]);
    driver->Select("localhost.Queries.Change " + std::to_string(n + 3));
    ExpectQuestion();
  }
  EXPECT_EQ(Pumps(), (Texts{"P1", "P2", "P3"}));
  driver->Select(kAllFans);
  EXPECT_EQ(FirstColumn(), (Texts{"F1"}));
  ExpectNoBoxes();
}

TEST_F(reader_first, a_query_that_only_reads_shows_its_rows_at_once) {
  ShowGrowingQuery("EXPLAIN DELETE FROM Plant..Pumps");
  EXPECT_EQ(Visible<QPushButton>("emptyButton"), nullptr);
  EXPECT_FALSE(driver->Grid().rows.empty());
  ExpectNoBoxes();
}

}  // namespace
}  // namespace orvane::scenarios::commands
