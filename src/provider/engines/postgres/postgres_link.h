// One connection to a PostgreSQL server, at work on one thing at a time, and never waiting without
// an ear for the stop. Used by the engine on PostgreSQL; calls come one at a time, from changing
// threads.
#pragma once

#include <chrono>
#include <functional>
#include <stop_token>

#include "platform/types.h"
#include "provider/engines/postgres/postgres_address.h"
#include "provider/engines/postgres/postgres_handle.h"
#include "provider/engines/postgres/postgres_parameters.h"

namespace orvane::provider::engines {

class PostgresLink {
 public:
  /// Connects and sets what results are written in. The password is overwritten in every text of
  /// this program at the end, however that comes; libpq keeps it as long as the connection. Fails
  /// with kServerNotFound, kNoRights or kCancelled.
  PostgresLink(const PostgresAddress& address, const platform::Text& sUser,
               platform::Text sPassword, const std::stop_token& stop);
  PostgresLink(const PostgresLink&) = delete;
  PostgresLink& operator=(const PostgresLink&) = delete;
  ~PostgresLink() = default;

  /// The server as sentences name it.
  const platform::Text& Server() const { return m_sServer; }
  /// How it goes there; see EngineSession::Link.
  platform::Text Way() const;
  /// Fails with kObjectClosed when the link is gone.
  void RequireOpen() const;
  PGTransactionStatusType Transaction() const { return PQtransactionStatus(m_connection.get()); }

  /// Runs a statement without parameters and rows, one of this program's own.
  void Command(const char* sSql, const std::stop_token& stop);
  /// The same, heard by nobody and failing for nobody: the end of a transaction that failed.
  void Rollback() noexcept;

  /// What the server makes of a statement before it runs: its columns. The statement is kept,
  /// without a name, until the next one.
  PostgresResult Prepare(const platform::Text& sSql, const PostgresParameters& parameters,
                         const std::stop_token& stop);
  /// Runs what was prepared; the results come one by one, of rows one row each. A row of more bytes
  /// than said (0 is no limit) is not waited for, as far as it can be seen coming: Next refuses it.
  void Execute(const PostgresParameters& parameters, bool bBinary, std::size_t nMostInRow);

  /// From here on statements are queued and sent without waiting for the answers of those before;
  /// what else talks to the server waits for LeavePipeline.
  void EnterPipeline();
  /// Takes the answers that are left without looking, after asking the server to end what it does.
  void LeavePipeline() noexcept;
  /// Queues what has no parameters; then one, or for a preparation two, Answers come, the second
  /// with the types of its parameters.
  void Queue(const char* sSql);
  void QueuePrepare(const platform::Text& sSql, const PostgresParameters& parameters);
  void QueueExecute(const PostgresParameters& parameters);
  /// Ends what was queued and is sent from now on: what fails before it keeps what stands behind it
  /// from being run. Has an Answer of its own.
  void QueueEnd();
  /// Sends what the socket takes now.
  void Push();
  /// Of the next of what was queued; a stop is heard as by Next.
  PostgresResult Answer(const std::stop_token& stop);

  /// The next result, null behind the last. The handler is called now and then while nothing comes.
  /// A stop asks the server to end the statement, whose error then comes as the result; a server
  /// that does not answer that either loses the link.
  PostgresResult Next(const std::stop_token& stop, const std::function<void()>& onWait = {});
  /// Closes the connection and fails with kStorage: the row at hand takes more memory than it may.
  [[noreturn]] void RefuseRow();
  /// Has the server end what it does, and takes what is left of it without looking.
  void Abandon() noexcept;
  /// Has the server end the statement that runs; its results still come.
  void Cancel() const noexcept;

 private:
  [[noreturn]] void FailLost();
  [[noreturn]] void Lose(const platform::Text& sWords);
  void Sent(int nDone);
  // The same for what is queued.
  void Queued(int nDone);
  void Wait(const std::stop_token& stop, const std::function<void()>& onWait);
  void TellToStop();
  // Bytes that have come and were not read.
  std::size_t Arrived() const;

  platform::Text m_sServer;
  platform::Text m_sLost;  // why the link was lost; empty while it was not
  // When a server that was asked to end what it does is waited for no longer.
  std::chrono::steady_clock::time_point m_giveUp = std::chrono::steady_clock::time_point::max();
  std::chrono::steady_clock::time_point m_tellAgain;
  std::size_t m_nMostInRow = 0;  // bytes; 0 is no limit
  int m_nEnds = 0;               // of what was queued, whose answers are still to come
  bool m_bQueued = false;        // something behind the last of them
  PostgresHandle m_connection;
};

}  // namespace orvane::provider::engines
