// What becomes of the failures of a handler.
#include "snapin/guard.h"

#include <gtest/gtest.h>

#include <new>
#include <stdexcept>
#include <vector>

#include "tests/fakes/user_interface.h"

namespace orvane::snapin {
namespace {

using platform::Failure;

/// A log of failures, as a console keeps one, that saw how many boxes were shown by then.
class Notes : public platform::FailureLog {
 public:
  explicit Notes(const fakes::FakeUserInterface& ui) : m_ui(ui) {}
  void Note(const Failure& failure) noexcept override {
    notes.push_back(failure);
    nBoxesAtNote = m_ui.boxes.size();
  }
  std::vector<Failure> notes;
  std::size_t nBoxesAtNote = 0;

 private:
  const fakes::FakeUserInterface& m_ui;
};

class guard : public testing::Test {
 protected:
  guard() {
    services.ui = ui;
    services.failures = log;
  }
  void ExpectErrorBox(const platform::Text& sText) const {
    ASSERT_EQ(ui->boxes.size(), 1U);
    EXPECT_EQ(ui->boxes[0].sText, sText);
    EXPECT_EQ(ui->boxes[0].sTitle, "Error");
    EXPECT_EQ(ui->boxes[0].buttons, platform::MsgBoxButtons::OkOnly);
    EXPECT_EQ(ui->icons[0], platform::MsgBoxIcon::None);
  }
  std::shared_ptr<fakes::FakeUserInterface> ui = std::make_shared<fakes::FakeUserInterface>();
  std::shared_ptr<Notes> log = std::make_shared<Notes>(*ui);
  platform::Services services;
};

TEST_F(guard, a_body_without_a_failure_shows_nothing) {
  EXPECT_TRUE(Guarded(services, [] {}));
  EXPECT_TRUE(ui->boxes.empty());
  EXPECT_TRUE(log->notes.empty());
}

TEST_F(guard, a_failure_is_noted_once_and_then_shown) {
  EXPECT_FALSE(
      Guarded(services, [] { throw Failure(3805, "Correct it.", "engine", 7, "SELECT x"); }));
  ExpectErrorBox("Correct it.");
  ASSERT_EQ(log->notes.size(), 1U);
  EXPECT_EQ(log->nBoxesAtNote, 0U);
  EXPECT_EQ(log->notes[0].Number(), 3805);
  EXPECT_EQ(log->notes[0].Source(), "engine");
  EXPECT_EQ(log->notes[0].NativeError(), 7);
  EXPECT_EQ(log->notes[0].SqlText(), "SELECT x");
}

TEST_F(guard, an_exception_of_another_kind_is_noted_and_shown_with_its_own_words) {
  EXPECT_FALSE(Guarded(services, [] { throw std::runtime_error("x"); }));
  ExpectErrorBox("x");
  ASSERT_EQ(log->notes.size(), 1U);
  EXPECT_EQ(log->notes[0].Number(), platform::failure::kComponent);
  EXPECT_EQ(log->notes[0].Source(), "snapin");
}

TEST_F(guard, memory_that_runs_out_is_told_in_a_sentence) {
  EXPECT_FALSE(Guarded(services, [] { throw std::bad_alloc(); }));
  ExpectErrorBox("There is not enough memory for this; close other programs and try again.");
  ASSERT_EQ(log->notes.size(), 1U);
  EXPECT_EQ(log->notes[0].Number(), platform::failure::kStorage);
}

TEST_F(guard, shows_without_a_log_too) {
  services.failures.reset();
  EXPECT_FALSE(Guarded(services, [] { throw Failure(5, "Correct it."); }));
  ExpectErrorBox("Correct it.");
}

TEST_F(guard, a_suppressed_step_fails_silently) {
  bool bReached = false;
  EXPECT_NO_THROW(Suppressed([&] {
    bReached = true;
    throw std::runtime_error("x");
  }));
  EXPECT_TRUE(bReached);
}

}  // namespace
}  // namespace orvane::snapin
