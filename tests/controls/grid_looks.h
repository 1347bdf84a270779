// A grid as the console shows it in small and large windows and letters, light and dark, on screens
// of more and fewer dots; and what is expected of everything that is shown: nothing is cut, nothing
// lies over something else, and all can be read.
#pragma once

#include <QLabel>
#include <QToolButton>
#include <QTreeView>
#include <map>

#include "console/app/appearance.h"
#include "console/look/contrast.h"
#include "console/look/control_style.h"
#include "controls/view/header_view.h"
#include "tests/console/look/picture_fixture.h"
#include "tests/console/look/seen_focus.h"
#include "tests/controls/pumps_fixture.h"

namespace orvane::controls {

struct GridLook {
  const char* sName;
  int nPoints;
  int nRatio;  ///< dots of the screen for one of the window
  bool bDark;
  QSize size;
};

inline void PrintTo(const GridLook& look, std::ostream* out) {
  *out << look.sName;
}

// What a window of 900x600 leaves for a grid beside the tree.
inline constexpr QSize kSmallGrid(612, 480);
inline constexpr GridLook kGridLooks[] = {
    {"usual", 10, 1, false, kSmallGrid},           {"dark", 10, 1, true, kSmallGrid},
    {"double_letters", 20, 1, false, {1080, 640}}, {"double_dots", 10, 2, false, kSmallGrid},
    {"triple_dots", 10, 3, false, kSmallGrid},     {"triple_dots_dark", 10, 3, true, kSmallGrid}};
inline constexpr double kReadable = 4.5;

class GridLooks : public PumpsFixture, public testing::WithParamInterface<GridLook> {
 protected:
  GridLooks() {
    constexpr int kDotsPerInch = 96;
    constexpr int kPointsPerInch = 72;
    QFont font = QApplication::font();
    font.setPixelSize(GetParam().nPoints * kDotsPerInch / kPointsPerInch);
    QApplication::setFont(font);
    QApplication::setPalette(GetParam().bDark ? console::DarkPalette() : console::LightPalette());
    QApplication::setStyle(new console::ControlStyle);
    console::SeeToFaintText();
  }
  ~GridLooks() override { QApplication::setStyle("Fusion"); }

  /// A grid on that table as large as the look has it, with the keys in it.
  void OpenIn(const char* sTable) {
    Open(sTable);
    Window()->resize(GetParam().size);
    Window()->activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(Window()));
    Rows().setFocus();
    Settle();
  }
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

}  // namespace orvane::controls
