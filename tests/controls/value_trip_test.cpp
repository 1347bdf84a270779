// Values on their whole way: typed and pasted into a grid, stored, fetched by another one, copied
// and pasted there, exported and imported; at each stop another connection reads what they are.
#include <QFileDialog>
#include <QMimeData>
#include <QTimer>
#include <bit>
#include <cstdlib>

#include "controls/view/value_dialog.h"
#include "exports/row_export.h"
#include "platform/exact_number.h"
#include "tests/controls/editing_fixture.h"
#include "tests/controls/on_engines.h"
#include "tests/controls/random_rows.h"
#include "tests/files/temporary_folder.h"
#include "tests/provider/conformance/postgres_under_test.h"

namespace orvane::controls {
namespace {

using platform::ColumnIndex;
using platform::Text;
using platform::Value;
using platform::ValueKind;
using tests::Difference;

constexpr ColumnIndex kColumns = 12;

/// More by hand, up to a thousand.
std::int64_t RowsOfTrip() {
  const char* const sRows = std::getenv("ORVANE_ROWS");
  return sRows ? std::atoll(sRows) : 24;
}

class ValueTrip : public EditingFixture {
 protected:
  struct Folder : files::FolderTest {
    using FolderTest::Path;
    void TestBody() override {}
  };

  explicit ValueTrip(const tests::EngineUnderTest& engine)
      : EditingFixture(tests::HistorianServer::Make(engine)) {
    for (const char* sTable : {"First", "Second", "Third"}) {
      m_server->Run(Text("CREATE TABLE P..") + sTable + tests::kColumnOfEachType);
    }
  }

  /// To the last bit: both zeros compare as equal.
  static bool AreSame(const Value& vtOne, const Value& vtOther) {
    const auto* one = vtOne.As<double>();
    const auto* other = vtOther.As<double>();
    if (one == nullptr || other == nullptr) return vtOne == vtOther;
    return std::bit_cast<std::uint64_t>(*one) == std::bit_cast<std::uint64_t>(*other);
  }
  static std::string Shown(const Value& vtValue) {
    return std::to_string(static_cast<int>(vtValue.Kind())) + " " + platform::ToText(vtValue);
  }
  /// Into the cell that has the keys, as its editors take it.
  void TypeIn(const Value& vtValue) {
    if (vtValue.IsNull()) return Press(Qt::Key_0, Qt::ControlModifier);
    const Text sText = m_input.Shown(vtValue);
    // The toolkit's editors have one kind of line break; a block of one cell keeps each.
    if (sText.find('\r') != Text::npos) return PasteOver(QString::fromStdString(sText));
    const bool bLines = sText.find('\n') != Text::npos;
    if (bLines || vtValue.Kind() == ValueKind::Bytes) return TypeInWindow(vtValue, sText);
    Press(Qt::Key_F2);
    ASSERT_NE(Editor(), nullptr);
    Editor()->selectAll();
    QTest::keyClick(Editor(), Qt::Key_Backspace);
    QTest::keyClick(Editor(), Qt::Key_X);
    QTest::keyClick(Editor(), Qt::Key_Backspace);
    Put(sText);
    QTest::keyClick(Editor(), Qt::Key_V, Qt::ControlModifier);
    const QPointer<QWidget> editor = Editor();
    QTest::keyClick(Editor(), Qt::Key_Tab);
    Settle();
    EXPECT_FALSE(editor && editor->isVisible()) << Shown(vtValue);
  }
  void PasteOver(QString sText) {
    sText.replace(u'"', QLatin1String("\"\""));
    QApplication::clipboard()->setText(u'"' + sText + u'"');
    Press(Qt::Key_V, Qt::ControlModifier);
  }
  void TypeInWindow(const Value& vtValue, const Text& sText) {
    Press(Qt::Key_Return, Qt::AltModifier);
    auto* dialog = Window()->findChild<ValueDialog*>();
    ASSERT_NE(dialog, nullptr);
    auto* typed = dialog->findChild<QPlainTextEdit*>("typed");
    Put(vtValue.Kind() == ValueKind::Bytes ? sText.substr(2) : sText);
    QTest::keyClick(typed, Qt::Key_X);
    typed->selectAll();
    QTest::keyClick(typed, Qt::Key_Backspace);
    typed->paste();
    dialog->accept();
    Settle();
    EXPECT_EQ(Window()->findChild<ValueDialog*>(), nullptr);
  }
  static void Put(const Text& sText) {
    QApplication::clipboard()->setText(QString::fromStdString(sText));
  }

  const ValueInput m_input{zones::TimeZone("Europe/Berlin")};
  static constexpr const char* kOptions = "Time Zone = Europe/Berlin;";
  Folder m_folder;
};

class value_trip : public ValueTrip, public tests::OnEngines {
 protected:
  value_trip() : ValueTrip(GetParam()) {}

  /// What the engine has of the value: it may have a decimal as a number of the same digits, and a
  /// zero in a column of numbers without its sign.
  static Value AsStored(const Value& vtValue) {
    const auto* d = vtValue.As<double>();
    if (d != nullptr && *d == 0 && Differs(Difference::kNoMinusZero)) return 0.0;
    const auto* decimal = vtValue.As<platform::Decimal>();
    const bool bDouble = decimal != nullptr && Differs(Difference::kDecimalsAreDoubles);
    return bDouble ? *platform::ExactNumber(decimal->sDigits) : vtValue;
  }
  /// A row that the engine can keep.
  static std::vector<Value> RowOf(tests::RandomRows& random, std::int64_t llNumber) {
    auto values = random.Row(llNumber);
    for (Value& vtValue : values) {
      const auto* const sText = vtValue.As<Text>();
      if (sText == nullptr || !Differs(Difference::kNoZeroCharacter)) continue;
      Text sKept = *sText;
      std::erase(sKept, '\0');
      vtValue = sKept;
    }
    return values;
  }
  void ExpectStored(const Text& sTable, const std::vector<std::vector<Value>>& rows) {
    SCOPED_TRACE(sTable);
    const auto rs = m_server->Run("SELECT * FROM P.." + sTable + " ORDER BY Nr");
    ASSERT_EQ(rs->RecordCount(), static_cast<platform::RowIndex>(rows.size()));
    for (std::size_t row = 0; row < rows.size(); ++row) {
      for (ColumnIndex column = 0; column < kColumns; ++column) {
        const Value vtStored = rs->ValueAt(static_cast<platform::RowIndex>(row), column);
        const Value vtMeant = AsStored(rows[row][static_cast<std::size_t>(column)]);
        EXPECT_TRUE(AreSame(vtStored, vtMeant)) << "row " << row << ", column " << column << ": "
                                                << Shown(vtMeant) << " became " << Shown(vtStored);
      }
    }
  }
};

/// What only an engine can hold whose columns take values of any type and texts of any bytes.
class value_trip_of_any_type : public ValueTrip {
 protected:
  value_trip_of_any_type() : ValueTrip(provider::conformance::EmbeddedUnderTest()) {}
};

class value_trip_on_a_server : public ValueTrip {
 protected:
  value_trip_on_a_server() : ValueTrip(provider::conformance::PostgresUnderTest()) {}
};

ORVANE_ON_ENGINES(value_trip);

TEST_P(value_trip, values_of_each_type_come_back_as_they_were_at_every_stop) {
  tests::RandomRows random(5);
  std::vector<std::vector<Value>> rows;
  const std::int64_t llRows = RowsOfTrip();
  for (std::int64_t llNumber = 1; llNumber <= llRows; ++llNumber) {
    rows.push_back(RowOf(random, llNumber));
  }

  // Typed cell by cell into new rows.
  Open("First", kOptions);
  for (std::size_t row = 0; row < rows.size(); ++row) {
    for (ColumnIndex column = 0; column < kColumns; ++column) {
      GoTo(static_cast<int>(row), column);
      TypeIn(rows[row][static_cast<std::size_t>(column)]);
    }
    Press(Qt::Key_Return, Qt::ControlModifier);
    ASSERT_EQ(Label("pending"), "") << Label("notice");
  }
  ExpectStored("First", rows);

  // Looked at, entered, left, copied and pasted back: nothing is changed and nothing to be sent.
  m_editor->Requery();
  Rows().setFocus();
  for (int nRow = 0; nRow < static_cast<int>(rows.size()); nRow += 5) {
    for (ColumnIndex column = 0; column < kColumns; ++column) {
      GoTo(nRow, column);
      Press(Qt::Key_F2);
      Press(Qt::Key_Return);
    }
  }
  Rows().selectAll();
  Press(Qt::Key_C, Qt::ControlModifier);
  GoTo(0, 0);
  Press(Qt::Key_V, Qt::ControlModifier);
  EXPECT_EQ(Label("pending"), "");
  ExpectStored("First", rows);

  // Copied into another table.
  Rows().selectAll();
  Press(Qt::Key_C, Qt::ControlModifier);
  Open("Second", kOptions);
  GoTo(0, 0);
  Press(Qt::Key_V, Qt::ControlModifier);
  EXPECT_EQ(Label("pending"), std::to_string(llRows) + " rows not stored") << Label("notice");
  Press(Qt::Key_Return, Qt::ControlModifier);
  EXPECT_EQ(Label("pending"), "");
  ExpectStored("Second", rows);

  // Exported from what a grid fetched, and imported into a third.
  Open("Second", kOptions);
  exports::WriterOptions options;
  options.zone = zones::TimeZone("Europe/Berlin");
  exports::RowExport file(options, m_folder.Path("rows.csv"));
  file.Rows(*Rows().Model().Recordset());
  file.Finish(false);
  Open("Third", kOptions);
  QTimer timer;
  QObject::connect(&timer, &QTimer::timeout, [&] {
    if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())) {
      ADD_FAILURE() << box->text().toStdString();
      box->reject();
    }
    auto* files = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
    if (files == nullptr) return;
    files->findChild<QLineEdit*>()->setText(QString::fromStdString(m_folder.Path("rows.csv")));
    QTest::keyClick(files->findChild<QLineEdit*>(), Qt::Key_Return);
  });
  timer.start(5);
  QTest::keyClick(&Rows(), Qt::Key_I, Qt::ControlModifier | Qt::ShiftModifier);
  ExpectStored("Third", rows);
}

TEST_F(value_trip_of_any_type, a_copied_value_keeps_its_kind_in_columns_of_any_kind) {
  m_server->Run("CREATE TABLE P..From (Nr INTEGER PRIMARY KEY, v, n DECIMAL)");
  m_server->Run("CREATE TABLE P..Into (Nr INTEGER PRIMARY KEY, v, n DECIMAL)");
  m_server->Run(
      "INSERT INTO P..From VALUES (1, '5', 1e300), (2, 5, 5), (3, 5.5, 0.1), (4, x'00', NULL), (5, "
      "'', "
      "9e999), (6, NULL, 0), (7, 'NULL', 1), (8, '0x00', 1), (9, '1e3', 1), (10, 'True', 1)");
  Open("From", kOptions);
  Rows().selectAll();
  Press(Qt::Key_C, Qt::ControlModifier);
  Open("Into", kOptions);
  GoTo(0, 0);
  Press(Qt::Key_V, Qt::ControlModifier);
  Press(Qt::Key_Return, Qt::ControlModifier);
  EXPECT_EQ(Label("pending"), "") << Label("notice");
  EXPECT_EQ(
      Stored("SELECT a.Nr, typeof(b.v), b.v, b.n FROM P..From AS a LEFT JOIN P..Into AS b ON "
             "a.Nr = b.Nr WHERE NOT (a.v IS b.v AND typeof(a.v) = typeof(b.v) AND a.n IS b.n)"),
      "");
  EXPECT_EQ(Stored("SELECT count(*) FROM P..Into"), "10");
}

TEST_P(value_trip, a_zero_keeps_its_sign_where_the_engine_does_and_shows_what_is_stored) {
  const Text sAny = Differs(Difference::kTypelessColumns) ? "v" : "v REAL";
  m_server->Run("CREATE TABLE P..Zeros (Nr INTEGER PRIMARY KEY, " + sAny + ", d DOUBLE)");
  m_server->Run("INSERT INTO P..Zeros VALUES (1, 1.5, 1.5)");
  Open("Zeros", kOptions);
  for (const int nColumn : {1, 2}) {
    GoTo(0, nColumn);
    Type("-0.0");
    Press(Qt::Key_Tab);
  }
  Press(Qt::Key_Return, Qt::ControlModifier);
  ASSERT_EQ(Label("pending"), "") << Label("notice");
  const auto rs = m_server->Run("SELECT v, d FROM P..Zeros");
  const double dKept = Differs(Difference::kNoMinusZero) ? 0.0 : -0.0;
  EXPECT_TRUE(AreSame(rs->ValueAt(0, 0), -0.0)) << "in a column of any type";
  EXPECT_TRUE(AreSame(rs->ValueAt(0, 1), dKept)) << "in one of numbers";
  const platform::Recordset& shown = *Rows().Model().Recordset();
  EXPECT_TRUE(AreSame(shown.ValueAt(0, 1), -0.0));
  EXPECT_TRUE(AreSame(shown.ValueAt(0, 2), dKept)) << "what is stored, not what was typed";
}

TEST_F(value_trip_of_any_type,
       a_text_of_other_bytes_than_characters_is_replaced_whole_or_not_at_all) {
  m_server->Run("INSERT INTO P..First (Nr, s) VALUES (1, CAST(x'61FF62' AS TEXT))");
  Open("First", kOptions);
  GoTo(0, 5);
  Press(Qt::Key_F2);
  ASSERT_NE(Editor(), nullptr);
  EXPECT_EQ(Editor()->text(), "");
  EXPECT_EQ(Editor()->placeholderText(), kNoCharacters);
  Press(Qt::Key_Return);
  EXPECT_EQ(Label("pending"), "");
  GoTo(0, 5);
  Press(Qt::Key_Return, Qt::AltModifier);
  auto* dialog = Window()->findChild<ValueDialog*>();
  ASSERT_NE(dialog, nullptr);
  EXPECT_EQ(dialog->findChild<QPlainTextEdit*>("typed")->placeholderText(), kNoCharacters);
  dialog->accept();
  Settle();
  EXPECT_EQ(Label("pending"), "");
  EXPECT_EQ(Stored("SELECT hex(s) FROM P..First"), "61FF62");
  GoTo(0, 5);
  Type("ab");
  Press(Qt::Key_Return, Qt::ControlModifier);
  Press(Qt::Key_Return, Qt::ControlModifier);
  EXPECT_EQ(Stored("SELECT s FROM P..First"), "ab");
}

TEST_F(value_trip_of_any_type, what_cannot_be_kept_is_said_and_stays_where_it_was_typed) {
  Open("First", kOptions);
  GoTo(0, 3);
  Type("nan");
  Press(Qt::Key_Tab);
  Press(Qt::Key_Return, Qt::ControlModifier);
  EXPECT_EQ(Label("pending"), "1 row not stored");
  EXPECT_EQ(Label("notice"),
            "The database keeps no value that is no number (NaN): give a number or null.");
  EXPECT_EQ(Cell(0, 3), "nan");
  Press(Qt::Key_Escape);
  GoTo(0, 11);
  Type("12345678901234567890.123456789");
  Press(Qt::Key_Tab);
  Press(Qt::Key_Return, Qt::ControlModifier);
  EXPECT_EQ(
      Label("notice"),
      "'12345678901234567890.123456789' has more digits than a column of numbers keeps; enter "
      "fewer (15 always fit), or keep it in a column of type TEXT.");
  EXPECT_EQ(Cell(0, 11), "12345678901234567890.123456789");
  EXPECT_EQ(Stored("SELECT count(*) FROM P..First"), "0");
}

TEST_F(value_trip_on_a_server, what_the_embedded_engine_cannot_keep_is_kept) {
  Open("First", kOptions);
  for (const auto& [nColumn, sText] :
       {std::pair(0, "1"), std::pair(3, "nan"), std::pair(11, "12345678901234567890.1234567890")}) {
    GoTo(0, nColumn);
    Type(sText);
    Press(Qt::Key_Tab);
  }
  Press(Qt::Key_Return, Qt::ControlModifier);
  ASSERT_EQ(Label("pending"), "") << Label("notice");
  EXPECT_EQ(Stored("SELECT Nr, d, n FROM P..First"), "1|nan|12345678901234567890.1234567890");
  EXPECT_EQ(Cell(0, 3), "nan");
  // And what they were finds its row again.
  GoTo(0, 3);
  Type("-inf");
  Press(Qt::Key_Tab);
  GoTo(0, 11);
  Type("1.50");
  Press(Qt::Key_Tab);
  Press(Qt::Key_Return, Qt::ControlModifier);
  ASSERT_EQ(Label("pending"), "") << Label("notice");
  EXPECT_EQ(Stored("SELECT Nr, d, n FROM P..First"), "1|-inf|1.50");
}

}  // namespace
}  // namespace orvane::controls
