// Puts the selected cells of a grid on the clipboard: as text and as a table for other programs, as
// exact values for this one, or in a form of exports. What is hidden is left out, and columns come
// as they stand. Many rows are read in slices, so that the window goes on and it can be ended; all
// forms but the text are written when they are asked for.
// Owned by the view of the rows; user-interface thread.
#pragma once

#include <QItemSelection>
#include <QObject>
#include <QTimer>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include "exports/row_writer.h"

namespace orvane::controls {

class RowView;

class RowCopier final : public QObject {
 public:
  /// More rows are not copied at once: the text would be of no use and take the memory of two.
  static constexpr platform::RowIndex kMostRows = 100'000;
  /// So many cells, or so many bytes of them, are written at once.
  static constexpr std::size_t kCellsInSlice = 20'000;
  static constexpr std::size_t kBytesInSlice = std::size_t{1} << 20;

  explicit RowCopier(const RowView& rows);
  ~RowCopier() override;

  /// Copies the selection, or else the current cell; with nothing of both, or with more than can be
  /// copied at once, keeps what is there. The clipboard has it when this returns where that is
  /// little, otherwise when all is written; what was being copied before is dropped.
  void Copy(bool bNames);
  /// The same in a form of exports.
  void CopyAs(exports::Form form);
  bool Busy() const { return m_work != nullptr; }
  /// Ends what is being copied, and leaves the clipboard as it is; false where nothing is.
  bool Stop();
  /// The table into which copied statements insert, as SQL needs it.
  void Into(platform::Text sInto) { m_sInto = std::move(sInto); }
  /// Kept by what is copied, as long as the clipboard has it.
  void KeepAlive(std::shared_ptr<void> life) { m_life = std::move(life); }
  /// Called after each copy with why there was none, as a sentence; empty when there was one.
  void OnCopied(std::function<void(const QString& sWhyNot)> handler) {
    m_copied = std::move(handler);
  }
  /// Called while many rows are copied, with how many are written and of how many; with 0 of 0
  /// when that has ended.
  void OnProgress(std::function<void(platform::RowIndex done, platform::RowIndex of)> handler) {
    m_progress = std::move(handler);
  }

 private:
  struct Part {
    QItemSelection cells;
    std::vector<int> columns;  ///< as they stand
  };
  struct Work;
  Part Chosen() const;
  /// None, with a sentence, where the part has more rows than are copied at once.
  std::unique_ptr<Work> WorkOn(const Part& part) const;
  void Begin(std::unique_ptr<Work> work);
  void Slice();
  void End(const QString& sWhyNot);
  void Tell(const QString& sWhyNot) const;

  const RowView& m_rows;
  platform::Text m_sInto = "\"Copied\"";
  std::shared_ptr<void> m_life;
  std::function<void(const QString&)> m_copied;
  std::function<void(platform::RowIndex, platform::RowIndex)> m_progress;
  std::unique_ptr<Work> m_work;
  QTimer m_slices;
};

}  // namespace orvane::controls
