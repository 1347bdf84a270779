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

/// A button of the table toolbar; the query toolbar has the same ones but those of tables.
struct SnapIn::Button {
  const char* sKey;  ///< empty for a separator
  Long lImage;
  const char* sToolTip;
  ButtonStyle style;
  Boolean bTableOnly;
  void (*act)(const ShownGrid& shown);
  Boolean (*isEnabled)(const ShownGrid& shown);
};

const std::vector<SnapIn::Button>& SnapIn::Buttons() {
  using Shown = const ShownGrid&;
  constexpr auto push = ButtonStyle::Default;
  const auto separator = [](Boolean bTableOnly) {
    return Button{"", 1, "", ButtonStyle::Separator, bTableOnly, nullptr, nullptr};
  };
  static const std::vector<Button> buttons{
      {"MoveFirst", 1, "Move to First Row", push, false, [](Shown it) { it.grid->MoveFirst(); },
       [](Shown it) { return it.grid->CanMove(); }},
      {"MoveLast", 2, "Move to Last Row", push, false, [](Shown it) { it.grid->MoveLast(); },
       [](Shown it) { return it.grid->CanMove(); }},
      separator(false),
      {"SortAsc", 3, "Sort Ascending", push, true, [](Shown it) { it.editor->SortAscending(); },
       [](Shown it) { return it.editor->CanSort(); }},
      {"SortDesc", 4, "Sort Descending", push, true, [](Shown it) { it.editor->SortDescending(); },
       [](Shown it) { return it.editor->CanSort(); }},
      separator(true),
      {"CellQuery", 5, "Put Results of a Query into the Current Cell", push, false,
       [](Shown it) { it.grid->CellQuery(); }, [](Shown it) { return it.grid->CanCellQuery(); }},
      {"Delete", 6, "Delete Selected Rows", push, false,
       [](Shown it) { it.grid->DeleteSelectedRows(); },
       [](Shown it) { return it.grid->DeleteAllowed() && it.grid->RowsSelected(); }},
      separator(false),
      {"Sql", 7, "Show/Hide SQL Statement", ButtonStyle::Check, false, nullptr, nullptr}};
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

void SnapIn::AddButtons(ToolbarKind kind) {
  // The image list holds two images a button; an older console takes every second one.
  const Long lFactor = IsConsoleAtLeast51() ? 1 : 2;
  Long lPosition = 0;
  for (const Button& button : Buttons()) {
    if (button.bTableOnly && kind != ToolbarKind::Table) continue;
    ++lPosition;
    const Boolean bSeparator = button.style == ButtonStyle::Separator;
    Suppressed([&] {
      m_tbrToolbar->Buttons().Add(lPosition, button.sKey,
                                  bSeparator ? button.lImage : button.lImage * lFactor,
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
      if (!button.isEnabled || (button.bTableOnly && !shown.editor)) continue;
      buttons.Item(button.sKey).Enabled(button.isEnabled(shown));
    }
    buttons.Item("Sql").Pressed(shown.grid->ShowSqlStatements());
  });
}

void SnapIn::Toolbar_ButtonClick(platform::ToolbarButton& button) {
  // The buttons' states follow from the grid's own events.
  Guard([&] {
    const Text sKey = button.Key();
    const ShownGrid shown = GridOf(KindShown());
    if (sKey == "Sql") {
      Root().SqlStatements(!Root().SqlStatements());
      button.Pressed(Root().SqlStatements());
      if (shown.grid) shown.grid->ShowSqlStatements(Root().SqlStatements());
    } else if (sKey == "Context") {
      // No toolbar carries this button; the option is kept in documents all the same.
      Root().Context(!Root().Context());
      button.Pressed(Root().Context());
    }
    if (!shown.grid) return;
    for (const Button& known : Buttons()) {
      if (!known.act || sKey != known.sKey || (known.bTableOnly && !shown.editor)) continue;
      known.act(shown);
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
