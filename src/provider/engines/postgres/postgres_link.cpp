#include "provider/engines/postgres/postgres_link.h"

#include <fmt/format.h>
#include <sys/ioctl.h>

#include <optional>
#include <utility>

#include "ado/secret.h"
#include "platform/failure.h"
#include "platform/one_line.h"
#include "provider/engines/postgres/postgres_cancel.h"
#include "provider/engines/postgres/postgres_errors.h"
#include "provider/engines/postgres/postgres_logon.h"
#include "provider/engines/postgres/stop_signal.h"

namespace orvane::provider::engines {

using platform::Failure;
using platform::Text;
namespace failure = platform::failure;
using Clock = std::chrono::steady_clock;

namespace {

// A server that was asked to end a statement has this long for it.
constexpr std::chrono::seconds kForCancelling{5};
// How often whoever waits is asked whether rows at hand are wanted.
constexpr std::chrono::milliseconds kLookEvery{20};
// A server that has not yet read the statement does not hear that it is to end it: it is told
// again.
constexpr std::chrono::milliseconds kTellEvery{100};

// How values are written as texts, and that times are of no place; a function of the server that
// another user made is found by its whole name only.
constexpr const char* kSettings =
    "SET datestyle = 'ISO, YMD'; SET intervalstyle = 'postgres'; SET timezone = 'UTC'; "
    "SET bytea_output = 'hex'; SET extra_float_digits = 1; SET standard_conforming_strings = on; "
    "SET xmloption = 'content'; SET search_path = pg_catalog";

void HearNothing(void* /*unused*/, const char* /*notice*/) {}

}  // namespace

PostgresLink::PostgresLink(const PostgresAddress& address, const Text& sUser, Text sPassword,
                           const std::stop_token& stop)
    : m_sServer(address.Shown()) {
  const ado::WipeAtEnd wipe(sPassword);
  m_connection = LogOn(address, sUser, sPassword, stop);
  PQsetNoticeProcessor(m_connection.get(), &HearNothing, nullptr);
  if (PQsetnonblocking(m_connection.get(), 1) != 0) FailLost();
  Command(kSettings, stop);
}

void PostgresLink::RequireOpen() const {
  if (m_connection != nullptr) return;
  // Whoever met it first may have kept it to himself.
  if (!m_sLost.empty()) throw LinkLost(m_sServer, m_sLost);
  throw Failure(failure::kObjectClosed, "The connection is closed; connect again.", "PostgreSQL");
}

Text PostgresLink::Way() const {
  const auto* const connection = m_connection.get();
  const Text sHost = connection == nullptr ? Text() : PQhost(connection);
  if (sHost.empty() || sHost.front() == '/' || sHost.front() == '@') return {};
  if (PQsslInUse(m_connection.get()) == 0 && PQgssEncInUse(m_connection.get()) == 0) {
    return "not encrypted";
  }
  // Also what the service file says, or the environment.
  const PostgresOptions options(PQconninfo(m_connection.get()));
  bool bNamed = false;
  for (const auto* option = options.get(); option != nullptr && option->keyword != nullptr;
       ++option) {
    const bool bMode = std::string_view(option->keyword) == "sslmode" && option->val != nullptr;
    bNamed = bNamed || (bMode && std::string_view(option->val) == "verify-full");
  }
  return fmt::format("encrypted to {}{}", platform::OneLine(sHost),
                     bNamed ? "" : ", which has not proved its name");
}

void PostgresLink::FailLost() {
  Lose(LastWords(m_connection.get()));
}

void PostgresLink::Lose(const Text& sWords) {
  m_sLost = sWords;
  m_connection.reset();
  throw LinkLost(m_sServer, m_sLost);
}

void PostgresLink::Sent(int nDone) {
  m_nMostInRow = 0;
  m_giveUp = Clock::time_point::max();
  m_tellAgain = {};
  if (nDone == 0) FailLost();
}

void PostgresLink::Command(const char* sSql, const std::stop_token& stop) {
  RequireOpen();
  Sent(PQsendQuery(m_connection.get(), sSql));
  std::optional<Failure> failed;
  while (const PostgresResult result = Next(stop)) {
    if (PQresultStatus(result.get()) == PGRES_FATAL_ERROR && !failed) {
      const PostgresError error = ErrorOf(result.get());
      if (NumberOfState(error.sState) == failure::kObjectClosed) Lose(error.sMessage);
      failed.emplace(NumberOfState(error.sState), SentenceOf(error, m_sServer, 0), "PostgreSQL", 0,
                     sSql);
    }
  }
  if (failed) throw Failure(*failed);
}

void PostgresLink::Rollback() noexcept {
  if (m_connection == nullptr || Transaction() == PQTRANS_IDLE) return;
  try {
    Command("ROLLBACK", {});
  } catch (...) {
    // Without an end to its transaction the connection is good for nothing.
    m_connection.reset();
  }
}

PostgresResult PostgresLink::Prepare(const Text& sSql, const PostgresParameters& parameters,
                                     const std::stop_token& stop) {
  RequireOpen();
  const auto answer = [&] {
    PostgresResult first;
    while (PostgresResult result = Next(stop)) {
      if (first == nullptr) first = std::move(result);
    }
    return first;
  };
  Sent(PQsendPrepare(m_connection.get(), "", sSql.c_str(), parameters.Count(), parameters.Types()));
  PostgresResult prepared = answer();
  if (PQresultStatus(prepared.get()) != PGRES_COMMAND_OK) return prepared;
  Sent(PQsendDescribePrepared(m_connection.get(), ""));
  return answer();
}

void PostgresLink::Execute(const PostgresParameters& parameters, bool bBinary,
                           std::size_t nMostInRow) {
  RequireOpen();
  Sent(PQsendQueryPrepared(m_connection.get(), "", parameters.Count(), parameters.Values(),
                           parameters.Lengths(), parameters.Formats(), bBinary ? 1 : 0));
  PQsetSingleRowMode(m_connection.get());
  // Encryption adds less than that to what is sent.
  constexpr std::size_t kMostAdded = 32;
  m_nMostInRow = nMostInRow + nMostInRow / kMostAdded;
}

void PostgresLink::EnterPipeline() {
  RequireOpen();
  if (PQenterPipelineMode(m_connection.get()) == 0) FailLost();
}

void PostgresLink::LeavePipeline() noexcept {
  if (m_connection == nullptr) return;
  try {
    std::stop_source stop;
    stop.request_stop();
    if (m_bQueued) QueueEnd();
    while (m_nEnds > 0) Answer(stop.get_token());
    if (PQexitPipelineMode(m_connection.get()) == 0) FailLost();
  } catch (...) {
    // The link is gone, and with it the statements.
    m_connection.reset();
  }
}

void PostgresLink::Queued(int nDone) {
  m_bQueued = true;
  Sent(nDone);
}

void PostgresLink::Queue(const char* sSql) {
  RequireOpen();
  Queued(PQsendQueryParams(m_connection.get(), sSql, 0, nullptr, nullptr, nullptr, nullptr, 0));
}

void PostgresLink::QueuePrepare(const Text& sSql, const PostgresParameters& parameters) {
  RequireOpen();
  Queued(
      PQsendPrepare(m_connection.get(), "", sSql.c_str(), parameters.Count(), parameters.Types()));
  Queued(PQsendDescribePrepared(m_connection.get(), ""));
}

void PostgresLink::QueueExecute(const PostgresParameters& parameters) {
  RequireOpen();
  Queued(PQsendQueryPrepared(m_connection.get(), "", parameters.Count(), parameters.Values(),
                             parameters.Lengths(), parameters.Formats(), 0));
}

void PostgresLink::QueueEnd() {
  RequireOpen();
  Sent(PQpipelineSync(m_connection.get()));
  m_bQueued = false;
  ++m_nEnds;
}

void PostgresLink::Push() {
  RequireOpen();
  if (PQflush(m_connection.get()) < 0) FailLost();
}

PostgresResult PostgresLink::Answer(const std::stop_token& stop) {
  PostgresResult answer = Next(stop);
  if (answer == nullptr) FailLost();
  if (PQresultStatus(answer.get()) == PGRES_PIPELINE_SYNC) {
    --m_nEnds;
    return answer;
  }
  while (Next(stop) != nullptr) {
  }
  return answer;
}

PostgresResult PostgresLink::Next(const std::stop_token& stop,
                                  const std::function<void()>& onWait) {
  RequireOpen();
  // A server that sends without a pause leaves nothing to wait for.
  if (stop.stop_requested()) TellToStop();
  if (PQisBusy(m_connection.get()) != 0) Wait(stop, onWait);
  PostgresResult result(PQgetResult(m_connection.get()));
  // The server may have ended the connection with its last word, or without one.
  if (PQstatus(m_connection.get()) == CONNECTION_BAD) FailLost();
  return result;
}

void PostgresLink::Wait(const std::stop_token& stop, const std::function<void()>& onWait) {
  const StopSignal signal(stop);
  // Of a row that is not whole yet: while there is a whole one, nobody waits.
  std::size_t nComing = 0;
  while (PQisBusy(m_connection.get()) != 0) {
    const int nUnsent = PQflush(m_connection.get());
    if (nUnsent < 0) FailLost();
    if (stop.stop_requested()) TellToStop();
    const bool bAsked = m_giveUp != Clock::time_point::max();
    const auto nWanted = static_cast<short>(nUnsent > 0 ? POLLIN | POLLOUT : POLLIN);
    signal.WaitFor(PQsocket(m_connection.get()), nWanted,
                   onWait || bAsked ? kLookEvery : StopSignal::kForever);
    if (Clock::now() >= m_giveUp) {
      m_connection.reset();
      throw Failure(failure::kCancelled,
                    "The statement was cancelled, but the server did not answer: connect again.",
                    "PostgreSQL", failure::kObjectClosed);
    }
    nComing += Arrived();
    if (PQconsumeInput(m_connection.get()) == 0) FailLost();
    if (m_nMostInRow != 0 && nComing > m_nMostInRow && PQisBusy(m_connection.get()) != 0) {
      RefuseRow();
    }
    if (onWait) onWait();
  }
}

// libpq keeps a row until it is whole, and tells nothing of it meanwhile.
std::size_t PostgresLink::Arrived() const {
  int nBytes = 0;
  if (ioctl(PQsocket(m_connection.get()), FIONREAD, &nBytes) != 0 || nBytes < 0) return 0;
  return static_cast<std::size_t>(nBytes);
}

void PostgresLink::RefuseRow() {
  // The server sends a row to its end, whatever it is asked, and libpq keeps the memory of its
  // largest row as long as the connection.
  m_connection.reset();
  throw Failure(
      failure::kStorage,
      "A row is larger than the memory of a statement, so the connection was closed: "
      "connect again, and leave its long columns out or set \"Statement Memory\" higher in "
      "the server's extended options.",
      "PostgreSQL", failure::kObjectClosed);
}

void PostgresLink::TellToStop() {
  const auto now = Clock::now();
  if (m_giveUp == Clock::time_point::max()) m_giveUp = now + kForCancelling;
  if (now < m_tellAgain) return;
  Cancel();
  m_tellAgain = Clock::now() + kTellEvery;
}

void PostgresLink::Abandon() noexcept {
  try {
    std::stop_source stop;
    stop.request_stop();
    while (m_connection != nullptr && Next(stop.get_token()) != nullptr) {
    }
  } catch (...) {
    // The link is gone, and with it the statement.
    m_connection.reset();
  }
}

void PostgresLink::Cancel() const noexcept {
  AskToEnd(m_connection.get(), kForCancelling);
}

}  // namespace orvane::provider::engines
