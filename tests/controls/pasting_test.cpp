// Blocks from the clipboard and hidden columns, in rows of a real historian.
#include <QMimeData>

#include "controls/view/header_view.h"
#include "tests/controls/pumps_fixture.h"
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
  Text Changed(const Text& sBut = "0") {
    return Stored(
        "SELECT a.Nr, a.v, b.v, a.w, b.w FROM P..Texts AS a LEFT JOIN P..Into AS b ON a.Nr = b.Nr "
        "WHERE NOT (a.v IS b.v AND a.w IS b.w) AND a.Nr NOT IN (" +
        sBut + ")");
  }
  void PasteIntoOther() {
    Open("Into");
    Paste(0, 0);
    EXPECT_EQ(Label("notice"), "");
    Store();
    EXPECT_TRUE(tests::Until([&] { return Label("pending").empty(); }));
    EXPECT_EQ(Stored("SELECT count(*) FROM P..Into"), "14");
  }

  /// What an office suite's spreadsheet makes of the cells when it has taken them in and copies
  /// them itself: it knows no empty text, and beside its page a text that loses more.
  QString WrittenByCalc() const {
    QString sPage =
        "<!DOCTYPE html>\n<html>\n<head>\n\t\n\t<meta http-equiv=\"content-type\" "
        "content=\"text/html; "
        "charset=utf-8\"/>\n\t<title></title>\n\t<meta name=\"generator\" content=\"LibreOffice "
        "7.4.7.2 "
        "(Linux)\"/>\n\t<style type=\"text/css\">\n\t\tbody,div,table,thead,tbody,tfoot,tr,th,td,p "
        "{ "
        "font-family:\"Liberation Sans\"; font-size:x-small }\n\t</style>\n\t\n</head>\n\n<body>\n"
        "<table cellspacing=\"0\" border=\"0\">\n\t<colgroup span=\"3\" width=\"85\"></colgroup>\n";
    const auto rs = m_server->Run("SELECT Nr, v, w FROM P..Texts ORDER BY Nr");
    for (platform::RowIndex row = 0; row < rs->RecordCount(); ++row) {
      sPage += QStringLiteral(
                   "\t<tr>\n\t\t<td height=\"17\" align=\"right\" valign=bottom sdval=\"%1\" "
                   "sdnum=\"1033;\">%1</td>\n")
                   .arg(row + 1);
      for (platform::ColumnIndex column = 1; column < 3; ++column) {
        sPage += "\t\t<td align=\"left\" valign=bottom sdnum=\"1033;0;@\">" +
                 CellOfCalc(rs->ValueAt(row, column)) + "</td>\n";
      }
      sPage += "\t</tr>\n";
    }
    return sPage + "</table>\n<!-- **** -->\n</body>\n\n</html>\n";
  }
  static QString CellOfCalc(const platform::Value& vtValue) {
    const QString sText = QString::fromStdString(platform::ToText(vtValue));
    if (sText.isEmpty()) return "<br>";
    QString sCell = sText.toHtmlEscaped();
    return sCell.replace(u'\n', QLatin1String("<br>"))
        .replace(QChar(0xA0), QLatin1String("&nbsp;"));
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

TEST_F(pasted_texts, come_back_from_a_spreadsheet_but_for_what_it_does_not_know) {
  Clip(WrittenByCalc().toUtf8().constData(), "1\tloses\tmuch\n");
  PasteIntoOther();
  // The empty text becomes null; a cell of one line break, or of blanks that do not break, looks as
  // one that has nothing in it.
  EXPECT_EQ(Changed("1, 2, 5, 12"), "");
  EXPECT_EQ(Stored("SELECT v IS NULL, w IS NULL FROM P..Into WHERE Nr IN (1, 2)"), "1|1\n1|1");
  EXPECT_EQ(Stored("SELECT v = 'two' || char(10) || 'lines' FROM P..Into WHERE Nr = 5"), "1");
  EXPECT_EQ(Stored("SELECT v, w FROM P..Into WHERE Nr = 12"), "|\u00e4\u20ac");
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
