// Blocks from the clipboard and hidden columns, in rows of a real historian.
#include <QMimeData>

#include "controls/view/header_view.h"
#include "tests/controls/pumps_fixture.h"
#include "tests/controls/spreadsheet_pages.h"
#include "tests/fakes/until.h"

namespace orvane::controls {
namespace {

using platform::Text;

class pasting : public PumpsFixture {
 protected:
  void Clip(const char* sPage, const char* sText) {
    auto* data = new QMimeData;
    data->setHtml(QString::fromUtf8(sPage));
    data->setText(QString::fromUtf8(sText));
    QGuiApplication::clipboard()->setMimeData(data);
  }
  void Paste(int nRow, int nColumn) {
    GoTo(nRow, nColumn);
    Press(Qt::Key_V, Qt::ControlModifier);
  }
  void Store() { Press(Qt::Key_Return, Qt::ControlModifier); }
};

TEST_F(pasting, a_block_of_a_spreadsheet_is_stored_as_it_is_held_there) {
  Open("Pumps");
  Clip(
      "<html><body><table cellspacing=\"0\" border=\"0\"><colgroup width=\"85\"></colgroup>\n"
      "\t<tr>\n\t\t<td height=\"17\" align=\"left\">one</td>\n"
      "\t\t<td align=\"right\" sdval=\"1234.56789\" sdnum=\"1033;0;#,##0.0\">1,234.6</td>\n"
      "\t\t<td align=\"left\">NULL</td>\n\t</tr>\n"
      "\t<tr>\n\t\t<td align=\"left\">two<br>lines	and a tab</td>\n"
      "\t\t<td align=\"left\"><br></td>\n\t\t<td align=\"left\"><br></td>\n\t</tr>\n"
      "</table></body></html>",
      "one\t1,234.6\tNULL\n\"two\nlines	and a tab\"\t\t\n");
  Paste(0, 1);
  Store();
  EXPECT_EQ(Stored("SELECT Name, Flow, Note FROM P..Pumps WHERE Id = 1"), "one|1234.56789|NULL");
  EXPECT_EQ(Stored("SELECT Name = 'two' || char(10) || 'lines' || char(9) || 'and a tab', Flow IS "
                   "NULL, Note IS NULL FROM P..Pumps WHERE Id = 2"),
            "1|1|1");
}

TEST_F(pasting, a_page_with_a_value_of_another_type_changes_nothing) {
  Open("Pumps");
  const Text sBefore = Pumps();
  Clip("<table><tr><td>one<td sdval=\"1\" sdnum=\"1033;\">1<tr><td>two<td>high</table>",
       "one\t1\ntwo\t2\n");
  Paste(0, 1);
  EXPECT_EQ(Label("pending"), "");
  EXPECT_EQ(Label("notice"),
            "Nothing was pasted. \"high\" is no number; enter digits, with \".\" as the decimal "
            "point.");
  EXPECT_EQ(Pumps(), sBefore);
}

TEST_F(pasting, cells_copied_here_come_back_from_their_page_alone) {
  m_server->Run(
      "UPDATE P..Pumps SET Name = '  two  blanks\t', Note = 'two' || char(10) || '<b>\"&amp;' "
      "WHERE Id = 1");
  m_server->Run("UPDATE P..Pumps SET Name = 'NULL', Flow = 0.1 WHERE Id = 2");
  Open("Pumps");
  Rows().selectAll();
  Press(Qt::Key_C, Qt::ControlModifier);
  const QString sPage = QGuiApplication::clipboard()->mimeData()->html();
  Clip(sPage.toUtf8().constData(), "nothing of this");
  Paste(0, 0);
  EXPECT_EQ(Label("notice"), "");
  EXPECT_EQ(Label("pending"), "");
}

TEST_F(pasting, cells_between_those_that_were_copied_stay_as_they_are) {
  for (const bool bPageAlone : {false, true}) {
    Open("Pumps");
    GoTo(0, 0);
    auto* selection = Rows().selectionModel();
    selection->select(Rows().model()->index(0, 1), QItemSelectionModel::ClearAndSelect);
    selection->select(Rows().model()->index(1, 2), QItemSelectionModel::Select);
    Press(Qt::Key_C, Qt::ControlModifier);
    if (bPageAlone) {
      const QString sPage = QGuiApplication::clipboard()->mimeData()->html();
      Clip(sPage.toUtf8().constData(), "nothing of this");
    }
    Paste(1, 1);
    EXPECT_EQ(Label("notice"), "");
    Store();
    EXPECT_EQ(Pumps(), "1|feed|10.5|old\n2|feed|3.25|\n3|spare|3.25|") << bPageAlone;
    m_server->Run("UPDATE P..Pumps SET Name = 'drain' WHERE Id = 2");
    m_server->Run("UPDATE P..Pumps SET Flow = 0 WHERE Id = 3");
  }
}

TEST_F(pasting, a_time_is_the_same_instant_by_the_clocks_of_another_zone) {
  m_server->Run(
      "CREATE TABLE P..Times (Id INTEGER PRIMARY KEY, At TIMESTAMP, Said TEXT, Anything)");
  // The second is one that the clocks of Madrid show twice.
  m_server->Run(
      "INSERT INTO P..Times (Id, At) VALUES (1, '2026-05-31 10:00:00.000001Z'), "
      "(2, '2026-10-25 01:30:00Z'), (3, NULL), (4, NULL)");
  m_query->SortCriterion(platform::SortCriterion{"Id", true});
  const auto copy = [&](const char* sZone) {
    Open("Times", sZone);
    GoTo(0, 1);
    Press(Qt::Key_Down, Qt::ShiftModifier);
    Press(Qt::Key_C, Qt::ControlModifier);
  };
  const Text sFirst = Stored("SELECT At FROM P..Times WHERE Id < 3 ORDER BY Id");
  copy("Time Zone = Europe/Madrid;");
  Open("Times", "Time Zone = UTC;");
  Paste(2, 1);
  EXPECT_EQ(Label("notice"), "");
  Store();
  EXPECT_EQ(Stored("SELECT At FROM P..Times WHERE Id > 2 ORDER BY Id"), sFirst);
  copy("Time Zone = UTC;");
  m_server->Run("UPDATE P..Times SET At = NULL WHERE Id > 2");
  Open("Times", "Time Zone = America/New_York;");
  Paste(2, 1);
  Store();
  EXPECT_EQ(Stored("SELECT At FROM P..Times WHERE Id > 2 ORDER BY Id"), sFirst);
  // A text has what was seen.
  copy("Time Zone = Europe/Madrid;");
  Open("Times", "Time Zone = UTC;");
  Paste(0, 2);
  Store();
  EXPECT_EQ(Stored("SELECT Said FROM P..Times WHERE Id < 3 ORDER BY Id"),
            "2026-05-31 12:00:00.000001\n2026-10-25 02:30:00+01:00");
}

// A table of texts that are easily lost, copied and pasted into another one by one of the forms
// that the clipboard has them in.
class pasted_texts : public pasting {
 protected:
  pasted_texts() {
    m_server->Run("CREATE TABLE P..Texts (Nr INTEGER PRIMARY KEY, v TEXT, w TEXT)");
    m_server->Run("CREATE TABLE P..Into (Nr INTEGER PRIMARY KEY, v TEXT, w TEXT)");
    m_server->Run(
        "INSERT INTO P..Texts (v, w) VALUES (NULL, ''), ('', NULL), ('NULL', 'null'), ('a' || "
        "char(9) || 'b', char(9)), ('two' || char(10) || 'lines', char(10)), ('\"quoted\"', '\"'), "
        "('a \"b\" c', '\"\"'), ('  two  blanks ', ' '), ('007', '1e3'), ('-5', '=1+1'), ('<b>&amp;"
        "</b>', '&nbsp;'), (char(160), '\u00e4\u20ac'), ('it''s', 'True'), ('0x00', '2026-01-02')");
    Open("Texts");
    Rows().selectAll();
    Press(Qt::Key_C, Qt::ControlModifier);
    const QMimeData& copied = *QGuiApplication::clipboard()->mimeData();
    m_sPage = copied.html();
    m_sText = copied.text();
  }
  /// The rows of which not all is the same.
  Text Changed() {
    return Stored(
        "SELECT a.Nr, a.v, b.v, a.w, b.w FROM P..Texts AS a LEFT JOIN P..Into AS b ON a.Nr = b.Nr "
        "WHERE NOT (a.v IS b.v AND a.w IS b.w)");
  }
  void PasteIntoOther() {
    Open("Into");
    Paste(0, 0);
    EXPECT_EQ(Label("notice"), "");
    Store();
    EXPECT_TRUE(tests::Until([&] { return Label("pending").empty(); }));
    EXPECT_EQ(Stored("SELECT count(*) FROM P..Into"), "14");
  }

  QString m_sPage;
  QString m_sText;
};

TEST_F(pasted_texts, come_back_from_the_cells_of_this_library) {
  PasteIntoOther();
  EXPECT_EQ(Changed(), "");
}

TEST_F(pasted_texts, come_back_from_the_page_alone) {
  Clip(m_sPage.toUtf8().constData(), "nothing of this");
  PasteIntoOther();
  EXPECT_EQ(Changed(), "");
}

TEST_F(pasted_texts, come_back_from_the_text_alone) {
  QGuiApplication::clipboard()->setText(m_sText);
  PasteIntoOther();
  EXPECT_EQ(Changed(), "");
}

TEST_F(pasted_texts, come_back_from_a_spreadsheet_but_for_what_it_does_not_keep) {
  Clip(tests::kTextsTakenIn, "1\tloses\tmuch\n");
  PasteIntoOther();
  // Of a page it takes tabs for blanks, and leaves out line breaks with nothing behind them.
  EXPECT_EQ(Changed(), "4|a\tb|a b|\t| \n5|two\nlines|two\nlines|\n|");
}

TEST_F(pasting, a_block_goes_to_the_columns_as_they_stand_and_past_hidden_ones) {
  Open("Pumps");
  Rows().Columns().Move(1, 1);  // Id, Flow, Name, Note
  Rows().HiddenColumns({false, true, false, false});
  QGuiApplication::clipboard()->setText("9\tpasted");
  Paste(0, 2);
  Store();
  EXPECT_EQ(Stored("SELECT Name, Flow, Note FROM P..Pumps WHERE Id = 1"), "feed|9|pasted");
}

TEST_F(pasting, null_goes_into_no_hidden_column) {
  Open("Pumps");
  Rows().Columns().Move(1, 1);
  Rows().HiddenColumns({false, true, false, false});
  GoTo(0, 2);
  Press(Qt::Key_Right, Qt::ShiftModifier);
  Press(Qt::Key_0, Qt::ControlModifier);
  Store();
  EXPECT_EQ(Stored("SELECT Name, Flow IS NULL, Note IS NULL FROM P..Pumps WHERE Id = 1"),
            "feed|1|1");
}

TEST_F(pasting, columns_come_back_in_a_fresh_grid_through_its_layout) {
  Open("Pumps");
  Rows().Columns().Move(3, -2);
  Rows().HiddenColumns({false, false, true, false});
  const Text sLayout = m_editor->Layout();
  EXPECT_NE(sLayout, "");
  m_editor = std::make_unique<controls::TableEditor>(Services());
  m_editor->Layout(sLayout);
  m_editor->Connection(m_cn);
  m_editor->TableQuery(m_query);
  m_editor->Requery();
  EXPECT_EQ(Rows().Names().Shown(), (std::vector<int>{0, 3, 1}));
  m_editor->Requery();
  EXPECT_EQ(Rows().Names().Shown(), (std::vector<int>{0, 3, 1}));
  EXPECT_EQ(m_editor->Layout(), sLayout);
  // The rows as they were left have their columns as they were left.
  platform::Long lState = 0;
  const auto rs = m_editor->DetachRecordset(lState);
  m_editor = std::make_unique<controls::TableEditor>(Services());
  m_editor->Connection(m_cn);
  m_editor->TableQuery(m_query);
  m_editor->AttachRecordset(rs, lState);
  EXPECT_EQ(Rows().Names().Shown(), (std::vector<int>{0, 3, 1}));
}

}  // namespace
}  // namespace orvane::controls
