#include "console/look/drawn_icon.h"

#include <gtest/gtest.h>

#include <QPainter>
#include <QWidget>

#include "console/app/appearance.h"
#include "console/look/contrast.h"
#include "console/look/image_list.h"
#include "tests/console/look/picture_fixture.h"

namespace orvane::console {
namespace {

/// How light what is to be seen of a picture is, from 0 to 255, weighed by how much it covers.
double Lightness(const QImage& picture) {
  double dSum = 0;
  double dCovered = 0;
  for (int y = 0; y < picture.height(); ++y) {
    for (int x = 0; x < picture.width(); ++x) {
      const auto color = picture.pixelColor(x, y);
      dSum += static_cast<double>(color.alphaF()) * color.lightness();
      dCovered += static_cast<double>(color.alphaF());
    }
  }
  EXPECT_GT(dCovered, 0);
  return dSum / dCovered;
}

int MostOpaque(const QImage& picture) {
  int iMost = 0;
  for (int y = 0; y < picture.height(); ++y) {
    for (int x = 0; x < picture.width(); ++x) {
      iMost = std::max(iMost, picture.pixelColor(x, y).alpha());
    }
  }
  return iMost;
}

QImage Painted(QWidget& widget, const QIcon& icon, QIcon::Mode mode) {
  class Painter final : public QWidget {
   public:
    Painter(QWidget* parent, QIcon icon, QIcon::Mode mode)
        : QWidget(parent), m_icon(std::move(icon)), m_mode(mode) {}

   protected:
    void paintEvent(QPaintEvent*) override {
      QPainter painter(this);
      m_icon.paint(&painter, rect(), Qt::AlignCenter, m_mode);
    }

   private:
    QIcon m_icon;
    QIcon::Mode m_mode;
  };
  Painter painter(&widget, icon, mode);
  painter.resize(32, 32);
  QImage image(32, 32, QImage::Format_ARGB32);
  image.fill(Qt::transparent);
  painter.render(&image, {}, {}, {});
  return image;
}

class DrawnIconTest : public testing::Test {
 protected:
  AppearanceBefore m_before;
};

TEST_F(DrawnIconTest, lines_are_dark_on_light_windows_and_light_on_dark_ones) {
  const auto icon = ImageList::Named("move-first");
  EXPECT_LT(Lightness(Picture(icon)), 128);
  const QPoint paper(7, 15);
  EXPECT_GT(Picture(ImageList::Named("table")).pixelColor(paper).lightness(), 240);
  QApplication::setPalette(DarkPalette());
  EXPECT_GT(Lightness(Picture(icon)), 160);
  // What is drawn on paper gets dark paper there.
  EXPECT_LT(Picture(ImageList::Named("table")).pixelColor(paper).lightness(), 128);
}

TEST_F(DrawnIconTest, on_marked_rows_pictures_are_as_drawn) {
  const auto icon = ImageList::Named("catalog");
  const auto picture = [&] {
    return icon.pixmap(QSize(32, 32), QIcon::Selected)
        .toImage()
        .convertToFormat(QImage::Format_ARGB32);
  };
  EXPECT_EQ(picture(), Drawing("catalog"));
  QApplication::setPalette(DarkPalette());
  EXPECT_EQ(picture(), Drawing("catalog"));
}

TEST_F(DrawnIconTest, a_widget_with_a_palette_of_its_own_has_pictures_for_that) {
  const auto icon = ImageList::Named("move-first");
  QWidget widget;
  EXPECT_LT(Lightness(Painted(widget, icon, QIcon::Normal)), 128);
  widget.setPalette(DarkPalette());
  EXPECT_GT(Lightness(Painted(widget, icon, QIcon::Normal)), 160);
}

TEST_F(DrawnIconTest, what_cannot_be_used_is_faint_in_every_palette) {
  const auto icon = ImageList::Named("move-first");
  for (const auto& palette : {QApplication::palette(), DarkPalette()}) {
    QApplication::setPalette(palette);
    EXPECT_GT(MostOpaque(Picture(icon)), 240);
    const auto disabled = icon.pixmap(QSize(32, 32), QIcon::Disabled)
                              .toImage()
                              .convertToFormat(QImage::Format_ARGB32);
    EXPECT_LT(MostOpaque(disabled), 110);
    EXPECT_GT(MostOpaque(disabled), 60);
  }
}

TEST_F(DrawnIconTest, program_and_failure_look_alike_in_every_palette) {
  for (const char* sName : {"orvane-console", "failed"}) {
    const auto light = Picture(ImageList::Badge(sName));
    QApplication::setPalette(DarkPalette());
    EXPECT_EQ(Picture(ImageList::Badge(sName)), light) << sName;
  }
}

class FaintTextTest : public DrawnIconTest {
 protected:
  static QColor Faint() { return QApplication::palette().color(QPalette::PlaceholderText); }
};

TEST_F(FaintTextTest, gets_a_colour_that_can_be_read_where_the_desktop_has_none) {
  auto palette = DarkPalette();
  palette.setColor(QPalette::PlaceholderText, QColor(0, 0, 0, 128));
  QApplication::setPalette(palette);
  const auto before = QApplication::palette();
  SeeToFaintText();
  EXPECT_GT(Faint().lightness(), 200);
  EXPECT_GT(Faint().alpha(), 128);
  EXPECT_LT(Faint().alpha(), 255);
  // All other colours are the desktop's.
  EXPECT_EQ(QApplication::palette().color(QPalette::Base), before.color(QPalette::Base));
  EXPECT_EQ(QApplication::palette().color(QPalette::Highlight), before.color(QPalette::Highlight));
}

TEST_F(FaintTextTest, of_what_cannot_be_used_can_be_told_from_its_ground) {
  QApplication::setPalette(DarkPalette());
  const auto before = QApplication::palette();
  SeeToFaintText();
  const auto after = QApplication::palette();
  for (const auto& [role, under] : {std::pair(QPalette::WindowText, QPalette::Window),
                                    std::pair(QPalette::Text, QPalette::Base),
                                    std::pair(QPalette::ButtonText, QPalette::Button)}) {
    const auto disabled = after.color(QPalette::Disabled, role);
    EXPECT_GE(Contrast(disabled, after.color(QPalette::Disabled, under)), 2) << role;
    EXPECT_EQ(after.color(QPalette::Active, role), before.color(QPalette::Active, role));
  }
  // What can be read is left alone.
  auto palette = DarkPalette();
  palette.setColor(QPalette::Disabled, QPalette::ButtonText, QColor(0xA0, 0xA1, 0xA2));
  QApplication::setPalette(palette);
  SeeToFaintText();
  EXPECT_EQ(QApplication::palette().color(QPalette::Disabled, QPalette::ButtonText),
            QColor(0xA0, 0xA1, 0xA2));
}

TEST_F(FaintTextTest, of_the_programs_own_colours_can_be_read_on_every_ground) {
  constexpr double kReadableText = 4.5;
  QApplication::setPalette(LightPalette());
  for (const auto under :
       {QPalette::Window, QPalette::Base, QPalette::AlternateBase, QPalette::Button}) {
    EXPECT_GE(Contrast(Faint(), QApplication::palette().color(under)), kReadableText) << under;
  }
}

TEST_F(FaintTextTest, is_left_alone_where_it_can_be_read) {
  auto palette = DarkPalette();
  palette.setColor(QPalette::PlaceholderText, QColor(0x90, 0xA0, 0xB0));
  QApplication::setPalette(palette);
  SeeToFaintText();
  EXPECT_EQ(Faint(), QColor(0x90, 0xA0, 0xB0));
}

}  // namespace
}  // namespace orvane::console
