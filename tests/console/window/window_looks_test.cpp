// What the window looks like: pictures, sizes, palettes, tool tips.
#include <gmock/gmock.h>

#include <QListView>
#include <QMenu>
#include <QTextDocument>
#include <set>

#include "console/look/contrast.h"
#include "console/look/roomy_rows.h"
#include "console/window/toolbar_view.h"
#include "tests/console/look/picture_fixture.h"
#include "tests/console/window/main_window_fixture.h"

namespace orvane::console {
namespace {

class WindowLooksTest : public MainWindowTest {
 protected:
  void ShowTable() {
    ExpandToTables();
    ClickItem("alpha.Catalogs.Machine.Tags");
    ASSERT_TRUE(Toolbar().isVisible());
  }
  QWidget* Button(const char* sKey) { return Toolbar().widgetForAction(ButtonAction(sKey)); }
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
  const auto icon = ButtonAction("MoveFirst")->icon();
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
  EXPECT_GT(RowPicture(*DetailsView()), 16 * 3 / 2);
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
  auto* list = DetailsView();
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

TEST_F(WindowLooksTest, tool_tips_of_rows_show_texts_as_they_are) {
  m_script->expand = [](Services& services, const ScopeItemPtr& item) {
    fakes::AddItem(services, item, "Server", "a", "<b>bold & of many letters</b>", true);
    fakes::AddItem(services, item, "Server", "b", "plain & of many letters", true);
    fakes::AddItem(services, item, "Server", "c", "more than twenty-four letters", true);
    fakes::AddItem(services, item, "Server", "d", std::string(200, 'x') + " &", true);
  };
  ClickExpandMark("");
  const auto* model = DetailsView()->model();
  const auto tip = [&](int iRow) { return model->index(iRow, 0).data(Qt::ToolTipRole).toString(); };
  EXPECT_TRUE(tip(0).contains("&lt;b&gt;bold &amp; of many letters&lt;/b&gt;"));
  EXPECT_TRUE(Qt::mightBeRichText(tip(0)));
  EXPECT_EQ(tip(1), "plain & of many letters");
  EXPECT_EQ(tip(2), "more than twenty-four letters");
  // A long one is broken into lines, which only mark-up is.
  EXPECT_TRUE(Qt::mightBeRichText(tip(3)));
  EXPECT_TRUE(tip(3).contains(" &amp;"));
}

TEST_F(WindowLooksTest, expand_mark_of_a_marked_row_can_be_seen) {
  ClickExpandMark("");
  ClickItem("alpha");
  auto blue = DarkPalette();
  blue.setColor(QPalette::Highlight, QColor(0x2F, 0x6D, 0xB5));
  blue.setColor(QPalette::HighlightedText, QColor(0x3F, 0x7D, 0xC5));
  for (const auto& palette : {QApplication::palette(), DarkPalette(), blue}) {
    QApplication::setPalette(palette);
    for (QWidget* focus : {static_cast<QWidget*>(&Scope()), static_cast<QWidget*>(DetailsView())}) {
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
