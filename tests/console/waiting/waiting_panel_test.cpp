#include "console/waiting/waiting_panel.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QImage>
#include <QLabel>
#include <QListWidget>
#include <QProgressBar>
#include <QTest>

#include "tests/fakes/until.h"

namespace orvane::console {
namespace {

struct waiting_panel : testing::Test {
  waiting_panel() {
    QPalette palette = window.palette();
    palette.setColor(QPalette::Window, Qt::white);
    window.setPalette(palette);
    text.setText("Row of a grid");
    text.setGeometry(10, 10, 300, 30);
    window.resize(800, 600);
    window.show();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(&window));
  }

  QImage Picture() { return window.grab().toImage(); }
  static int Marked(QProgressBar& bar) {
    const QImage picture = bar.grab().toImage();
    const QColor mark = bar.palette().color(QPalette::Active, QPalette::Highlight);
    int nMarked = 0;
    for (int x = 0; x < picture.width(); ++x) {
      if (picture.pixelColor(x, picture.height() / 2) == mark) ++nMarked;
    }
    return nMarked;
  }

  QWidget window;
  QLabel text{&window};
};

TEST_F(waiting_panel, veils_the_window_while_it_is_there) {
  const QRect place = text.geometry();
  const QImage before = Picture();
  {
    const WaitingPanel panel("Working", &window);
    const QImage veiled = Picture();
    EXPECT_NE(veiled.copy(place), before.copy(place));
    EXPECT_NE(veiled.copy(place), QImage(place.size(), veiled.format())) << "it can be seen";
    EXPECT_EQ(panel.geometry().center(), window.rect().center());
  }
  EXPECT_EQ(Picture(), before);
}

TEST_F(waiting_panel, leaves_no_half_of_a_text_in_sight) {
  QListWidget list(&window);
  list.setGeometry(0, 0, window.width(), window.height());
  for (int n = 0; n < 60; ++n) list.addItem(QString(300, u'W'));
  list.setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  list.show();
  QLabel beside(QString(30, u'W'), &window);
  const QColor ink(0, 90, 0);
  for (QWidget* widget : {static_cast<QWidget*>(&list), static_cast<QWidget*>(&beside)}) {
    QPalette palette = widget->palette();
    palette.setColor(QPalette::Text, ink);
    palette.setColor(QPalette::WindowText, ink);
    widget->setPalette(palette);
  }
  const WaitingPanel panel("Working", &window);
  const QRect covered = panel.geometry();
  // Half beneath the panel, half beside it.
  beside.setGeometry(covered.left() - 60, covered.center().y(), 120, 20);
  beside.show();
  QResizeEvent resized(window.size(), window.size());
  QApplication::sendEvent(&window, &resized);
  const QImage picture = Picture();
  const QColor empty = window.palette().color(QPalette::Window);
  const auto isEmpty = [&](QRect area) {
    for (int y = area.top(); y <= area.bottom(); ++y) {
      for (int x = area.left(); x <= area.right(); ++x) {
        if (picture.pixelColor(x, y) != empty) return false;
      }
    }
    return true;
  };
  EXPECT_TRUE(isEmpty({covered.left() - 58, covered.center().y(), 50, 20})) << "the label";
  EXPECT_TRUE(isEmpty({4, covered.top(), covered.left() - 8, covered.height()})) << "rows beside";
  EXPECT_FALSE(isEmpty({4, 4, 100, 60})) << "rows that it does not touch";
}

TEST_F(waiting_panel, veils_all_of_a_window_that_grows) {
  const WaitingPanel panel("Working", &window);
  window.resize(1000, 700);
  text.move(900, 650);
  QApplication::processEvents();
  const QImage veiled = Picture();
  EXPECT_EQ(panel.geometry().center(), window.rect().center());
  QImage bare;
  {
    QLabel same("Row of a grid", &window);
    same.setGeometry(600, 10, 100, 30);
    same.show();
    same.raise();
    bare = Picture().copy(same.geometry());
  }
  EXPECT_NE(veiled.copy(QRect(900, 650, 100, 30)), bare);
}

TEST_F(waiting_panel, its_bar_is_never_full_and_never_stands_still) {
  WaitingPanel panel("Working", &window);
  auto* const bar = panel.findChild<QProgressBar*>();
  ASSERT_NE(bar, nullptr);
  EXPECT_EQ(bar->maximum(), 0) << "how long it takes is not known";
  const QImage first = bar->grab().toImage();
  int nPictures = 0;
  EXPECT_TRUE(tests::Until([&] {
    const int nMarked = Marked(*bar);
    EXPECT_GT(nMarked, 0);
    EXPECT_LT(nMarked, bar->width() / 2);
    if (bar->grab().toImage() != first) ++nPictures;
    return nPictures > 20;
  }));
}

TEST_F(waiting_panel, says_how_long_it_has_been_in_words) {
  const WaitingPanel panel("Working", &window);
  const QString sElapsed = panel.findChild<QLabel*>("m_lblElapsed")->text();
  EXPECT_TRUE(sElapsed.endsWith(" seconds") || sElapsed == "1 second") << sElapsed.toStdString();
}

TEST_F(waiting_panel, a_word_of_any_length_is_broken) {
  const WaitingPanel panel("Opening /" + QString(300, 'x'), &window);
  const auto* const what = panel.findChild<QLabel*>("m_lblWhat");
  EXPECT_TRUE(panel.rect().contains(what->geometry()));
  EXPECT_LE(what->minimumSizeHint().width(), what->width());
  EXPECT_LE(what->heightForWidth(what->width()), what->height());
}

}  // namespace
}  // namespace orvane::console
