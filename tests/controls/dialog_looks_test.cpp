// The dialogs of the grids and their time bar as the console shows them, in small and large
// letters, light and dark: the focus is seen on each control, and nothing is cut or beyond the
// screen.
#include <QHeaderView>
#include <QTreeWidget>

#include "console/look/control_style.h"
#include "console/look/dialogs_on_screen.h"
#include "controls/editing/cell_query_dialog.h"
#include "controls/editing/conflict_dialog.h"
#include "controls/editing/pending_review.h"
#include "controls/grid/export_dialog.h"
#include "controls/grid/time_bar.h"
#include "controls/view/columns_dialog.h"
#include "controls/view/value_dialog.h"
#include "tests/console/look/picture_fixture.h"
#include "tests/console/look/seen_focus.h"
#include "tests/controls/pumps_fixture.h"

namespace orvane::controls {
namespace {

using platform::DataType;
using platform::Text;

struct DialogLook {
  const char* sName;
  int iPoints;
  int iDotsPerInch;
  bool bDark;
};

void PrintTo(const DialogLook& look, std::ostream* out) {
  *out << look.sName;
}

constexpr DialogLook kDialogLooks[] = {{"usual", 10, 96, false},
                                       {"dark", 10, 96, true},
                                       {"fine_and_larger", 14, 160, false},
                                       {"fine_larger_and_dark", 14, 160, true}};

class dialog_looks : public PumpsFixture, public testing::WithParamInterface<DialogLook> {
 protected:
  dialog_looks() {
    QApplication::setStyle(new console::ControlStyle);
    qApp->installEventFilter(&m_keeper);
    constexpr int kPointsPerInch = 72;
    QFont font = QApplication::font();
    font.setPixelSize(GetParam().iPoints * GetParam().iDotsPerInch / kPointsPerInch);
    QApplication::setFont(font);
    if (GetParam().bDark) QApplication::setPalette(console::DarkPalette());
  }
  ~dialog_looks() override { QApplication::setStyle("Fusion"); }

  static void Check(QWidget& window, std::size_t nLeast) {
    ASSERT_TRUE(console::BringForward(window));
    const QString sFolder = qEnvironmentVariable("ORVANE_PICTURES");
    if (!sFolder.isEmpty()) {
      EXPECT_TRUE(window.grab().save(QStringLiteral("%1/%2-%3.png")
                                         .arg(sFolder, QString(window.metaObject()->className()),
                                              QLatin1String(GetParam().sName))));
    }
    console::ExpectFits(window);
    console::ExpectFocusSeen(window, nLeast);
  }

 private:
  console::AppearanceBefore m_before;
  console::DialogsOnScreen m_keeper;
};

TEST_P(dialog_looks, of_a_value) {
  ValueDialog dialog({Text("two\nlines"), DataType::WChar, ValueInput()}, "Note", nullptr);
  dialog.setAttribute(Qt::WA_DeleteOnClose, false);
  Check(dialog, 3);
}

TEST_P(dialog_looks, of_an_export) {
  ExportDialog dialog(nullptr, {.shown = 1'234'567, .selected = 2, .bAll = true}, {});
  Check(dialog, 5);
}

TEST_P(dialog_looks, of_the_columns) {
  ColumnsDialog dialog({{0, "Tag", true}, {1, "Timestamp", false}, {2, "Value", true}}, nullptr);
  dialog.setAttribute(Qt::WA_DeleteOnClose, false);
  Check(dialog, 4);
}

TEST_P(dialog_looks, of_a_statement_for_cells) {
  CellQueryDialog dialog("Flow of row 1", {"SELECT max(Flow) FROM P..Pumps"}, nullptr);
  dialog.setAttribute(Qt::WA_DeleteOnClose, false);
  dialog.Say("There is no column \"Flaw\"; write the name of one that the tables have.");
  Check(dialog, 4);
  dialog.findChild<QWidget*>("statement")->setFocus();
  EXPECT_TRUE(dialog.findChild<QPushButton*>("run")->isDefault());
}

TEST_P(dialog_looks, of_a_conflict) {
  Open("Pumps");
  m_server->Run("UPDATE P..Pumps SET Flow = 77, Note = 'theirs' WHERE Id = 1");
  GoTo(0, 1);
  Type("mine");
  Press(Qt::Key_Tab);
  Type("5");
  Press(Qt::Key_Return);
  auto* dialog = Window()->findChild<ConflictDialog*>();
  ASSERT_NE(dialog, nullptr);
  Check(*dialog, 3);
}

TEST_P(dialog_looks, of_the_rows_that_are_not_stored) {
  Open("Pumps");
  GoTo(0, 2);
  Type("99");
  Press(Qt::Key_Tab);
  QTest::mouseClick(Window()->findChild<QPushButton*>("pending"), Qt::LeftButton);
  auto* review = Window()->findChild<PendingReview*>();
  ASSERT_NE(review, nullptr);
  Check(*review, 5);
}

TEST_P(dialog_looks, of_why_a_row_is_not_stored) {
  Open("Pumps");
  GoTo(0, 1);
  Press(Qt::Key_F2);
  Editor()->setText(QString(60, 'n'));
  Press(Qt::Key_0, Qt::ControlModifier);
  GoTo(0, 3);
  Type("a note of so many letters that they alone would fill the list from edge to edge");
  Press(Qt::Key_Return);
  Settle();
  QTest::mouseClick(Window()->findChild<QPushButton*>("pending"), Qt::LeftButton);
  auto* review = Window()->findChild<PendingReview*>();
  ASSERT_NE(review, nullptr);
  Check(*review, 5);
  const auto& list = *review->findChild<QTreeWidget*>();
  ASSERT_FALSE(list.topLevelItem(0)->text(2).isEmpty());
  const QRect why = list.visualItemRect(list.topLevelItem(0));
  EXPECT_LE(list.header()->length(), list.viewport()->width());
  EXPECT_TRUE(list.viewport()->rect().contains(why));
  EXPECT_GE(list.columnWidth(2), list.viewport()->width() / 4);
}

TEST_P(dialog_looks, of_the_time_bar) {
  TimeBar bar([] { return platform::Timestamp(); });
  bar.resize(bar.screen()->availableGeometry().width() - 20, bar.sizeHint().height());
  ASSERT_TRUE(console::BringForward(bar));
  bar.findChild<QWidget*>("timeRange")->setFocus();
  console::ExpectFocusSeen(bar, 3);
}

INSTANTIATE_TEST_SUITE_P(looks, dialog_looks, testing::ValuesIn(kDialogLooks),
                         [](const auto& tested) { return std::string(tested.param.sName); });

}  // namespace
}  // namespace orvane::controls
