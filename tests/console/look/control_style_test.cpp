#include "console/look/control_style.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QImage>
#include <QMenu>
#include <QRadioButton>
#include <QScrollBar>
#include <QStyleOption>
#include <QTabBar>
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

TEST_F(control_style, the_thumb_of_a_scroll_bar_stands_out_from_its_ground) {
  for (const auto& palette : {QApplication::palette(), DarkPalette()}) {
    QApplication::setPalette(palette);
    QScrollBar bar(Qt::Vertical);
    bar.setRange(0, 100);
    bar.setPageStep(50);
    bar.resize(16, 300);
    const QImage picture = bar.grab().toImage();
    const auto seen = [&](int y) { return picture.pixelColor(bar.width() / 2, y); };
    const QColor thumb = seen(40);
    const QColor ground = seen(260);
    EXPECT_GE(Contrast(thumb, ground), kLeastContrast);
    EXPECT_GT(Contrast(thumb, palette.color(QPalette::Base)),
              Contrast(ground, palette.color(QPalette::Base)))
        << "the thumb is what stands out from the page";
  }
}

TEST_F(control_style, the_current_tab_is_told_from_the_others_on_dark_ground) {
  QApplication::setPalette(DarkPalette());
  QTabBar tabs;
  tabs.addTab("Data");
  tabs.addTab("Data");
  tabs.setFocusPolicy(Qt::NoFocus);
  tabs.resize(tabs.sizeHint());
  const QImage picture = tabs.grab().toImage();
  const QColor ground = tabs.palette().color(QPalette::Window);
  const auto dots = [&](int iTab) {
    const QRect place = tabs.tabRect(iTab);
    int nDots = 0;
    for (int x = place.left(); x <= place.right(); ++x) {
      if (Contrast(picture.pixelColor(x, place.top()), ground) >= kLeastContrast) ++nDots;
    }
    return nDots;
  };
  EXPECT_GE(dots(0), tabs.tabRect(0).width() / 2);
  EXPECT_EQ(dots(1), 0);
}

TEST_F(control_style, menus_higher_than_the_screen_are_scrolled) {
  QMenu menu;
  EXPECT_NE(menu.style()->styleHint(QStyle::SH_Menu_Scrollable, nullptr, &menu), 0);
}

}  // namespace
}  // namespace orvane::console
