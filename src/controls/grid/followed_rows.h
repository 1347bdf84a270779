// Rows that are fetched again, told from those that were there: which came new, and where each of
// the others has gone, and with it the cell, the selection and the first row in sight. Many rows
// are compared in slices. Used by a grid while it follows what comes; user-interface thread.
#pragma once

#include <QObject>
#include <QTimer>
#include <cstdint>
#include <functional>
#include <memory>
#include <set>
#include <vector>

#include "controls/order/rows_states.h"

namespace orvane::controls {

/// What became of rows that were fetched again.
struct RowMoves {
  bool bKnown = false;                ///< false where rows are known by nothing but their numbers
  platform::RowIndex rowsBefore = 0;  ///< that were there
  std::vector<std::int32_t> places;   ///< of each row that was there where it is now; -1 if nowhere
  std::set<platform::RowIndex> fresh;  ///< rows that were not there
};

class FollowedRows final : public QObject {
 public:
  /// Of more rows than these none is told from another: they are looked at by their numbers.
  static constexpr platform::RowIndex kMostRows = 100'000;
  /// So many are compared before Compare returns.
  static constexpr platform::RowIndex kAtOnce = 2'000;

  using Done = std::function<void(const RowMoves& moves)>;

  explicit FollowedRows(QObject* parent = nullptr);
  ~FollowedRows() override;

  /// Names of columns whose values tell a row from all others.
  using Key = std::vector<platform::Text>;

  /// Calls the handler once, unless others are compared before. A row is known by the values of the
  /// first of the keys that both have, or where they have none, by all of its values.
  void Compare(platform::RecordsetPtr before, platform::RecordsetPtr now,
               const std::vector<Key>& keys, Done done);
  bool Busy() const { return m_work != nullptr; }

  /// How the rows that took the place of others are to be looked at. Where the first row was in
  /// sight the first one still is, so that what comes newest first is seen.
  static RowsState StateIn(const RowsState& before, const RowMoves& moves,
                           const platform::Recordset& rs);

 private:
  struct Work;
  void Slice();

  std::unique_ptr<Work> m_work;
  QTimer m_slices;
};

}  // namespace orvane::controls
