// The focus can be seen on every control that takes it, however it came there, light and dark.
#include <QImage>

#include "console/look/contrast.h"
#include "console/look/control_style.h"
#include "dialogs/add_catalog_dlg.h"
#include "dialogs/options_dlg.h"
#include "dialogs/query_dlg.h"
#include "dialogs/table_query_dlg.h"
#include "tests/console/forms/forms_fixture.h"

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

  /// The controls that can have the focus, in the order of Tab.
  static std::vector<QWidget*> Controls() {
    std::vector<QWidget*> controls;
    QWidget* const first = QApplication::focusWidget();
    do {
      controls.push_back(QApplication::focusWidget());
      Key(Qt::Key_Tab);
    } while (QApplication::focusWidget() != first);
    return controls;
  }

  static QImage Picture(QWidget& widget) {
    QApplication::processEvents();
    return widget.grab().toImage().convertToFormat(QImage::Format_RGB32);
  }

  /// How many dots can be told from what they were.
  static int Changed(const QImage& before, const QImage& after) {
    int nChanged = 0;
    for (int y = 0; y < before.height(); ++y) {
      for (int x = 0; x < before.width(); ++x) {
        if (Contrast(before.pixelColor(x, y), after.pixelColor(x, y)) >= kLeastContrast) ++nChanged;
      }
    }
    return nChanged;
  }

  template <class Dialog>
  void Check(Dialog& dialog) {
    Show(dialog, [](QWidget& window) {
      const auto controls = Controls();
      EXPECT_GE(controls.size(), 4U);
      for (QWidget* const control : controls) {
        QWidget* const other = control == controls[0] ? controls[1] : controls[0];
        other->setFocus(Qt::OtherFocusReason);
        const QImage without = Picture(window);
        control->setFocus(Qt::MouseFocusReason);
        const QImage with = Picture(window);
        const QRect place(control->mapTo(&window, QPoint()), control->size());
        // At least a line under the whole of it, or around its text.
        EXPECT_GE(Changed(without.copy(place), with.copy(place)), control->width())
            << control->objectName().toStdString();
      }
    });
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
      const QImage without = Picture(control);
      control.setFocus(Qt::OtherFocusReason);
      EXPECT_GE(Changed(without, Picture(control)), control.width()) << sControl;
    }
  });
}

INSTANTIATE_TEST_SUITE_P(looks, focus_ring, testing::Bool(),
                         [](const auto& dark) { return dark.param ? "dark" : "light"; });

}  // namespace
}  // namespace orvane::console
