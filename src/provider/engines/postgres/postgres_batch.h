// A statement that runs once for each of many rows of values. Rows are read while the server is at
// work on those before, and many are sent at once: as arrays where that comes to the same, else one
// by one without waiting for the answers. A row that fails is told all the same, and before those
// behind it. Made by PostgresSession for one statement; one thread.
#pragma once

#include <exception>
#include <functional>
#include <optional>
#include <vector>

#include "provider/engines/engine.h"
#include "provider/engines/postgres/postgres_arrays.h"
#include "provider/engines/postgres/postgres_link.h"

namespace orvane::provider::engines {

class PostgresBatch {
 public:
  /// Throws what an error of the server's is to the user.
  using Fail = std::function<void(const PGresult* error)>;

  /// All of these outlive it; the link is in a transaction.
  PostgresBatch(PostgresLink& link, const EngineStatement& statement, const NumberedText& text,
                const std::stop_token& stop, Fail fail);
  PostgresBatch(const PostgresBatch&) = delete;
  PostgresBatch& operator=(const PostgresBatch&) = delete;
  ~PostgresBatch() { m_link.LeavePipeline(); }

  /// Runs all rows and gives how many rows of tables they changed. Fails with platform::RowFailure
  /// for one of them, and with what the source of the rows fails with; the transaction is as good
  /// as failed then.
  platform::RowIndex Run();

 private:
  using Rows = std::vector<std::vector<platform::Value>>;
  // What was sent, by what its answer is.
  enum class Sent { Own, Described, Row, Rows };

  bool Read();
  void Send();
  void SendRows();
  bool SendArrays();
  void QueueOwn(const char* sSql);
  void QueueSavepoint();
  void Finish();
  // False when the server refused something.
  bool TakeAnswers();
  bool TakeAnswer(Sent sent, const PGresult* answer);
  void Decide();
  void RequireNoStop() const;
  void RequireValues(std::size_t nGiven) const;

  PostgresLink& m_link;
  const EngineStatement& m_statement;
  const NumberedText& m_text;
  const std::stop_token& m_stop;
  Fail m_fail;

  Rows m_read;  // while those that were sent are worked on
  Rows m_rows;  // that were sent
  bool m_bEnd = false;
  std::exception_ptr m_sourceFailed;

  std::vector<Sent> m_sent;
  std::int64_t m_llDone = 0;     // rows that were answered
  std::exception_ptr m_failed;   // the first thing that was refused
  std::exception_ptr m_notSent;  // why a row was not sent, nor those behind it
  platform::RowIndex m_changed = 0;

  std::optional<PostgresInsert> m_insert;  // while rows may go as arrays
  std::optional<PostgresArrays> m_arrays;  // while they do
  int m_nDecisions = 0;
  bool m_bSaved = false;        // there is a point to go back to
  bool m_bPrepared = false;     // the statement of one row, which whatever else is queued replaces
  std::vector<Oid> m_declared;  // types of the parameters of one row
  std::vector<Oid> m_types;     // what the server has made of them
};

}  // namespace orvane::provider::engines
