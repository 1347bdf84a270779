// A table's grid as the snap-in binds it.
#pragma once

#include "controls/grid/table_editor.h"
#include "controls/statements/table_query.h"
#include "tests/controls/grid_fixture.h"

namespace orvane::controls {

class TableEditorFixture : public GridFixture {
 protected:
  TableEditorFixture() {
    m_query->Catalog("Machine");
    m_query->Table("Data");
    m_query->MaxRows(7);
    m_query->QueryTimeout(8);
    m_server.answer = Plant(50);
  }
  /// A grid as the snap-in binds it.
  std::unique_ptr<controls::TableEditor> Bound() {
    auto editor = std::make_unique<controls::TableEditor>(Services());
    editor->Connection(m_connection);
    editor->TableQuery(m_query);
    return editor;
  }
  std::shared_ptr<controls::TableQuery> m_query = std::make_shared<controls::TableQuery>();
};

}  // namespace orvane::controls
