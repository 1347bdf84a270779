#include "ado/fetch.h"

#include <utility>

#include "platform/failure.h"

namespace orvane::ado {

using platform::Failure;
using platform::RowIndex;
using platform::Text;
namespace failure = platform::failure;

namespace {

// A few times a second: enough to see that rows come, and little work to show them.
constexpr std::chrono::milliseconds kBetweenShows{100};

Text Grouped(RowIndex number) {
  Text sNumber = std::to_string(number);
  for (std::size_t at = sNumber.size(); at > 3; at -= 3) sNumber.insert(at - 3, 1, ',');
  return sNumber;
}

Text StoppedText(RowIndex rows, const Failure& failed, const Statement& statement) {
  const Text sStopped = "Stopped after " + Grouped(rows) + (rows == 1 ? " row." : " rows.");
  if (failed.Number() == failure::kCancelled) return sStopped;
  if (failed.Number() != failure::kTimeout) return sStopped + " " + failed.Description();
  const auto seconds = statement.timeout.count();
  return sStopped + " The time-out of " + std::to_string(seconds) +
         (seconds == 1 ? " second" : " seconds") + " is over.";
}

}  // namespace

Fetch::Fetch(FetchWishes wishes, std::shared_ptr<MemoryBudget> budget)
    : m_wishes(std::move(wishes)),
      m_rows({std::move(budget), true}),
      m_forward(m_wishes.stop, [this] { m_stop.request_stop(); }) {}

void Fetch::Begin(std::vector<ColumnDescription> columns, platform::Boolean bReads) {
  if (m_wishes.sink) m_columns = columns;
  m_bReads = bReads;
  m_rows.Begin(std::move(columns), bReads);
}

void Fetch::Take(std::span<Column> block) {
  if (!m_wishes.sink) {
    m_rows.Take(block);
    return;
  }
  RowCollector rows;
  rows.Begin(m_columns, true);
  rows.Take(block);
  rows.End(false);
  m_sunk += block.front().RowCount();
  try {
    m_wishes.sink(rows.Recordset());
  } catch (...) {
    m_sinksFailure = std::current_exception();
    throw;
  }
}

void Fetch::End(platform::Boolean bTruncated) {
  m_rows.End(bTruncated);
}

bool Fetch::Show() noexcept {
  if (!m_wishes.handler || m_wishes.sink || m_handlersFailure) return false;
  Wanted() = true;
  try {
    const platform::RecordsetPtr rs = m_rows.Recordset();
    if (rs == nullptr || !m_bReads) return false;
    const RowIndex rows = rs->FetchedCount();
    const bool bFirst = m_shownRows == 0;
    if (rows == m_shownRows || (!bFirst && Clock::now() - m_shown < kBetweenShows)) return !bFirst;
    m_shownRows = rows;
    m_wishes.handler(rs);
    m_shown = Clock::now();
    return true;
  } catch (...) {
    m_handlersFailure = std::current_exception();
    m_stop.request_stop();
    return false;
  }
}

RowIndex Fetch::RowCount() const {
  return m_wishes.sink ? m_sunk : m_rows.Rows().RowCount();
}

bool Fetch::Keeps(const Failure& failed) const {
  switch (failed.Number()) {
    case failure::kCancelled:
    case failure::kTimeout:
    case failure::kStorage:
      break;
    default:
      if (!failure::IsLostConnection(failed.Number())) return false;
  }
  return m_wishes.bKeepRows && m_bReads && m_rows.Recordset() != nullptr && RowCount() > 0;
}

// Whoever was shown the rows sees that no more come, also when they are not to be kept.
void Fetch::KeepOrRethrow(const Statement& statement) {
  const auto stop = [&](const Failure& failed) {
    if (m_rows.Recordset() == nullptr) return;
    m_rows.Rows().End(platform::FetchState::Stopped, StoppedText(RowCount(), failed, statement),
                      failed.Number());
  };
  try {
    RethrowCallers();
    throw;
  } catch (const Failure& failed) {
    stop(failed);
    if (m_sinksFailure || m_handlersFailure || !Keeps(failed)) throw;
  } catch (...) {
    stop(Failure(failure::kCancelled, {}));
    throw;
  }
}

void Fetch::RethrowCallers() const {
  if (m_sinksFailure) std::rethrow_exception(m_sinksFailure);
  if (m_handlersFailure) std::rethrow_exception(m_handlersFailure);
}

}  // namespace orvane::ado
