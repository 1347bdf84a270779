// The drop-down lists of the forms, under the style that the program has.
#include <QAbstractItemView>
#include <QComboBox>
#include <QPointer>
#include <QWheelEvent>

#include "console/look/control_style.h"
#include "tests/console/forms/forms_fixture.h"
#include "tests/fakes/until.h"

namespace orvane::console {
namespace {

struct drop_down : FormsFixture {
  drop_down() { QApplication::setStyle(new ControlStyle); }
  ~drop_down() override { QApplication::setStyle("Fusion"); }

  std::shared_ptr<platform::Form> builder = services.forms->Load("TableQueryDlg");
  platform::DropDownList& list = builder->DropDownList("m_cmbSortCol");
};

TEST_F(drop_down, shows_fifteen_entries_under_its_box) {
  for (int i = 0; i < 100; ++i) list.Add("Column" + std::to_string(i), 0);
  Show(*builder, [](QWidget& window) {
    auto& box = Find<QComboBox>(window, "m_cmbSortCol");
    QTest::mouseClick(&box, Qt::LeftButton);
    const auto* const view = box.view();
    ASSERT_TRUE(tests::Until([&] { return view->isVisible(); }));
    const int iRow = view->sizeHintForRow(0);
    EXPECT_LE(view->viewport()->height(), 15 * iRow);
    EXPECT_GT(view->viewport()->height(), 14 * iRow);
    box.hidePopup();
  });
}

TEST_F(drop_down, a_long_name_is_cut_in_box_and_list_and_told_whole) {
  const std::string sLong = std::string(200, 'x') + "<b>";
  list.Add(sLong, 0);
  list.ListIndex(0);
  Show(*builder, [&](QWidget& window) {
    auto& box = Find<QComboBox>(window, "m_cmbSortCol");
    EXPECT_LT(box.width(), window.width());
    const auto sTold = box.itemData(0, Qt::ToolTipRole).toString();
    EXPECT_TRUE(sTold.contains("&lt;b&gt;")) << sTold.toStdString();
    QTest::mouseClick(&box, Qt::LeftButton);
    ASSERT_TRUE(tests::Until([&] { return box.view()->isVisible(); }));
    EXPECT_EQ(box.view()->textElideMode(), Qt::ElideMiddle);
    EXPECT_LE(box.view()->window()->width(), box.width() + 4);
    box.hidePopup();
    // The box shows the end of the name too.
    const QImage shown = box.grab().toImage();
    list.Add(std::string(200, 'x') + "<i>", 0);
    list.ListIndex(1);
    EXPECT_FALSE(box.grab().toImage() == shown);
  });
}

TEST_F(drop_down, the_wheel_changes_it_only_while_it_has_the_focus) {
  for (const char* const sColumn : {"Tag", "Value", "Status"}) list.Add(sColumn, 0);
  list.ListIndex(0);
  Show(*builder, [&](QWidget& window) {
    auto& box = Find<QComboBox>(window, "m_cmbSortCol");
    const auto turn = [&] {
      const QPointF at = box.rect().center();
      QWheelEvent wheel(at, box.mapToGlobal(at), {}, {0, -120}, Qt::NoButton, Qt::NoModifier,
                        Qt::NoScrollPhase, false);
      QApplication::sendEvent(&box, &wheel);
    };
    turn();
    EXPECT_EQ(list.ListIndex(), 0);
    box.setFocus();
    turn();
    EXPECT_EQ(list.ListIndex(), 1);
  });
}

}  // namespace
}  // namespace orvane::console
