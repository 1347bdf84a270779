#include "controls/statements/table_query.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <limits>
#include <memory>

#include "tests/controls/failure_of.h"

namespace orvane::controls {
namespace {

using platform::Long;
using platform::SortCriterion;
using platform::Text;

/// A query whose texts hold several scripts, quotes, line breaks, a dot and a zero byte.
std::shared_ptr<TableQuery> RichQuery() {
  auto query = std::make_shared<TableQuery>();
  query->Catalog("Anlage \"Süd\".1");
  query->Table("Таблица 表 जدول\n2");
  query->Columns().Add("Zeit\r\nstempel");
  query->Columns().Add("it's \\ \"quoted\"");
  query->Columns().Add(Text("zero\0byte", 9));
  query->Columns().Add("K\xE4lte");
  query->FilterCondition("a = 'x' -- \xE2\x9C\x93\nAND b > 1\t");
  query->SortCriterion(SortCriterion{"Zeit\r\nstempel", false});
  query->MaxRows(std::numeric_limits<Long>::min());
  query->QueryTimeout(std::numeric_limits<Long>::max());
  return query;
}

void ExpectSame(TableQuery& left, TableQuery& right) {
  EXPECT_EQ(left.Catalog(), right.Catalog());
  EXPECT_EQ(left.Table(), right.Table());
  ASSERT_EQ(left.Columns().Count(), right.Columns().Count());
  for (Long l = 1; l <= left.Columns().Count(); ++l) {
    EXPECT_EQ(left.Columns().Item(l), right.Columns().Item(l));
  }
  EXPECT_EQ(left.FilterCondition(), right.FilterCondition());
  EXPECT_EQ(left.SortCriterion(), right.SortCriterion());
  EXPECT_EQ(left.MaxRows(), right.MaxRows());
  EXPECT_EQ(left.QueryTimeout(), right.QueryTimeout());
}

Text Replaced(Text sText, const Text& sOld, const Text& sNew) {
  const auto nAt = sText.find(sOld);
  EXPECT_NE(nAt, Text::npos) << sOld;
  return sText.replace(nAt, sOld.size(), sNew);
}

TEST(table_query, a_new_one_is_empty_with_limits_100_and_60) {
  TableQuery query;
  EXPECT_EQ(query.Catalog(), "");
  EXPECT_EQ(query.Table(), "");
  EXPECT_EQ(query.Columns().Count(), 0);
  EXPECT_EQ(query.FilterCondition(), "");
  EXPECT_FALSE(query.SortCriterion().has_value());
  EXPECT_EQ(query.MaxRows(), 100);
  EXPECT_EQ(query.QueryTimeout(), 60);
  EXPECT_EQ(query.ProgId(), "ORVOLEDBCtls.TableQuery");
}

TEST(table_query, every_property_gives_back_what_was_set) {
  const auto query = RichQuery();
  EXPECT_EQ(query->Catalog(), "Anlage \"Süd\".1");
  EXPECT_EQ(query->Table(), "Таблица 表 जدول\n2");
  EXPECT_EQ(query->FilterCondition(), "a = 'x' -- \xE2\x9C\x93\nAND b > 1\t");
  EXPECT_EQ(query->SortCriterion(), (SortCriterion{"Zeit\r\nstempel", false}));
  EXPECT_EQ(query->MaxRows(), std::numeric_limits<Long>::min());
  EXPECT_EQ(query->QueryTimeout(), std::numeric_limits<Long>::max());
  query->SortCriterion(std::nullopt);
  EXPECT_FALSE(query->SortCriterion().has_value());
}

TEST(table_query, every_setter_raises_change_once_also_for_an_equal_value) {
  TableQuery query;
  int nChanges = 0;
  const auto subscription = query.OnChange([&] { ++nChanges; });
  const auto expectOne = [&](const char* sWhat) {
    EXPECT_EQ(nChanges, 1) << sWhat;
    nChanges = 0;
  };
  for (int nRound = 0; nRound < 2; ++nRound) {
    query.Catalog("c");
    expectOne("Catalog");
    query.Table("t");
    expectOne("Table");
    query.FilterCondition("f");
    expectOne("FilterCondition");
    query.SortCriterion(SortCriterion{"s", true});
    expectOne("SortCriterion");
    query.MaxRows(5);
    expectOne("MaxRows");
    query.QueryTimeout(6);
    expectOne("QueryTimeout");
    query.Columns().Clear();
    expectOne("Columns.Clear");
    query.Columns().Add("a");
    expectOne("Columns.Add");
    query.Columns().Remove(1);
    expectOne("Columns.Remove");
  }
}

TEST(table_query, a_dropped_subscription_hears_nothing) {
  TableQuery query;
  int nChanges = 0;
  auto subscription = query.OnChange([&] { ++nChanges; });
  subscription.Drop();
  query.Table("t");
  EXPECT_EQ(nChanges, 0);
}

TEST(table_query, may_be_destroyed_by_its_own_change) {
  auto query = std::make_unique<TableQuery>();
  const auto subscription = query->OnChange([&] { query.reset(); });
  query->Columns().Add("a");
  EXPECT_EQ(query, nullptr);
}

TEST(table_query, composes_its_sql_from_its_members) {
  TableQuery query;
  query.Catalog("Machine");
  query.Table("Data");
  query.Columns().Add("Value");
  query.FilterCondition("Timestamp >= 'y'");
  query.SortCriterion(SortCriterion{"Value", true});
  EXPECT_EQ(query.SqlText(),
            "SELECT \"Value\"\nFROM \"Machine\"..\"Data\"\nWHERE Timestamp >= 'y'\n"
            "ORDER BY \"Value\" ASC");
}

TEST(table_query, a_sort_criterion_without_a_column_is_kept_and_sorts_nothing) {
  TableQuery query;
  query.Table("Data");
  query.SortCriterion(SortCriterion{"", false});
  EXPECT_EQ(query.SqlText(), "SELECT *\nFROM \"Data\"");
  TableQuery restored;
  restored.ReadState(query.WriteState());
  EXPECT_EQ(restored.SortCriterion(), (SortCriterion{"", false}));
}

TEST(table_query, the_limits_are_not_in_the_sql) {
  TableQuery query;
  query.Table("Data");
  const Text sBefore = query.SqlText();
  query.MaxRows(7);
  query.QueryTimeout(8);
  EXPECT_EQ(query.SqlText(), sBefore);
}

TEST(table_query, its_state_round_trips_whatever_its_texts_hold) {
  const auto query = RichQuery();
  TableQuery restored;
  restored.Columns().Add("gone");
  restored.ReadState(query->WriteState());
  ExpectSame(*query, restored);
  EXPECT_EQ(restored.WriteState(), query->WriteState());
}

TEST(table_query, its_state_is_one_line_of_json_with_the_members_in_order) {
  TableQuery query;
  query.Catalog("Machine");
  query.Table("Da\"t\\a\n\x01");
  EXPECT_EQ(query.WriteState(),
            R"({"catalog":"Machine","class":"ORVOLEDBCtls.TableQuery","columns":[],)"
            R"("filterCondition":"","maxRows":100,"queryTimeout":60,"sort":null,)"
            R"("table":"Da\"t\\a\n\u0001","version":1})");
  query.Columns().Add("Timestamp");
  query.Columns().Add("Größe");
  query.SortCriterion(SortCriterion{"Timestamp", false});
  EXPECT_EQ(query.WriteState(),
            R"({"catalog":"Machine","class":"ORVOLEDBCtls.TableQuery",)"
            R"("columns":["Timestamp","Größe"],"filterCondition":"","maxRows":100,)"
            R"("queryTimeout":60,"sort":{"ascending":false,"column":"Timestamp"},)"
            R"("table":"Da\"t\\a\n\u0001","version":1})");
}

TEST(table_query, the_range_that_a_grid_put_into_the_filter_is_saved_with_it) {
  TableQuery query;
  query.FilterCondition("At >= 'a'");
  EXPECT_EQ(query.TimeFilter(), "");
  query.TimeFilter("At >= 'a'");
  EXPECT_NE(query.WriteState().find(R"("table":"","timeFilter":"At >= 'a'","version":2})"),
            Text::npos)
      << query.WriteState();
  TableQuery restored;
  restored.ReadState(query.WriteState());
  EXPECT_EQ(restored.TimeFilter(), "At >= 'a'");
  query.FilterCondition("At >= 'a'");
  EXPECT_EQ(query.TimeFilter(), "At >= 'a'") << "the same filter";
  query.FilterCondition("At >= 'b'");
  EXPECT_EQ(query.TimeFilter(), "") << "another one is somebody's own";
  EXPECT_NE(query.WriteState().find("\"version\":1"), Text::npos);
}

TEST(table_query, all_of_the_default_filter_gives_way_to_a_range) {
  TableQuery query;
  query.FilterCondition("At >= 'a'");
  const Text sState = query.WriteState();
  int nChanges = 0;
  const auto subscription = query.OnChange([&] { ++nChanges; });
  query.FilterIsDefault(true);
  EXPECT_EQ(query.TimeFilter(), "At >= 'a'");
  query.FilterCondition("At >= 'b'");
  EXPECT_EQ(query.TimeFilter(), "At >= 'b'");
  EXPECT_EQ(nChanges, 1);
  EXPECT_EQ(query.WriteState(), Replaced(sState, "'a'", "'b'")) << "the node saves the flag";
  query.FilterIsDefault(false);
  EXPECT_EQ(query.TimeFilter(), "");
}

TEST(table_query, the_state_of_a_new_one_round_trips) {
  TableQuery empty;
  TableQuery restored;
  restored.ReadState(RichQuery()->WriteState());
  restored.ReadState(empty.WriteState());
  ExpectSame(empty, restored);
}

TEST(table_query, restoring_raises_no_change_and_later_changes_do) {
  TableQuery query;
  int nChanges = 0;
  const auto subscription = query.OnChange([&] { ++nChanges; });
  query.ReadState(RichQuery()->WriteState());
  EXPECT_EQ(nChanges, 0);
  query.Columns().Remove(1);
  EXPECT_EQ(nChanges, 1);
}

TEST(table_query, a_text_that_is_no_state_fails_with_13_and_changes_nothing) {
  const Text sGood = RichQuery()->WriteState();
  TableQuery plain;
  plain.Columns().Add("a");
  plain.SortCriterion(SortCriterion{"a", true});
  const Text sPlain = plain.WriteState();
  const Text texts[] = {
      "",
      "x",
      "{}",
      "[]",
      "null",
      "1",
      sGood + "x",
      sGood + sGood,
      "\xEF\xBB\xBF" + sGood + "}",
      Replaced(sPlain, "ORVOLEDBCtls.TableQuery", "ORVOLEDBCtls.TableEditor"),
      Replaced(sPlain, "\"maxRows\":100", "\"maxRows\":2147483648"),
      Replaced(sPlain, "\"maxRows\":100", "\"maxRows\":-2147483649"),
      Replaced(sPlain, "\"maxRows\":100", "\"maxRows\":18446744073709551615"),
      Replaced(sPlain, "\"maxRows\":100", "\"maxRows\":1.5"),
      Replaced(sPlain, "\"maxRows\":100", "\"maxRows\":\"100\""),
      Replaced(sPlain, "\"maxRows\":100,", ""),
      Replaced(sPlain, "\"maxRows\":100", "\"maxRows\":100,\"maxRows\":100"),
      Replaced(sPlain, "\"maxRows\":100", "\"maxRows\":100,\"minRows\":1"),
      Replaced(sPlain, "[\"a\"]", "[\"a\",\"a\"]"),
      Replaced(sPlain, "[\"a\"]", "[\"a\",1]"),
      Replaced(sPlain, "[\"a\"]", "{}"),
      Replaced(sPlain, "[\"a\"]", "[{\"a\":1}]"),
      Replaced(sPlain, "\"catalog\":\"\"", "\"catalog\":null"),
      Replaced(sPlain, "\"ascending\":true", "\"ascending\":1"),
      Replaced(sPlain, "\"ascending\":true", "\"ascending\":true,\"ascending\":true"),
      Replaced(sPlain, "\"column\":\"a\"", "\"columm\":\"a\""),
      Replaced(sPlain, "{\"ascending\":true,\"column\":\"a\"}", "\"a\""),
      Replaced(sPlain, "\"version\":1", "\"version\":0"),
      Replaced(sPlain, "\"version\":1", "\"version\":2"),
      Replaced(sPlain, "\"version\":1", "\"timeFilter\":1,\"version\":2"),
      Replaced(sPlain, "\"version\":1", "\"timeFilter\":\"a\",\"version\":1"),
  };
  const auto query = RichQuery();
  for (const Text& sText : texts) {
    EXPECT_EQ(FailureNumberOf([&] { query->ReadState(sText); }), 13) << sText;
    EXPECT_NE(SentenceOf([&] { query->ReadState(sText); }), "");
    EXPECT_EQ(query->WriteState(), sGood) << sText;
  }
}

TEST(table_query, a_newer_format_is_refused_with_a_sentence_of_its_own) {
  TableQuery query;
  const Text sNewer = Replaced(query.WriteState(), "\"version\":1", "\"version\":3");
  EXPECT_EQ(FailureNumberOf([&] { query.ReadState(sNewer); }), 13);
  EXPECT_EQ(SentenceOf([&] { query.ReadState(sNewer); }),
            "The saved table query was written by a newer version of the grid library (format 3; "
            "this one reads format 2). Update the program to open it.");
}

TEST(table_query, a_newer_format_may_have_other_members) {
  TableQuery query;
  const Text sNewer = "{\"class\":\"ORVOLEDBCtls.TableQuery\",\"version\":7,\"joins\":[]}";
  EXPECT_NE(SentenceOf([&] { query.ReadState(sNewer); }).find("newer version"), Text::npos);
}

TEST(table_query, texts_that_are_not_utf8_are_saved_byte_by_byte) {
  TableQuery query;
  query.Catalog("K\xE4lte");
  query.Table("\xED\xA0\x80\xC0\x80");  // a surrogate and an overlong zero
  query.Columns().Add(
      "Gr\xF6\xDF"
      "e");
  query.Columns().Add("Größe");
  query.FilterCondition("a = '\xFF'");
  query.SortCriterion(
      SortCriterion{"Gr\xF6\xDF"
                    "e",
                    true});
  const Text sState = query.WriteState();
  EXPECT_NE(sState.find("\"catalog\":{\"bytes\":\"S+RsdGU=\"}"), Text::npos) << sState;
  EXPECT_NE(sState.find("\"Größe\""), Text::npos) << sState;
  TableQuery restored;
  restored.ReadState(sState);
  ExpectSame(query, restored);
}

TEST(table_query, bytes_of_a_text_are_in_base64_and_alone) {
  TableQuery query;
  query.Columns().Add("\xE4");
  const Text sState = query.WriteState();
  for (const Text& sDamaged :
       {Replaced(sState, "{\"bytes\":\"5A==\"}", "{\"bytes\":\"5A=\"}"),
        Replaced(sState, "{\"bytes\":\"5A==\"}", "{\"bytes\":\"5%==\"}"),
        Replaced(sState, "{\"bytes\":\"5A==\"}", "{\"bytes\":1}"),
        Replaced(sState, "{\"bytes\":\"5A==\"}", "{\"byte\":\"5A==\"}"),
        Replaced(sState, "{\"bytes\":\"5A==\"}", "{}"),
        Replaced(sState, "{\"bytes\":\"5A==\"}", "{\"bytes\":\"5A==\",\"more\":1}"),
        Replaced(sState, "{\"bytes\":\"5A==\"}", "{\"bytes\":\"5A==\",\"bytes\":\"5A==\"}"),
        Replaced(sState, "{\"bytes\":\"5A==\"}", "{\"bytes\":{\"bytes\":\"5A==\"}}"),
        Replaced(sState, "{\"bytes\":\"5A==\"}", "{\"bytes\":\"5A==\"},{\"bytes\":\"5A==\"}")}) {
    TableQuery other;
    EXPECT_EQ(FailureNumberOf([&] { other.ReadState(sDamaged); }), 13) << sDamaged;
  }
}

/// A damaged state either fails with 13 and changes nothing, or is another whole state.
void ExpectRefusedOrWhole(const Text& sDamaged) {
  TableQuery query;
  query.Table("before");
  const Text sBefore = query.WriteState();
  const Long lNumber = FailureNumberOf([&] { query.ReadState(sDamaged); });
  if (lNumber != 0) {
    EXPECT_EQ(lNumber, 13) << sDamaged;
    EXPECT_EQ(query.WriteState(), sBefore) << sDamaged;
  } else {
    TableQuery again;
    again.ReadState(query.WriteState());
    ExpectSame(query, again);
  }
}

TEST(table_query, every_byte_of_a_state_cut_in_turn_is_refused) {
  const Text sState = RichQuery()->WriteState();
  for (std::size_t nLength = 0; nLength < sState.size(); ++nLength) {
    TableQuery query;
    EXPECT_EQ(FailureNumberOf([&] { query.ReadState(sState.substr(0, nLength)); }), 13) << nLength;
  }
  for (std::size_t nAt = 0; nAt < sState.size(); ++nAt) {
    ExpectRefusedOrWhole(Text(sState).erase(nAt, 1));
  }
}

TEST(table_query, every_bit_of_a_state_flipped_in_turn_is_refused_or_gives_a_whole_state) {
  const Text sState = RichQuery()->WriteState();
  for (std::size_t nAt = 0; nAt < sState.size(); ++nAt) {
    for (unsigned nBit = 0; nBit < 8; ++nBit) {
      Text sDamaged = sState;
      sDamaged[nAt] = static_cast<char>(static_cast<unsigned char>(sDamaged[nAt]) ^ (1U << nBit));
      ExpectRefusedOrWhole(sDamaged);
    }
  }
}

TEST(table_query, deep_nesting_is_refused) {
  TableQuery query;
  EXPECT_EQ(FailureNumberOf([&] { query.ReadState(Text(200000, '[')); }), 13);
}

}  // namespace
}  // namespace orvane::controls
