// Rows of a statement that is stopped: what came is kept, however the stop finds it.
#include <random>
#include <thread>

#include "ado/fetch.h"
#include "tests/fakes/gate.h"
#include "tests/provider/engines/database_folder.h"
#include "tests/provider/session_fixture.h"

namespace orvane::provider {
namespace {

using platform::FetchState;
using platform::RowIndex;

class session_rows : public SessionFixture {
 protected:
  std::unique_ptr<ado::Session> OpenWith(std::chrono::milliseconds patience,
                                         const Text& sOptions = {}) {
    auto opened = OpenAt(PlaceAt(m_root.Path(), std::chrono::milliseconds(50), patience), sOptions);
    FillPlant(*opened);
    return opened;
  }
  // As a connection runs it that was asked to keep rows.
  platform::RecordsetPtr Kept(ado::Session& opened, const Text& sText,
                              std::chrono::seconds timeout = std::chrono::seconds(0)) {
    m_fetch = std::make_shared<ado::Fetch>(ado::FetchWishes{.bKeepRows = true}, m_budget);
    ado::Statement statement{sText, 0, timeout};
    statement.rows = m_fetch;
    try {
      opened.Execute(statement, m_stop.get_token());
    } catch (...) {
      m_fetch->KeepOrRethrow(statement);
    }
    return m_fetch->Recordset();
  }

  static constexpr const char* kEndless =
      "WITH RECURSIVE n(i) AS (SELECT 0 UNION ALL SELECT i + 1 FROM n) SELECT i, 'text ' || i AS t "
      "FROM n";

  std::stop_source m_stop;
  std::shared_ptr<ado::MemoryBudget> m_budget;
  std::shared_ptr<ado::Fetch> m_fetch;
};

TEST_F(session_rows, are_kept_at_the_time_out) {
  const auto opened = OpenWith(std::chrono::hours(1));
  m_budget = std::make_shared<ado::MemoryBudget>(std::size_t{8} << 20);
  // A busy machine may need more than a second for the first row.
  platform::RecordsetPtr rs;
  for (int nSeconds = 1; rs == nullptr; nSeconds *= 2) {
    ASSERT_LT(nSeconds, 60);
    const Text sFailure =
        FailureOf([&] { rs = Kept(*opened, kEndless, std::chrono::seconds(nSeconds)); });
    if (rs == nullptr) ASSERT_EQ(sFailure.substr(0, 4), "3804");
  }
  EXPECT_EQ(rs->State(), FetchState::Stopped);
  EXPECT_TRUE(rs->FetchRemark().ends_with(" is over.")) << rs->FetchRemark();
  EXPECT_NE(rs->FetchRemark().find(" rows. The time-out of "), Text::npos) << rs->FetchRemark();
  ASSERT_GT(rs->RecordCount(), 0);
  for (RowIndex row = 0; row < rs->RecordCount(); row += 101) {
    ASSERT_TRUE(rs->ValueAt(row, 0) == Value(row));
    ASSERT_TRUE(rs->ValueAt(row, 1) == Value("text " + std::to_string(row)));
  }
  EXPECT_EQ(Select(*opened, "SELECT 1"), "1\n");
}

TEST_F(session_rows, are_kept_whenever_the_stop_comes) {
  const auto opened = OpenWith(std::chrono::hours(1));
  std::mt19937 random(3);
  for (int run = 0; run < 20; ++run) {
    m_stop = {};
    const std::chrono::microseconds after(std::uniform_int_distribution(0, 20'000)(random));
    std::thread canceller([this, after] {
      std::this_thread::sleep_for(after);
      m_stop.request_stop();
    });
    platform::RecordsetPtr rs;
    const Text sFailure = FailureOf([&] { rs = Kept(*opened, kEndless); });
    canceller.join();
    if (rs == nullptr) {
      // Before the first row.
      EXPECT_EQ(sFailure, "3712: The statement was cancelled.");
      continue;
    }
    EXPECT_EQ(rs->State(), FetchState::Stopped);
    ASSERT_GT(rs->RecordCount(), 0);
    const RowIndex last = rs->RecordCount() - 1;
    ASSERT_TRUE(rs->ValueAt(last, 1) == Value("text " + std::to_string(last)));
  }
}

// One function of the engine hears nothing before its end; the rows before it are there.
TEST_F(session_rows, are_kept_of_a_statement_that_is_left_to_itself) {
  const auto left = std::make_shared<fakes::Gate>();
  const tests::SqlCall call([this, left] {
    m_stop.request_stop();
    left->Wait();
  });
  const auto opened = OpenWith(std::chrono::milliseconds(0));
  const auto rs = Kept(*opened,
                       "WITH RECURSIVE n(i) AS (SELECT 0 UNION ALL SELECT i + 1 FROM n) SELECT i "
                       "FROM n WHERE i < 1000 OR called() = 1");
  EXPECT_EQ(rs->State(), FetchState::Stopped);
  // 128, 256 and 512 of them were handed over before.
  const RowIndex count = rs->RecordCount();
  EXPECT_EQ(count, 896);
  EXPECT_EQ(rs->FetchRemark(), "Stopped after 896 rows.");
  left->Open();
  // It runs on where nobody looks, and is stopped there.
  EXPECT_EQ(Select(*opened, "SELECT count(*) FROM Plant1..Data"), "24\n");
  EXPECT_EQ(rs->RecordCount(), count);
}

TEST_F(session_rows, have_their_times_shown_in_every_block) {
  const auto opened = OpenWith(std::chrono::hours(1), "Time as Double = True;");
  const auto rs = Kept(*opened,
                       "SELECT Timestamp AS t FROM Plant1..Data, (WITH RECURSIVE n(i) AS "
                       "(SELECT 0 UNION ALL SELECT i + 1 FROM n LIMIT 1000) SELECT i FROM n)");
  EXPECT_EQ(rs->State(), FetchState::Complete);
  ASSERT_EQ(rs->RecordCount(), 24'000);
  EXPECT_EQ(rs->FieldAt(0).Type(), platform::DataType::Double);
  for (RowIndex row = 0; row < 24'000; ++row) {
    ASSERT_EQ(rs->ValueAt(row, 0).Kind(), platform::ValueKind::Double);
  }
}

TEST_F(session_rows, beyond_the_statements_memory_are_held_by_who_takes_them) {
  const auto opened = OpenWith(std::chrono::hours(1), "Statement Memory = 16;");
  const Text sLarge =
      "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 100) SELECT "
      "randomblob(300000) FROM n";
  EXPECT_EQ(Failing(*opened, sLarge).substr(0, 4), "3807");
  m_budget = std::make_shared<ado::MemoryBudget>(1'000'000);
  EXPECT_EQ(Kept(*opened, sLarge)->RecordCount(), 100);
}

TEST_F(session_rows, of_a_change_are_all_or_nothing) {
  const auto opened = OpenWith(std::chrono::hours(1));
  const tests::SqlCall call([this] { m_stop.request_stop(); });
  const auto other = OpenAt(PlaceAt(m_root.Path()));
  EXPECT_EQ(FailureOf([&] {
              Kept(*other, "UPDATE Plant1..Data SET Value = 1 RETURNING Value, called()");
            }),
            "3712: The statement was cancelled.");
  EXPECT_EQ(Select(*opened, "SELECT count(*) FROM Plant1..Data WHERE Value = 1"), "0\n");
}

}  // namespace
}  // namespace orvane::provider
