#include "controls/view/grid_commands.h"

#include <QKeyEvent>
#include <QMenu>
#include <algorithm>
#include <utility>

namespace orvane::controls {

namespace {

bool Holds(const std::function<bool()>& condition) {
  return !condition || condition();
}

}  // namespace

void GridCommands::Add(GridCommand command) {
  const auto behind = std::ranges::upper_bound(m_commands, command.group, {}, &GridCommand::group);
  m_commands.insert(behind, std::move(command));
}

bool GridCommands::Press(const QKeyEvent& event) const {
  const QKeySequence pressed(event.keyCombination());
  const auto found = std::ranges::find_if(m_commands, [&](const GridCommand& command) {
    return !command.keys.isEmpty() && command.keys.matches(pressed) == QKeySequence::ExactMatch &&
           Holds(command.offered) && Holds(command.enabled);
  });
  if (found == m_commands.end()) return false;
  const std::function<void()> run = found->run;
  run();
  return true;
}

void GridCommands::Fill(QMenu& menu) const {
  Fill(menu,
       {CommandGroup::Edit, CommandGroup::Copy, CommandGroup::Select, CommandGroup::Sort,
        CommandGroup::Filter, CommandGroup::Find, CommandGroup::Columns},
       Depth::Nested);
  const bool bLayout =
      std::ranges::find(m_commands, CommandGroup::Layout, &GridCommand::group) != m_commands.end();
  if (bLayout) Fill(*menu.addMenu("Colu&mns"), {CommandGroup::Layout}, Depth::Flat);
}

void GridCommands::FillForColumn(QMenu& menu) const {
  Fill(menu, {CommandGroup::Sort, CommandGroup::Layout}, Depth::Flat);
}

void GridCommands::Fill(QMenu& menu, std::initializer_list<CommandGroup> groups,
                        Depth depth) const {
  const GridCommand* last = nullptr;
  QMenu* nested = nullptr;
  for (const GridCommand& command : m_commands) {
    if (std::ranges::find(groups, command.group) == groups.end() || !Holds(command.offered)) {
      continue;
    }
    if (last && last->group != command.group) menu.addSeparator();
    const bool bNested = depth == Depth::Nested && !command.sMenu.isEmpty();
    if (bNested && (!last || last->sMenu != command.sMenu)) nested = menu.addMenu(command.sMenu);
    last = &command;
    QString sText = command.sLabel;
    if (!command.keys.isEmpty()) {
      sText += u'\t' + command.keys.toString(QKeySequence::NativeText);
    }
    QAction* action = (bNested ? *nested : menu).addAction(sText);
    action->setEnabled(Holds(command.enabled));
    QObject::connect(action, &QAction::triggered, &menu, [run = command.run] { run(); });
  }
}

}  // namespace orvane::controls
