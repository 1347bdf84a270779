// The rows of a table of a real historian, as one of its users edits them.
#pragma once

#include <gtest/gtest.h>

#include "controls/statements/row_changes.h"
#include "controls/statements/row_key.h"
#include "platform/quoting.h"
#include "tests/controls/historian_server.h"
#include "tests/provider/engines/database_folder.h"

namespace orvane::tests {

struct EditedTable {
  /// On a connection of its own. The names are those of RowTable.
  EditedTable(std::shared_ptr<HistorianServer> server, const platform::Text& sTable,
              const platform::Text& sOptions = {}, const platform::Text& sSelect = {},
              std::vector<platform::Text> names = {})
      : objects(std::move(server)), cn(objects->Connect(sOptions)) {
    rs = objects->Run(
        cn, sSelect.empty() ? "SELECT * FROM P.." + platform::QuotedName(sTable) : sSelect);
    table = {"P", sTable, {}, std::move(names)};
    for (const auto& sName : controls::RowKeyOf(*cn, "P", sTable).columns) {
      for (platform::ColumnIndex column = 0; column < rs->FieldCount(); ++column) {
        if (table.NameOf(*rs, column) == sName) table.key.push_back(column);
      }
    }
  }

  /// Sends the row and accepts what was stored; gives the conflict there was.
  std::optional<controls::RowConflict> Store(platform::RowIndex row) const {
    if (rs->StateAt(row) == platform::RowState::Deleted) return Delete(row);
    auto sent = controls::RowChanges(cn, objects, table, lTimeout).Send(*rs, row);
    if (!sent.conflict) rs->Accept(row, sent.stored);
    return std::move(sent.conflict);
  }

  std::shared_ptr<HistorianServer> objects;
  platform::ConnectionPtr cn;
  platform::RecordsetPtr rs;
  controls::RowTable table;
  platform::Long lTimeout = 10;  ///< of a statement, in seconds

 private:
  std::optional<controls::RowConflict> Delete(platform::RowIndex row) const {
    const platform::RowIndex rows[] = {row};
    auto deleted = controls::RowChanges(cn, objects, table, lTimeout).Delete(*rs, rows);
    if (!deleted.refused) rs->Accept(row);
    EXPECT_EQ(deleted.refused.has_value(), deleted.conflict.has_value()) << deleted.sWhyNot;
    return std::move(deleted.conflict);
  }
};

/// A table "T" of the catalog "P", and what others see of it.
class EditedTablesFixture : public testing::Test {
 protected:
  void Make(const platform::Text& sTable, const platform::Text& sRows = {}) {
    m_server->Run("CREATE TABLE P..T " + sTable);
    if (!sRows.empty()) m_server->Run("INSERT INTO P..T VALUES " + sRows);
  }
  EditedTable Open(const platform::Text& sTable = "T", const platform::Text& sOptions = {}) {
    return {m_server, sTable, sOptions};
  }
  platform::Text Read(const platform::Text& sColumns = "*") {
    return m_server->Read("SELECT " + sColumns + " FROM P..T");
  }

  std::shared_ptr<HistorianServer> m_server = HistorianServer::Make();
};

}  // namespace orvane::tests
