// The toolbar of the grid shown, the Refresh verb and what Refresh does.
#include "snapin/snap_in.h"

namespace orvane::snapin {

using platform::Boolean;
using platform::ButtonStyle;
using platform::Long;
using platform::Text;

namespace {

struct ButtonDescription {
  const char* sKey;  ///< empty for a separator
  Long lImage;
  const char* sToolTip;
  ButtonStyle style;
};

constexpr ButtonDescription kSeparator{"", 1, "", ButtonStyle::Separator};
constexpr ButtonDescription kMoveFirst{"MoveFirst", 1, "Move to First Row", ButtonStyle::Default};
constexpr ButtonDescription kMoveLast{"MoveLast", 2, "Move to Last Row", ButtonStyle::Default};
constexpr ButtonDescription kSortAsc{"SortAsc", 3, "Sort Ascending", ButtonStyle::Default};
constexpr ButtonDescription kSortDesc{"SortDesc", 4, "Sort Descending", ButtonStyle::Default};
constexpr ButtonDescription kCellQuery{
    "CellQuery", 5, "Put Results of a Query into the Current Cell", ButtonStyle::Default};
constexpr ButtonDescription kDelete{"Delete", 6, "Delete Selected Rows", ButtonStyle::Default};
constexpr ButtonDescription kSql{"Sql", 7, "Show/Hide SQL Statement", ButtonStyle::Check};

const std::vector<ButtonDescription>& TableButtons() {
  static const std::vector<ButtonDescription> buttons{kMoveFirst, kMoveLast,  kSeparator, kSortAsc,
                                                      kSortDesc,  kSeparator, kCellQuery, kDelete,
                                                      kSeparator, kSql};
  return buttons;
}

const std::vector<ButtonDescription>& QueryButtons() {
  static const std::vector<ButtonDescription> buttons{
      kMoveFirst, kMoveLast, kSeparator, kCellQuery, kDelete, kSeparator, kSql};
  return buttons;
}

}  // namespace

void SnapIn::Views_UpdateControlbar(platform::View&, const platform::Selection&, Boolean bSelected,
                                    platform::ControlBar& controlBar) {
  auto wanted = ToolbarKind::None;
  if (bSelected && m_tblEditor) {
    wanted = ToolbarKind::Table;
  } else if (bSelected && m_qrResults) {
    wanted = ToolbarKind::Query;
  }
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
    if (wanted == ToolbarKind::Table) {
      TableButtonStates();
    } else {
      QueryButtonStates();
    }
    Suppressed([&] { controlBar.Attach(m_tbrToolbar); });
  }
  m_toolbarKind = wanted;
}

void SnapIn::AddButtons(ToolbarKind kind) {
  // The image list holds two images a button; an older console takes every second one.
  const Long lFactor = IsConsoleAtLeast51() ? 1 : 2;
  Long lPosition = 0;
  for (const auto& button : kind == ToolbarKind::Table ? TableButtons() : QueryButtons()) {
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

void SnapIn::Views_Select(platform::View&, const platform::Selection&, Boolean bSelected,
                          platform::ConsoleVerbs& verbs) {
  Guard([&] {
    if (bSelected) verbs.Enabled(platform::kVerbRefresh, m_tblEditor || m_qrResults);
  });
}

void SnapIn::Views_Refresh(platform::View&) {
  Guard([&] {
    if (m_tblEditor) {
      m_tblEditor->Requery();
      TableButtonStates();
    }
    if (m_qrResults) {
      m_qrResults->Execute();
      QueryButtonStates();
    }
  });
}

}  // namespace orvane::snapin
