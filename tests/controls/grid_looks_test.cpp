// The parts of a grid around its rows as the console shows them: the filter row, the find bar, the
// strip and the form of a row. In a small window, in twice as large letters, on screens of two and
// three times as many dots, light and dark, nothing is cut, nothing lies over something else, and
// all can be read.
#include <QLabel>
#include <QToolButton>
#include <QTreeView>
#include <map>

#include "console/look/contrast.h"
#include "console/look/control_style.h"
#include "controls/view/header_view.h"
#include "tests/console/look/picture_fixture.h"
#include "tests/console/look/seen_focus.h"
#include "tests/controls/pumps_fixture.h"

namespace orvane::controls {
namespace {

struct GridLook {
  const char* sName;
  int nPoints;
  int nRatio;  ///< dots of the screen for one of the window
  bool bDark;
  QSize size;
};

void PrintTo(const GridLook& look, std::ostream* out) {
  *out << look.sName;
}

// What a window of 900x600 leaves for a grid beside the tree.
constexpr QSize kSmallGrid(612, 480);
constexpr GridLook kGridLooks[] = {
    {"usual", 10, 1, false, kSmallGrid},           {"dark", 10, 1, true, kSmallGrid},
    {"double_letters", 20, 1, false, {1080, 640}}, {"double_dots", 10, 2, false, kSmallGrid},
    {"triple_dots", 10, 3, false, kSmallGrid},     {"triple_dots_dark", 10, 3, true, kSmallGrid}};
constexpr double kReadable = 4.5;

class grid_looks : public PumpsFixture, public testing::WithParamInterface<GridLook> {
 protected:
  grid_looks() {
    QApplication::setStyle(new console::ControlStyle);
    constexpr int kDotsPerInch = 96;
    constexpr int kPointsPerInch = 72;
    QFont font = QApplication::font();
    font.setPixelSize(GetParam().nPoints * kDotsPerInch / kPointsPerInch);
    QApplication::setFont(font);
    if (GetParam().bDark) QApplication::setPalette(console::DarkPalette());
    Open("Pumps");
    Window()->resize(GetParam().size);
    Window()->activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(Window()));
    Rows().setFocus();
    Settle();
  }
  ~grid_looks() override { QApplication::setStyle("Fusion"); }

  template <class Widget = QWidget>
  Widget& Part(const char* sName) {
    auto* const part = Window()->findChild<Widget*>(sName);
    EXPECT_NE(part, nullptr) << sName;
    EXPECT_TRUE(part->isVisible()) << sName;
    return *part;
  }

  /// As a screen with that many dots shows it.
  static QImage Drawn(QWidget& widget) {
    Settle();
    QImage picture(widget.size() * GetParam().nRatio, QImage::Format_RGB32);
    picture.setDevicePixelRatio(GetParam().nRatio);
    picture.fill(widget.palette().color(QPalette::Window));  // a button lets it shine through
    widget.render(&picture);
    return picture;
  }

  /// Of the line above the text: a button's ground has many colours.
  static QColor GroundOf(const QImage& picture) {
    std::map<QRgb, int> dots;
    for (int x = 0; x < picture.width(); ++x) ++dots[picture.pixel(x, 0)];
    return std::ranges::max_element(dots, {}, [](const auto& entry) { return entry.second; })
        ->first;
  }

  /// The part of its picture that is within its frame.
  static QImage Within(QWidget& widget) {
    const QImage picture = Drawn(widget);
    const int nFrame = 2 * GetParam().nRatio;
    // Corners are round.
    return picture.copy(picture.rect().adjusted(2 * nFrame, nFrame, -2 * nFrame, -nFrame));
  }

  /// Expects a text that stands out, with ground above and beneath it: letters that are cut touch
  /// the edge.
  static void ExpectRead(QWidget& widget, double dLeast) {
    const std::string sName = widget.objectName().toStdString();
    const QImage picture = Within(widget);
    const QColor ground = GroundOf(picture);
    double dBest = 1;
    int nAtEdge = 0;
    for (int y = 0; y < picture.height(); ++y) {
      for (int x = 0; x < picture.width(); ++x) {
        const double dContrast = console::Contrast(picture.pixelColor(x, y), ground);
        dBest = std::max(dBest, dContrast);
        const bool bEdge = y == 0 || y == picture.height() - 1;
        if (bEdge && dContrast >= console::kLeastContrast) ++nAtEdge;
      }
    }
    EXPECT_EQ(nAtEdge, 0) << sName << " is cut";
    EXPECT_GE(dBest, dLeast) << sName;
  }

  /// Expects that the controls of the part lie in it, beside one another, and are as high as their
  /// letters; buttons as wide as their text.
  static void ExpectApart(QWidget& part) {
    std::vector<QWidget*> controls;
    for (QWidget* const child : part.findChildren<QWidget*>(Qt::FindDirectChildrenOnly)) {
      // What gives way altogether has no width.
      if (child->isVisible() && child->width() > 0) controls.push_back(child);
    }
    EXPECT_GE(controls.size(), 2U);
    for (const QWidget* const control : controls) {
      const std::string sName =
          control->metaObject()->className() + (" " + control->objectName().toStdString());
      EXPECT_TRUE(part.rect().contains(control->geometry())) << sName;
      EXPECT_GE(control->height(), std::min(16, control->fontMetrics().height())) << sName;
      if (qobject_cast<const QAbstractButton*>(control)) {
        EXPECT_GE(control->width(), control->sizeHint().width()) << sName;
      }
      for (const QWidget* const other : controls) {
        if (other == control) continue;
        EXPECT_FALSE(other->geometry().intersects(control->geometry()))
            << sName << " and " << other->objectName().toStdString();
      }
    }
  }

  void ExpectFocusOn(QWidget& control) {
    Rows().setFocus();
    const QImage without = Drawn(control);
    control.setFocus();
    EXPECT_GE(console::ChangedDots(without, Drawn(control)), control.width())
        << control.objectName().toStdString();
  }

 private:
  console::AppearanceBefore m_before;
};

TEST_P(grid_looks, of_the_filter_row) {
  Press(Qt::Key_F, Qt::ControlModifier | Qt::ShiftModifier);
  auto& row = Part("filterRow");
  ExpectApart(row);
  const auto boxes = row.findChildren<QLineEdit*>();
  ASSERT_EQ(boxes.size(), 4);
  for (QLineEdit* const box : boxes) {
    ExpectRead(*box, console::kLeastContrast);
    EXPECT_GE(box->width(), Rows().Names().sectionSize(0) / 2);
    box->setFocus();
    QTest::keyClicks(box, "gjpq");
    Rows().setFocus();
    ExpectRead(*box, kReadable);
    box->clear();
    ExpectFocusOn(*box);
  }
  const QRect place(row.mapTo(&Rows(), QPoint()), row.size());
  EXPECT_FALSE(place.intersects(Rows().Names().geometry()));
  EXPECT_FALSE(place.intersects(Rows().viewport()->geometry()));
}

TEST_P(grid_looks, of_the_find_bar) {
  Press(Qt::Key_F, Qt::ControlModifier);
  auto& bar = Part("findBar");
  QTest::keyClicks(&Part<QLineEdit>("findText"), "gjpq");
  ExpectApart(bar);
  ExpectRead(Part("findText"), kReadable);
  ExpectRead(Part("findOutcome"), kReadable);
  for (const char* const sName : {"findPrevious", "findNext", "findClose"}) {
    ExpectRead(Part(sName), kReadable);
    ExpectFocusOn(Part(sName));
  }
  ExpectFocusOn(Part("findText"));
  EXPECT_GE(Part<QLabel>("findOutcome").width(), 10 * bar.fontMetrics().averageCharWidth())
      << "some of it is in sight";
}

TEST_P(grid_looks, of_the_strip) {
  GoTo(0, 2);
  Type("99");
  Press(Qt::Key_Tab);
  Rows().Filter({ColumnFilter::Read("e", 1, platform::DataType::WChar, CellFormat())});
  Settle();
  auto& strip = Part("status");
  ExpectApart(strip);
  ExpectRead(Part("rowCount"), kReadable);
  ExpectRead(Part("arrangement"), kReadable);
  ExpectRead(Part("pending"), kReadable);
  for (QToolButton* const button : strip.findChildren<QToolButton*>()) {
    if (!button->isVisible() || button->isChecked()) continue;
    ExpectRead(*button, kReadable);
    ExpectFocusOn(*button);
  }
  const auto& arrangement = Part<QLabel>("arrangement");
  EXPECT_GE(arrangement.width(), std::min(arrangement.sizeHint().width(),
                                          16 * arrangement.fontMetrics().averageCharWidth()));
}

TEST_P(grid_looks, of_the_form_of_a_row) {
  Press(Qt::Key_F4);
  auto& form = Part("rowForm");
  ExpectApart(form);
  GoTo(1, 0);
  for (const char* const sName : {"formPrevious", "formNext", "formClose"}) {
    ExpectRead(Part(sName), console::kLeastContrast);
    ExpectFocusOn(Part(sName));
  }
  for (QLineEdit* const box : form.findChildren<QLineEdit*>()) {
    ExpectRead(*box, console::kLeastContrast);
    ExpectFocusOn(*box);
  }
  auto* const values = form.findChild<QAbstractItemView*>();
  ASSERT_NE(values, nullptr);
  for (int n = 0; n < values->model()->rowCount(); ++n) {
    const QModelIndex name = values->model()->index(n, 0);
    const QRect place = values->visualRect(name);
    EXPECT_GE(place.height(), values->fontMetrics().height());
    EXPECT_GE(place.width(), values->fontMetrics().horizontalAdvance(name.data().toString()));
    EXPECT_TRUE(values->viewport()->rect().contains(place)) << n;
  }
}

TEST_P(grid_looks, of_the_line_that_is_typed_into) {
  GoTo(0, 1);
  const QRect cell = Rows().visualRect(Rows().currentIndex());
  Press(Qt::Key_F2);
  ASSERT_NE(Editor(), nullptr);
  EXPECT_EQ(Editor()->geometry(), cell);
  Editor()->setText("gjpq");
  Editor()->deselect();
  const QImage picture = Drawn(*Editor());
  const QColor frame = Editor()->palette().color(QPalette::Highlight);
  for (const int x : {0, picture.width() / 2, picture.width() - 1}) {
    for (const int y : {0, picture.height() - 1}) EXPECT_EQ(picture.pixelColor(x, y), frame) << x;
  }
  Editor()->setReadOnly(true);  // without a cursor
  ExpectRead(*Editor(), kReadable);
  Press(Qt::Key_Escape);
}

INSTANTIATE_TEST_SUITE_P(looks, grid_looks, testing::ValuesIn(kGridLooks),
                         [](const auto& tested) { return std::string(tested.param.sName); });

}  // namespace
}  // namespace orvane::controls
