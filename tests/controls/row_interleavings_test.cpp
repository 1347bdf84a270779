// Two users edit the same few rows, each step of one between any two statements of the other: every
// change that is stored was made of what its user has seen, whoever was faster. Edits, new rows and
// deletions go the way that those of a grid go. What must come of each is worked out on plain rows.
// ORVANE_ROUNDS sets the number of interleavings.
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <cstdlib>
#include <limits>
#include <map>
#include <random>

#include "platform/case_folding.h"
#include "tests/controls/catalog_faults.h"
#include "tests/controls/competing_user.h"
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
using Came = CompetingUser::Came;
using Outcome = CompetingUser::Outcome;
using User = CompetingUser;

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
    const auto handler = [this](User& user, std::span<const RowIndex> rows, const auto& call) {
      Sending(user, rows, call);
    };
    for (int i = 0; i < 2; ++i) m_users.push_back(std::make_unique<User>(m_server, handler));
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
    for (const auto& user : m_users) user->Refresh();
  }
  User& OtherThan(const User& user) { return *m_users[m_users[0].get() == &user ? 1 : 0]; }

  // Edits, adds or deletes rows, or fetches anew; what is edited or added is sent in half of the
  // cases, with all that is pending or alone.
  void Step(User& user) {
    const platform::Recordset& rs = user.Rows();
    const auto count = static_cast<std::size_t>(rs.RecordCount());
    const std::size_t nWhat = Below(12);
    if (nWhat == 0) return user.Refresh();
    if (nWhat == 1 || count == 0) {
      const RowIndex row = rs.RecordCount();
      std::vector<CellEdit> edits{{row, 0, AnyKey()}};
      if (Below(2) == 0) edits.push_back({row, 1, AnyValue(1)});
      user.session.Edit(edits);
      return Leave(user, row);
    }
    const auto row = static_cast<RowIndex>(Below(count));
    if (nWhat <= 3) return Delete(user);
    if (rs.StateAt(row) != RowState::Deleted) {
      const auto column = static_cast<ColumnIndex>(Below(9) == 0 ? 0 : 1 + Below(2));
      user.session.Edit(row, column, AnyValue(column));
    }
    const auto pending = user.session.Pending();
    if (Below(2) != 0 || pending.empty()) return;
    if (Below(3) == 0) return user.outbox.SendAll();
    Leave(user, pending[Below(pending.size())]);
  }
  // As the event loop of a window has it sent.
  static void Leave(User& user, RowIndex row) {
    user.outbox.Leave(row);
    QCoreApplication::processEvents();
  }
  /// One row or several, among them such as nobody has stored yet.
  void Delete(User& user) {
    std::vector<RowIndex> rows;
    for (RowIndex row = 0; row < user.Rows().RecordCount(); ++row) {
      if (user.Rows().StateAt(row) != RowState::Deleted && Below(2) == 0) rows.push_back(row);
    }
    user.outbox.Delete(rows);
  }

  // What must come of the statement, done to the plain rows where it is stored.
  Came Expect(const platform::Recordset& rs, std::span<const RowIndex> rows) {
    const std::vector<Row> before = m_plain.rows;
    for (const RowIndex row : rows) {
      const Outcome outcome = ExpectOne(rs, row);
      if (outcome == Outcome::Stored) continue;
      m_plain.rows = before;
      return {outcome, row};
    }
    return {};
  }
  Outcome ExpectOne(const platform::Recordset& rs, RowIndex row) {
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

  static std::vector<Row> SeenOf(const platform::Recordset& rs, std::span<const RowIndex> rows) {
    std::vector<Row> seen;
    for (const RowIndex row : rows) {
      seen.push_back({rs.ValueAt(row, 0), rs.ValueAt(row, 1), rs.ValueAt(row, 2)});
    }
    return seen;
  }

  // Before each statement of the sending the other user may take a step.
  void Sending(const User& user, std::span<const RowIndex> rows,
               const std::function<Came()>& call) {
    const RecordsetPtr rs = user.session.Recordset();
    const bool bSends =
        rs->StateAt(rows[0]) != RowState::Edited || !ChangedColumns(*rs, rows[0]).empty();
    const bool bDeletes = rs->StateAt(rows[0]) == RowState::Deleted;
    const bool bOther = !std::exchange(m_bWithin, true);
    int nStatements = 0;
    Came expected;
    user.between->before = [&] {
      if (bOther && Below(3) == 0) Step(OtherThan(user));
      // Nothing comes between this and the statement.
      if (nStatements++ == 0) expected = Expect(*rs, rows);
    };
    const auto mine = SeenOf(*rs, rows);
    const Came came = call();
    user.between->before = nullptr;
    if (bOther) m_bWithin = false;
    EXPECT_EQ(nStatements > 0, bSends);
    if (bSends) {
      EXPECT_EQ(came, expected);
    }
    if (came.outcome == Outcome::Stored) {
      if (bDeletes && rows.size() > 1) ++m_nDeletedTogether;
      return;
    }
    ++m_nNotStored;
    if (bDeletes && rows.size() > 1) ++m_nKeptTogether;
    // What was typed is there, marked.
    for (const RowIndex row : rows) EXPECT_NE(rs->StateAt(row), RowState::Fetched);
    const auto still = SeenOf(*rs, rows);
    for (std::size_t n = 0; n < rows.size(); ++n) {
      for (std::size_t column = 0; column < kColumns; ++column) {
        EXPECT_TRUE(SameValue(still[n][column], mine[n][column]));
      }
    }
  }

  /// Some of what was told of others is settled.
  void SettleSome(User& user) {
    for (const RowIndex row : user.session.Pending()) {
      const RowConflict* const conflict = user.session.ConflictOf(row);
      if (conflict == nullptr || Below(2) != 0) continue;
      EXPECT_NE(user.session.RemarkOf(row), "");
      std::vector<ColumnIndex> mine;
      for (const ColumnConflict& one : conflict->columns) {
        if (one.bMine && Below(2) == 0) mine.push_back(one.column);
      }
      const bool bDelete = user.Rows().StateAt(row) == RowState::Deleted && Below(2) == 0;
      user.session.Settle(row, mine, bDelete);
    }
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
  bool m_bWithin = false;  ///< a step within the sending of the other user
  int m_nNotStored = 0;
  int m_nDeletedTogether = 0;
  int m_nKeptTogether = 0;
};

ORVANE_ON_ENGINES(row_interleavings);

TEST_P(row_interleavings, overwrite_nothing_that_was_not_seen) {
  constexpr int kRounds = 50;
  constexpr int kSteps = 12;
  const char* const sRounds = std::getenv("ORVANE_ROUNDS");
  const int nRounds = sRounds != nullptr ? std::atoi(sRounds) : kRounds;
  for (int nSeed = 1; nSeed <= nRounds; ++nSeed) {
    SCOPED_TRACE("seed " + std::to_string(nSeed));
    m_random.seed(static_cast<unsigned>(nSeed));
    Begin();
    for (int nStep = 0; nStep < kSteps; ++nStep) {
      User& user = *m_users[Below(2)];
      Step(user);
      SettleSome(user);
    }
    ASSERT_NO_FATAL_FAILURE(ExpectSame());
    if (HasFailure()) return;
  }
  EXPECT_GT(m_nNotStored, nRounds / 5);
  EXPECT_GT(m_nDeletedTogether, nRounds / 10);
  EXPECT_GT(m_nKeptTogether, nRounds / 20);
}

TEST_P(row_interleavings, of_rows_deleted_together_the_one_that_stands_against_it_is_named) {
  m_server->Run("INSERT INTO P..T VALUES ('a', 'v', 1), ('b', 'v', 2), ('c', 'v', 3)");
  User& user = *m_users[0];
  user.Refresh();
  m_bWithin = true;  // nobody takes a step meanwhile
  const auto rowOf = [&](const char* sKey) {
    RowIndex row = 0;
    while (user.Rows().ValueAt(row, 0) != Value(sKey)) ++row;
    return row;
  };
  const RowIndex theirs = rowOf("b");
  m_server->Run("UPDATE P..T SET a = 'theirs' WHERE k = 'b'");
  m_plain.rows = {{Value("a"), Value("v"), Value(1.0)},
                  {Value("b"), Value("theirs"), Value(2.0)},
                  {Value("c"), Value("v"), Value(3.0)}};
  user.outbox.Delete({0, 1, 2});
  EXPECT_EQ(m_server->Read("SELECT count(*) FROM P..T"), "3\n");
  for (RowIndex row = 0; row < 3; ++row) {
    EXPECT_EQ(user.session.ConflictOf(row) != nullptr, row == theirs) << row;
    EXPECT_EQ(user.Rows().StateAt(row), RowState::Deleted) << row;
  }
  user.session.Settle(theirs, {}, true);
  user.outbox.SendAll();
  EXPECT_EQ(m_server->Read("SELECT count(*) FROM P..T"), "0\n");
}

}  // namespace
}  // namespace orvane::controls
