// Where forms stand: whole and on the screen, and where they stood before.
#include <QScreen>

#include "dialogs/query_dlg.h"
#include "dialogs/table_query_dlg.h"
#include "tests/console/forms/forms_fixture.h"

namespace orvane::console {
namespace {

struct form_places : FormsFixture {
  void MakeOwner(const QRect& place) {
    owner = std::make_unique<QWidget>();
    owner->setGeometry(place);
    owner->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(owner.get()));
  }
  /// A new dialog each time, as the commands make them.
  QRect ShownAt(const std::function<void(QWidget&)>& user = {}) {
    QRect place;
    dialogs::QueryDlg dialog(services);
    Show(dialog, [&](QWidget& window) {
      place = window.geometry();
      if (user) user(window);
    });
    return place;
  }
};

TEST_F(form_places, a_new_form_is_centred_over_its_owner) {
  MakeOwner({120, 60, 900, 640});
  Show(*services.forms->Load("OptionsDlg"), [this](QWidget& window) {
    EXPECT_TRUE(window.isModal());
    EXPECT_NEAR(window.frameGeometry().center().x(), owner->frameGeometry().center().x(), 2);
    EXPECT_NEAR(window.frameGeometry().center().y(), owner->frameGeometry().center().y(), 2);
    EXPECT_EQ(window.windowHandle()->transientParent(), owner->windowHandle());
  });
}

TEST_F(form_places, a_form_is_not_placed_off_the_screen) {
  MakeOwner({-300, -300, 320, 320});
  Show(*services.forms->Load("OptionsDlg"), [](QWidget& window) {
    EXPECT_TRUE(window.screen()->availableGeometry().contains(window.frameGeometry()));
  });
}

TEST_F(form_places, a_form_that_comes_back_stands_where_it_stood_and_is_as_large) {
  MakeOwner({120, 60, 900, 640});
  const QRect left(40, 50, 600, 500);
  const QRect first = ShownAt([&](QWidget& window) { window.setGeometry(left); });
  EXPECT_NE(first, left);
  EXPECT_EQ(ShownAt(), left);
  EXPECT_EQ(ShownAt(), left);
}

TEST_F(form_places, a_form_moves_along_with_its_owner) {
  MakeOwner({20, 20, 900, 640});
  ShownAt([](QWidget& window) { window.setGeometry(40, 50, 600, 500); });
  owner->move(owner->pos() + QPoint(100, 60));
  EXPECT_EQ(ShownAt(), QRect(140, 110, 600, 500));
}

TEST_F(form_places, a_form_that_stood_off_the_screen_comes_back_onto_it) {
  MakeOwner({120, 60, 900, 640});
  ShownAt([](QWidget& window) { window.setGeometry(1300, 700, 600, 500); });
  ShownAt([](QWidget& window) {
    EXPECT_TRUE(window.screen()->availableGeometry().contains(window.frameGeometry()));
    window.resize(5000, 5000);
  });
  ShownAt([](QWidget& window) {
    EXPECT_TRUE(window.screen()->availableGeometry().contains(window.frameGeometry()));
  });
}

TEST_F(form_places, each_form_has_a_place_of_its_own) {
  MakeOwner({120, 60, 900, 640});
  ShownAt([](QWidget& window) { window.setGeometry(40, 50, 600, 500); });
  Show(*services.forms->Load("TableQueryDlg"),
       [](QWidget& window) { EXPECT_NE(window.pos(), QPoint(40, 50)); });
}

TEST_F(form_places, a_form_cannot_be_made_smaller_than_what_it_holds) {
  MakeOwner({120, 60, 900, 640});
  Show(*services.forms->Load("TableQueryDlg"), [](QWidget& window) {
    window.resize(50, 50);
    QApplication::processEvents();
    EXPECT_GE(window.height(), Find(window, "m_lvAvailableCols").minimumSizeHint().height());
    EXPECT_FALSE(Find(window, "m_chkNoSortingCriteria").visibleRegion().isEmpty());
  });
}

}  // namespace
}  // namespace orvane::console
