// What becomes of the failures of a handler.
#include "snapin/guard.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <vector>

#include "tests/fakes/user_interface.h"

namespace orvane::snapin {
namespace {

using platform::Failure;

/// A user interface that keeps a log of failures, as a console does.
class NotingUserInterface : public fakes::FakeUserInterface, public platform::FailureLog {
 public:
  void Note(const Failure& failure) noexcept override {
    notes.push_back(failure);
    nBoxesAtNote = boxes.size();
  }
  std::vector<Failure> notes;
  std::size_t nBoxesAtNote = 0;
};

template <class Ui>
void ExpectErrorBox(const Ui& ui, const platform::Text& sText) {
  ASSERT_EQ(ui.boxes.size(), 1U);
  EXPECT_EQ(ui.boxes[0].sText, sText);
  EXPECT_EQ(ui.boxes[0].sTitle, "Error");
  EXPECT_EQ(ui.boxes[0].buttons, platform::MsgBoxButtons::OkOnly);
  EXPECT_EQ(ui.icons[0], platform::MsgBoxIcon::None);
}

TEST(guard, a_body_without_a_failure_shows_nothing) {
  NotingUserInterface ui;
  EXPECT_TRUE(Guarded(ui, [] {}));
  EXPECT_TRUE(ui.boxes.empty());
  EXPECT_TRUE(ui.notes.empty());
}

TEST(guard, a_failure_is_noted_once_and_then_shown) {
  NotingUserInterface ui;
  EXPECT_FALSE(Guarded(ui, [] { throw Failure(3805, "Mend it.", "engine", 7, "SELECT x"); }));
  ExpectErrorBox(ui, "Mend it.");
  ASSERT_EQ(ui.notes.size(), 1U);
  EXPECT_EQ(ui.nBoxesAtNote, 0U);
  EXPECT_EQ(ui.notes[0].Number(), 3805);
  EXPECT_EQ(ui.notes[0].Source(), "engine");
  EXPECT_EQ(ui.notes[0].NativeError(), 7);
  EXPECT_EQ(ui.notes[0].SqlText(), "SELECT x");
}

TEST(guard, an_exception_of_another_kind_is_noted_and_shown_with_its_own_words) {
  NotingUserInterface ui;
  EXPECT_FALSE(Guarded(ui, [] { throw std::runtime_error("x"); }));
  ExpectErrorBox(ui, "x");
  ASSERT_EQ(ui.notes.size(), 1U);
  EXPECT_EQ(ui.notes[0].Number(), platform::failure::kComponent);
  EXPECT_EQ(ui.notes[0].Source(), "snapin");
}

TEST(guard, shows_without_a_log_too) {
  fakes::FakeUserInterface ui;
  EXPECT_FALSE(Guarded(ui, [] { throw Failure(5, "Mend it."); }));
  ExpectErrorBox(ui, "Mend it.");
}

TEST(guard, a_suppressed_step_fails_silently) {
  bool bReached = false;
  EXPECT_NO_THROW(Suppressed([&] {
    bReached = true;
    throw std::runtime_error("x");
  }));
  EXPECT_TRUE(bReached);
}

}  // namespace
}  // namespace orvane::snapin
