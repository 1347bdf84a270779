// One statement's rows on their way to whoever wants them: shown while they come, kept when the
// statement is stopped, or handed on to a sink.
// Made by the connection for one Execute. Filled on the thread of the statement; Show and what
// comes after the statement on the caller's.
#pragma once

#include <chrono>
#include <exception>
#include <stop_token>

#include "ado/provider.h"
#include "ado/row_collector.h"

namespace orvane::ado {

/// What a caller wants of the rows beside having them at the end; see platform::Command.
struct FetchWishes {
  platform::Boolean bKeepRows = false;
  platform::Boolean bGivesWay = false;
  platform::RowsHandler handler{};
  platform::RowSink sink{};
  std::stop_token stop{};
};

class Fetch final : public RowReceiver {
 public:
  /// Rows beyond the budget go into a temporary file.
  Fetch(FetchWishes wishes, std::shared_ptr<MemoryBudget> budget);

  void Source(platform::RowSource source) override { m_rows.Source(std::move(source)); }
  void Begin(std::vector<ColumnDescription> columns, platform::Boolean bReads) override;
  void Take(std::span<Column> block) override;
  void End(platform::Boolean bTruncated) override;
  std::atomic<bool>& Wanted() override { return m_rows.Wanted(); }

  /// Requested by the caller's stop, and when its handler fails.
  std::stop_token Stop() const { return m_stop.get_token(); }
  /// Whether the statement gives way to the user.
  bool GivesWay() const { return m_wishes.bGivesWay; }
  /// Called again and again while the statement runs: shows new rows to the handler and asks for
  /// more. True once rows were shown.
  bool Show() noexcept;
  /// Called while the statement's failure is handled: fails on with it unless the rows are to be
  /// kept; of the caller's own handler or sink with what that has thrown.
  void KeepOrRethrow(const Statement& statement);
  /// Fails with what the caller's own handler or sink has thrown, if any.
  void RethrowCallers() const;
  /// Null when the provider gave no rows to this.
  platform::RecordsetPtr Recordset() const { return m_rows.Recordset(); }

 private:
  using Clock = std::chrono::steady_clock;

  bool Keeps(const platform::Failure& failed) const;
  platform::RowIndex RowCount() const;

  const FetchWishes m_wishes;
  RowCollector m_rows;
  std::stop_source m_stop;
  std::stop_callback<std::function<void()>> m_forward;
  std::atomic<bool> m_bReads{false};
  std::vector<ColumnDescription> m_columns;  // of a sink's recordsets
  platform::RowIndex m_sunk = 0;
  std::exception_ptr m_sinksFailure;
  std::exception_ptr m_handlersFailure;
  platform::RowIndex m_shownRows = 0;
  Clock::time_point m_shown;
};

}  // namespace orvane::ado
