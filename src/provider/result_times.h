// Gives the columns of a result that hold times the type in which the connection shows times, block
// by block on their way to whoever takes the rows.
// Put by a session before the receiver of every statement; on the thread of the statement.
#pragma once

#include <memory>
#include <vector>

#include "ado/row_receiver.h"
#include "provider/dialect/translator.h"

namespace orvane::provider {

/// How the connection shows times.
struct TimeDisplay {
  platform::Boolean bAsDouble = false;  ///< as days since 1899-12-30 in the zone
  zones::TimeZone zone;
};

/// Numbers in columns of times become timestamps, those that the engine takes for times in columns
/// that mix numbers again, and timestamps days where they are shown so.
class ShownTimes final : public ado::RowReceiver {
 public:
  ShownTimes(std::shared_ptr<ado::RowReceiver> rows, std::vector<dialect::Content> contents,
             TimeDisplay display)
      : m_rows(std::move(rows)), m_contents(std::move(contents)), m_display(std::move(display)) {}

  void Begin(std::vector<ado::ColumnDescription> columns, platform::Boolean bReads) override;
  void Take(std::span<ado::Column> block) override;
  void End(platform::Boolean bTruncated) override { m_rows->End(bTruncated); }
  std::atomic<bool>& Wanted() override { return m_rows->Wanted(); }
  /// How many were taken so far.
  platform::RowIndex RowCount() const { return m_taken; }

 private:
  enum class Change : std::uint8_t { None, ToTimes, ToDays, ToNumbers };

  static Change ChangeOf(platform::DataType type, dialect::Content content, bool bTimeAsDouble);
  static platform::DataType Changed(platform::DataType type, Change change);
  platform::Value Changed(platform::Value vtValue, Change change) const;

  std::shared_ptr<ado::RowReceiver> m_rows;
  std::vector<dialect::Content> m_contents;
  TimeDisplay m_display;
  std::vector<Change> m_changes;  // by column
  ado::Column m_changed;
  platform::RowIndex m_taken = 0;
};

}  // namespace orvane::provider
