// Puts the selected cells of a grid on the clipboard: as text and as a table for other programs, as
// exact values for this one, or in a form of exports. What is hidden is left out, and columns come
// as they stand. Owned by the view of the rows; user-interface thread.
#pragma once

#include <QItemSelection>
#include <functional>
#include <optional>
#include <utility>
#include <vector>

#include "exports/row_writer.h"

namespace orvane::controls {

class RowView;

class RowCopier {
 public:
  /// More rows are not copied at once: the text would be of no use and take the memory of two.
  static constexpr platform::RowIndex kMostRows = 100'000;

  explicit RowCopier(const RowView& rows) : m_rows(rows) {}

  /// Copies the selection, or else the current cell; with nothing of both, or with more than can be
  /// copied at once, keeps what is there.
  void Copy(bool bNames) const;
  /// The same in a form of exports.
  void CopyAs(exports::Form form) const;
  /// The table into which copied statements insert, as SQL needs it.
  void Into(platform::Text sInto) { m_sInto = std::move(sInto); }
  /// Called after each copy with why there was none, as a sentence; empty when there was one.
  void OnCopied(std::function<void(const QString& sWhyNot)> handler) {
    m_copied = std::move(handler);
  }

 private:
  struct Part {
    QItemSelection cells;
    std::vector<int> columns;  ///< as they stand
  };
  Part Chosen() const;
  std::optional<QString> Written(const QItemSelection& cells,
                                 const std::function<std::optional<QString>()>& write) const;
  void Tell(const QString& sWhyNot) const;

  const RowView& m_rows;
  platform::Text m_sInto = "\"Copied\"";
  std::function<void(const QString&)> m_copied;
};

}  // namespace orvane::controls
