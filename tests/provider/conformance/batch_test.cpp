// One statement for many rows of values: all of them or none.
#include <gmock/gmock.h>

#include <optional>

#include "platform/row_failure.h"
#include "tests/provider/conformance/conformance.h"

namespace orvane::provider::conformance {
namespace {

class batch : public Conformance {
 protected:
  batch() {
    Run(*m_opened, "CREATE DATABASE \"P\" ");
    Run(*m_opened, "CREATE TABLE P..T (Nr INTEGER PRIMARY KEY, a TEXT, t TIMESTAMP)");
  }
  /// Numbers from 1 to the last; what it is told to do at a number comes before that.
  ado::StatementResult Insert(std::int64_t llLast, std::int64_t llAt = 0,
                              const std::function<void()>& atNumber = {},
                              std::stop_token stop = {}) {
    ado::Statement statement{"INSERT INTO P..T (Nr, a) VALUES (?, ?)"};
    statement.rowsExpected = 1;
    auto number = std::make_shared<std::int64_t>(0);
    statement.batch = [=](std::vector<Value>& values) {
      if (++*number > llLast) return false;
      if (*number == llAt) atNumber();
      values = {*number, Text("*-1h")};
      return true;
    };
    return m_opened->Execute(statement, std::move(stop));
  }
  /// The row that it fails for and why; 0 for a failure that is of none.
  struct Refused {
    std::int64_t llRow = 0;
    Text sSentence;
  };
  template <class Work>
  static Refused RefusedOf(Work&& work) {
    try {
      work();
    } catch (const platform::RowFailure& failed) {
      return {failed.Row(), failed.Description()};
    } catch (const platform::Failure& failed) {
      return {0, failed.Description()};
    }
    return {-1, "nothing failed"};
  }
  /// All runs of the statement with the values that the numbers from 1 to the last are given.
  void RunAll(const Text& sText, std::int64_t llLast,
              const std::function<std::vector<Value>(std::int64_t)>& valuesOf,
              std::optional<platform::RowIndex> rowsExpected = {}) {
    ado::Statement statement{sText};
    statement.rowsExpected = rowsExpected;
    auto number = std::make_shared<std::int64_t>(0);
    statement.batch = [=](std::vector<Value>& values) {
      if (++*number > llLast) return false;
      values = valuesOf(*number);
      return true;
    };
    m_opened->Execute(statement, {});
  }
  Text Stored() { return Select(*Open(), "SELECT count(*), max(Nr) FROM P..T"); }

  std::unique_ptr<ado::Session> m_opened = Open();
};

ORVANE_ON_EVERY_ENGINE(batch);

TEST_P(batch, all_rows_are_stored) {
  const auto result = Insert(1000);
  EXPECT_EQ(result.lRecordsAffected, 1000);
  EXPECT_EQ(Stored(), "1000|1000\n");
  EXPECT_EQ(Select(*m_opened, "SELECT DISTINCT a FROM P..T"), "*-1h\n");
  EXPECT_EQ(Insert(0).lRecordsAffected, 0) << "no rows are no failure";
}

TEST_P(batch, nothing_is_stored_when_a_row_is_refused) {
  Run(*m_opened, "INSERT INTO P..T (Nr) VALUES (500)");
  EXPECT_EQ(FailureOf([&] { Insert(1000); }).substr(0, 4), "3806");
  EXPECT_EQ(Stored(), "1|500\n");
}

TEST_P(batch, nothing_is_stored_when_the_rows_fail) {
  EXPECT_NE(FailureOf([&] {
              Insert(1000, 700, [] { throw platform::Failure(5, "Line 701 is bad."); });
            }).find("Line 701 is bad."),
            Text::npos);
  EXPECT_EQ(Stored(), "0|\n");
}

TEST_P(batch, nothing_is_stored_when_it_is_cancelled) {
  std::stop_source stop;
  const auto cancel = [&] {
    Insert(
        1000, 700, [&] { stop.request_stop(); }, stop.get_token());
  };
  EXPECT_NE(FailureOf(cancel).find("cancelled"), Text::npos);
  EXPECT_EQ(Stored(), "0|\n");
  EXPECT_EQ(Insert(3).lRecordsAffected, 3) << "the session goes on";
}

TEST_P(batch, a_run_that_changes_another_number_of_rows_undoes_all) {
  Run(*m_opened, "INSERT INTO P..T (Nr, a) VALUES (1, 'x'), (2, 'y'), (3, 'y')");
  ado::Statement statement{"UPDATE P..T SET a = 'z' WHERE a = ?"};
  statement.rowsExpected = 1;
  std::vector<Text> left{"y", "x"};
  statement.batch = [&](std::vector<Value>& values) {
    if (left.empty()) return false;
    values = {left.back()};
    left.pop_back();
    return true;
  };
  EXPECT_NE(FailureOf([&] { m_opened->Execute(statement, {}); }).find("2 rows instead of 1"),
            Text::npos);
  EXPECT_EQ(Select(*m_opened, "SELECT a FROM P..T ORDER BY Nr"), "x\ny\ny\n");
}

// Many rows may be on their way at once: the one that is refused is told all the same.
TEST_P(batch, tells_the_row_that_is_refused) {
  for (const std::int64_t llBad : {1, 63, 64, 65, 5000, 9999, 10'000}) {
    const auto refused = RefusedOf([&] {
      RunAll("INSERT INTO P..T (Nr, a) VALUES (?, ?)", 10'000, [&](std::int64_t llNumber) {
        // Its number stands there twice: the second one is the next row, or the first is the last.
        const bool bTwice = llBad == 1 ? llNumber == 2 : llNumber == llBad;
        return std::vector<Value>{bTwice ? llNumber - 1 : llNumber, Text("x")};
      });
    });
    EXPECT_EQ(refused.llRow, llBad == 1 ? 2 : llBad);
    EXPECT_THAT(refused.sSentence, testing::StartsWith("A rule of the table refuses this: "));
    EXPECT_EQ(Stored(), "0|\n");
  }
  Run(*m_opened, "INSERT INTO P..T (Nr) VALUES (1)");
  EXPECT_EQ(RefusedOf([&] { Insert(10'000); }).llRow, 1);
  EXPECT_EQ(Stored(), "1|1\n");
}

// The first of several is told, in the order of the rows, whatever else is wrong behind it.
TEST_P(batch, tells_the_first_row_that_is_refused) {
  const auto insert = [&] {
    RunAll("INSERT INTO P..T (Nr, a) VALUES (?, ?)", 10'000, [](std::int64_t llNumber) {
      if (llNumber == 9000) throw platform::Failure(5, "Line 9001 is bad.");
      return std::vector<Value>{llNumber > 8990 ? std::int64_t{7} : llNumber, Text("x")};
    });
  };
  EXPECT_EQ(RefusedOf(insert).llRow, 8991);
  EXPECT_EQ(Stored(), "0|\n");
}

TEST_P(batch, tells_the_row_that_changes_another_number_of_rows) {
  Insert(10'000);
  for (const std::int64_t llBad : {1, 5000, 10'000}) {
    const auto refused = RefusedOf([&] {
      RunAll(
          "UPDATE P..T SET a = 'z' WHERE Nr = ?", 10'000,
          [&](std::int64_t llNumber) {
            return std::vector<Value>{llNumber == llBad ? std::int64_t{-1} : llNumber};
          },
          1);
    });
    EXPECT_EQ(refused.llRow, llBad);
    EXPECT_THAT(refused.sSentence, testing::HasSubstr("0 rows instead of 1"));
    EXPECT_EQ(Select(*m_opened, "SELECT count(*) FROM P..T WHERE a = 'z'"), "0\n");
    // What is passed over changes no row either.
    const auto passed = RefusedOf([&] {
      RunAll(
          "INSERT INTO P..T (Nr, a) VALUES (?, ?) ON CONFLICT DO NOTHING", 10'000,
          [&](std::int64_t llNumber) {
            return std::vector<Value>{llNumber == llBad ? llNumber : llNumber + 20'000, Text("x")};
          },
          1);
    });
    EXPECT_EQ(passed.llRow, llBad);
    EXPECT_EQ(Stored(), "10000|10000\n");
  }
}

// Whether they go one by one or many at once: what is stored is the same, row for row.
TEST_P(batch, values_of_all_kinds_and_none_are_stored_as_they_are) {
  Run(*m_opened,
      "CREATE TABLE P..K (Nr INTEGER PRIMARY KEY, i BIGINT, d DOUBLE PRECISION, a TEXT, t "
      "TIMESTAMP, b BOOLEAN, n NUMERIC(12, 3), y DATE)");
  const platform::Timestamp noon = FixedNow();
  const auto valuesOf = [&](std::int64_t llNumber) {
    // Columns begin with nulls, and change what is known of them late.
    const bool bNull = llNumber < 100 || llNumber % 7 == 0;
    const auto or_null = [&](Value vtValue) { return bNull ? Value() : std::move(vtValue); };
    return std::vector<Value>{llNumber,
                              or_null(llNumber * 1'000'000'007),
                              or_null(static_cast<double>(llNumber) / 7),
                              or_null(Text("it's; -- \\ \"") + std::to_string(llNumber) + "{,}"),
                              or_null(noon + std::chrono::microseconds(llNumber)),
                              or_null(llNumber % 2 == 0),
                              or_null(platform::Decimal{std::to_string(llNumber) + ".125"}),
                              or_null(std::chrono::floor<std::chrono::days>(noon))};
  };
  RunAll("INSERT INTO P..K (Nr, i, d, a, t, b, n, y) VALUES (?, ?, ?, ?, ?, ?, ?, ?)", 6000,
         valuesOf, 1);
  const auto many = Run(*m_opened, "SELECT * FROM P..K ORDER BY Nr").recordset;
  ASSERT_EQ(many->RecordCount(), 6000);
  Run(*m_opened, "DELETE FROM P..K");
  for (const std::int64_t llNumber : {1, 101, 1204, 5998}) {
    With(*m_opened, "INSERT INTO P..K (Nr, i, d, a, t, b, n, y) VALUES (?, ?, ?, ?, ?, ?, ?, ?)",
         valuesOf(llNumber));
    const auto one =
        With(*m_opened, "SELECT * FROM P..K WHERE Nr = ?", {Value(llNumber)}).recordset;
    for (platform::Long lColumn = 0; lColumn < one->FieldCount(); ++lColumn) {
      EXPECT_EQ(many->ValueAt(llNumber - 1, lColumn), one->ValueAt(0, lColumn))
          << llNumber << ' ' << lColumn;
    }
  }
}

TEST_P(batch, values_may_change_their_kind_from_row_to_row) {
  Run(*m_opened, "CREATE TABLE P..K (Nr INTEGER PRIMARY KEY, d DOUBLE PRECISION)");
  RunAll(
      "INSERT INTO P..K (Nr, d) VALUES (?, ?)", 3000,
      [](std::int64_t llNumber) {
        return std::vector<Value>{llNumber, llNumber % 2 == 0 ? Value(llNumber) : Value(0.5)};
      },
      1);
  EXPECT_EQ(Select(*m_opened, "SELECT count(*), sum(d) FROM P..K"), "3000|2252250\n");
}

// A row that refers to one behind it is refused, however many are on their way.
TEST_P(batch, a_row_is_stored_before_the_one_behind_it) {
  Run(*m_opened, "CREATE TABLE P..K (Nr INTEGER PRIMARY KEY, Above INTEGER REFERENCES K (Nr))");
  const auto refused = RefusedOf([&] {
    RunAll("INSERT INTO P..K (Nr, Above) VALUES (?, ?)", 1000, [](std::int64_t llNumber) {
      return std::vector<Value>{
          llNumber, llNumber == 1 ? Value() : Value(llNumber == 500 ? 501 : llNumber - 1)};
    });
  });
  EXPECT_EQ(refused.llRow, 500);
}

TEST_P(batch, values_come_by_parameters_of_the_right_number_only) {
  ado::Statement statement{"INSERT INTO P..T (Nr, t) VALUES (?, '*-1h')"};
  statement.batch = [](std::vector<Value>&) { return false; };
  EXPECT_NE(FailureOf([&] { m_opened->Execute(statement, {}); }).find("takes all of its times by"),
            Text::npos);
  statement.sText = "INSERT INTO P..T (Nr, t) VALUES (?, ?)";
  statement.batch = [](std::vector<Value>& values) {
    values = {std::int64_t{1}};
    return true;
  };
  EXPECT_NE(FailureOf([&] { m_opened->Execute(statement, {}); }).find("takes 2 parameters, but 1"),
            Text::npos);
  EXPECT_EQ(Stored(), "0|\n");
}

// What would be before or behind all times takes no row away.
TEST_P(batch, what_meets_a_time_is_refused_as_in_a_single_statement) {
  Run(*m_opened, "CREATE TABLE P..D (Nr INTEGER PRIMARY KEY, Day DATE, At TIMESTAMP)");
  Run(*m_opened, "INSERT INTO P..D VALUES (1, 'y', '*-1d'), (2, 't', '*'), (3, NULL, NULL)");
  struct Form {
    const char* sCondition;
    Value vtSound;
    Value vtRefused;
  };
  const Form forms[] = {
      {"trim(CAST(Day AS TEXT)) < ?", "2024-05", "y"},
      {"CAST(Day AS TEXT) < ?", Value(), 5},
      {"date(At) > ?", "2030-01-01", "*"},
      {"strftime('%H', At) = ?", "07", "2024-05-15"},
      {"? > strftime('%Y-%m-%d', At)", "2024-01-01", "y"},
      {"unixepoch(At) < ?", 0, "2024-01-01"},
      {"unixepoch(At) BETWEEN 0 AND ?", 1, "z"},
      {"At < ?", FixedNow() - std::chrono::hours(72), true},
  };
  for (const Form& form : forms) {
    const Text sText = Text("DELETE FROM P..D WHERE ") + form.sCondition;
    const auto clause = [](const Text& sSentence) {
      return sSentence.substr(0, sSentence.find(" (character"));
    };
    const auto refused = RefusedOf([&] {
      RunAll(sText, 3,
             [&](std::int64_t n) { return std::vector{n < 3 ? form.vtSound : form.vtRefused}; });
    });
    EXPECT_EQ(refused.llRow, 3) << form.sCondition << ": " << refused.sSentence;
    if (form.vtRefused != Value(true)) {
      EXPECT_EQ(clause("3805: " + refused.sSentence),
                clause(FailureOf([&] { With(*m_opened, sText, {form.vtRefused}); })))
          << form.sCondition;
    }
    EXPECT_EQ(Select(*m_opened, "SELECT count(*) FROM P..D"), "3\n") << form.sCondition;
  }
  // A text is read beside a time where there is one statement for it.
  EXPECT_EQ(RefusedOf([&] {
              RunAll("DELETE FROM P..D WHERE At < ?", 1,
                     [](auto) { return std::vector<Value>{"*-1h"}; });
            }).sSentence,
            "What is given for a parameter meets a time, and is none (character 29 of the "
            "statement); give a time for it.");
  RunAll("DELETE FROM P..D WHERE At < ?", 1,
         [](auto) { return std::vector<Value>{FixedNow() - std::chrono::hours(1)}; });
  EXPECT_EQ(Select(*m_opened, "SELECT Nr FROM P..D ORDER BY Nr"), "2\n3\n");
}

TEST_P(batch, a_reader_is_refused_before_the_first_row) {
  ado::Statement statement{"INSERT INTO P..T (Nr) VALUES (?)"};
  statement.bReadOnly = true;
  int nAsked = 0;
  statement.batch = [&](std::vector<Value>&) { return ++nAsked < 0; };
  EXPECT_NE(FailureOf([&] { m_opened->Execute(statement, {}); }).find("only reading"), Text::npos);
  EXPECT_EQ(nAsked, 0);
}

}  // namespace
}  // namespace orvane::provider::conformance
