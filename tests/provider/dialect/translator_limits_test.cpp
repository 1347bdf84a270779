#include <thread>

#include "tests/provider/dialect/translated.h"

namespace orvane::provider::dialect {
namespace {

using platform::Text;

Text Repeated(std::string_view sText, int nTimes) {
  Text sAll;
  for (int i = 0; i < nTimes; ++i) sAll += sText;
  return sAll;
}

TEST(translator_limits, refuses_what_is_nested_beyond_measure) {
  constexpr int kMany = 20000;
  const Text sDeep = "The statement is nested too deeply (character ";
  for (const Text& sStatement :
       {"SELECT " + Repeated("abs(", kMany) + "1" + Repeated(")", kMany),
        "SELECT " + Repeated("(", kMany) + "1" + Repeated(")", kMany),
        Repeated("SELECT (", kMany) + Repeated(")", kMany),
        "SELECT 1 FROM " + Repeated("(", kMany) + Repeated(")", kMany),
        Repeated("SELECT * FROM (", kMany) + Repeated(")", kMany),
        Repeated("WITH a AS (", kMany) + Repeated(")", kMany),
        "SELECT " + Repeated("NOT ", kMany) + "1", "SELECT " + Repeated("- ", kMany) + "1",
        "SELECT " + Repeated("CASE ", kMany),
        "SELECT " + Repeated("1 IN (", kMany) + Repeated(")", kMany),
        "SELECT 1 WHERE EXISTS " + Repeated("(SELECT 1 WHERE EXISTS ", kMany) +
            Repeated(")", kMany)}) {
    EXPECT_EQ(Sql(sStatement).substr(0, sDeep.size()), sDeep) << sStatement.substr(0, 40);
  }
  const Text sFew = Sql("SELECT " + Repeated("abs(", 60) + "1" + Repeated(")", 60));
  EXPECT_EQ(sFew.size(), 7U + 60 * 5 + 1);
}

TEST(translator_limits, refuses_more_operators_than_the_engine_takes) {
  const Text sOne = "Timestamp BETWEEN '*-1h' AND '*' AND ";
  const Text sHead = "SELECT 1 FROM Plant1..Data WHERE ";
  const Text sMany = "Too many operators follow one another (character ";
  for (const Text& sStatement :
       {sHead + Repeated(sOne, 40000) + "1", "SELECT 1" + Repeated(" + 1", 40000),
        "SELECT 1" + Repeated(" = 1", 1200), "SELECT 1" + Repeated(" || 1", 1200),
        "SELECT 1" + Repeated(" COLLATE x", 1200), "SELECT 1" + Repeated(" ISNULL", 1200)}) {
    EXPECT_EQ(Sql(sStatement).substr(0, sMany.size()), sMany) << sStatement.substr(0, 40);
  }
  EXPECT_EQ(Translated(sHead + Repeated(sOne, 900) + "1").parameters.size(), 1800U);
}

TEST(translator_limits, takes_long_lists) {
  EXPECT_EQ(Translated("SELECT 1 FROM Plant1..Data WHERE Timestamp IN (" +
                       Repeated("'*-1h', ", 40000) + "'*')")
                .parameters.size(),
            40001U);
  EXPECT_EQ(Translated("INSERT INTO Plant1..Data (Timestamp) VALUES " +
                       Repeated("('*-1h'), ", 40000) + "('*')")
                .parameters.size(),
            40001U);
  const Text sLong = "The statement is too long (character ";
  EXPECT_EQ(Sql("SELECT 1" + Repeated(",1", 500000)).substr(0, sLong.size()), sLong);
}

TEST(translator_limits, bounds_what_named_queries_grow_to) {
  Text sColumns = "WITH a0 AS (SELECT 1 AS x, 2 AS y)";
  Text sSelects = sColumns;
  Text sNested = sColumns;
  for (int i = 0; i < 60; ++i) {
    const Text sLast = "a" + std::to_string(i);
    const Text sNext = ", a" + std::to_string(i + 1) + " AS (SELECT ";
    sColumns += sNext + "* FROM " + sLast + " AS p, " + sLast + " AS q)";
    sSelects += sNext + "p.x FROM " + sLast + " AS p, " + sLast + " AS q)";
    sNested += sNext + "(SELECT x FROM " + sLast + ") + (SELECT x FROM " + sLast + ") AS x)";
  }
  EXPECT_EQ(Sql(sSelects + " SELECT x FROM a60").substr(0, 52),
            "Named queries and views are read too many times (cha");
  EXPECT_EQ(Sql(sNested + " SELECT x FROM a60").substr(0, 48),
            "There are too many queries in one another (chara");
  EXPECT_NE(Sql(sColumns + " SELECT x FROM a60").find("too many"), Text::npos);
  EXPECT_EQ(Sql("SELECT 1" + Repeated(", 1", 2000)).substr(0, 26), "There are too many columns");
  Text sWide = "WITH a AS (SELECT 1" + Repeated(", 1", 1500) + ") SELECT 1";
  for (int i = 0; i < 150; ++i) sWide += " UNION ALL SELECT * FROM a";
  EXPECT_EQ(Sql(sWide).substr(0, 26), "There are too many columns");
  EXPECT_EQ(Sql("SELECT 1 FROM " + Repeated("Plant1..Data, ", 64) + "Plant1..Data").substr(0, 26),
            "Too many tables are joined");
}

TEST(translator_limits, ends_when_it_is_cancelled_or_its_time_is_up) {
  const Text sStatement =
      "SELECT 1 FROM Plant1..Data WHERE Timestamp IN (" + Repeated("'*-1h', ", 5000) + "'*')";
  TwoPlants schema;
  const TranslationSettings settings{zones::TimeZone("UTC"), {}, false, false};
  const auto number = [&](const Deadline& deadline) {
    try {
      StatementWork work(deadline);
      Translate(sStatement, ReadTokens(sStatement, work), schema, settings, work);
      return platform::Long{0};
    } catch (const platform::Failure& failed) {
      return failed.Number();
    }
  };
  std::stop_source stop;
  const Deadline cancelled(stop.get_token(), {});
  EXPECT_EQ(number(cancelled), 0);
  stop.request_stop();
  EXPECT_EQ(number(cancelled), platform::failure::kCancelled);
  const Deadline late({}, std::chrono::milliseconds(1));
  const auto isOver = [&] {
    try {
      late.Check();
      return false;
    } catch (const platform::Failure&) {
      return true;
    }
  };
  while (!isOver()) std::this_thread::yield();
  EXPECT_EQ(number(late), platform::failure::kTimeout);
}

// A wide table, at the first look at which the statement is cancelled.
class CancellingPlant final : public SchemaSource {
 public:
  std::optional<KnownCatalog> FindCatalog(const Text& sName) override {
    return KnownCatalog{sName, {}};
  }
  std::optional<KnownTable> FindTable(const KnownCatalog&, const Text& sTable) override {
    stop.request_stop();
    KnownTable table{sTable, {}};
    for (int i = 0; i < 100; ++i) table.columns.push_back({"c" + std::to_string(i)});
    return table;
  }
  std::stop_source stop;
};

TEST(translator_limits, joining_by_many_columns_hears_that_it_is_cancelled) {
  Text sUsing = "c0";
  for (int i = 1; i < 100; ++i) sUsing += ", c" + std::to_string(i);
  const Text sFrom = " FROM Plant1..t";
  for (const Text& sStatement :
       {"SELECT 1" + sFrom + Repeated(" NATURAL JOIN Plant1..t", 60),
        "SELECT *" + sFrom + Repeated(" NATURAL JOIN Plant1..t", 60),
        "SELECT 1" + sFrom + Repeated(" JOIN Plant1..t USING (" + sUsing + ")", 60)}) {
    CancellingPlant plant;
    const TranslationSettings settings{zones::TimeZone("UTC"), {}, false, false};
    platform::Long lNumber = 0;
    try {
      StatementWork work(Deadline(plant.stop.get_token(), {}));
      Translate(sStatement, ReadTokens(sStatement, work), plant, settings, work);
    } catch (const platform::Failure& failed) {
      lNumber = failed.Number();
    }
    EXPECT_EQ(lNumber, platform::failure::kCancelled) << sStatement.substr(0, 60);
  }
}

}  // namespace
}  // namespace orvane::provider::dialect
