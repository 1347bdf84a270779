// What can be done to the columns of a grid, in the menus of its cells and names and by keys: to
// move, hide, hold and size them, to choose which are seen, and to have them as they were fetched.
// Owned by the grid's window; user-interface thread.
#pragma once

#include <QObject>
#include <functional>
#include <vector>

class QKeySequence;

namespace orvane::controls {

class RowView;

class ColumnCommands final : public QObject {
 public:
  /// Adds itself to what can be done to the rows.
  ColumnCommands(RowView& rows, QObject* parent);

 private:
  void Add(const char* sLabel, const QKeySequence& keys, std::function<void()> run,
           std::function<bool()> enabled);
  int Current() const;
  /// The columns that are selected as such, or else that of the current cell.
  std::vector<int> Chosen() const;
  void Hide();
  void Choose();
  void Resize(int nBy);

  RowView& m_rows;
};

}  // namespace orvane::controls
