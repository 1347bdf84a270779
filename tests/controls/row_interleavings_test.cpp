// Two users edit the same few rows, each step of one between any two statements of the other: every
// change that is stored was made of what its user has seen, whoever was faster. What must come of
// each is worked out on plain rows. ORVANE_ROUNDS sets the number of interleavings.
#include <gtest/gtest.h>

#include <cstdlib>
#include <limits>
#include <map>
#include <random>

#include "platform/case_folding.h"
#include "tests/controls/catalog_faults.h"
#include "tests/controls/edited_table.h"
#include "tests/controls/on_engines.h"
#include "tests/provider/engines/postgres_cluster.h"

namespace orvane::controls {
namespace {

using platform::ColumnIndex;
using platform::RecordsetPtr;
using platform::RowIndex;
using platform::RowState;
using platform::Text;
using platform::Value;
using tests::Difference;

constexpr ColumnIndex kColumns = 3;

// The key and two values, as the table holds them.
using Row = std::array<Value, kColumns>;

// What the server must hold; its keys are equal without regard to case.
class PlainTable {
 public:
  std::vector<Row> rows;

  Row* Find(const Value& vtKey) {
    const auto found = std::ranges::find(rows, vtKey, [](const Row& row) { return row[0]; });
    return found == rows.end() ? nullptr : &*found;
  }
  bool Takes(const Value& vtKey, const Row* but) const {
    return std::ranges::none_of(rows, [&](const Row& row) {
      return &row != but && platform::FoldCase(platform::ToText(row[0])) ==
                                platform::FoldCase(platform::ToText(vtKey));
    });
  }
};

// Asked before each statement of a user.
class Between final : public platform::ObjectFactory {
 public:
  explicit Between(std::shared_ptr<tests::HistorianServer> server) : m_server(std::move(server)) {}
  platform::ConnectionPtr CreateConnection() override { return m_server->CreateConnection(); }
  platform::CommandPtr CreateCommand() override {
    if (before) before();
    return m_server->CreateCommand();
  }
  platform::TableQueryPtr CreateTableQuery() override { return nullptr; }

  std::function<void()> before;

 private:
  std::shared_ptr<tests::HistorianServer> m_server;
};

enum class Outcome : std::uint8_t { Stored, Conflict, Refused };

struct User {
  explicit User(const std::shared_ptr<tests::HistorianServer>& server)
      : edited(server, "T"), between(std::make_shared<Between>(server)) {}

  tests::EditedTable edited;
  std::shared_ptr<Between> between;
};

class row_interleavings : public testing::Test, public tests::OnEngines {
 protected:
  row_interleavings() {
    if (Differs(Difference::kChoosesItsPlaces)) {
      // Texts without regard to case, and numbers of fewer digits than are sent.
      tests::PostgresCluster::Get().Do(
          tests::DatabaseOf(m_server->Server()),
          "CREATE EXTENSION citext SCHEMA \"P\"; CREATE TABLE \"P\".\"T\" (k \"P\".citext NOT NULL "
          "PRIMARY KEY, a \"P\".citext, b real)");
    } else {
      m_server->Run(
          "CREATE TABLE P..T (k TEXT COLLATE NOCASE NOT NULL PRIMARY KEY, a TEXT COLLATE NOCASE, b "
          "DOUBLE)");
    }
    m_reader = m_server->Connect();
    for (int i = 0; i < 2; ++i) m_users.push_back(std::make_unique<User>(m_server));
  }

  std::size_t Below(std::size_t n) { return m_random() % n; }
  Value AnyKey() {
    static const char* const kKeys[] = {"x", "X", "y", "z"};
    return kKeys[Below(std::size(kKeys))];
  }
  Value AnyValue(ColumnIndex column) {
    static const Value kTexts[] = {"v", "V", "w", "", Value(), "v "};
    static const std::vector<Value> kNumbers = {0.5, 1e300, 5e-324, Value()};
    static const std::vector<Value> kOfFewDigits = {
        0.5,    0.1, 3.4028235e38, 1e-45, 0.0, -0.0, std::numeric_limits<double>::quiet_NaN(),
        Value()};
    if (column == 0) return AnyKey();
    const auto& numbers = Differs(Difference::kNoNaN) ? kNumbers : kOfFewDigits;
    return column == 1 ? kTexts[Below(std::size(kTexts))] : numbers[Below(numbers.size())];
  }

  void Begin() {
    m_plain.rows.clear();
    m_server->Run(m_reader, "DELETE FROM P..T");
    for (const char* const sKey : {"x", "y"}) {
      m_server->Run(m_reader, "INSERT INTO P..T VALUES ('" + Text(sKey) + "', 'v', 0.5)");
      m_plain.rows.push_back({Value(sKey), Value("v"), Value(0.5)});
    }
    for (const auto& user : m_users) Refresh(*user);
  }
  void Refresh(User& user) { user.edited.rs = m_server->Run(user.edited.cn, "SELECT * FROM P..T"); }

  // Edits, adds or deletes a row, or fetches anew; in half of the cases sends what is pending.
  void Step(User& user, User* other) {
    platform::Recordset& rs = *user.edited.rs;
    const auto count = static_cast<std::size_t>(rs.RecordCount());
    const std::size_t nWhat = Below(12);
    if (nWhat == 0) return Refresh(user);
    if (nWhat == 1 || count == 0) {
      const RowIndex row = rs.AddNew();
      rs.ValueAt(row, 0, AnyKey());
      if (Below(2) == 0) rs.ValueAt(row, 1, AnyValue(1));
      return Send(user, row, other);
    }
    const auto row = static_cast<RowIndex>(Below(count));
    if (rs.StateAt(row) != RowState::Deleted) {
      if (nWhat == 2) {
        rs.Delete(row);
      } else {
        const auto column = static_cast<ColumnIndex>(Below(9) == 0 ? 0 : 1 + Below(2));
        rs.ValueAt(row, column, AnyValue(column));
      }
    }
    const auto pending = rs.PendingRows();
    if (Below(2) == 0 && !pending.empty()) Send(user, pending[Below(pending.size())], other);
  }

  // What must come of the statement, done to the plain rows where it is stored.
  Outcome Expect(const platform::Recordset& rs, RowIndex row) {
    const RowState state = rs.StateAt(row);
    if (state == RowState::New) {
      if (!m_plain.Takes(rs.ValueAt(row, 0), nullptr)) return Outcome::Refused;
      m_plain.rows.push_back({rs.ValueAt(row, 0), rs.ValueAt(row, 1), rs.ValueAt(row, 2)});
      return Outcome::Stored;
    }
    Row* const there = m_plain.Find(rs.OriginalAt(row, 0));
    const auto changed = ChangedColumns(rs, row);
    if (there == nullptr) return Outcome::Conflict;
    for (ColumnIndex column = 0; column < kColumns; ++column) {
      const bool bMustBe =
          state == RowState::Deleted || std::ranges::find(changed, column) != changed.end();
      const Value& vtThere = (*there)[static_cast<std::size_t>(column)];
      if (bMustBe && !SameValue(vtThere, rs.OriginalAt(row, column))) return Outcome::Conflict;
    }
    if (state == RowState::Deleted) {
      m_plain.rows.erase(m_plain.rows.begin() + (there - m_plain.rows.data()));
      return Outcome::Stored;
    }
    if (!m_plain.Takes(rs.ValueAt(row, 0), there)) return Outcome::Refused;
    for (const ColumnIndex column : changed) {
      (*there)[static_cast<std::size_t>(column)] = rs.ValueAt(row, column);
    }
    return Outcome::Stored;
  }

  void Send(User& user, RowIndex row, User* other) {
    platform::Recordset& rs = *user.edited.rs;
    const bool bSends = rs.StateAt(row) != RowState::Edited || !ChangedColumns(rs, row).empty();
    int nStatements = 0;
    Outcome expected = Outcome::Stored;
    user.between->before = [&] {
      if (other != nullptr && Below(3) == 0) Step(*other, nullptr);
      // Nothing comes between this and the statement.
      if (nStatements++ == 0) expected = Expect(rs, row);
    };
    Row mine;
    for (ColumnIndex column = 0; column < kColumns; ++column) {
      mine[static_cast<std::size_t>(column)] = rs.ValueAt(row, column);
    }
    std::optional<RowConflict> conflict;
    Outcome outcome = Outcome::Stored;
    try {
      auto sent = RowChanges(user.edited.cn, user.between, user.edited.table, 0).Send(rs, row);
      conflict = std::move(sent.conflict);
      if (conflict) {
        outcome = Outcome::Conflict;
      } else {
        rs.Accept(row, sent.stored);
      }
    } catch (const platform::Failure& failed) {
      // A row that is as it was read again: they have put it back meanwhile.
      outcome =
          failed.Number() == platform::failure::kConflict ? Outcome::Conflict : Outcome::Refused;
    }
    user.between->before = nullptr;
    EXPECT_EQ(nStatements > 0, bSends);
    if (bSends) EXPECT_EQ(outcome, expected);
    if (outcome == Outcome::Stored) return;
    ++m_nNotStored;
    // What was typed is there, marked.
    EXPECT_NE(rs.StateAt(row), RowState::Fetched);
    for (ColumnIndex column = 0; column < kColumns; ++column) {
      EXPECT_TRUE(SameValue(rs.ValueAt(row, column), mine[static_cast<std::size_t>(column)]));
    }
    if (conflict && Below(2) == 0) SettleSome(rs, row, *conflict);
  }

  void SettleSome(platform::Recordset& rs, RowIndex row, const RowConflict& conflict) {
    std::vector<ColumnIndex> mine;
    for (const ColumnConflict& one : conflict.columns) {
      if (one.bMine && Below(2) == 0) mine.push_back(one.column);
    }
    const bool bDelete = rs.StateAt(row) == RowState::Deleted && Below(2) == 0;
    Settle(rs, row, conflict, mine, bDelete);
  }

  void ExpectSame() {
    const RecordsetPtr rs = m_server->Run(m_reader, "SELECT * FROM P..T");
    ASSERT_EQ(rs->RecordCount(), static_cast<RowIndex>(m_plain.rows.size()));
    for (RowIndex row = 0; row < rs->RecordCount(); ++row) {
      const Row* const plain = m_plain.Find(rs->ValueAt(row, 0));
      ASSERT_NE(plain, nullptr) << platform::ToText(rs->ValueAt(row, 0));
      EXPECT_EQ(rs->ValueAt(row, 1), (*plain)[1]);
      EXPECT_TRUE(SameValue(rs->ValueAt(row, 2), (*plain)[2])) << platform::ToText((*plain)[2]);
    }
  }

  std::shared_ptr<tests::HistorianServer> m_server = tests::HistorianServer::Make(GetParam());
  platform::ConnectionPtr m_reader;
  std::vector<std::unique_ptr<User>> m_users;
  PlainTable m_plain;
  std::mt19937 m_random;
  int m_nNotStored = 0;
};

ORVANE_ON_ENGINES(row_interleavings);

TEST_P(row_interleavings, overwrite_nothing_that_was_not_seen) {
  constexpr int kRounds = 100;
  constexpr int kSteps = 12;
  const char* const sRounds = std::getenv("ORVANE_ROUNDS");
  const int nRounds = sRounds != nullptr ? std::atoi(sRounds) : kRounds;
  for (int nSeed = 1; nSeed <= nRounds; ++nSeed) {
    SCOPED_TRACE("seed " + std::to_string(nSeed));
    m_random.seed(static_cast<unsigned>(nSeed));
    Begin();
    for (int nStep = 0; nStep < kSteps; ++nStep) {
      const std::size_t nUser = Below(2);
      Step(*m_users[nUser], m_users[1 - nUser].get());
    }
    ASSERT_NO_FATAL_FAILURE(ExpectSame());
    if (HasFailure()) return;
  }
  EXPECT_GT(m_nNotStored, nRounds / 5);
}

}  // namespace
}  // namespace orvane::controls
