// The toolbar of the grid shown: its buttons, what they do to the grid and how the grid sets them;
// and the Refresh verb, which runs that grid again.
#include "snapin/snap_in.h"

namespace orvane::snapin {

using platform::Boolean;
using platform::ButtonStyle;
using platform::Long;
using platform::Text;

/// The grid of a toolbar's kind; also as a table's when it is one.
struct SnapIn::ShownGrid {
  platform::Grid* grid = nullptr;
  platform::TableEditor* editor = nullptr;
};

/// A click, and the grid that is shown then; there may be none.
struct SnapIn::ButtonClick {
  platform::ToolbarButton& button;
  ShownGrid shown;
};

/// A button of the table toolbar; the query toolbar has the same ones but those of tables. One
/// that can be clicked is made with its action and its state, or not at all.
struct SnapIn::Button {
  using Action = void (SnapIn::*)(const ButtonClick& click);
  using State = void (*)(const ShownGrid& shown, platform::ToolbarButton& button);

  Button(const char* key, Long image, const char* toolTip, ButtonStyle buttonStyle,
         Boolean bForTables, Action clicked, State shows)
      : sKey(key),
        lImage(image),
        sToolTip(toolTip),
        style(buttonStyle),
        bTableOnly(bForTables),
        act(clicked),
        showState(shows) {}
  /// A separator.
  explicit Button(Boolean bForTables) : bTableOnly(bForTables) {}

  Boolean IsSeparator() const { return style == ButtonStyle::Separator; }

  const char* sKey = "";
  Long lImage = 1;
  const char* sToolTip = "";
  ButtonStyle style = ButtonStyle::Separator;
  Boolean bTableOnly;
  Action act = nullptr;
  State showState = nullptr;
};

template <auto kOperation>
void SnapIn::ActOnGrid(const ButtonClick& click) {
  if (click.shown.grid) (click.shown.grid->*kOperation)();
}

template <auto kOperation>
void SnapIn::ActOnTable(const ButtonClick& click) {
  if (click.shown.editor) (click.shown.editor->*kOperation)();
}

void SnapIn::ToggleSqlStatements(const ButtonClick& click) {
  const Boolean bShow = !Root().SqlStatements();
  Root().SqlStatements(bShow);
  click.button.Pressed(bShow);
  if (click.shown.grid) click.shown.grid->ShowSqlStatements(bShow);
}

const std::vector<SnapIn::Button>& SnapIn::Buttons() {
  using platform::Grid;
  using platform::TableEditor;
  using platform::ToolbarButton;
  using Shown = const ShownGrid&;
  constexpr auto push = ButtonStyle::Default;
  static const std::vector<Button> buttons{
      {"MoveFirst", 1, "Move to First Row", push, false, &SnapIn::ActOnGrid<&Grid::MoveFirst>,
       [](Shown it, ToolbarButton& button) { button.Enabled(it.grid->CanMove()); }},
      {"MoveLast", 2, "Move to Last Row", push, false, &SnapIn::ActOnGrid<&Grid::MoveLast>,
       [](Shown it, ToolbarButton& button) { button.Enabled(it.grid->CanMove()); }},
      Button(false),
      {"SortAsc", 3, "Sort Ascending", push, true, &SnapIn::ActOnTable<&TableEditor::SortAscending>,
       [](Shown it, ToolbarButton& button) { button.Enabled(it.editor->CanSort()); }},
      {"SortDesc", 4, "Sort Descending", push, true,
       &SnapIn::ActOnTable<&TableEditor::SortDescending>,
       [](Shown it, ToolbarButton& button) { button.Enabled(it.editor->CanSort()); }},
      Button(true),
      {"CellQuery", 5, "Put Results of a Query into the Current Cell", push, false,
       &SnapIn::ActOnGrid<&Grid::CellQuery>,
       [](Shown it, ToolbarButton& button) { button.Enabled(it.grid->CanCellQuery()); }},
      {"Delete", 6, "Delete Selected Rows", push, false,
       &SnapIn::ActOnGrid<&Grid::DeleteSelectedRows>,
       [](Shown it, ToolbarButton& button) {
         button.Enabled(it.grid->DeleteAllowed() && it.grid->RowsSelected());
       }},
      Button(false),
      {"Sql", 7, "Show/Hide SQL Statement", ButtonStyle::Check, false, &SnapIn::ToggleSqlStatements,
       [](Shown it, ToolbarButton& button) { button.Pressed(it.grid->ShowSqlStatements()); }}};
  return buttons;
}

SnapIn::ShownGrid SnapIn::GridOf(ToolbarKind kind) const {
  if (kind == ToolbarKind::Table) return {m_tblEditor.get(), m_tblEditor.get()};
  if (kind == ToolbarKind::Query) return {m_qrResults.get(), nullptr};
  return {};
}

SnapIn::ToolbarKind SnapIn::KindShown() const {
  if (m_tblEditor) return ToolbarKind::Table;
  return m_qrResults ? ToolbarKind::Query : ToolbarKind::None;
}

void SnapIn::Views_UpdateControlbar(platform::View&, const platform::Selection&, Boolean bSelected,
                                    platform::ControlBar& controlBar) {
  const auto wanted = bSelected ? KindShown() : ToolbarKind::None;
  if (wanted == m_toolbarKind) return;
  // A toolbar that cannot be built whole is no reason to hide the grid: each step goes on.
  Suppressed([&] {
    if (!m_tbrToolbar) m_tbrToolbar = m_services.console->CreateToolbar();
  });
  if (m_tbrToolbar && m_toolbarKind != ToolbarKind::None) {
    Suppressed([&] { controlBar.Detach(m_tbrToolbar); });
    m_buttonsKind = ToolbarKind::None;
    Suppressed([&] { m_tbrToolbar->Buttons().Clear(); });
  }
  if (m_tbrToolbar && wanted != ToolbarKind::None) {
    AddButtons(wanted);
    ButtonStates(wanted);
    Suppressed([&] { controlBar.Attach(m_tbrToolbar); });
  }
  m_toolbarKind = wanted;
}

Boolean SnapIn::IsConsoleAtLeast51() const {
  return platform::IsConsoleAtLeast51(m_consoleVersion);
}

void SnapIn::AddButtons(ToolbarKind kind) {
  // The image list holds two images a button; an older console takes every second one.
  const Long lFactor = IsConsoleAtLeast51() ? 1 : 2;
  Long lPosition = 0;
  for (const Button& button : Buttons()) {
    if (button.bTableOnly && kind != ToolbarKind::Table) continue;
    ++lPosition;
    Suppressed([&] {
      m_tbrToolbar->Buttons().Add(lPosition, button.sKey,
                                  button.IsSeparator() ? button.lImage : button.lImage * lFactor,
                                  button.sToolTip, button.style);
    });
  }
  m_buttonsKind = kind;
}

void SnapIn::ButtonStates(ToolbarKind kind) {
  Guard([&] {
    const ShownGrid shown = GridOf(kind);
    // A grid tells of its first rows before the console asks for its toolbar.
    if (!shown.grid || m_buttonsKind != kind) return;
    auto& buttons = m_tbrToolbar->Buttons();
    for (const Button& button : Buttons()) {
      if (button.IsSeparator() || (button.bTableOnly && !shown.editor)) continue;
      button.showState(shown, buttons.Item(button.sKey));
    }
  });
}

void SnapIn::Toolbar_ButtonClick(platform::ToolbarButton& button) {
  // The buttons' states follow from the grid's own events.
  Guard([&] {
    const Text sKey = button.Key();
    if (sKey == "Context") {
      // No toolbar carries this button; the option is kept in documents all the same.
      Root().Context(!Root().Context());
      button.Pressed(Root().Context());
      return;
    }
    const ButtonClick click{button, GridOf(KindShown())};
    for (const Button& known : Buttons()) {
      if (!known.IsSeparator() && sKey == known.sKey) return (this->*known.act)(click);
    }
  });
}

void SnapIn::Views_Select(platform::View&, const platform::Selection&, Boolean bSelected,
                          platform::ConsoleVerbs& verbs) {
  Guard([&] {
    if (bSelected) verbs.Enabled(platform::kVerbRefresh, KindShown() != ToolbarKind::None);
  });
}

void SnapIn::Views_Refresh(platform::View&) {
  Guard([&] {
    if (m_tblEditor) {
      m_tblEditor->Requery();
      ButtonStates(ToolbarKind::Table);
    }
    if (m_qrResults) {
      m_qrResults->Execute();
      ButtonStates(ToolbarKind::Query);
    }
  });
}

}  // namespace orvane::snapin
