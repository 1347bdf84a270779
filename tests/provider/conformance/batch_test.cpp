// One statement for many rows of values: all of them or none.
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
