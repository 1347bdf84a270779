// The main job, done as somebody does it who knows the window by what it shows: the document is
// opened, the logon dialog answered, everything expanded, a table, its structure and a named query
// are looked at, and a copy is saved. Texts are printed and pictures taken on the way. Knows no
// other class of the console. User-interface thread.
#pragma once

#include <QPersistentModelIndex>
#include <iosfwd>

#include "console/tour/tour_hands.h"

class QAbstractItemView;
class QTreeView;

namespace orvane::console {

class Tour final {
 public:
  /// Pictures and the copy go into the folder, which is made; texts go to the stream. The window
  /// is shown.
  Tour(QWidget& window, const QDir& folder, std::ostream& out);

  /// Opens the document by that function, which returns whether it did, and goes on in the window.
  /// Fails with one sentence, a Failure, at the first thing that does not go as it should.
  void Run(const std::function<bool()>& open);

 private:
  using Row = QPersistentModelIndex;  // of the tree

  void MakeFolder();
  void Select(const Row& row);
  void Expand(const Row& row);
  void ExpandEverything(const Row& row);
  void ShowTable(const Row& table);
  void ShowStructure(const Row& table);
  void ShowQuery(const Row& query);
  void SaveCopy();

  std::vector<Row> RowsBeneath(const Row& row) const;
  /// The row beneath that one with such a text, or none.
  Row Beneath(const Row& row, const QString& sText) const;
  /// All tables, or all named queries, of all servers.
  std::vector<Row> Tables(const Row& root) const;
  std::vector<Row> Queries(const Row& root) const;
  Row ChosenTable(const Row& root) const;
  void PrintTree(const Row& row, int nLevel);
  void PrintGrid();
  /// The list or grid at the right, or null.
  QAbstractItemView* Contents() const;
  /// What the page says that stands in the place of contents.
  QString Page() const;

  QWidget& m_window;
  QDir m_folder;
  std::ostream& m_out;
  TourHands m_hands;
  QTreeView* m_tree = nullptr;
};

}  // namespace orvane::console
