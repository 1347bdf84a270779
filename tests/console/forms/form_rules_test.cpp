// What every form on widgets promises to the one who drives it, whichever dialog it is.
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>

#include "console/forms/legible_color.h"
#include "tests/console/forms/forms_fixture.h"

namespace orvane::console {
namespace {

using platform::Color;
using platform::Failure;
namespace failure = platform::failure;

struct form_rules : FormsFixture {
  template <class Call>
  static platform::Long FailureNumber(const Call& call) {
    try {
      call();
    } catch (const Failure& caught) {
      EXPECT_FALSE(caught.Description().empty());
      return caught.Number();
    }
    return 0;
  }

  std::shared_ptr<platform::Form> options = services.forms->Load("OptionsDlg");
  std::shared_ptr<platform::Form> query = services.forms->Load("QueryDlg");
  std::shared_ptr<platform::Form> builder = services.forms->Load("TableQueryDlg");
};

TEST_F(form_rules, an_unknown_form_is_not_found) {
  EXPECT_EQ(FailureNumber([this] { services.forms->Load("OtherDlg"); }), failure::kItemNotFound);
}

TEST_F(form_rules, a_control_is_found_by_name_and_kind_only) {
  EXPECT_EQ(FailureNumber([this] { options->TextBox("m_txtOther"); }), failure::kItemNotFound);
  EXPECT_EQ(FailureNumber([this] { options->TextBox("m_btnOK"); }), failure::kItemNotFound);
  EXPECT_EQ(FailureNumber([this] { options->Button("m_btnOk"); }), failure::kItemNotFound);
  EXPECT_EQ(FailureNumber([this] { options->Caption("m_txtMaxRows"); }), failure::kItemNotFound);
  EXPECT_EQ(FailureNumber([this] { options->CheckBox("m_btnOK"); }), failure::kItemNotFound);
  EXPECT_EQ(FailureNumber([this] { options->DropDownList("m_lv"); }), failure::kItemNotFound);
  EXPECT_EQ(FailureNumber([this] { builder->ListView("m_cmbSortCol"); }), failure::kItemNotFound);
  EXPECT_EQ(FailureNumber([this] { options->DefaultButton("m_x"); }), failure::kItemNotFound);
  EXPECT_EQ(FailureNumber([this] { options->CancelButton("m_x"); }), failure::kItemNotFound);
  EXPECT_EQ(&options->TextBox("m_txtMaxRows"), &options->TextBox("m_txtMaxRows"));
}

TEST_F(form_rules, setting_a_text_raises_the_change_also_when_it_is_the_same) {
  for (platform::TextBox* const txt :
       {&options->TextBox("m_txtMaxRows"), &query->TextBox("m_txtSqlStatement"),
        &builder->TextBox("m_txtFilterCond")}) {
    int nChanges = 0;
    const auto subscription = txt->OnChange([&] { ++nChanges; });
    txt->Text("a");
    txt->Text("a");
    txt->Text("");
    txt->Text("");
    EXPECT_EQ(nChanges, 4);
  }
}

TEST_F(form_rules, a_text_set_within_its_own_change_is_the_one_that_stays) {
  for (platform::TextBox* const txt :
       {&options->TextBox("m_txtMaxRows"), &query->TextBox("m_txtSqlStatement"),
        &builder->TextBox("m_txtFilterCond")}) {
    const auto subscription = txt->OnChange([&] {
      if (txt->Text() != "good") txt->Text("good");
    });
    txt->Text("bad");
    EXPECT_EQ(txt->Text(), "good");
  }
}

TEST_F(form_rules, checking_raises_the_click_only_when_the_state_changes) {
  platform::CheckBox& chk = builder->CheckBox("m_chkDefaultFilterCond");
  int nClicks = 0;
  const auto subscription = chk.OnClick([&] { ++nClicks; });
  chk.Checked(false);
  EXPECT_EQ(nClicks, 0);
  chk.Checked(true);
  chk.Checked(true);
  EXPECT_EQ(nClicks, 1);
  chk.Checked(false);
  EXPECT_EQ(nClicks, 2);
}

TEST_F(form_rules, captions_and_titles_are_read_back_as_they_were_set) {
  query->Title("A & B [*]");
  EXPECT_EQ(query->Title(), "A & B [*]");
  query->Button("m_btnOk").Label("&Take && keep");
  EXPECT_EQ(query->Button("m_btnOk").Label(), "&Take && keep");
  query->Caption("m_lblName").Label("&Name:");
  EXPECT_EQ(query->Caption("m_lblName").Label(), "&Name:");
}

TEST_F(form_rules, a_labels_access_key_goes_to_its_box) {
  query->Caption("m_lblSqlStatement").Label("&Statement:");
  Show(*query, [](QWidget&) {
    Key(Qt::Key_S, Qt::AltModifier);
    EXPECT_EQ(Focus(), "m_sqlView");
  });
}

TEST_F(form_rules, nothing_is_chosen_in_a_drop_down_list_until_someone_chooses) {
  platform::DropDownList& cmb = builder->DropDownList("m_cmbSortCol");
  EXPECT_EQ(cmb.ListIndex(), -1);
  cmb.Add("one", 11);
  cmb.Add("two", 22);
  EXPECT_EQ(cmb.ListIndex(), -1);
  EXPECT_EQ(cmb.Count(), 2);
  EXPECT_EQ(cmb.Item(1), "two");
  EXPECT_EQ(cmb.ItemData(1), 22);
  cmb.ListIndex(1);
  cmb.Add("three", 33);
  EXPECT_EQ(cmb.ListIndex(), 1);
  cmb.ListIndex(-1);
  EXPECT_EQ(cmb.ListIndex(), -1);
  EXPECT_EQ(FailureNumber([&] { cmb.ListIndex(3); }), failure::kOutOfRange);
  EXPECT_EQ(FailureNumber([&] { cmb.ListIndex(-2); }), failure::kOutOfRange);
  EXPECT_EQ(FailureNumber([&] { cmb.Item(-1); }), failure::kOutOfRange);
  EXPECT_EQ(FailureNumber([&] { cmb.ItemData(3); }), failure::kOutOfRange);
  cmb.Clear();
  EXPECT_EQ(cmb.Count(), 0);
  EXPECT_EQ(cmb.ListIndex(), -1);
}

TEST_F(form_rules, a_list_counts_from_one_and_calls_nobody_for_what_it_is_told) {
  platform::FormListView& lv = builder->ListView("m_lvSelCols");
  int nClicks = 0;
  const auto subscription = lv.OnClick([&] { ++nClicks; });
  lv.Add("a");
  lv.Add("b");
  lv.Add("c");
  lv.Selected(2, true);
  EXPECT_FALSE(lv.Selected(1));
  EXPECT_TRUE(lv.Selected(2));
  lv.Remove(1);
  EXPECT_EQ(lv.Count(), 2);
  EXPECT_EQ(lv.Item(1), "b");
  EXPECT_TRUE(lv.Selected(1));
  lv.Selected(1, false);
  EXPECT_FALSE(lv.Selected(1));
  for (const platform::Long lOutside : {0, 3}) {
    EXPECT_EQ(FailureNumber([&] { lv.Item(lOutside); }), failure::kOutOfRange);
    EXPECT_EQ(FailureNumber([&] { lv.Selected(lOutside); }), failure::kOutOfRange);
    EXPECT_EQ(FailureNumber([&] { lv.Remove(lOutside); }), failure::kOutOfRange);
  }
  lv.Clear();
  EXPECT_EQ(lv.Count(), 0);
  EXPECT_EQ(nClicks, 0);
}

TEST_F(form_rules, a_locked_box_refuses_the_user_but_not_its_owner) {
  platform::TextBox& sql = query->TextBox("m_txtSqlStatement");
  platform::TextBox& name = query->TextBox("m_txtName");
  sql.Text("a");
  name.Text("b");
  sql.Locked(true);
  name.Locked(true);
  Show(*query, [&](QWidget& window) {
    Type("x");
    Find(window, "m_sqlView").setFocus();
    Type("x");
    EXPECT_EQ(name.Text(), "b");
    EXPECT_EQ(sql.Text(), "a");
    sql.Text("c");
    EXPECT_EQ(sql.Text(), "c");
  });
  EXPECT_TRUE(sql.Locked());
}

TEST_F(form_rules, enabled_says_what_it_was_told_even_while_the_form_is_hidden) {
  platform::Button& btn = query->Button("m_btnOk");
  EXPECT_TRUE(btn.Enabled());
  btn.Enabled(false);
  EXPECT_FALSE(btn.Enabled());
}

TEST_F(form_rules, a_focus_asked_for_while_hidden_is_there_when_the_form_opens) {
  query->TextBox("m_txtSqlStatement").SetFocus();
  Show(*query, [](QWidget&) { EXPECT_EQ(Focus(), "m_sqlView"); });
  Show(*query, [](QWidget&) { EXPECT_EQ(Focus(), "m_txtName"); });
}

TEST_F(form_rules, the_colour_is_read_back_exactly) {
  platform::TextBox& txt = builder->TextBox("m_txtFilterCond");
  EXPECT_EQ(txt.ForeColor(), (Color{0, 0, 0}));
  txt.ForeColor({128, 128, 128});
  EXPECT_EQ(txt.ForeColor(), (Color{128, 128, 128}));
  txt.ForeColor({0, 0, 0});
  EXPECT_EQ(txt.ForeColor(), (Color{0, 0, 0}));
}

TEST_F(form_rules, colours_stay_legible_on_a_dark_desktop) {
  QPalette dark;
  dark.setColor(QPalette::Base, QColor(0x1b, 0x1e, 0x20));
  dark.setColor(QPalette::Text, QColor(0xee, 0xee, 0xee));
  EXPECT_EQ(LegibleColor({0, 0, 0}, dark), QColor(0xee, 0xee, 0xee));
  EXPECT_EQ(LegibleColor({128, 128, 128}, dark), QColor(128, 128, 128));
  EXPECT_EQ(LegibleColor({20, 20, 20}, dark).rgb(), QColor(235, 235, 235).rgb());
  QPalette grey = dark;
  grey.setColor(QPalette::Base, QColor(100, 100, 100));
  EXPECT_EQ(LegibleColor({128, 128, 128}, grey), QColor(0xee, 0xee, 0xee));
}

TEST_F(form_rules, a_text_follows_the_desktop_when_it_turns_dark) {
  builder->TextBox("m_txtFilterCond").ForeColor({20, 20, 20});
  const QPalette before = QApplication::palette();
  Show(*builder, [&](QWidget& window) {
    auto& txt = Find<QPlainTextEdit>(window, "m_txtFilterCond");
    EXPECT_EQ(txt.palette().color(QPalette::Text).rgb(), QColor(20, 20, 20).rgb());
    QPalette dark(QColor(0x31, 0x36, 0x3b));
    dark.setColor(QPalette::Base, QColor(0x1b, 0x1e, 0x20));
    QApplication::setPalette(dark);
    QApplication::processEvents();
    EXPECT_EQ(txt.palette().color(QPalette::Text).rgb(), QColor(235, 235, 235).rgb());
  });
  QApplication::setPalette(before);
}

TEST_F(form_rules, a_failure_of_a_handler_ends_the_form_and_reaches_who_showed_it) {
  const auto subscription = options->Button("m_btnOK").OnClick(
      [] { throw Failure(failure::kTimeout, "The server did not answer; try again."); });
  EXPECT_EQ(FailureNumber([this] {
              Show(*options, [](QWidget& window) {
                Click(window, "m_btnOK");
                EXPECT_FALSE(window.isVisible());
              });
            }),
            failure::kTimeout);
  Show(*options, [](QWidget& window) { EXPECT_TRUE(window.isVisible()); });
}

TEST_F(form_rules, a_failure_of_a_handler_called_by_the_owner_is_thrown_to_him_at_once) {
  const auto subscription = options->TextBox("m_txtMaxRows").OnChange([] {
    throw Failure(failure::kTypeMismatch, "Type a number.");
  });
  EXPECT_EQ(FailureNumber([this] { options->TextBox("m_txtMaxRows").Text("x"); }),
            failure::kTypeMismatch);
}

TEST_F(form_rules, the_hourglass_is_laid_aside_while_a_form_is_shown) {
  QApplication::setOverrideCursor(Qt::WaitCursor);
  QApplication::setOverrideCursor(Qt::BusyCursor);
  Show(*options, [](QWidget&) { EXPECT_EQ(QApplication::overrideCursor(), nullptr); });
  ASSERT_NE(QApplication::overrideCursor(), nullptr);
  EXPECT_EQ(QApplication::overrideCursor()->shape(), Qt::BusyCursor);
  QApplication::restoreOverrideCursor();
  ASSERT_NE(QApplication::overrideCursor(), nullptr);
  EXPECT_EQ(QApplication::overrideCursor()->shape(), Qt::WaitCursor);
  QApplication::restoreOverrideCursor();
  EXPECT_EQ(QApplication::overrideCursor(), nullptr);
}

TEST_F(form_rules, a_form_keeps_the_size_that_the_user_gave_it) {
  QSize given;
  Show(*query, [&](QWidget& window) {
    given = window.size() + QSize(60, 40);
    window.resize(given);
  });
  Show(*query, [&](QWidget& window) { EXPECT_EQ(window.size(), given); });
}

TEST_F(form_rules, a_form_outlives_its_owner_and_the_forms) {
  owner = std::make_unique<QWidget>();
  owner->show();
  Show(*options, [](QWidget&) {});
  owner.reset();
  services.forms.reset();
  options->TextBox("m_txtMaxRows").Text("7");
  Show(*options,
       [](QWidget& window) { EXPECT_EQ(Find<QLineEdit>(window, "m_txtMaxRows").text(), "7"); });
}

TEST_F(form_rules, hiding_a_form_that_is_not_shown_does_nothing) {
  options->Hide();
  Show(*options, [this](QWidget& window) {
    options->Hide();
    EXPECT_FALSE(window.isVisible());
    options->Hide();
  });
}

TEST_F(form_rules, a_form_dies_in_peace_with_text_selection_and_focus_in_it) {
  int nCalls = 0;
  const auto subscription = builder->ListView("m_lvSelCols").OnClick([&] { ++nCalls; });
  builder->ListView("m_lvSelCols").Add("a");
  builder->ListView("m_lvSelCols").Selected(1, true);
  builder->TextBox("m_txtFilterCond").Text("x");
  builder.reset();
  query.reset();
  EXPECT_EQ(nCalls, 0);
}

}  // namespace
}  // namespace orvane::console
