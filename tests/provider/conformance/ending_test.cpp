// How a statement ends before its own end, and what it leaves then.
#include <thread>

#include "ado/fetch.h"
#include "tests/provider/conformance/conformance.h"

namespace orvane::provider::conformance {
namespace {

using platform::FetchState;
using platform::RowIndex;

class ending : public Conformance {
 protected:
  static constexpr const char* kEndless =
      "WITH RECURSIVE n(i) AS (SELECT 0 UNION ALL SELECT i + 1 FROM n) SELECT i FROM n";
  static constexpr const char* kNeverARow =
      "WITH RECURSIVE n(i) AS (SELECT 0 UNION ALL SELECT i + 1 FROM n) SELECT count(*) FROM n";

  // As a connection runs it that was asked to keep rows.
  static platform::RecordsetPtr Kept(ado::Session& opened, const Text& sText,
                                     std::chrono::seconds timeout, std::stop_token stop = {}) {
    const auto fetch = std::make_shared<ado::Fetch>(ado::FetchWishes{.bKeepRows = true},
                                                    std::make_shared<ado::MemoryBudget>(kBudget));
    ado::Statement statement{sText, 0, timeout};
    statement.rows = fetch;
    try {
      opened.Execute(statement, std::move(stop));
    } catch (...) {
      fetch->KeepOrRethrow(statement);
    }
    return fetch->Recordset();
  }
  static constexpr std::size_t kBudget = std::size_t{8} << 20;
};

ORVANE_ON_EVERY_ENGINE(ending);

TEST_P(ending, comes_at_the_time_out) {
  const auto opened = Open();
  EXPECT_EQ(FailureOf([&] {
              opened->Execute({kNeverARow, 0, std::chrono::seconds(1)}, {});
            }),
            "3804: The statement did not end within its time-out of 1 second: allow it more time, "
            "or ask for less.");
  EXPECT_EQ(Select(*opened, "SELECT 1"), "1\n");
}

TEST_P(ending, comes_at_a_stop_at_whatever_moment) {
  const auto opened = Open();
  for (int i = 0; i < 20; ++i) {
    std::stop_source stop;
    std::thread canceller([&] { stop.request_stop(); });
    const Text sFailure = FailureOf([&] {
      opened->Execute({kNeverARow, 0, std::chrono::seconds(0)}, stop.get_token());
    });
    canceller.join();
    EXPECT_EQ(sFailure, "3712: The statement was cancelled.");
  }
  EXPECT_EQ(Select(*opened, "SELECT 1"), "1\n");
}

TEST_P(ending, leaves_nothing_of_a_change) {
  const auto opened = OpenPlant();
  std::stop_source stop;
  stop.request_stop();
  EXPECT_EQ(FailureOf([&] {
              opened->Execute({"DELETE FROM Plant1..Data", 0, {}}, stop.get_token());
            }),
            "3712: The statement was cancelled.");
  const Text sEndless =
      "INSERT INTO Plant1..Tags (Tag, Unit) WITH RECURSIVE n(i) AS (SELECT 0 "
      "UNION ALL SELECT i + 1 FROM n) SELECT 'T' || i, 'bar' FROM n";
  EXPECT_EQ(FailureOf([&] {
              opened->Execute({sEndless, 0, std::chrono::seconds(1)}, {});
            }).substr(0, 4),
            "3804");
  EXPECT_EQ(Select(*opened, "SELECT count(*) FROM Plant1..Data"), "24\n");
  EXPECT_EQ(Select(*opened, "SELECT count(*) FROM Plant1..Tags"), "0\n");
}

TEST_P(ending, keeps_the_rows_that_came) {
  const auto opened = Open();
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
  const RowIndex last = rs->RecordCount() - 1;
  EXPECT_EQ(platform::ToText(rs->ValueAt(last, 0)), std::to_string(last));
}

}  // namespace
}  // namespace orvane::provider::conformance
