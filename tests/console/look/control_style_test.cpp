#include "console/look/control_style.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QImage>
#include <QMenu>
#include <QRadioButton>
#include <QStyleOption>
#include <QToolButton>

#include "console/look/contrast.h"
#include "tests/console/look/picture_fixture.h"

namespace orvane::console {
namespace {

class control_style : public testing::Test {
 protected:
  control_style() { QApplication::setStyle(new ControlStyle); }
  ~control_style() override { QApplication::setStyle("Fusion"); }

  /// How many dots of the picture can be told from its ground.
  static int Dots(QWidget& widget, double contrast) {
    widget.ensurePolished();
    widget.resize(widget.sizeHint());
    const QImage picture = widget.grab().toImage();
    const QColor ground = widget.palette().color(QPalette::Window);
    int nDots = 0;
    for (int y = 0; y < picture.height(); ++y) {
      for (int x = 0; x < picture.width(); ++x) {
        if (Contrast(picture.pixelColor(x, y), ground) >= contrast) ++nDots;
      }
    }
    return nDots;
  }

  AppearanceBefore m_before;
};

TEST_F(control_style, empty_boxes_are_seen_on_dark_ground) {
  QApplication::setPalette(DarkPalette());
  QCheckBox box;
  QRadioButton choice;
  constexpr double kSeen = 2.5;
  EXPECT_GT(Dots(box, kSeen), 4 * 8);
  EXPECT_GT(Dots(choice, kSeen), 2 * 8);
}

TEST_F(control_style, arrows_of_buttons_are_as_large_as_their_letters) {
  for (const int nPixels : {13, 31}) {
    QToolButton button;
    QFont font = button.font();
    font.setPixelSize(nPixels);
    button.setFont(font);
    button.setAutoRaise(true);
    button.setIconSize({nPixels, nPixels});
    button.setArrowType(Qt::DownArrow);
    EXPECT_GT(Dots(button, 3), nPixels * nPixels / 10) << nPixels;
  }
}

TEST_F(control_style, the_mark_of_more_buttons_is_seen_on_dark_ground) {
  QApplication::setPalette(DarkPalette());
  QToolButton button;
  button.setAutoRaise(true);
  QStyleOption option;
  option.initFrom(&button);
  button.setIcon(
      button.style()->standardIcon(QStyle::SP_ToolBarHorizontalExtensionButton, &option, &button));
  EXPECT_GT(Dots(button, 3), 8);
}

TEST_F(control_style, menus_higher_than_the_screen_are_scrolled) {
  QMenu menu;
  EXPECT_NE(menu.style()->styleHint(QStyle::SH_Menu_Scrollable, nullptr, &menu), 0);
}

}  // namespace
}  // namespace orvane::console
