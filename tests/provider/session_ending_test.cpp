// How a statement ends before its own end, and what it leaves then.
#include <sqlite3.h>

#include <thread>

#include "tests/fakes/gate.h"
#include "tests/provider/engines/database_folder.h"
#include "tests/provider/session_fixture.h"

namespace orvane::provider {
namespace {

class session_ending : public SessionFixture {
 protected:
  // Plant1 with "called()", which does what is given; the engine waits an hour for locks.
  std::unique_ptr<ado::Session> OpenPlantWith(std::chrono::milliseconds patience) {
    auto opened = OpenAt(PlaceAt(m_root.Path(), std::chrono::hours(1), patience));
    FillPlant(*opened);
    return opened;
  }
  Text Ending(ado::Session& opened, const Text& sText,
              std::chrono::seconds timeout = std::chrono::seconds(0)) {
    return FailureOf([&] { opened.Execute({sText, 0, timeout}, m_stop.get_token()); });
  }

  std::stop_source m_stop;
};

TEST_F(session_ending, ends_a_wait_for_the_historian_at_the_time_out) {
  const SessionPlace place = PlaceAt(m_root.Path(), std::chrono::hours(1));
  const auto opened = HistorianProvider(place).Open(ado::ConnectionSettings::Parse(""), "", {});
  sqlite3* stranger = nullptr;
  ASSERT_EQ(sqlite3_open((m_root.Historian() / "Orvane.db").c_str(), &stranger), SQLITE_OK);
  ASSERT_EQ(sqlite3_exec(stranger, "BEGIN IMMEDIATE", nullptr, nullptr, nullptr), SQLITE_OK);
  EXPECT_EQ(FailureOf([&] {
              opened->Execute({"CREATE DATABASE \"Plant1\" ", 0, std::chrono::seconds(1)}, {});
            }),
            "3804: The statement did not end within its time-out of 1 second: allow it more time, "
            "or ask for less.");
  sqlite3_close(stranger);
  opened->Execute({"CREATE DATABASE \"Plant1\" ", 0, std::chrono::seconds(60)}, {});
}

TEST_F(session_ending, ends_a_statement_at_its_time_out_and_at_a_stop) {
  const auto opened = Open();
  const Text sEndless =
      "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n) SELECT count(*) FROM n";
  EXPECT_EQ(FailureOf([&] {
              opened->Execute({sEndless, 0, std::chrono::seconds(1)}, {});
            }).substr(0, 4),
            "3804");
  // From another thread, at whatever moment of the statement.
  for (int i = 0; i < 20; ++i) {
    std::stop_source stop;
    std::thread canceller([&] { stop.request_stop(); });
    const Text sFailure = FailureOf([&] {
      opened->Execute({sEndless, 0, std::chrono::seconds(0)}, stop.get_token());
    });
    canceller.join();
    EXPECT_EQ(sFailure.substr(0, 4), "3712");
  }
  EXPECT_EQ(Select(*opened, "SELECT 1"), "1\n");
}

TEST_F(session_ending, hears_a_stop_within_a_thousand_steps) {
  int nCalls = 0;
  int nCallsAtStop = 0;
  const tests::SqlCall call([&] {
    if (++nCalls != 100) return;
    nCallsAtStop = nCalls;
    m_stop.request_stop();
  });
  // However long that takes: steps are counted here.
  const auto opened = OpenPlantWith(std::chrono::hours(1));
  const Text sEndless =
      "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n) SELECT i FROM n WHERE "
      "called() = 1";
  for (const Text& sText :
       {sEndless, "SELECT count(*) FROM (" + sEndless + ")",
        "SELECT i FROM (" + sEndless + ") ORDER BY i DESC",
        Text("SELECT count(*) FROM Plant1..Data a, Plant1..Data b, Plant1..Data c, Plant1..Data d "
             "WHERE a.Value + b.Value + c.Value + d.Value + called() > 0"),
        "INSERT INTO Plant1..Tags (Tag) SELECT 'T' || i FROM (" + sEndless + ")"}) {
    m_stop = {};
    nCalls = 0;
    nCallsAtStop = 0;
    EXPECT_EQ(Ending(*opened, sText), "3712: The statement was cancelled.") << sText;
    EXPECT_EQ(nCallsAtStop, 100) << sText;
    // Each call is a step at least.
    EXPECT_LE(nCalls - nCallsAtStop, 1000) << sText;
  }
  EXPECT_EQ(Select(*opened, "SELECT count(*) FROM Plant1..Tags"), "0\n");
}

TEST_F(session_ending, waits_at_most_a_second_and_a_half_for_a_statement_that_hears_nothing) {
  // Every engine that is made without another wish; what is left to itself then is told below.
  const engines::EmbeddedPlace place{};
  EXPECT_EQ(place.patience, std::chrono::milliseconds(1500));
}

TEST_F(session_ending, takes_a_change_back_whose_stop_comes_in_its_last_step) {
  const tests::SqlCall call([&] { m_stop.request_stop(); });
  const auto opened = OpenPlant();
  for (const char* const sText :
       {"INSERT INTO Plant1..Tags (Tag, Unit) VALUES ('a', called())",
        "UPDATE Plant1..Data SET Status = 'x' || called() WHERE Timestamp = '*'",
        "DELETE FROM Plant1..Data WHERE Timestamp = '*' AND called() = 1"}) {
    m_stop = {};
    EXPECT_EQ(Ending(*opened, sText), "3712: The statement was cancelled.") << sText;
  }
  EXPECT_EQ(Select(*opened, "SELECT count(*) FROM Plant1..Tags"), "0\n");
  EXPECT_EQ(Select(*opened, "SELECT Status FROM Plant1..Data WHERE Timestamp = '*'"), "Good\n");
}

TEST_F(session_ending, ends_the_wait_for_a_catalog_that_is_read_at_the_time_out) {
  const auto opened = OpenPlantWith(std::chrono::hours(1));
  sqlite3* stranger = nullptr;
  ASSERT_EQ(sqlite3_open((m_root.Historian() / "catalogs" / "Plant1.db").c_str(), &stranger),
            SQLITE_OK);
  ASSERT_EQ(sqlite3_exec(stranger, "BEGIN EXCLUSIVE", nullptr, nullptr, nullptr), SQLITE_OK);
  EXPECT_EQ(Ending(*opened, "SELECT count(*) FROM Plant1..Data", std::chrono::seconds(1)),
            "3804: The statement did not end within its time-out of 1 second: allow it more time, "
            "or ask for less.");
  sqlite3_close(stranger);
  EXPECT_EQ(Select(*opened, "SELECT count(*) FROM Plant1..Data"), "24\n");
}

// One function of the engine hears nothing before its end.
TEST_F(session_ending, leaves_a_statement_to_itself_that_does_not_hear_its_stop) {
  const auto left = std::make_shared<fakes::Gate>();
  const tests::SqlCall call([this, left] {
    m_stop.request_stop();
    left->Wait();
  });
  const auto opened = OpenPlantWith(std::chrono::milliseconds(0));
  EXPECT_EQ(Ending(*opened, "DELETE FROM Plant1..Data WHERE Timestamp = '*' AND called() = 1"),
            "3712: The statement was cancelled.");
  EXPECT_EQ(Select(*opened, "SELECT count(*) FROM Plant1..Data"), "24\n");
  left->Open();
  // Waits for the one that was left, which has the catalog until its end.
  Run(*opened, "INSERT INTO Plant1..Tags (Tag) VALUES ('a')");
  EXPECT_EQ(Select(*opened, "SELECT count(*) FROM Plant1..Data"), "24\n");
}

TEST_F(session_ending, leaves_a_statement_to_itself_that_does_not_hear_its_time_out) {
  const auto left = std::make_shared<fakes::Gate>();
  const tests::SqlCall call([left] { left->Wait(); });
  const auto opened = OpenPlantWith(std::chrono::milliseconds(0));
  EXPECT_EQ(
      Ending(*opened, "INSERT INTO Plant1..Tags (Tag) VALUES (called())", std::chrono::seconds(1))
          .substr(0, 4),
      "3804");
  left->Open();
  Run(*opened, "INSERT INTO Plant1..Tags (Tag) VALUES ('a')");
  EXPECT_EQ(Select(*opened, "SELECT Tag FROM Plant1..Tags"), "a\n");
}

TEST_F(session_ending, uses_no_more_memory_than_a_statement_may) {
  const auto opened = OpenPlant("Statement Memory = 16;");
  const Text sExpected =
      "3807: There is not enough memory for the statement: set a row limit, or narrow it down.";
  const Text sNumbers =
      "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 1000) ";
  const Text sLarge = sNumbers + "SELECT randomblob(300000) FROM n";
  EXPECT_EQ(FailureOf([&] { Run(*opened, sLarge, 100); }), sExpected);
  EXPECT_EQ(Failing(*opened, "SELECT zeroblob(20000000)"), sExpected);
  EXPECT_EQ(Failing(*opened, "INSERT INTO Plant1..Data2 (Tag, Timestamp, Value) " + sNumbers +
                                 "SELECT 'T', datetime(i, 'unixepoch'), hex(randomblob(20000)) "
                                 "FROM n RETURNING Value, Timestamp"),
            sExpected);
  EXPECT_EQ(Select(*opened, "SELECT count(*) FROM Plant1..Data2"), "0\n");
  opened->PropertyValue("Statement Memory", "64");
  EXPECT_EQ(Run(*opened, sLarge, 100).recordset->RecordCount(), 100);
}

}  // namespace
}  // namespace orvane::provider
