// What can be done to the rows of a grid: the entries of their menu, with their keys. Each part of
// the grid adds its own. Owned by the view of the rows; user-interface thread.
#pragma once

#include <QKeySequence>
#include <QString>
#include <functional>
#include <vector>

class QKeyEvent;
class QMenu;

namespace orvane::controls {

/// Groups of the menu, in their order; a line stands between two. Layout is a menu within it.
enum class CommandGroup : std::uint8_t { Edit, Copy, Select, Sort, Filter, Find, Columns, Layout };

struct GridCommand {
  CommandGroup group = CommandGroup::Edit;
  QString sLabel;
  QKeySequence keys;  ///< or none
  std::function<void()> run;
  std::function<bool()> enabled = {};  ///< always, where there is none
  std::function<bool()> offered = {};  ///< likewise; one that is not has no entry and no key
  QString sMenu = {};                  ///< of the menu within the menu in which it stands, or none
};

class GridCommands {
 public:
  /// Stands behind the commands of its group that are there.
  void Add(GridCommand command);
  /// Runs the command whose keys were pressed; false where there is none that can be run.
  bool Press(const QKeyEvent& event) const;
  /// Fills a menu with what can be done now.
  void Fill(QMenu& menu) const;
  /// The same with what is about a column.
  void FillForColumn(QMenu& menu) const;

 private:
  enum class Depth : std::uint8_t { Flat, Nested };
  void Fill(QMenu& menu, std::initializer_list<CommandGroup> groups, Depth depth) const;

  std::vector<GridCommand> m_commands;
};

}  // namespace orvane::controls
