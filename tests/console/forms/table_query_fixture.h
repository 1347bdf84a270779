// The table query builder on widgets, with some columns of a table, and what a user sees and does
// in its lists.
#pragma once

#include <QPlainTextEdit>
#include <algorithm>
#include <string>
#include <vector>

#include "console/forms/column_list.h"
#include "dialogs/table_query_dlg.h"
#include "tests/console/forms/forms_fixture.h"

namespace orvane::console {

using Names = std::vector<std::string>;

struct TableQueryFixture : FormsFixture {
  TableQueryFixture() {
    dialog.Columns({"Tag", "Timestamp", "Value", "Status"});
    dialog.CatalogLabel("Plant1");
    dialog.TableLabel("Data");
    dialog.AddSelectedColumn("Value");
    dialog.UpdateAvailableColumns();
    dialog.DefaultFilterCondition("Timestamp >= '*-1h'");
    dialog.UpdateSortColumns();
    dialog.SetSortingCriteria("Value", false);
    dialog.UpdateButtons();
  }

  static ColumnList& List(QWidget& window, const char* sName) {
    auto* const list = dynamic_cast<ColumnList*>(&Find(window, sName));
    if (!list) throw std::runtime_error(std::string("no list named ") + sName);
    return *list;
  }
  static QPoint At(ColumnList& list, const char* sItem) {
    const QModelIndexList found =
        list.model()->match(list.model()->index(0, 0), Qt::DisplayRole, QLatin1String(sItem), 1,
                            Qt::MatchExactly | Qt::MatchCaseSensitive);
    if (found.isEmpty()) throw std::runtime_error(std::string("no item ") + sItem);
    return list.visualRect(found.front()).center();
  }
  static void ClickItem(QWidget& window, const char* sList, const char* sItem,
                        Qt::KeyboardModifiers modifiers = {}) {
    ColumnList& list = List(window, sList);
    QTest::mouseClick(list.viewport(), Qt::LeftButton, modifiers, At(list, sItem));
  }
  static void DblClickItem(QWidget& window, const char* sList, const char* sItem) {
    ColumnList& list = List(window, sList);
    QTest::mouseDClick(list.viewport(), Qt::LeftButton, {}, At(list, sItem));
  }
  static Names Items(QWidget& window, const char* sList) {
    const ColumnListModel& names = List(window, sList).Names();
    Names items;
    for (int i = 0; i < names.rowCount(); ++i) items.push_back(names.At(i));
    return items;
  }
  /// The items that are marked.
  static Names Chosen(QWidget& window, const char* sList) {
    ColumnList& list = List(window, sList);
    Names items;
    for (int i = 0; i < list.Names().rowCount(); ++i) {
      if (list.selectionModel()->isRowSelected(i)) items.push_back(list.Names().At(i));
    }
    return items;
  }
  static Names Available(QWidget& window) { return Items(window, "m_lvAvailableCols"); }
  static Names Selected(QWidget& window) { return Items(window, "m_lvSelCols"); }
  static bool Enabled(QWidget& window, const char* sButton) {
    return Find(window, sButton).isEnabled();
  }
  static QPlainTextEdit& Filter(QWidget& window) {
    return Find<QPlainTextEdit>(window, "m_txtFilterCond");
  }

  dialogs::TableQueryDlg dialog{services};
};

}  // namespace orvane::console
