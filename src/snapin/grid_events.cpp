// The toolbar drives the grid shown; the grid's events set the toolbar's buttons.
#include "snapin/snap_in.h"

namespace orvane::snapin {

using platform::Boolean;
using platform::Text;

void SnapIn::Toolbar_ButtonClick(platform::ToolbarButton& button) {
  m_tbrToolbar_ButtonClick(button);
}

void SnapIn::m_tbrToolbar_ButtonClick(platform::ToolbarButton& button) {
  Guard([&] {
    const Text sKey = button.Key();
    if (sKey == "Sql") {
      Root().SqlStatements(!Root().SqlStatements());
      button.Pressed(Root().SqlStatements());
    } else if (sKey == "Context") {
      // No toolbar carries this button; the option is kept in documents all the same.
      Root().Context(!Root().Context());
      button.Pressed(Root().Context());
    }
    // The buttons' states follow from the grid's own events.
    if (m_tblEditor) {
      if (sKey == "MoveFirst") {
        m_tblEditor->MoveFirst();
      } else if (sKey == "MoveLast") {
        m_tblEditor->MoveLast();
      } else if (sKey == "SortAsc") {
        m_tblEditor->SortAscending();
      } else if (sKey == "SortDesc") {
        m_tblEditor->SortDescending();
      } else if (sKey == "CellQuery") {
        m_tblEditor->CellQuery();
      } else if (sKey == "Delete") {
        m_tblEditor->DeleteSelectedRows();
      } else if (sKey == "Sql") {
        m_tblEditor->ShowSqlStatements(Root().SqlStatements());
      }
    } else if (m_qrResults) {
      if (sKey == "MoveFirst") {
        m_qrResults->MoveFirst();
      } else if (sKey == "MoveLast") {
        m_qrResults->MoveLast();
      } else if (sKey == "CellQuery") {
        m_qrResults->CellQuery();
      } else if (sKey == "Delete") {
        m_qrResults->DeleteSelectedRows();
      } else if (sKey == "Sql") {
        m_qrResults->ShowSqlStatements(Root().SqlStatements());
      }
    }
  });
}

void SnapIn::m_tblEditor_HeadClick() {
  TableButtonStates();
}

void SnapIn::m_tblEditor_RowColChange() {
  TableButtonStates();
}

void SnapIn::m_tblEditor_SelChange() {
  TableButtonStates();
}

void SnapIn::m_tblEditor_Insert() {
  TableButtonStates();
}

void SnapIn::m_tblEditor_Delete() {
  TableButtonStates();
}

void SnapIn::m_qrResults_RowColChange() {
  QueryButtonStates();
}

void SnapIn::m_qrResults_SelChange() {
  QueryButtonStates();
}

void SnapIn::m_qrResults_Insert() {
  QueryButtonStates();
}

void SnapIn::m_qrResults_Delete() {
  QueryButtonStates();
}

void SnapIn::TableButtonStates() {
  Guard([&] {
    // A grid tells of its first rows before the console asks for its toolbar.
    if (!m_tblEditor || m_buttonsKind != ToolbarKind::Table) return;
    auto& buttons = m_tbrToolbar->Buttons();
    buttons.Item("MoveFirst").Enabled(m_tblEditor->CanMove());
    buttons.Item("MoveLast").Enabled(m_tblEditor->CanMove());
    buttons.Item("SortAsc").Enabled(m_tblEditor->CanSort());
    buttons.Item("SortDesc").Enabled(m_tblEditor->CanSort());
    buttons.Item("CellQuery").Enabled(m_tblEditor->CanCellQuery());
    buttons.Item("Delete").Enabled(m_tblEditor->DeleteAllowed() && m_tblEditor->RowsSelected());
    buttons.Item("Sql").Pressed(m_tblEditor->ShowSqlStatements());
  });
}

void SnapIn::QueryButtonStates() {
  Guard([&] {
    if (!m_qrResults || m_buttonsKind != ToolbarKind::Query) return;
    auto& buttons = m_tbrToolbar->Buttons();
    buttons.Item("MoveFirst").Enabled(m_qrResults->CanMove());
    buttons.Item("MoveLast").Enabled(m_qrResults->CanMove());
    buttons.Item("CellQuery").Enabled(m_qrResults->CanCellQuery());
    buttons.Item("Delete").Enabled(m_qrResults->DeleteAllowed() && m_qrResults->RowsSelected());
    buttons.Item("Sql").Pressed(m_qrResults->ShowSqlStatements());
  });
}

}  // namespace orvane::snapin
