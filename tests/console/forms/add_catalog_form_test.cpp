#include <QLabel>

#include "dialogs/add_catalog_dlg.h"
#include "tests/console/forms/forms_fixture.h"

namespace orvane::console {
namespace {

struct add_catalog_form : FormsFixture {
  dialogs::AddCatalogDlg dialog{services};
};

TEST_F(add_catalog_form, ok_follows_the_name) {
  Show(dialog, [](QWidget& window) {
    EXPECT_EQ(window.windowTitle(), "Add Catalog");
    EXPECT_EQ(Focus(), "m_txtName");
    EXPECT_FALSE(Find(window, "m_btnOk").isEnabled());
    Click(window, "m_btnOk");
    EXPECT_TRUE(window.isVisible());
    Type(" ");
    EXPECT_TRUE(Find(window, "m_btnOk").isEnabled());
    Key(Qt::Key_Backspace);
    EXPECT_FALSE(Find(window, "m_btnOk").isEnabled());
    Type("Plant1");
    Click(window, "m_btnOk");
    EXPECT_FALSE(window.isVisible());
  });
  EXPECT_TRUE(dialog.Accepted());
  EXPECT_EQ(dialog.Name().Text(), "Plant1");
}

TEST_F(add_catalog_form, the_sizes_unit_is_read_out_with_its_box) {
  Show(dialog, [](QWidget& window) {
    EXPECT_EQ(Find<QLabel>(window, "Label4").text(), "kilobytes");
    EXPECT_EQ(Find(window, "m_txtSize").accessibleDescription(), "kilobytes");
    EXPECT_EQ(Find(window, "m_txtName").accessibleDescription(), "");
  });
}

TEST_F(add_catalog_form, a_hint_says_what_a_size_makes_of_a_path) {
  Show(dialog, [](QWidget& window) {
    const auto& hint = Find<QLabel>(window, "m_lblHint");
    EXPECT_EQ(hint.text(), "A size takes the place of a path.");
    EXPECT_EQ(Find(window, "m_txtPath").accessibleDescription(), hint.text());
    EXPECT_EQ(hint.x(), Find(window, "m_txtPath").x());
    EXPECT_GT(hint.y(), Find(window, "m_txtSize").geometry().bottom());
  });
}

TEST_F(add_catalog_form, neither_enter_nor_escape_is_bound_to_a_button) {
  Show(dialog, [](QWidget& window) {
    Type("Plant1");
    for (const char* const sControl : {"m_txtName", "m_txtPath", "m_txtSize"}) {
      Find(window, sControl).setFocus();
      ASSERT_EQ(Focus(), sControl);
      for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter}) {
        Key(key);
        ASSERT_TRUE(window.isVisible()) << sControl;
      }
    }
    for (const char* const sControl :
         {"m_txtName", "m_txtPath", "m_txtSize", "m_btnOk", "m_btnCancel"}) {
      Find(window, sControl).setFocus();
      Key(Qt::Key_Escape);
      Key(Qt::Key_Return, Qt::ControlModifier);
      ASSERT_TRUE(window.isVisible()) << sControl;
    }
  });
  EXPECT_FALSE(dialog.Accepted());
}

TEST_F(add_catalog_form, space_and_enter_press_the_button_that_has_the_focus) {
  for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Return, Qt::Key_Enter}) {
    for (const bool bOk : {false, true}) {
      dialogs::AddCatalogDlg fresh(services);
      Show(fresh, [&](QWidget& window) {
        Type("Plant1");
        Find(window, bOk ? "m_btnOk" : "m_btnCancel").setFocus();
        Key(key);
        EXPECT_FALSE(window.isVisible());
      });
      EXPECT_EQ(fresh.Accepted(), bOk);
    }
  }
}

TEST_F(add_catalog_form, access_keys_press_ok_and_cancel) {
  Show(dialog, [](QWidget& window) {
    Type("Plant1");
    EXPECT_TRUE(AccessKey(Qt::Key_C, [&] { return !window.isVisible(); }));
  });
  EXPECT_FALSE(dialog.Accepted());
  Show(dialog, [](QWidget& window) {
    EXPECT_TRUE(AccessKey(Qt::Key_O, [&] { return !window.isVisible(); }));
  });
  EXPECT_TRUE(dialog.Accepted());
}

TEST_F(add_catalog_form, the_size_takes_any_text_without_a_beep) {
  Show(dialog, [this](QWidget& window) {
    Find(window, "m_txtSize").setFocus();
    Type("lots");
    EXPECT_EQ(dialog.Size().Text(), "lots");
    EXPECT_EQ(ui->nBeeps, 0);
  });
}

TEST_F(add_catalog_form, tab_goes_from_top_to_bottom) {
  Show(dialog, [](QWidget&) {
    Type("Plant1");
    for (const char* const sNext :
         {"m_txtPath", "m_txtSize", "m_btnOk", "m_btnCancel", "m_txtName"}) {
      Key(Qt::Key_Tab);
      EXPECT_EQ(Focus(), sNext);
    }
  });
}

TEST_F(add_catalog_form, the_unit_stands_behind_the_size) {
  Show(dialog, [](QWidget& window) {
    const QWidget& size = Find(window, "m_txtSize");
    const QWidget& unit = Find(window, "Label4");
    EXPECT_GT(unit.x(), size.geometry().right());
    EXPECT_LT(unit.x() - size.geometry().right(), 20);
    EXPECT_EQ(unit.geometry().center().y(), size.geometry().center().y());
  });
}

}  // namespace
}  // namespace orvane::console
