// Random work on a grid against a plain model of it: whatever is refreshed, sorted, followed,
// hidden, disconnected or lost in between, what was typed, pasted or filled in is shown, and in the
// end it is at the server.
#include <QCheckBox>
#include <QPlainTextEdit>
#include <QRadioButton>
#include <QTimer>
#include <QToolButton>
#include <array>
#include <cstdlib>
#include <map>
#include <random>

#include "controls/editing/cell_query_dialog.h"
#include "controls/editing/conflict_dialog.h"
#include "controls/order/row_filter.h"
#include "tests/controls/catalog_faults.h"
#include "tests/controls/editing_fixture.h"
#include "tests/controls/on_engines.h"
#include "tests/fakes/until.h"

namespace orvane::controls {
namespace {

using platform::Long;
using platform::RecordsetPtr;
using platform::Text;

/// A positive number from the environment, or the other one where it is not set there.
int Given(const char* sVariable, int nElse) {
  const char* sNumber = std::getenv(sVariable);
  return sNumber ? std::max(1, std::atoi(sNumber)) : nElse;
}

/// Operations of one run; more with the variable ORVANE_GRID_OPERATIONS.
int Operations() {
  return Given("ORVANE_GRID_OPERATIONS", 300);
}

class grid_random : public EditingFixture, public tests::OnEngines {
 protected:
  grid_random() : EditingFixture(tests::HistorianServer::Make(GetParam())) {}

  /// A row as it is to be seen, and whether all of it can be stored.
  struct Row {
    std::string sName;
    std::string sLevel;
    bool bSound = true;
  };

  int Below(int n) { return std::uniform_int_distribution<int>(0, n - 1)(m_random); }
  int PlaceOf(int nId) {
    for (int n = 0; n < Rows().Model().Places(); ++n) {
      if (Cell(n, 0) == std::to_string(nId)) return n;
    }
    return -1;
  }
  int AnyId() {
    auto row = m_model.begin();
    std::advance(row, Below(static_cast<int>(m_model.size())));
    return row->first;
  }
  void Check(int nOperation) {
    ASSERT_EQ(Rows().Model().Places(), static_cast<int>(m_model.size())) << nOperation;
    for (const auto& [nId, row] : m_model) {
      const int nPlace = PlaceOf(nId);
      ASSERT_GE(nPlace, 0) << "row " << nId << " after operation " << nOperation;
      ASSERT_EQ(Cell(nPlace, 1), row.sName) << nId << " after operation " << nOperation;
      // A new row's cell that nothing was typed into is left to the server until the row is stored.
      const bool bLeft =
          row.sLevel == "NULL" && Rows().Model().StateAt(nPlace) == platform::RowState::New;
      ASSERT_EQ(Cell(nPlace, 2), bLeft ? "" : row.sLevel)
          << nId << " after operation " << nOperation;
    }
  }
  void TypeInto(int nPlace, int nColumn, const std::string& sText) {
    GoTo(nPlace, nColumn);
    Type(QString::fromStdString(sText));
    // By the mouse, so that what is no value is kept too.
    const QModelIndex other = Rows().model()->index(nPlace, nColumn == 0 ? 2 : 0);
    QTest::mouseClick(Rows().viewport(), Qt::LeftButton, {}, Rows().visualRect(other).center());
    Settle();
  }
  void Edit() {
    const int nId = AnyId();
    Row& row = m_model[nId];
    if (Below(2) == 0) {
      row.sName = "n" + std::to_string(Below(100'000));
      TypeInto(PlaceOf(nId), 1, row.sName);
    } else if (Below(4) == 0) {
      row.sLevel = "bad" + std::to_string(Below(1000));
      row.bSound = false;
      TypeInto(PlaceOf(nId), 2, row.sLevel);
    } else {
      row.sLevel = std::to_string(Below(100'000));
      row.bSound = true;
      TypeInto(PlaceOf(nId), 2, row.sLevel);
    }
  }
  void Insert() {
    const int nId = m_nNextId++;
    const int nPlace = Rows().Model().Places();
    TypeInto(nPlace, 0, std::to_string(nId));
    m_model[nId].sName = "new" + std::to_string(nId);
    m_model[nId].sLevel = "NULL";
    TypeInto(nPlace, 1, m_model[nId].sName);
  }
  void Delete() {
    if (m_model.size() < 3) return;
    const int nId = AnyId();
    GoTo(PlaceOf(nId), 0);
    PressRowNumber(PlaceOf(nId));
    Settle();
    Press(Qt::Key_Delete);
    ASSERT_EQ(Window()->findChild<QMessageBox*>()->text(), "Delete 1 row?");
    Answer("Delete");
    m_model.erase(nId);
  }
  void HideAndShow() {
    Long lUpdatability = 0;
    const RecordsetPtr rs = m_editor->DetachRecordset(lUpdatability);
    m_editor->AttachRecordset({}, 0);
    m_editor = std::make_unique<controls::TableEditor>(Services());
    m_editor->Connection(m_cn);
    m_editor->TableQuery(m_query);
    m_editor->AttachRecordset(rs, lUpdatability);
    Show();
  }
  void Disconnect() {
    m_editor->AttachRecordset({}, 0);
    m_cn->Close();
    m_editor.reset();
    Open("Tanks");
  }
  void Reconnect() {
    m_cn->Close();
    EXPECT_THROW(m_editor->Requery(), platform::Failure);
    QTest::mouseClick(Window()->findChild<QToolButton*>("offer"), Qt::LeftButton);
    EXPECT_TRUE(m_cn->IsOpen());
  }
  /// As the server vanishes in the midst of the work, and comes back.
  void LoseServer() {
    m_faults->Lose();
    EXPECT_THROW(m_editor->Requery(), platform::Failure);
    Edit();
    m_faults->Find();
    QTest::mouseClick(Window()->findChild<QToolButton*>("offer"), Qt::LeftButton);
  }
  void Sort() { Rows().SortBy(Below(3), Below(2) == 0, Below(2) == 0); }
  /// A filter that leaves all rows, or only some, for a while.
  void Filter() {
    Rows().Filter({ColumnFilter::Equal(1, platform::Value("new1"))});
    Settle();
    Rows().Filter({});
  }
  /// A pause of following is over, with and without something in the line.
  void Follow() {
    auto* follow = Window()->findChild<QCheckBox*>("follow");
    ASSERT_NE(follow, nullptr);
    follow->setChecked(true);
    const bool bTyping = Below(2) == 0;
    const int nId = AnyId();
    if (bTyping) {
      m_model[nId].sName = "f" + std::to_string(Below(100'000));
      GoTo(PlaceOf(nId), 1);
      Type(QString::fromStdString(m_model[nId].sName));
    }
    Window()->findChild<QTimer*>("pause")->start(0);
    Settle();
    if (bTyping) Press(Qt::Key_Tab);
    follow->setChecked(false);
  }
  /// In the midst of typing the rows are exchanged, put into order, or go out of sight.
  void TypeMeanwhile() {
    const int nId = AnyId();
    Row& row = m_model[nId];
    row.sName = "m" + std::to_string(Below(100'000));
    GoTo(PlaceOf(nId), 1);
    Type(QString::fromStdString(row.sName));
    switch (Below(5)) {
      case 0:
        m_editor->Requery();
        break;
      case 1:
        HideAndShow();
        break;
      case 2:
        Disconnect();
        break;
      case 3:
        Sort();
        break;
      default:
        Rows().ArrangeNow();
        Press(Qt::Key_Tab);
    }
  }
  /// Somebody else adds a row.
  void Arrive() {
    const std::string sId = std::to_string(m_nNextId);
    m_server->Run("INSERT INTO P..Tanks (Id, Name) VALUES (" + sId + ", 'came" + sId + "')");
    m_model[m_nNextId++] = {"came" + sId, "NULL"};
    m_editor->Requery();
  }
  /// A row that is as it is at the server, or none.
  std::optional<int> StoredId() {
    const int nId = AnyId();
    const int nPlace = PlaceOf(nId);
    if (Rows().Model().StateAt(nPlace) != platform::RowState::Fetched) return std::nullopt;
    return nId;
  }
  /// A block over two rows, which must be there.
  void Paste() {
    const int nPlaces = Rows().Model().Places();
    if (nPlaces < 2) return;
    const int nPlace = Below(nPlaces - 1);
    QString sBlock;
    std::vector<int> ids;
    for (int n = 0; n < 2; ++n) {
      ids.push_back(std::stoi(Cell(nPlace + n, 0)));
      m_model[ids.back()] = {"p" + std::to_string(Below(100'000)), std::to_string(Below(1000))};
      sBlock += QString::fromStdString(m_model[ids.back()].sName + "\t" +
                                       m_model[ids.back()].sLevel + "\n");
    }
    QGuiApplication::clipboard()->setText(sBlock);
    GoTo(nPlace, 1);
    Press(Qt::Key_V, Qt::ControlModifier);
  }
  void FillFromQuery() {
    const int nId = AnyId();
    m_model[nId].sName = "q" + std::to_string(Below(100'000));
    GoTo(PlaceOf(nId), 1);
    m_editor->CellQuery();
    auto* dialog = Window()->findChild<CellQueryDialog*>();
    ASSERT_NE(dialog, nullptr);
    dialog->findChild<QPlainTextEdit*>("statement")
        ->setPlainText("SELECT '" + QString::fromStdString(m_model[nId].sName) + "'");
    const QPointer<CellQueryDialog> asked(dialog);
    dialog->findChild<QPushButton*>("run")->click();
    Settle();
    EXPECT_FALSE(asked && asked->isVisible())
        << asked->findChild<QLabel*>("sentence")->text().toStdString();
  }
  void SetNull() {
    const int nId = AnyId();
    m_model[nId].sName = "NULL";
    GoTo(PlaceOf(nId), 1);
    Press(Qt::Key_0, Qt::ControlModifier);
  }
  /// The columns are laid out otherwise; Name and Level stay side by side.
  void LayOut() {
    constexpr std::array kLayouts = {
        "", R"({"version":1,"columns":[{"name":"At","hidden":true}]})",
        R"({"version":1,"columns":[{"name":"At"},{"name":"Id"},{"name":"Name"},{"name":"Level"}]})"};
    m_editor->Layout(kLayouts[static_cast<std::size_t>(Below(static_cast<int>(kLayouts.size())))]);
  }
  /// Somebody else changes what is changed here; one of both stays.
  void Conflict() {
    const auto nId = StoredId();
    if (!nId) return;
    const std::string sTheirs = "theirs" + std::to_string(Below(100'000));
    const std::string sMine = "mine" + std::to_string(Below(100'000));
    m_server->Run("UPDATE P..Tanks SET Name = '" + sTheirs +
                  "' WHERE Id = " + std::to_string(*nId));
    TypeInto(PlaceOf(*nId), 1, sMine);
    Press(Qt::Key_Return, Qt::ControlModifier);
    ConflictDialog* dialog = nullptr;
    ASSERT_TRUE(
        tests::Until([&] { return (dialog = Window()->findChild<ConflictDialog*>()) != nullptr; }));
    const bool bMine = Below(2) == 0;
    for (auto* choice : dialog->findChildren<QRadioButton*>()) {
      if (choice->accessibleName() == (bMine ? "Name, mine" : "Name, theirs")) choice->click();
    }
    dialog->findChild<QPushButton*>("settle")->click();
    m_model[*nId].sName = bMine ? sMine : sTheirs;
  }
  void UndoAndRedo() {
    Press(Qt::Key_Z, Qt::ControlModifier);
    Press(Qt::Key_Y, Qt::ControlModifier);
  }

  /// Other operations with another number in ORVANE_SEED.
  std::mt19937 m_random{static_cast<unsigned>(Given("ORVANE_SEED", 20'261'122))};
  const std::unique_ptr<tests::CatalogFaults> m_faults =
      tests::CatalogFaults::Of(GetParam(), m_server->Server());
  std::map<int, Row> m_model;
  int m_nNextId = 1;
};

ORVANE_ON_ENGINES(grid_random);

TEST_P(grid_random, nothing_that_was_typed_is_lost) {
  m_server->Run(
      "CREATE TABLE P..\"Tanks\" (\"Id\" INTEGER PRIMARY KEY, \"Name\" TEXT, \"Level\" REAL, "
      "\"At\" "
      "TIMESTAMP)");
  m_query->MaxRows(0);
  Open("Tanks");
  for (int n = 0; n < 5; ++n) Insert();
  for (int n = 0; n < Operations() && !HasFatalFailure(); ++n) {
    switch (Below(28)) {
      case 0:
        Insert();
        break;
      case 1:
        Delete();
        break;
      case 2:
        m_editor->Requery();
        break;
      case 3:
        HideAndShow();
        break;
      case 4:
        Disconnect();
        break;
      case 5:
        UndoAndRedo();
        break;
      case 6:
        Reconnect();
        break;
      case 7:
        LoseServer();
        break;
      case 8:
        Sort();
        break;
      case 9:
        Filter();
        break;
      case 10:
        Follow();
        break;
      case 11:
      case 12:
        TypeMeanwhile();
        break;
      case 13:
        Arrive();
        break;
      case 14:
        Paste();
        break;
      case 15:
        FillFromQuery();
        break;
      case 16:
        SetNull();
        break;
      case 17:
        LayOut();
        break;
      case 18:
      case 19:
        Conflict();
        break;
      default:
        Edit();
    }
    Settle();
    Check(n);
  }
  for (auto& [nId, row] : m_model) {
    if (row.bSound) continue;
    row.sLevel = "7";
    TypeInto(PlaceOf(nId), 2, row.sLevel);
  }
  Press(Qt::Key_Return, Qt::ControlModifier);
  EXPECT_TRUE(tests::Until([&] { return Label("pending").empty(); }));
  Text sExpected;
  for (const auto& [nId, row] : m_model) {
    sExpected += std::to_string(nId) + "|" + row.sName + "|" + row.sLevel + "\n";
  }
  if (!sExpected.empty()) sExpected.pop_back();
  EXPECT_EQ(Stored("SELECT Id, coalesce(Name, 'NULL'), coalesce(CAST(CAST(Level AS INTEGER) AS "
                   "TEXT), 'NULL') FROM P..Tanks ORDER BY Id"),
            sExpected);
}

}  // namespace
}  // namespace orvane::controls
