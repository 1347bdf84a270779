#include "dialogs/name_guard.h"

#include "tests/dialogs/dialog_fixture.h"

namespace orvane::dialogs {
namespace {

struct name_guard : DialogFixture {
  fakes::FakeTextBox txt;
  fakes::FakeButton btn;
  NameGuard guard{txt, btn};
  platform::Subscription change = txt.OnChange([this] { guard.Change(); });
};

TEST_F(name_guard, ok_is_disabled_until_a_character_is_typed) {
  EXPECT_FALSE(btn.Enabled());
  txt.Type("a");
  EXPECT_TRUE(btn.Enabled());
}

TEST_F(name_guard, deleting_the_last_character_disables_ok_again) {
  txt.Text("a");
  txt.Text("");
  EXPECT_FALSE(btn.Enabled());
}

TEST_F(name_guard, a_name_of_blanks_enables_ok) {
  txt.Text("   ");
  EXPECT_TRUE(btn.Enabled());
}

}  // namespace
}  // namespace orvane::dialogs
