// Editing the results of a query that reads one table with its key, by keys and mouse; what was
// stored is read back over another connection.
#include <map>

#include "controls/editing/conflict_dialog.h"
#include "controls/grid/query_results.h"
#include "tests/controls/pumps_fixture.h"

namespace orvane::controls {
namespace {

using platform::Text;

class query_editing : public PumpsFixture {
 protected:
  void OpenQuery(const Text& sSql, const Text& sOptions = {}) {
    m_cn = m_server->Connect(sOptions);
    m_results = std::make_unique<QueryResults>(Services());
    m_results->Connection(m_cn);
    m_results->QueryName("Hot pumps");
    m_results->SqlText(sSql);
    m_results->Execute();
    Show();
  }
  QWidget* Window() override {
    return m_results ? static_cast<QWidget*>(m_results->Window()) : EditingFixture::Window();
  }
  bool IsEditable(int nRow, int nColumn) {
    return Rows().model()->index(nRow, nColumn).flags().testFlag(Qt::ItemIsEditable);
  }

  std::unique_ptr<QueryResults> m_results;
};

TEST_F(query_editing, a_value_that_is_typed_is_stored_when_its_row_is_left) {
  OpenQuery("SELECT Flow AS \"Litres\", Name, Id FROM P..Pumps WHERE Flow < 50 ORDER BY Id");
  EXPECT_EQ(Label("readOnly"), "");
  GoTo(0, 0);
  Type("42.5");
  Press(Qt::Key_Return);
  EXPECT_EQ(Stored("SELECT Flow FROM P..Pumps WHERE Id = 1"), "42.5");
  EXPECT_EQ(Cell(0, 0), "42.5");
  EXPECT_EQ(Label("pending"), "");
}

TEST_F(query_editing, swapped_names_edit_the_columns_that_they_stand_for) {
  OpenQuery("SELECT Id, Name AS Note, Note AS Name FROM P..Pumps ORDER BY Id");
  GoTo(0, 1);
  Type("renamed");
  Press(Qt::Key_Return);
  EXPECT_EQ(Stored("SELECT Name, Note FROM P..Pumps WHERE Id = 1"), "renamed|old");
}

TEST_F(query_editing, what_is_worked_out_is_not_edited_and_what_it_shows_is_told) {
  OpenQuery("SELECT Id, Flow, Flow * 2 AS Twice, Flow AS Again FROM P..Pumps ORDER BY Id");
  EXPECT_TRUE(IsEditable(0, 1));
  EXPECT_FALSE(IsEditable(0, 2));
  EXPECT_FALSE(IsEditable(0, 3));
  GoTo(0, 2);
  Type("7");
  EXPECT_EQ(Editor(), nullptr);
  EXPECT_EQ(Label("notice"),
            "This value cannot be edited: the query works it out, or shows the column twice.");
  GoTo(0, 1);
  Type("7");
  Press(Qt::Key_Return);
  EXPECT_EQ(Stored("SELECT Flow FROM P..Pumps WHERE Id = 1"), "7");
  EXPECT_EQ(Cell(0, 2), "21");
  EXPECT_EQ(Label("notice"),
            "The row was stored. What the query works out of it is shown as it was before; refresh "
            "to see it anew.");
}

TEST_F(query_editing, rows_are_added_and_deleted) {
  OpenQuery("SELECT Id, Name FROM P..Pumps ORDER BY Id");
  int nInserted = 0;
  int nDeleted = 0;
  const auto inserted = m_results->OnInsert([&] { ++nInserted; });
  const auto deleted = m_results->OnDelete([&] { ++nDeleted; });
  GoTo(3, 1);
  Type("fourth");
  Press(Qt::Key_Return);
  Press(Qt::Key_Return, Qt::ControlModifier);
  EXPECT_EQ(Stored("SELECT Id, Name, Flow FROM P..Pumps WHERE Id > 3"), "4|fourth|");
  EXPECT_EQ(nInserted, 1);
  PressRowNumber(0);
  EXPECT_TRUE(m_results->DeleteAllowed());
  EXPECT_TRUE(m_results->RowsSelected());
  m_results->DeleteSelectedRows();
  Answer("Delete");
  EXPECT_EQ(Stored("SELECT count(*) FROM P..Pumps WHERE Id = 1"), "0");
  EXPECT_EQ(Stored("SELECT count(*) FROM P..Pumps"), "3");
  EXPECT_EQ(nDeleted, 1);
}

TEST_F(query_editing, no_row_is_added_without_a_column_that_it_needs) {
  OpenQuery("SELECT Id, Flow FROM P..Pumps ORDER BY Id");
  EXPECT_EQ(Rows().model()->rowCount(), 3);
  EXPECT_EQ(Label("readOnly"),
            "No row can be added here: the column \"Name\", which is never empty, is not shown; "
            "choose it in the query.");
  GoTo(2, 1);
  Type("8");
  Press(Qt::Key_Tab);
  Press(Qt::Key_Return, Qt::ControlModifier);
  EXPECT_EQ(Stored("SELECT Flow FROM P..Pumps WHERE Id = 3"), "8");
}

TEST_F(query_editing, a_conflict_is_told_and_overwrites_nothing) {
  OpenQuery("SELECT Id, Name, Flow FROM P..Pumps ORDER BY Id");
  m_server->Run("UPDATE P..Pumps SET Flow = 77 WHERE Id = 1");
  GoTo(0, 2);
  Type("5");
  Press(Qt::Key_Return);
  EXPECT_EQ(Stored("SELECT Flow FROM P..Pumps WHERE Id = 1"), "77");
  EXPECT_NE(Window()->findChild<ConflictDialog*>(), nullptr);
  EXPECT_EQ(Mark(0), "!");
}

TEST_F(query_editing, the_strip_says_why_rows_can_only_be_looked_at) {
  m_server->Run("CREATE VIEW P..Seen AS SELECT Id, Name FROM P..Pumps");
  m_server->Run("CREATE TABLE P..Loose (A INTEGER, B TEXT)");
  m_server->Run("INSERT INTO P..Loose VALUES (1, 'x')");
  const std::pair<Text, Text> cases[] = {
      {"SELECT * FROM P..Seen", "they are those of a view; edit its tables."},
      {"SELECT * FROM P..Loose",
       "the table has no key by which one row is told from another; give it a primary key."},
      {"SELECT Name FROM P..Pumps",
       "the column \"Id\", which tells them apart, is not shown; choose it in the query."},
      {"SELECT p.Id, p.Name FROM P..Pumps p, P..Loose",
       "the query joins several tables; read one of them."},
      {"SELECT max(Id), Name FROM P..Pumps",
       "the query works values out over several rows; read the rows themselves."},
      {"SELECT * FROM Orvane..Historians", "the historian keeps this table itself."},
  };
  for (const auto& [sSql, sWhyNot] : cases) {
    OpenQuery(sSql);
    EXPECT_EQ(Label("readOnly"), "These rows can only be looked at: " + sWhyNot) << sSql;
    EXPECT_FALSE(m_results->DeleteAllowed()) << sSql;
    EXPECT_FALSE(m_results->CanCellQuery()) << sSql;
    GoTo(0, 0);
    Type("9");
    EXPECT_EQ(Editor(), nullptr) << sSql;
  }
  EXPECT_EQ(Pumps(), "1|feed|10.5|old\n2|drain|3.25|\n3|spare|0|");
}

TEST_F(query_editing, what_is_not_stored_waits_while_the_query_is_hidden) {
  OpenQuery("SELECT Id, Name FROM P..Pumps ORDER BY Id");
  GoTo(1, 1);
  Type("kept");
  Press(Qt::Key_Tab);
  // As the snap-in hides the grid, and shows another one later.
  const platform::RecordsetPtr rs = m_results->Recordset();
  m_results->Recordset(nullptr);
  m_results->Connection(nullptr);
  m_results = std::make_unique<QueryResults>(Services());
  m_results->Connection(m_cn);
  m_results->QueryName("Hot pumps");
  m_results->Recordset(rs);
  Show();
  EXPECT_EQ(Cell(1, 1), "kept");
  EXPECT_EQ(Label("pending"), "1 row not stored");
  Press(Qt::Key_Return, Qt::ControlModifier);
  EXPECT_EQ(Stored("SELECT Name FROM P..Pumps WHERE Id = 2"), "kept");
}

TEST_F(query_editing, what_is_not_stored_comes_back_after_a_disconnection_and_in_its_own_grid) {
  OpenQuery("SELECT Id, Name FROM P..Pumps ORDER BY Id");
  GoTo(1, 1);
  Type("kept");
  Press(Qt::Key_Tab);
  m_results.reset();
  m_cn->Close();
  // The table's own grid has nothing of it.
  Open("Pumps");
  EXPECT_TRUE(m_editor->DeleteAllowed());
  EXPECT_EQ(static_cast<QWidget*>(m_editor->Window())
                ->findChild<RowView*>("rows")
                ->model()
                ->index(1, 1)
                .data()
                .toString(),
            "drain");
  OpenQuery("SELECT Id, Name FROM P..Pumps ORDER BY Id");
  EXPECT_EQ(Cell(1, 1), "kept");
  Press(Qt::Key_Return, Qt::ControlModifier);
  EXPECT_EQ(Stored("SELECT Name FROM P..Pumps WHERE Id = 2"), "kept");
}

class ToldPlaces final : public platform::UnsentRows {
 public:
  void Tell(const platform::RowsPlace& table, platform::RowIndex rows) override {
    told.erase(table.sQuery);
    if (rows > 0) told[table.sQuery] = rows;
  }
  platform::Long Round(const platform::RowsPlace&) const override { return 0; }
  platform::Boolean MayLose(const platform::RowsPlace&) override { return true; }
  void Lose(const platform::RowsPlace&) override {}
  std::map<Text, platform::RowIndex> told;
};

TEST_F(query_editing, rows_of_a_query_that_is_renamed_are_told_under_its_new_name) {
  const auto host = std::make_shared<ToldPlaces>();
  m_unsent->Host(host);
  OpenQuery("SELECT Id, Name FROM P..Pumps ORDER BY Id");
  GoTo(1, 1);
  Type("kept");
  Press(Qt::Key_Tab);
  EXPECT_EQ(host->told, (std::map<Text, platform::RowIndex>{{"Hot pumps", 1}}));
  m_results->QueryName("Cold pumps");
  m_results->Execute();
  EXPECT_EQ(Cell(1, 1), "kept");
  EXPECT_EQ(host->told, (std::map<Text, platform::RowIndex>{{"Cold pumps", 1}}));
  Press(Qt::Key_Return, Qt::ControlModifier);
  EXPECT_TRUE(host->told.empty());
}

TEST_F(query_editing, edits_are_carried_over_a_refresh) {
  OpenQuery("SELECT Id, Name, length(Name) FROM P..Pumps ORDER BY Id");
  GoTo(2, 1);
  Type("kept");
  Press(Qt::Key_Tab);
  m_server->Run("DELETE FROM P..Pumps WHERE Id = 1");
  m_results->Execute();
  EXPECT_EQ(Cell(1, 1), "kept");
  EXPECT_EQ(Label("pending"), "1 row not stored");
}

TEST_F(query_editing, the_options_of_the_connection_change_no_row_but_the_one) {
  OpenQuery("SELECT Orv_Id, Orv_Name FROM Orv_P..Orv_Pumps ORDER BY Orv_Id",
            "Identifier Prefixes = True");
  GoTo(0, 1);
  Type("renamed");
  Press(Qt::Key_Return);
  EXPECT_EQ(Stored("SELECT Id, Name FROM P..Pumps ORDER BY Id"), "1|renamed\n2|drain\n3|spare");
  OpenQuery("SELECT Tag, Timestamp, Value FROM P..Data", "Time as Double = True");
  EXPECT_EQ(Label("readOnly"),
            "These rows can only be looked at: times are shown as numbers, which are not exact; "
            "switch off \"Time as Double\" in the server's extended options.");
}

TEST_F(query_editing, a_statement_that_was_run_as_a_change_gives_rows_to_be_looked_at) {
  OpenQuery("UPDATE P..Pumps SET Flow = 1 WHERE Id = 1 RETURNING Id, Name");
  auto* run = Window()->findChild<QPushButton*>("emptyButton");
  ASSERT_NE(run, nullptr);
  QTest::mouseClick(run, Qt::LeftButton);
  Settle();
  EXPECT_EQ(Cell(0, 1), "feed");
  EXPECT_EQ(Label("readOnly"),
            "These rows can only be looked at: they are what a change gave back; read them by a "
            "query.");
  EXPECT_FALSE(IsEditable(0, 1));
}

}  // namespace
}  // namespace orvane::controls
