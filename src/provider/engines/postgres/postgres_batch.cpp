#include "provider/engines/postgres/postgres_batch.h"

#include <array>
#include <cstdlib>
#include <utility>

#include "platform/row_failure.h"

namespace orvane::provider::engines {

using platform::Failure;
using platform::RowFailure;
using platform::RowIndex;
using platform::Text;
using platform::Value;
namespace failure = platform::failure;

namespace {

// A few rows need no more than one way to the server and back.
constexpr std::size_t kFirstRows = 64;
constexpr std::size_t kMostRows = 4096;
constexpr std::size_t kMostBytes = std::size_t{1} << 20;
// Some rows are sent, some are read meanwhile.
static_assert(2 * kMostRows <= platform::kMostRowsAhead);
constexpr std::size_t kPushEvery = 64;
// Rows whose types change again and again go one by one.
constexpr int kMostDecisions = 8;

constexpr const char* kSave = "SAVEPOINT orvane_rows";
constexpr const char* kForget = "RELEASE SAVEPOINT orvane_rows";
constexpr const char* kBack = "ROLLBACK TO SAVEPOINT orvane_rows";

std::size_t BytesOf(const std::vector<Value>& values) {
  std::size_t bytes = 0;
  for (const Value& vtValue : values) {
    bytes += sizeof(Value);
    if (const auto* const sText = std::get_if<Text>(&vtValue.Content())) bytes += sText->size();
    if (const auto* const some = std::get_if<platform::Bytes>(&vtValue.Content())) {
      bytes += some->size();
    }
  }
  return bytes;
}

RowIndex ChangedByOne(const PGresult* answer) {
  // libpq writes nothing into it.
  return std::strtoll(PQcmdTuples(const_cast<PGresult*>(answer)), nullptr, 10);
}

}  // namespace

PostgresBatch::PostgresBatch(PostgresLink& link, const EngineStatement& statement,
                             const NumberedText& text, const std::stop_token& stop, Fail fail)
    : m_link(link),
      m_statement(statement),
      m_text(text),
      m_stop(stop),
      m_fail(std::move(fail)),
      m_insert(ReadInsert(text)) {
  m_link.EnterPipeline();
}

RowIndex PostgresBatch::Run() {
  while (!m_bEnd && Read()) {
    Finish();
    std::swap(m_read, m_rows);
    Send();
  }
  Finish();
  if (m_sourceFailed) std::rethrow_exception(m_sourceFailed);
  return m_changed;
}

void PostgresBatch::RequireNoStop() const {
  if (!m_stop.stop_requested()) return;
  throw Failure(failure::kCancelled, "The statement was cancelled.", "PostgreSQL", 0,
                m_statement.sSql);
}

void PostgresBatch::RequireValues(std::size_t nGiven) const {
  if (nGiven == m_text.nParameters) return;
  throw Failure(failure::kInvalidArgument,
                "The statement takes " + std::to_string(m_text.nParameters) + " parameters, but " +
                    std::to_string(nGiven) + " were given; give one value for each.",
                "PostgreSQL", 0, m_statement.sSql);
}

bool PostgresBatch::Read() {
  m_read.clear();
  const std::size_t nMost = m_llDone == 0 && m_rows.empty() ? kFirstRows : kMostRows;
  for (std::size_t bytes = 0; m_read.size() < nMost && bytes < kMostBytes;) {
    RequireNoStop();
    std::vector<Value> values;
    try {
      m_bEnd = !m_statement.batch(values);
    } catch (...) {
      // Rows before it come first, and may fail first.
      m_sourceFailed = std::current_exception();
      m_bEnd = true;
    }
    if (m_bEnd) break;
    bytes += BytesOf(values);
    m_read.push_back(std::move(values));
    if (m_read.size() % kPushEvery == 0) m_link.Push();
  }
  RequireNoStop();
  return !m_read.empty();
}

void PostgresBatch::Send() {
  if (m_llDone != 0 && m_rows.size() >= kFirstRows) Decide();
  if (!SendArrays()) SendRows();
}

void PostgresBatch::QueueOwn(const char* sSql) {
  m_link.Queue(sSql);
  m_bPrepared = false;
  m_sent.push_back(Sent::Own);
}

void PostgresBatch::QueueSavepoint() {
  // Many of them in one another would be slow for everybody who reads.
  if (std::exchange(m_bSaved, true)) QueueOwn(kForget);
  QueueOwn(kSave);
}

void PostgresBatch::SendRows() {
  std::int64_t llRow = m_llDone;
  for (const auto& row : m_rows) {
    ++llRow;
    std::optional<PostgresParameters> parameters;
    try {
      RequireValues(row.size());
      parameters.emplace(row);
    } catch (const Failure& failed) {
      m_notSent = std::make_exception_ptr(RowFailure(failed, llRow));
      break;
    }
    if (!m_bPrepared || !parameters->Fit(m_declared)) {
      parameters->TypeNulls(m_declared);
      m_declared.assign(parameters->Types(), parameters->Types() + parameters->Count());
      m_arrays.reset();
      m_link.QueuePrepare(m_text.sSql, *parameters);
      m_sent.insert(m_sent.end(), {Sent::Own, Sent::Described});
      m_bPrepared = true;
    }
    m_link.QueueExecute(*parameters);
    m_sent.push_back(Sent::Row);
  }
  m_link.QueueEnd();
}

bool PostgresBatch::SendArrays() {
  if (!m_arrays) return false;
  auto taken = m_arrays->Take(m_rows);
  if (!taken) return false;
  const PostgresParameters parameters(*std::move(taken));
  QueueSavepoint();
  m_link.QueuePrepare(m_arrays->Statement(*m_insert), parameters);
  m_sent.insert(m_sent.end(), {Sent::Own, Sent::Own});
  m_link.QueueExecute(parameters);
  m_sent.push_back(Sent::Rows);
  m_link.QueueEnd();
  return true;
}

void PostgresBatch::Finish() {
  if (m_rows.empty()) return;
  const bool bArrays = !m_sent.empty() && m_sent.back() == Sent::Rows;
  const RowIndex changedBefore = m_changed;
  if (!TakeAnswers() && bArrays) {
    RequireNoStop();
    // Which of the rows it is, and whether it is one at all, is told by running one by one.
    m_changed = changedBefore;
    m_failed = nullptr;
    m_insert.reset();
    m_arrays.reset();
    QueueOwn(kBack);
    SendRows();
    TakeAnswers();
  }
  if (m_failed) std::rethrow_exception(m_failed);
  if (m_notSent) std::rethrow_exception(m_notSent);
  m_llDone += static_cast<std::int64_t>(m_rows.size());
  m_rows.clear();
}

bool PostgresBatch::TakeAnswers() {
  bool bDone = true;
  std::int64_t llRow = m_llDone;
  std::size_t nAnswer = 0;
  const auto sent = std::exchange(m_sent, {});
  for (;;) {
    const PostgresResult answer = m_link.Answer(m_stop);
    const auto status = PQresultStatus(answer.get());
    if (status == PGRES_PIPELINE_SYNC) return bDone;
    const Sent what = sent.at(nAnswer++);
    if (what == Sent::Row) ++llRow;
    if (status == PGRES_PIPELINE_ABORTED || m_failed) continue;
    try {
      bDone = TakeAnswer(what, answer.get()) && bDone;
    } catch (const Failure& failed) {
      bDone = false;
      m_failed = what == Sent::Row ? std::make_exception_ptr(RowFailure(failed, llRow))
                                   : std::current_exception();
    }
  }
}

bool PostgresBatch::TakeAnswer(Sent sent, const PGresult* answer) {
  if (PQresultStatus(answer) == PGRES_FATAL_ERROR) m_fail(answer);
  if (sent == Sent::Described) {
    m_types.clear();
    for (int n = 0; n < PQnparams(answer); ++n) m_types.push_back(PQparamtype(answer, n));
  }
  if (sent != Sent::Row && sent != Sent::Rows) return true;
  const RowIndex changed = ChangedByOne(answer);
  m_changed += changed;
  if (!m_statement.rowsExpected) return true;
  if (sent == Sent::Rows) {
    return changed == *m_statement.rowsExpected * static_cast<RowIndex>(m_rows.size());
  }
  if (changed != *m_statement.rowsExpected) {
    throw UnexpectedRows(changed, *m_statement.rowsExpected, m_statement.sSql);
  }
  return true;
}

void PostgresBatch::Decide() {
  if (!m_insert || m_arrays || m_types.size() != m_text.nParameters) return;
  if (m_nDecisions++ == kMostDecisions) {
    m_insert.reset();
    return;
  }
  Text sTypes;
  for (const Oid type : m_types) sTypes += (sTypes.empty() ? "{" : ",") + std::to_string(type);
  const std::array<Value, 2> asked{Value(m_insert->sTable), Value(sTypes + "}")};
  const PostgresParameters parameters(asked);
  QueueSavepoint();
  m_link.QueuePrepare(kTakesArrays, parameters);
  m_link.QueueExecute(parameters);
  m_link.QueueEnd();
  m_sent.clear();
  std::vector<Text> names;
  bool bRefused = false;
  for (;;) {
    const PostgresResult answer = m_link.Answer(m_stop);
    const auto status = PQresultStatus(answer.get());
    if (status == PGRES_PIPELINE_SYNC) break;
    if (status == PGRES_FATAL_ERROR) bRefused = true;
    for (int n = 0; n < PQntuples(answer.get()); ++n) {
      names.emplace_back(PQgetvalue(answer.get(), n, 0));
    }
  }
  RequireNoStop();
  if (bRefused) QueueOwn(kBack);
  if (names.size() == m_types.size()) {
    m_arrays.emplace(m_declared, std::move(names));
  } else {
    m_insert.reset();
  }
}

}  // namespace orvane::provider::engines
