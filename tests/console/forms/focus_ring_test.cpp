// The focus can be seen on every control that takes it, however it came there, light and dark.
#include "console/look/control_style.h"
#include "dialogs/add_catalog_dlg.h"
#include "dialogs/options_dlg.h"
#include "dialogs/query_dlg.h"
#include "dialogs/table_query_dlg.h"
#include "tests/console/forms/forms_fixture.h"
#include "tests/console/look/seen_focus.h"

namespace orvane::console {
namespace {

class focus_ring : public FormsFixture, public testing::WithParamInterface<bool> {
 protected:
  focus_ring() {
    QApplication::setStyle(new ControlStyle);
    if (GetParam()) QApplication::setPalette(DarkPalette());
  }
  ~focus_ring() override {
    QApplication::setPalette(m_paletteBefore);
    QApplication::setStyle("Fusion");
  }

  template <class Dialog>
  void Check(Dialog& dialog) {
    Show(dialog, [](QWidget& window) { ExpectFocusSeen(window, 4); });
  }

  const QPalette m_paletteBefore = QApplication::palette();
};

TEST_P(focus_ring, can_be_seen_in_the_options) {
  dialogs::OptionsDlg dialog(services);
  Check(dialog);
}

TEST_P(focus_ring, can_be_seen_in_the_query) {
  dialogs::QueryDlg dialog(services);
  dialog.Name().Text("Means");
  Check(dialog);
}

TEST_P(focus_ring, can_be_seen_in_the_new_catalog) {
  dialogs::AddCatalogDlg dialog(services);
  dialog.Name().Text("Plant1");
  Check(dialog);
}

TEST_P(focus_ring, can_be_seen_in_the_query_builder) {
  dialogs::TableQueryDlg dialog(services);
  dialog.Columns({"Tag", "Timestamp", "Value"});
  dialog.AddSelectedColumn("Tag");
  dialog.UpdateAvailableColumns();
  dialog.UpdateSortColumns();
  dialog.SetSortingCriteria("Timestamp", false);
  dialog.UpdateButtons();
  Check(dialog);
}

TEST_P(focus_ring, can_be_seen_in_the_find_bar) {
  dialogs::QueryDlg dialog(services);
  Show(dialog, [](QWidget& window) {
    Find(window, "m_sqlView").setFocus();
    Key(Qt::Key_F, Qt::ControlModifier);
    for (const char* const sControl :
         {"m_btnFindPrevious", "m_btnFindNext", "m_btnFindClose", "m_chkMatchCase"}) {
      QWidget& control = Find(window, sControl);
      Find(window, "m_txtFind").setFocus();
      const QImage without = SeenOf(control);
      control.setFocus(Qt::OtherFocusReason);
      EXPECT_GE(ChangedDots(without, SeenOf(control)), control.width()) << sControl;
    }
  });
}

INSTANTIATE_TEST_SUITE_P(looks, focus_ring, testing::Bool(),
                         [](const auto& dark) { return dark.param ? "dark" : "light"; });

}  // namespace
}  // namespace orvane::console
