#include "provider/engines/statement_thread.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <thread>

#include "ado/recordset_builder.h"
#include "tests/fakes/gate.h"
#include "tests/fakes/scripted_rows.h"
#include "tests/provider/temporary_root.h"

namespace orvane::provider::engines {
namespace {

using namespace std::chrono_literals;

// Runs what the test gives it.
class ScriptedSession final : public FileSession {
 public:
  using Script = std::function<void(const EngineStatement&, const std::stop_token&)>;

  explicit ScriptedSession(Script script) : m_script(std::move(script)) {}

  EngineResult Run(const EngineStatement& statement, std::stop_token stop) override {
    m_script(statement, stop);
    return {ado::RecordsetBuilder({}).Finish(), 7};
  }
  std::vector<TableSchema> Schema(const Catalog&, const SchemaRequest&, std::stop_token) override {
    return {};
  }
  void InTransaction(std::span<const Catalog>, const std::function<void()>&,
                     std::stop_token) override {}
  void Close() override {}

 private:
  Script m_script;
};

std::optional<EngineResult> RunScript(ScriptedSession::Script script, std::stop_token stop,
                                      std::chrono::milliseconds patience) {
  return RunPatiently(std::make_shared<ScriptedSession>(std::move(script)), {"SELECT 1", {}, {}},
                      std::move(stop), patience);
}

TEST(statement_thread, gives_what_the_statement_gives) {
  const auto result = RunScript(
      [](const auto& statement, const auto&) { EXPECT_EQ(statement.sSql, "SELECT 1"); }, {}, 0ms);
  ASSERT_TRUE(result.has_value());
  EXPECT_EQ(result->lRecordsAffected, 7);
}

TEST(statement_thread, fails_with_what_the_statement_fails_with) {
  EXPECT_EQ(FailureOf([] {
              RunScript([](const auto&, const auto&) { throw platform::Failure(3806, "A rule."); },
                        {}, 0ms);
            }),
            "3806: A rule.");
  EXPECT_THROW(RunScript([](const auto&, const auto&) { throw std::bad_alloc(); }, {}, 0ms),
               std::bad_alloc);
}

TEST(statement_thread, waits_for_one_that_hears_its_stop) {
  std::stop_source stop;
  EXPECT_EQ(FailureOf([&] {
              RunScript(
                  [&](const auto&, const std::stop_token& token) {
                    stop.request_stop();
                    EXPECT_TRUE(token.stop_requested());
                    throw platform::Failure(3712, "Cancelled.");
                  },
                  stop.get_token(), 1h);
            }),
            "3712: Cancelled.");
}

TEST(statement_thread, leaves_one_that_does_not_hear_its_stop_and_lets_it_change_nothing) {
  std::stop_source stop;
  fakes::Gate left;
  fakes::Gate ended;
  bool bMayCommit = true;
  const auto result = RunScript(
      [&](const EngineStatement& statement, const std::stop_token&) {
        stop.request_stop();
        left.Wait();
        bMayCommit = statement.mayCommit();
        ended.Open();
      },
      stop.get_token(), 0ms);
  EXPECT_FALSE(result.has_value());
  left.Open();
  ended.Wait();
  EXPECT_FALSE(bMayCommit);
}

TEST(statement_thread, leaves_one_to_itself_and_takes_no_more_of_its_rows) {
  std::stop_source stop;
  fakes::Gate left;
  fakes::Gate ended;
  const auto rows = std::make_shared<tests::ScriptedRows>();
  EngineStatement statement{"SELECT 1", {}, {}};
  statement.rows = rows;
  platform::Text sLate;
  const auto session = std::make_shared<ScriptedSession>(
      [&](const EngineStatement& running, const std::stop_token&) {
        std::vector<ado::Column> block(1);
        block[0].AppendLong(1);
        running.rows->Begin({{"a"}}, true);
        running.rows->Take(block);
        stop.request_stop();
        left.Wait();
        sLate = FailureOf([&] { running.rows->Take(block); });
        ended.Open();
      });
  EXPECT_FALSE(RunPatiently(session, std::move(statement), stop.get_token(), 0ms).has_value());
  left.Open();
  ended.Wait();
  EXPECT_EQ(sLate, "3712: The statement was cancelled.");
  EXPECT_EQ(rows->Recordset()->RecordCount(), 1);
}

// The program ends while a statement goes on that was left to itself, and soon ends.
[[noreturn]] void EndBesideALeftStatement() {
  // Needed longer than anything that goes at the end.
  static auto& ends = *new fakes::Gate;
  std::stop_source stop;
  RunScript(
      [&](const auto&, const auto&) {
        stop.request_stop();
        ends.Wait();
        std::this_thread::sleep_for(20ms);
        std::fputs("ended by itself", stderr);
      },
      stop.get_token(), 0ms);
  std::atexit([] { ends.Open(); });
  std::exit(0);
}

TEST(statement_thread_death, one_that_was_left_is_waited_for_at_the_end) {
  // In a program of its own: threads of other cases are none in a copy of this one.
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(EndBesideALeftStatement(), testing::ExitedWithCode(0), "ended by itself");
}

TEST(statement_thread, asks_whoever_else_is_to_be_asked_before_a_change) {
  int nAsked = 0;
  EngineStatement statement{"SELECT 1", {}, {}};
  statement.mayCommit = [&] { return ++nAsked > 1; };
  std::vector<bool> may;
  const auto session = std::make_shared<ScriptedSession>(
      [&](const EngineStatement& running, const std::stop_token&) {
        may = {running.mayCommit(), running.mayCommit()};
      });
  EXPECT_TRUE(RunPatiently(session, std::move(statement), {}, 0ms).has_value());
  EXPECT_EQ(may, (std::vector<bool>{false, true}));
}

TEST(statement_thread, waits_for_a_change_that_is_being_made_for_good) {
  std::stop_source stop;
  const auto result = RunScript(
      [&](const EngineStatement& statement, const std::stop_token&) {
        EXPECT_TRUE(statement.mayCommit());
        stop.request_stop();
        std::this_thread::yield();
      },
      stop.get_token(), 0ms);
  EXPECT_TRUE(result.has_value());
}

}  // namespace
}  // namespace orvane::provider::engines
