// The order of texts here, held against the server's own for the same column.
#include <gtest/gtest.h>

#include <random>

#include "controls/order/row_filter.h"
#include "tests/controls/historian_server.h"
#include "tests/controls/sorted_here.h"
#include "tests/provider/engines/database_folder.h"

namespace orvane::controls {
namespace {

using platform::Text;

TEST(text_order, is_that_of_the_server_for_each_rule_that_a_column_can_have) {
  const auto server = tests::HistorianServer::Make();
  server->Run(
      "CREATE TABLE P..Texts (Id INTEGER PRIMARY KEY, Plain TEXT, Folded TEXT COLLATE NOCASE, "
      "Cut TEXT COLLATE RTRIM, Mixed ANY COLLATE NOCASE)");
  std::mt19937 random(20261122);
  const Text sLetters = "abAB _z";
  Text sRows;
  for (int nRow = 0; nRow < 400; ++nRow) {
    Text sText;
    for (auto n = random() % 6; n > 0; --n) sText += sLetters[random() % sLetters.size()];
    const Text sQuoted = nRow % 40 == 0 ? "NULL" : "'" + sText + "\u00c4'";
    const Text sEnding = nRow % 40 == 0 ? "NULL" : "'" + sText + "'";
    const Text sMixed = nRow % 3 == 0 ? std::to_string(nRow % 7) : sEnding;
    sRows += (nRow == 0 ? "(" : ", (") + std::to_string(nRow) + ", " + sQuoted + ", " + sEnding +
             ", " + sEnding + ", " + sMixed + ")";
  }
  server->Run("INSERT INTO P..Texts VALUES " + sRows);
  for (const char* sColumn : {"Plain", "Folded", "Cut", "Mixed"}) {
    const auto rs = server->Run(Text("SELECT Id, ") + sColumn + " FROM P..Texts ORDER BY Id");
    for (const bool bAscending : {true, false}) {
      EXPECT_EQ(SortedHere(*rs, bAscending),
                server->Read(Text("SELECT Id FROM P..Texts ORDER BY ") + sColumn +
                             (bAscending ? " ASC" : " DESC") + ", Id"))
          << sColumn << bAscending;
    }
  }
}

// As other programs leave them there.
TEST(text_order, is_that_of_the_server_among_dates_times_and_identities) {
  const auto server = tests::HistorianServer::Make();
  tests::Raw(server->CatalogFile())
      .Run(
          "CREATE TABLE T (Id INTEGER PRIMARY KEY, d DATE, t TIME, g GUID, n GUID COLLATE NOCASE);"
          "INSERT INTO T VALUES (1, '2024-05-01', '08:30:00', "
          "'{00112233-4455-6677-8899-AABBCCDDEEFF}', '{AB112233-4455-6677-8899-AABBCCDDEEFF}'), "
          "(2, 'a', '-1', '{', '{'), (3, '-1', '8', 'x', '{aa'), (4, '2024-05-01x', '08:30:00.5', "
          "'{0011', '{ac'), (5, 7, 7, x'00', x'00'), (6, NULL, NULL, NULL, NULL), (7, "
          "'2023-12-31', '23:59:59.999999', '{FF112233-4455-6677-8899-AABBCCDDEEFF}', "
          "'{FF112233-4455-6677-8899-AABBCCDDEEFF}'), (8, x'00', '', '~', '~'), (9, '2024', '08', "
          "'{0', '{0')");
  for (const char* sColumn : {"d", "t", "g", "n"}) {
    const auto rs = server->Run(Text("SELECT Id, ") + sColumn + " FROM P..T ORDER BY Id");
    for (const bool bAscending : {true, false}) {
      EXPECT_EQ(SortedHere(*rs, bAscending),
                server->Read(Text("SELECT Id FROM P..T ORDER BY ") + sColumn +
                             (bAscending ? " ASC" : " DESC") + ", Id"))
          << sColumn << bAscending;
    }
    for (platform::RowIndex one = 0; one < rs->RecordCount(); ++one) {
      for (platform::RowIndex other = 0; other < rs->RecordCount(); ++other) {
        const auto at = [&](platform::RowIndex row) {
          return SortedHere(*rs, true).find(std::to_string(row + 1) + "\n");
        };
        const int nOrder =
            CompareValues(rs->ValueAt(one, 1), rs->ValueAt(other, 1), rs->FieldAt(1).TextOrder());
        if (nOrder != 0) {
          EXPECT_EQ(nOrder < 0, at(one) < at(other)) << sColumn << one << other;
        } else {
          // The same in the order of their rows.
          EXPECT_EQ(platform::ToText(rs->ValueAt(one, 1)), platform::ToText(rs->ValueAt(other, 1)));
        }
      }
    }
  }
}

TEST(text_order, is_that_of_the_column_also_under_another_name_and_through_a_view) {
  const auto server = tests::HistorianServer::Make();
  server->Run("CREATE TABLE P..Texts (Id INTEGER PRIMARY KEY, Name TEXT COLLATE NOCASE)");
  server->Run("CREATE VIEW P..Seen AS SELECT Id, Name AS Called FROM P..Texts");
  const auto order = [&](const char* sSql) { return server->Run(sSql)->FieldAt(1).TextOrder(); };
  EXPECT_EQ(order("SELECT Id, Name AS Other FROM P..Texts"), platform::TextOrder::NoCase);
  EXPECT_EQ(order("SELECT Id, Called FROM P..Seen"), platform::TextOrder::NoCase);
  EXPECT_EQ(order("SELECT Id, Name || '' FROM P..Texts"), platform::TextOrder::Bytes);
}

}  // namespace
}  // namespace orvane::controls
