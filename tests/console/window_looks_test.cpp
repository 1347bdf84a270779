// What the window looks like and how it is read out: pictures, sizes, palettes, names, tool tips.
#include <gmock/gmock.h>

#include <QAbstractButton>
#include <QAccessible>
#include <QActionGroup>
#include <QListView>
#include <QMenuBar>
#include <QPainter>
#include <QStatusBar>
#include <QTabBar>
#include <QTextDocument>
#include <QToolButton>
#include <array>
#include <set>

#include "console/app/appearance.h"
#include "console/look/contrast.h"
#include "console/look/roomy_rows.h"
#include "console/look/tool_tip.h"
#include "console/window/notice_bar.h"
#include "console/window/toolbar_view.h"
#include "tests/console/main_window_fixture.h"
#include "tests/fakes/file_version.h"

namespace orvane::console {
namespace {

QImage Picture(const QIcon& icon) {
  return icon.pixmap(QSize(32, 32)).toImage().convertToFormat(QImage::Format_ARGB32);
}

QImage Drawing(const char* sName) {
  return Picture(QIcon(QStringLiteral(":/console/%1.svg").arg(QLatin1String(sName))));
}

int Differences(const QImage& left, const QImage& right) {
  EXPECT_EQ(left.size(), right.size());
  int iCount = 0;
  for (int y = 0; y < left.height(); ++y) {
    for (int x = 0; x < left.width(); ++x) iCount += left.pixel(x, y) != right.pixel(x, y);
  }
  return iCount;
}

TEST(ImageListTest, each_button_image_is_the_drawing_of_its_button) {
  const ImageList images;
  constexpr std::array kDrawings = {
      "move-first", "move-last", "sort-ascending", "sort-descending", "cell-query",
      "delete",     "sql"};
  for (platform::Long l = 1; l <= 14; ++l) {
    const auto* sName = kDrawings[static_cast<std::size_t>((l - 1) / 2)];
    const auto expected = Drawing(sName);
    ASSERT_FALSE(expected.isNull()) << sName;
    EXPECT_EQ(Picture(images.Button(l)), expected) << l << " " << sName;
  }
  EXPECT_TRUE(images.Button(0).isNull());
  EXPECT_TRUE(images.Button(15).isNull());
  EXPECT_TRUE(images.Button(-1).isNull());
}

TEST(ImageListTest, each_number_of_a_later_console_is_a_button_of_its_own) {
  orvane::fakes::FakeFileVersion functions;
  functions.info = orvane::fakes::FakeFileVersion::Product(5, 1, 2600, 0);
  ASSERT_EQ(ImageList::ImagesAButton(&functions), 1);
  const ImageList older(2);
  const ImageList images(1);
  for (platform::Long l = 1; l <= 7; ++l) {
    EXPECT_EQ(Picture(images.Button(l)), Picture(older.Button(2 * l))) << l;
  }
  EXPECT_TRUE(images.Button(0).isNull());
  EXPECT_TRUE(images.Button(8).isNull());
}

TEST(ImageListTest, an_older_console_has_two_numbers_a_button_as_one_of_no_version_has) {
  orvane::fakes::FakeFileVersion functions;
  functions.info = orvane::fakes::FakeFileVersion::Product(1, 0, 0, 1);
  EXPECT_EQ(ImageList::ImagesAButton(&functions), 2);
  EXPECT_EQ(ImageList::ImagesAButton(nullptr), 2);
}

TEST(ImageListTest, each_folder_image_is_the_drawing_of_its_kind_and_a_failed_one_differs) {
  const ImageList images;
  constexpr std::array kDrawings = {"servers", "server",     "folder",  "table",
                                    "column",  "column-key", "catalog", "query"};
  for (platform::Long l = 1; l <= 8; ++l) {
    const auto expected = Drawing(kDrawings[static_cast<std::size_t>(l - 1)]);
    ASSERT_FALSE(expected.isNull());
    EXPECT_EQ(Picture(images.Folder(l)), expected) << l;
    EXPECT_GT(Differences(Picture(images.FailedFolder(l)), expected), 20) << l;
  }
  EXPECT_TRUE(images.Folder(0).isNull());
  EXPECT_TRUE(images.Folder(9).isNull());
  EXPECT_TRUE(images.FailedFolder(0).isNull());
  EXPECT_TRUE(images.FailedFolder(9).isNull());
}

TEST(ImageListTest, no_two_drawings_look_alike) {
  const ImageList images;
  for (platform::Long l = 1; l <= 14; l += 2) {
    for (platform::Long lOther = l + 2; lOther <= 14; lOther += 2) {
      EXPECT_NE(Picture(images.Button(l)), Picture(images.Button(lOther))) << l << " " << lOther;
    }
  }
  for (platform::Long l = 1; l <= 8; ++l) {
    for (platform::Long lOther = l + 1; lOther <= 8; ++lOther) {
      EXPECT_NE(Picture(images.Folder(l)), Picture(images.Folder(lOther))) << l << " " << lOther;
    }
  }
}

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

QPalette DarkPalette() {
  QPalette palette(QColor(0x2B, 0x2F, 0x36));
  palette.setColor(QPalette::Base, QColor(0x1E, 0x21, 0x26));
  palette.setColor(QPalette::Text, Qt::white);
  return palette;
}

/// The application's font and palette as they were, when this goes.
class AppearanceBefore {
 public:
  ~AppearanceBefore() {
    QApplication::setFont(m_font);
    QApplication::setPalette(m_palette);
  }

 private:
  QFont m_font = QApplication::font();
  QPalette m_palette = QApplication::palette();
};

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

TEST_F(FaintTextTest, is_left_alone_where_it_can_be_read) {
  auto palette = DarkPalette();
  palette.setColor(QPalette::PlaceholderText, QColor(0x90, 0xA0, 0xB0));
  QApplication::setPalette(palette);
  SeeToFaintText();
  EXPECT_EQ(Faint(), QColor(0x90, 0xA0, 0xB0));
}

class WindowLooksTest : public MainWindowTest {
 protected:
  void ShowTable() {
    ExpandToTables();
    ClickItem("alpha.Catalogs.Machine.Tags");
    ASSERT_TRUE(Toolbar().isVisible());
  }
  ToolbarView& Toolbar() { return m_window->SnapInToolbar(); }
  QWidget* Button(const char* sKey) {
    return Toolbar().widgetForAction(Toolbar().ButtonAction(sKey));
  }
  static QImage Grabbed(QWidget* widget) {
    Settle();
    return widget->grab().toImage();
  }

  /// The width of the picture in front of the first row's name, as the row is drawn.
  static int RowPicture(const QAbstractItemView& view) {
    class Asking final : public RoomyRows {
     public:
      using RoomyRows::initStyleOption;
    };
    const auto* rows = dynamic_cast<const RoomyRows*>(view.itemDelegate());
    EXPECT_NE(rows, nullptr);
    QStyleOptionViewItem option;
    option.initFrom(&view);
    Asking().initStyleOption(&option, view.model()->index(0, 0));
    return option.decorationSize.width();
  }

  /// What a screen reader is told of each control on the screen.
  std::set<QString> CheckNames() {
    std::set<QString> names;
    for (auto* widget : m_window->findChildren<QWidget*>()) {
      if (!widget->isVisible()) continue;
      const bool bControl =
          widget->focusPolicy() != Qt::NoFocus || qobject_cast<QAbstractButton*>(widget) ||
          qobject_cast<QAbstractItemView*>(widget) || qobject_cast<QTabBar*>(widget) ||
          qobject_cast<QToolBar*>(widget) || qobject_cast<QMenuBar*>(widget) ||
          qobject_cast<QStatusBar*>(widget) || qobject_cast<NoticeBar*>(widget) ||
          widget->parentWidget() == m_window->statusBar();
      // The control's own window is named by who made it; headers are read with their lists.
      if (!bControl || widget->objectName() == "fakeControl" || widget->inherits("QSizeGrip") ||
          widget->inherits("QHeaderView")) {
        continue;
      }
      auto* accessible = QAccessible::queryAccessibleInterface(widget);
      if (!accessible) {
        ADD_FAILURE() << widget->objectName().toStdString();
        continue;
      }
      const auto sName = accessible->text(QAccessible::Name);
      EXPECT_FALSE(sName.isEmpty())
          << widget->metaObject()->className() << " " << widget->objectName().toStdString();
      EXPECT_FALSE(sName.contains('&')) << sName.toStdString();
      names.insert(sName);
      if (!qobject_cast<QTabBar*>(widget)) continue;
      for (int i = 0; i < accessible->childCount(); ++i) {
        auto* child = accessible->child(i);
        if (child->state().invisible) continue;
        EXPECT_FALSE(child->text(QAccessible::Name).isEmpty()) << i;
        names.insert(child->text(QAccessible::Name));
      }
    }
    return names;
  }

  AppearanceBefore m_before;
};

TEST_F(WindowLooksTest, button_looks_different_when_disabled_and_when_pressed) {
  ShowTable();
  m_script->buttonClick = [](Services&, platform::ToolbarButton& button) { button.Pressed(true); };
  for (const auto& palette : {QApplication::palette(), DarkPalette()}) {
    QApplication::setPalette(palette);
    auto& toolbar = *Session().ControlBar().Attached();
    toolbar.Item("MoveFirst").Enabled(true);
    const auto enabled = Grabbed(Button("MoveFirst"));
    toolbar.Item("MoveFirst").Enabled(false);
    EXPECT_GT(Differences(Grabbed(Button("MoveFirst")), enabled), 20);
    toolbar.Item("MoveFirst").Enabled(true);
    EXPECT_EQ(Differences(Grabbed(Button("MoveFirst")), enabled), 0);
    toolbar.Item("Sql").Pressed(false);
    const auto unpressed = Grabbed(Button("Sql"));
    toolbar.Item("Sql").Pressed(true);
    EXPECT_GT(Differences(Grabbed(Button("Sql")), unpressed), 20);
    toolbar.Item("Sql").Pressed(false);
    EXPECT_EQ(Differences(Grabbed(Button("Sql")), unpressed), 0);
  }
}

TEST_F(WindowLooksTest, button_looks_different_in_a_dark_palette) {
  ShowTable();
  const auto light = Grabbed(Button("MoveFirst"));
  QApplication::setPalette(DarkPalette());
  EXPECT_GT(Differences(Grabbed(Button("MoveFirst")), light), 20);
}

TEST_F(WindowLooksTest, toolbar_has_small_and_large_icons_as_chosen_in_its_menu) {
  ShowTable();
  const auto iSmall = Toolbar().iconSize().width();
  const auto iSmallButton = Button("MoveFirst")->width();
  EXPECT_GE(iSmall, 16);
  EXPECT_TRUE(Action("actSmallImages")->isChecked());
  Action("actLargeImages")->trigger();
  Settle();
  const auto iLarge = Toolbar().iconSize().width();
  EXPECT_GE(iLarge, iSmall * 3 / 2);
  EXPECT_GT(Button("MoveFirst")->width(), iSmallButton);
  EXPECT_TRUE(Action("actLargeImages")->isChecked());
  EXPECT_FALSE(Action("actSmallImages")->isChecked());
  // Drawn for that size, not blown up.
  const auto icon = Toolbar().ButtonAction("MoveFirst")->icon();
  const auto large = icon.pixmap(QSize(iLarge, iLarge)).toImage();
  EXPECT_EQ(large.size(), QSize(iLarge, iLarge));
  EXPECT_GT(Differences(large, icon.pixmap(QSize(iSmall, iSmall))
                                   .toImage()
                                   .scaled(large.size())
                                   .convertToFormat(large.format())),
            20);
  Action("actSmallImages")->trigger();
  EXPECT_EQ(Toolbar().iconSize().width(), iSmall);
}

TEST_F(WindowLooksTest, refresh_has_its_picture_on_the_button_alone) {
  EXPECT_FALSE(Action("actRefresh")->isIconVisibleInMenu());
  EXPECT_FALSE(Action("actRefresh")->icon().isNull());
}

TEST_F(WindowLooksTest, toolbar_menu_is_worked_by_keys) {
  QTest::keyClick(&Scope(), Qt::Key_V, Qt::AltModifier);
  Settle();
  auto* view = m_window->findChild<QMenu*>("mnuView");
  ASSERT_TRUE(view->isVisible());
  QTest::keyClick(view, Qt::Key_T);
  auto* toolbar = m_window->findChild<QMenu*>("mnuToolbar");
  ASSERT_TRUE(Waits([&] { return toolbar->isVisible(); }));
  QTest::keyClick(toolbar, Qt::Key_L);
  Settle();
  EXPECT_TRUE(Action("actLargeImages")->isChecked());
  EXPECT_EQ(Toolbar().Images(), ButtonImages::Large);
  std::set<QString> keys;
  for (const auto* action : toolbar->actions()) {
    if (action->isSeparator()) continue;
    const auto nAt = action->text().indexOf('&');
    ASSERT_GE(nAt, 0);
    EXPECT_TRUE(keys.insert(action->text().mid(nAt + 1, 1).toLower()).second);
  }
}

TEST_F(WindowLooksTest, size_of_the_icons_comes_back_with_the_document) {
  Action("actLargeImages")->trigger();
  const auto iLarge = Toolbar().iconSize().width();
  ASSERT_TRUE(m_window->SaveTo(Path("large.orvc")));
  m_window->NewDocument();
  EXPECT_EQ(Toolbar().Images(), ButtonImages::Small);
  EXPECT_TRUE(Action("actSmallImages")->isChecked());
  EXPECT_LT(Toolbar().iconSize().width(), iLarge);
  ASSERT_TRUE(m_window->OpenDocument(Path("large.orvc")));
  EXPECT_EQ(Toolbar().Images(), ButtonImages::Large);
  EXPECT_TRUE(Action("actLargeImages")->isChecked());
  EXPECT_EQ(Toolbar().iconSize().width(), iLarge);
}

TEST_F(WindowLooksTest, icons_grow_with_the_font) {
  const auto iSmall = Toolbar().iconSize().width();
  const auto* icons = m_window->findChild<QListView*>("resultIcons");
  const auto grid = icons->gridSize();
  const int iRowPicture = RowPicture(Scope());
  EXPECT_GE(iRowPicture, 16);
  const auto fontBefore = QApplication::font();
  auto font = fontBefore;
  font.setPointSizeF(font.pointSizeF() * 2);
  QApplication::setFont(font);
  Settle();
  EXPECT_GT(Toolbar().iconSize().width(), iSmall * 3 / 2);
  EXPECT_GE(icons->gridSize().height(), 32 + 2 * QFontMetrics(icons->font()).lineSpacing());
  EXPECT_GT(icons->gridSize().height(), grid.height());
  EXPECT_GT(icons->gridSize().width(), grid.width());
  EXPECT_GT(RowPicture(Scope()), 16 * 3 / 2);
  EXPECT_GT(RowPicture(*Results().List().DetailsView()), 16 * 3 / 2);
  QApplication::setFont(fontBefore);
  Settle();
  EXPECT_EQ(icons->gridSize(), grid);
  EXPECT_EQ(RowPicture(Scope()), iRowPicture);
  EXPECT_EQ(Toolbar().iconSize().width(), iSmall);
}

TEST_F(WindowLooksTest, rows_are_of_one_height_whatever_lines_their_texts_have) {
  m_script->expand = [](Services& services, const ScopeItemPtr& item) {
    fakes::AddItem(services, item, "Server", "a", "SELECT 1\n  FROM a\nWHERE b", true);
    fakes::AddItem(services, item, "Server", "b", "two  blanks", true);
  };
  ClickExpandMark("");
  auto* list = Results().List().DetailsView();
  for (const QAbstractItemView* view :
       {static_cast<QAbstractItemView*>(list), static_cast<QAbstractItemView*>(&Scope())}) {
    const auto* rows = dynamic_cast<const RoomyRows*>(view->itemDelegate());
    ASSERT_NE(rows, nullptr);
    const QLocale locale;
    EXPECT_EQ(rows->displayText("SELECT 1\n  FROM a\nWHERE b", locale), "SELECT 1 FROM a WHERE b");
    EXPECT_EQ(rows->displayText("two  blanks", locale), "two  blanks");
  }
  const auto first = list->visualRect(list->model()->index(0, 0));
  EXPECT_LT(first.height(), 2 * list->fontMetrics().height());
  EXPECT_EQ(first.height(), list->visualRect(list->model()->index(1, 0)).height());
}

TEST_F(WindowLooksTest, name_beneath_an_icon_has_the_whole_cell) {
  ClickExpandMark("");
  Action("actIcons")->trigger();
  Settle();
  const auto* icons = m_window->findChild<QListView*>("resultIcons");
  const auto grid = icons->gridSize();
  for (int i = 0; i < 2; ++i) {
    const auto rect = icons->visualRect(icons->model()->index(i, 0));
    EXPECT_GE(rect.width(), grid.width() - 8) << i;
    EXPECT_LE(rect.width(), grid.width()) << i;
    EXPECT_GE(rect.height(), 32 + 2 * icons->fontMetrics().lineSpacing()) << i;
    EXPECT_LE(rect.height(), grid.height()) << i;
  }
}

TEST_F(WindowLooksTest, controls_have_names_while_a_table_is_shown) {
  ShowTable();
  const auto names = CheckNames();
  // The toolkit reads the tab shown in its place.
  EXPECT_EQ(Results().ViewTabs().accessibleName(), "Views");
  for (const char* sName :
       {"Scope", "Toolbar", "Move to First Row", "Move to Last Row", "Show/Hide SQL Statement",
        "Refresh", "Data", "Structure", "Menus", "Status"}) {
    EXPECT_TRUE(names.contains(sName)) << sName;
  }
}

TEST_F(WindowLooksTest, controls_have_names_while_a_list_is_shown) {
  ClickExpandMark("");
  m_window->findChild<NoticeBar*>()->Show("This document is read-only.");
  Settle();
  const auto names = CheckNames();
  for (const char* sName :
       {"Scope", "Contents", "Refresh", "Menus", "Status", "2 items", "Notice", "Dismiss"}) {
    EXPECT_TRUE(names.contains(sName)) << sName;
  }
  Action("actIcons")->trigger();
  Settle();
  EXPECT_TRUE(CheckNames().contains("Contents"));
}

TEST_F(WindowLooksTest, button_for_what_does_not_fit_the_toolbar_has_a_name) {
  ShowTable();
  Toolbar().setFixedWidth(30);
  auto* more = Toolbar().findChild<QToolButton*>("qt_toolbar_ext_button");
  ASSERT_TRUE(Waits([&] { return more->isVisible(); }));
  EXPECT_TRUE(CheckNames().contains("More Buttons"));
}

TEST_F(WindowLooksTest, tool_tips_of_rows_show_texts_as_they_are) {
  m_script->expand = [](Services& services, const ScopeItemPtr& item) {
    fakes::AddItem(services, item, "Server", "a", "<b>bold & of many letters</b>", true);
    fakes::AddItem(services, item, "Server", "b", "plain & of many letters", true);
    fakes::AddItem(services, item, "Server", "c", "more than twenty-four letters", true);
    fakes::AddItem(services, item, "Server", "d", std::string(200, 'x') + " &", true);
  };
  ClickExpandMark("");
  const auto* model = Results().List().DetailsView()->model();
  const auto tip = [&](int iRow) { return model->index(iRow, 0).data(Qt::ToolTipRole).toString(); };
  EXPECT_TRUE(tip(0).contains("&lt;b&gt;bold &amp; of many letters&lt;/b&gt;"));
  EXPECT_TRUE(Qt::mightBeRichText(tip(0)));
  EXPECT_EQ(tip(1), "plain & of many letters");
  EXPECT_EQ(tip(2), "more than twenty-four letters");
  // A long one is broken into lines, which only mark-up is.
  EXPECT_TRUE(Qt::mightBeRichText(tip(3)));
  EXPECT_TRUE(tip(3).contains(" &amp;"));
}

TEST_F(WindowLooksTest, tool_tip_of_a_very_long_text_has_its_beginning_and_says_where_the_rest_is) {
  const auto shownBy = [](const QString& sTip) {
    QTextDocument document;
    document.setHtml(sTip);
    return document.toPlainText().remove(QChar(0x200B));
  };
  const QString sWhole = QString(700, 'a') + "\n" + QString(700, 'b');
  EXPECT_EQ(shownBy(ToolTipOf(sWhole)).remove('\n'), QString(700, 'a') + QString(700, 'b'));
  const auto sCut = shownBy(ToolTipOf(QString(40'000, 'x')));
  EXPECT_TRUE(sCut.startsWith(QString(1500, 'x') + QChar(0x2026)));
  EXPECT_TRUE(sCut.contains("The first 1,500 of 40,000 characters."));
  EXPECT_TRUE(sCut.contains("Edit..."));
  EXPECT_LT(shownBy(ToolTipOf(QString("line\n").repeated(500))).count("line"), 30);
  // No word makes the tip wider than the screen.
  QTextDocument document;
  document.setHtml(ToolTipOf(QString(1000, 'w')));
  document.setTextWidth(700);
  EXPECT_LE(document.idealWidth(), 700);
}

TEST_F(WindowLooksTest, expand_mark_of_a_marked_row_can_be_seen) {
  ClickExpandMark("");
  ClickItem("alpha");
  auto blue = DarkPalette();
  blue.setColor(QPalette::Highlight, QColor(0x2F, 0x6D, 0xB5));
  blue.setColor(QPalette::HighlightedText, QColor(0x3F, 0x7D, 0xC5));
  for (const auto& palette : {QApplication::palette(), DarkPalette(), blue}) {
    QApplication::setPalette(palette);
    for (QWidget* focus :
         {static_cast<QWidget*>(&Scope()), static_cast<QWidget*>(Results().List().DetailsView())}) {
      focus->setFocus();
      const auto row = Scope().visualRect(IndexOf("alpha"));
      const auto picture = Grabbed(Scope().viewport());
      const auto ground = picture.pixelColor(row.left() - Scope().indentation() + 1, row.top() + 2);
      double dBest = 1;
      for (int x = row.left() - Scope().indentation(); x < row.left(); ++x) {
        for (int y = row.top(); y <= row.bottom(); ++y) {
          dBest = std::max(dBest, Contrast(picture.pixelColor(x, y), ground));
        }
      }
      EXPECT_GE(dBest, kLeastContrast) << ground.name().toStdString();
    }
  }
}

}  // namespace
}  // namespace orvane::console
