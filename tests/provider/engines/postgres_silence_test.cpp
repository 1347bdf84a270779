// Servers that say nothing, memory that runs out, rows that are too large: what is given up leaves
// nothing behind that could still run when the library is unloaded or the program ends.
#include <dlfcn.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <fstream>
#include <iostream>
#include <optional>
#include <string_view>
#include <thread>

#include "provider/engines/postgres/host_lookup.h"
#include "provider/engines/postgres/postgres_cancel.h"
#include "tests/provider/engines/postgres_fixture.h"
#include "tests/provider/engines/process_parts.h"
#include "tests/provider/engines/scarce_memory.h"
#include "tests/provider/engines/silent_server.h"
#include "tests/provider/engines/way_to_server.h"

namespace {

// A text that is about to be given back.
struct Watched {
  const char* sText = nullptr;
  std::size_t nLength = 0;
  std::optional<bool> bWiped;
};
Watched g_watched;

}  // namespace

// In the place of libpq's, to look at what it is handed before it is gone.
extern "C" void PQconninfoFree(PQconninfoOption* options) {
  if (g_watched.sText != nullptr && !g_watched.bWiped) {
    g_watched.bWiped = std::all_of(g_watched.sText, g_watched.sText + g_watched.nLength,
                                   [](char c) { return c == '\0'; });
  }
  static auto* const libpqs =
      reinterpret_cast<decltype(&PQconninfoFree)>(dlsym(RTLD_NEXT, "PQconninfoFree"));
  libpqs(options);
}

namespace orvane::provider::engines {
namespace {

using namespace std::chrono_literals;
using platform::Text;
using platform::Value;
using testing::HasSubstr;
using tests::FailureOf;
using tests::OpenFiles;
using tests::PostgresCluster;
using tests::ScarceMemory;
using tests::SilentServer;
using tests::Threads;
using tests::WayToServer;
namespace failure = platform::failure;

// One that has been joined is seen for a moment yet; who waits here in vain is ended by the runner.
template <class Count>
bool BecomeAsFewAs(Count threads) {
  while (Threads() > threads) std::this_thread::yield();
  return true;
}

class PostgresSilenceTest : public tests::PostgresTest {
 protected:
  static std::unique_ptr<PostgresLink> Link() {
    return std::make_unique<PostgresLink>(ReadPostgresAddress(PostgresCluster::Get().Address()),
                                          Text(), Text(), std::stop_token());
  }
  static PostgresHandle RawTo(int nPort) {
    const auto sPort = std::to_string(nPort);
    return PostgresHandle(PQsetdbLogin("127.0.0.1", sPort.c_str(), nullptr, nullptr, "postgres",
                                       PostgresCluster::kUser, PostgresCluster::kPassword));
  }
  // Through the silent server first, then on to the cluster.
  static Text Through(const SilentServer& silent, const char* sSettings) {
    return "postgresql://127.0.0.1:" + silent.Port() +
           ",127.0.0.1:" + std::to_string(PostgresCluster::Get().Port()) + "/postgres?" + sSettings;
  }
};

TEST_F(PostgresSilenceTest, a_logon_that_is_cancelled_leaves_nothing_behind) {
  const auto threads = Threads();
  SilentServer silent;
  const auto files = OpenFiles();
  std::stop_source stop;
  std::thread stops([&] {
    silent.TakeCall();
    stop.request_stop();
  });
  const auto failed = FailureOf([&] { Open(silent.Address(), "anna", {}, stop.get_token()); });
  // No thread, and of files that of the caller whom the server took.
  stops.join();
  EXPECT_TRUE(BecomeAsFewAs(threads));
  EXPECT_EQ(OpenFiles(), files + 1);
  EXPECT_EQ(failed.lNumber, failure::kCancelled);
  EXPECT_EQ(failed.sSentence, "The connection was cancelled.");
}

TEST_F(PostgresSilenceTest, a_logon_that_was_cancelled_before_asks_nobody) {
  std::stop_source stop;
  stop.request_stop();
  const auto threads = Threads();
  EXPECT_EQ(FailureOf([&] {
              Open("postgresql://a-name-that-nobody-knows/d", "anna", {}, stop.get_token());
            }).lNumber,
            failure::kCancelled);
  // One in which the C library has looked names up before may end meanwhile.
  EXPECT_LE(Threads(), threads);
}

TEST_F(PostgresSilenceTest, a_host_that_says_nothing_is_passed_over_after_its_time) {
  const SilentServer silent;
  const auto session = Open(Through(silent, "connect_timeout=1"), PostgresCluster::kUser,
                            PostgresCluster::kPassword);
  EXPECT_EQ(session->Run({"SELECT 1", {}, {}}, {}).recordset->ValueAt(0, 0), Value(1));
}

TEST_F(PostgresSilenceTest, hosts_that_all_say_nothing_are_told) {
  const SilentServer silent;
  const auto failed = FailureOf([&] { Open(silent.Address() + "?connect_timeout=1", "anna"); });
  EXPECT_EQ(failed.lNumber, failure::kServerNotFound);
  EXPECT_EQ(failed.sSentence,
            "There is no connection to the server at 127.0.0.1 (connection to server at "
            "\"127.0.0.1\", port " +
                silent.Port() + " failed: timeout expired): check its name, and whether it runs.");
}

// Nobody waits longer than is said, and what waited is gone with its file.
TEST_F(PostgresSilenceTest, asking_to_end_leaves_nothing_behind_where_nobody_answers) {
  const auto threads = Threads();
  const auto files = OpenFiles();
  {
    WayToServer way;
    const auto connection = RawTo(way.Port());
    ASSERT_EQ(PQstatus(connection.get()), CONNECTION_OK) << PQerrorMessage(connection.get());
    way.TakeNoMore();
    const auto withWay = Threads();
    for (int n = 0; n < 3; ++n) {
      AskToEnd(connection.get(), 20ms);
      EXPECT_TRUE(BecomeAsFewAs(withWay));
    }
  }
  EXPECT_TRUE(BecomeAsFewAs(threads));
  EXPECT_EQ(OpenFiles(), files);
}

TEST_F(PostgresSilenceTest, asking_to_end_is_heard) {
  const auto connection = RawTo(PostgresCluster::Get().Port());
  ASSERT_NE(PQsendQuery(connection.get(), "SELECT pg_sleep(600)"), 0);
  while (Stored("SELECT count(*) FROM pg_stat_activity WHERE query LIKE '%sleep(600)%' AND pid <> "
                "pg_backend_pid() AND state = 'active'") == Value(std::int64_t{0})) {
    std::this_thread::yield();
  }
  AskToEnd(connection.get(), 60s);
  const PostgresResult ended(PQgetResult(connection.get()));
  EXPECT_STREQ(PQresultErrorField(ended.get(), PG_DIAG_SQLSTATE), "57014");
}

// However far it comes: the link is whole, or gone and says so.
TEST_F(PostgresSilenceTest, a_pipeline_is_left_and_a_statement_given_up_without_memory) {
  int nGone = 0;
  int nWhole = 0;
  for (const bool bPipeline : {true, false}) {
    for (std::size_t nPieces = 0; nPieces < 12; ++nPieces) {
      const auto link = Link();
      if (bPipeline) {
        link->EnterPipeline();
        link->Queue("SELECT 1");
        link->Push();
        const ScarceMemory scarce(nPieces);
        link->LeavePipeline();
      } else {
        const PostgresParameters none{std::vector<Value>()};
        link->Prepare("SELECT generate_series(1, 1000)", none, {});
        link->Execute(none, false, 0);
        const ScarceMemory scarce(nPieces);
        link->Abandon();
      }
      const auto failed = FailureOf([&] { link->Command("SELECT 1", {}); });
      if (failed.sSentence.empty()) {
        ++nWhole;
      } else {
        ++nGone;
        EXPECT_EQ(failed.lNumber, failure::kObjectClosed) << failed.sSentence;
      }
    }
  }
  EXPECT_GT(nGone, 1);
  EXPECT_GT(nWhole, 1);
}

const char* const kTooLarge =
    "A row is larger than the memory of a statement, so the connection was closed: connect again, "
    "and leave its long columns out or set \"Statement Memory\" higher in the server's extended "
    "options.";

TEST_F(PostgresSilenceTest, a_row_larger_than_the_statements_memory_is_refused) {
  for (const char* const sSql :
       {"SELECT repeat('x', 4000000)", "SELECT repeat('x', 700000), repeat('y', 700000)"}) {
    m_session = Open();
    Statement statement{sSql, {}, {}};
    statement.maxBytes = 1'000'000;
    EXPECT_EQ(FailureOf([&] { m_session->Run(statement, {}); }),
              (tests::Told{failure::kStorage, kTooLarge}));
    EXPECT_EQ(FailureOf([&] { Do("SELECT 1"); }).lNumber, failure::kObjectClosed);
  }
}

// From a server that is slow nothing more is waited for.
TEST_F(PostgresSilenceTest, a_row_is_refused_while_it_comes) {
  WayToServer way;
  const auto session =
      Open("postgresql://127.0.0.1:" + std::to_string(way.Port()) + "/postgres?sslmode=disable",
           PostgresCluster::kUser, PostgresCluster::kPassword);
  constexpr std::size_t kOfIt = 16'000'000;
  way.TellAtMost(kOfIt);
  Statement statement{"SELECT repeat('x', 64000000)", {}, {}};
  statement.maxBytes = 1'000'000;
  EXPECT_EQ(FailureOf([&] { session->Run(statement, {}); }),
            (tests::Told{failure::kStorage, kTooLarge}));
}

// The sanitizer needs all the addresses there are, and none can be taken from it.
#ifdef __has_feature
#if __has_feature(address_sanitizer)
#define ORVANE_HAS_NO_LIMIT_OF_ADDRESSES
#endif
#endif
#ifndef ORVANE_HAS_NO_LIMIT_OF_ADDRESSES
TEST_F(PostgresSilenceTest, memory_that_runs_out_for_a_row_is_a_sentence) {
  const auto run = [&] {
    // Of what the next row takes, there is a fraction.
    rlimit limit{};
    getrlimit(RLIMIT_AS, &limit);
    long nPages = 0;
    std::ifstream("/proc/self/statm") >> nPages;
    limit.rlim_cur = static_cast<rlim_t>(nPages) * 4096 + 30'000'000;
    setrlimit(RLIMIT_AS, &limit);
    const auto failed = FailureOf([&] { Do("SELECT repeat('x', 100000000)"); });
    std::cerr << failed.lNumber << ' ' << failed.sSentence << std::endl;
    // Not by the end of the program, which the server belongs to.
    _exit(failed.lNumber == failure::kObjectClosed || failed.lNumber == failure::kStorage ? 0 : 1);
  };
  EXPECT_EXIT(run(), testing::ExitedWithCode(0), "memory");
}
#endif

TEST_F(PostgresSilenceTest, rows_within_the_statements_memory_come_whatever_all_of_them_take) {
  Statement statement{"SELECT repeat('x', 400000) FROM generate_series(1, 40)", {}, {}};
  statement.maxBytes = 1'000'000;
  const auto rows = std::make_shared<tests::ScriptedRows>();
  statement.rows = rows;
  m_session->Run(statement, {});
  EXPECT_EQ(rows->Recordset()->RecordCount(), 40);
}

// The C library keeps a thread for its next question for a while, so these come last.
TEST_F(PostgresSilenceTest, names_are_looked_up_and_told_where_there_are_none) {
  const auto session =
      Open("postgresql://localhost:" + std::to_string(PostgresCluster::Get().Port()) +
               "/postgres?sslmode=disable",
           PostgresCluster::kUser, PostgresCluster::kPassword);
  EXPECT_EQ(session->Run({"SELECT 1", {}, {}}, {}).recordset->ValueAt(0, 0), Value(1));
  // Longer than any name may be, so that no other machine is asked.
  const Text sLong(300, 'a');
  const auto failed = FailureOf([&] { Open("postgresql://" + sLong + "/d", "anna"); });
  EXPECT_EQ(failed.lNumber, failure::kServerNotFound);
  EXPECT_THAT(failed.sSentence, HasSubstr("could not translate host name \"aaa"));
}

TEST_F(PostgresSilenceTest, settings_that_cannot_be_are_told) {
  for (const auto& [sSettings, sTold] : std::initializer_list<std::pair<const char*, const char*>>{
           {"h/d?connect_timeout=soon", "invalid integer value \"soon\""},
           {"h1,h2/d?hostaddr=127.0.0.1", "could not match 2 host names to 1 hostaddr values"},
           {"127.0.0.1/d?sslmode=loud", "invalid sslmode value"},
           {"/d?service=of-nobody", "of-nobody"}}) {
    const auto failed =
        FailureOf([&, sAddress = Text("postgresql://") + sSettings] { Open(sAddress, "anna"); });
    EXPECT_EQ(failed.lNumber, failure::kServerNotFound) << sSettings;
    EXPECT_THAT(failed.sSentence, HasSubstr(sTold));
  }
}

TEST(PostgresHandle, of_options_are_wiped_before_they_are_given_back) {
  PostgresOptions options(PQconninfoParse("password='correct horse battery' host=h", nullptr));
  ASSERT_NE(options, nullptr);
  const auto* option = options.get();
  while (std::string_view(option->keyword) != "password") ++option;
  g_watched = {option->val, std::string_view(option->val).size(), std::nullopt};
  options.reset();
  EXPECT_EQ(g_watched.bWiped, true);
  g_watched = {};
}

}  // namespace
}  // namespace orvane::provider::engines
