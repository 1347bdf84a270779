// Numbers on their way into columns that keep no more digits than a double has.
#include "tests/provider/session_fixture.h"

namespace orvane::provider {
namespace {

class stored_numbers : public SessionFixture {
 protected:
  stored_numbers() {
    Run(*m_opened, "CREATE DATABASE \"P\" ");
    Run(*m_opened, "CREATE TABLE P..T (Nr INTEGER PRIMARY KEY, n DECIMAL(38, 10), m MONEY, a)");
  }
  static Text TooLong(const Text& sNumber) {
    return "6: '" + sNumber +
           "' has more digits than a column of numbers keeps; enter fewer (15 always fit), or keep "
           "it in a column of type TEXT.";
  }
  Text Fails(const Text& sSql, std::vector<Value> values = {}) {
    return FailureOf([&] { With(*m_opened, sSql, std::move(values)); });
  }
  Text Stored() { return Select(*m_opened, "SELECT typeof(n), n, typeof(m), m, a FROM P..T"); }

  std::unique_ptr<ado::Session> m_opened = Open();
};

TEST_F(stored_numbers, a_decimal_that_the_column_would_round_is_refused_and_nothing_is_stored) {
  const Text sWide = "12345678901234567890123456789.012345678";
  const Text sLong = "0.10000000000000000001";
  EXPECT_EQ(Fails("INSERT INTO P..T (n) VALUES (?)", {platform::Decimal{sWide}}), TooLong(sWide));
  EXPECT_EQ(Fails("INSERT INTO P..T (n) VALUES (?)", {sLong}), TooLong(sLong));
  EXPECT_EQ(Fails("INSERT INTO P..T (n) VALUES (' " + sWide + " ')"), TooLong(sWide));
  EXPECT_EQ(Fails("INSERT INTO P..T (n) VALUES (1), (-" + sWide + ")"), TooLong("-" + sWide));
  EXPECT_EQ(Fails("INSERT INTO P..T SELECT 1, ?, 2, 3", {platform::Decimal{sWide}}),
            TooLong(sWide));
  EXPECT_EQ(Fails("INSERT INTO P..T (a, m) VALUES (?, ?)", {sWide, sWide}), TooLong(sWide));
  EXPECT_EQ(Stored(), "");
  Run(*m_opened, "INSERT INTO P..T VALUES (1, 1, 1, 1)");
  EXPECT_EQ(Fails("UPDATE P..T SET n = ?", {platform::Decimal{sWide}}), TooLong(sWide));
  EXPECT_EQ(Fails("UPDATE P..T SET a = 5, \"n\" = (?)", {sWide}), TooLong(sWide));
  EXPECT_EQ(Fails("UPDATE P..T SET (a, n) = (?, ?)", {sWide, sWide}), TooLong(sWide));
  EXPECT_EQ(Fails("INSERT INTO P..T (Nr) VALUES (1) ON CONFLICT DO UPDATE SET n = ?", {sWide}),
            TooLong(sWide));
  EXPECT_EQ(Stored(), "integer|1|integer|1|1\n");
}

TEST_F(stored_numbers, rows_that_travel_together_are_looked_at_one_by_one) {
  ado::Statement statement{"INSERT INTO P..T (n) VALUES (?)"};
  int nRow = 0;
  statement.batch = [&](std::vector<Value>& values) {
    values = {platform::Decimal{nRow == 2 ? "0.12345678901234567890" : "0.5"}};
    return ++nRow <= 3;
  };
  EXPECT_EQ(FailureOf([&] { m_opened->Execute(statement, {}); }),
            TooLong("0.12345678901234567890"));
  EXPECT_EQ(Stored(), "");
}

TEST_F(stored_numbers, what_the_column_keeps_comes_back_with_the_same_digits) {
  const char* const numbers[] = {"0.1",
                                 "-0.1234567890123456",
                                 "0.12345678901234566",
                                 "9223372036854775807",
                                 "-9223372036854775808",
                                 "12345678901234.5",
                                 "123456789012345.67"};
  for (const char* const sNumber : numbers) {
    With(*m_opened, "INSERT INTO P..T (n, m) VALUES (?, ?)", {platform::Decimal{sNumber}, sNumber});
    EXPECT_EQ(Select(*m_opened, "SELECT n, m FROM P..T"), Text(sNumber) + "|" + sNumber + "\n");
    Run(*m_opened, "DELETE FROM P..T");
    Run(*m_opened, Text("INSERT INTO P..T (n) VALUES (") + sNumber + ")");
    EXPECT_EQ(Select(*m_opened, "SELECT n FROM P..T"), Text(sNumber) + "\n");
    Run(*m_opened, "DELETE FROM P..T");
  }
}

TEST_F(stored_numbers, what_is_no_number_or_goes_elsewhere_is_stored_as_it_is) {
  const Text sWide = "12345678901234567890123456789.012345678";
  With(*m_opened, "INSERT INTO P..T (n, m, a) VALUES (?, ?, ?)", {"1.2.3", Value(), sWide});
  EXPECT_EQ(Stored(), "text|1.2.3|null||" + sWide + "\n");
  Run(*m_opened, "UPDATE P..T SET n = x'00', m = 0x10, a = '" + sWide + "'");
  EXPECT_EQ(Stored(), "blob|0x00|integer|16|" + sWide + "\n");
  Run(*m_opened, "UPDATE P..T SET n = 9e999, m = -9e999");
  EXPECT_EQ(Select(*m_opened, "SELECT n, m FROM P..T"), "inf|-inf\n");
  Run(*m_opened, "UPDATE P..T SET n = '', m = '   ', a = ''");
  EXPECT_EQ(Stored(), "text||text|   |\n");
}

}  // namespace
}  // namespace orvane::provider
