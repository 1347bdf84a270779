// Message boxes, mouse pointer and beep, written down instead of shown.
#pragma once

#include <deque>
#include <vector>

#include "platform/user_interface.h"
#include "tests/scenarios/driver.h"

namespace orvane::fakes {

class FakeUserInterface : public platform::UserInterface {
 public:
  platform::MsgBoxResult MsgBox(const platform::Text& sText, platform::MsgBoxButtons buttons,
                                platform::MsgBoxIcon icon, const platform::Text& sTitle) override {
    boxes.push_back({sText, sTitle, buttons});
    icons.push_back(icon);
    if (buttons == platform::MsgBoxButtons::OkOnly) return platform::MsgBoxResult::Ok;
    if (answers.empty()) return answer;
    const auto next = answers.front();
    answers.pop_front();
    return next;
  }
  platform::Long MousePointer() const override { return m_lPointer; }
  void MousePointer(platform::Long lPointer) override {
    m_lPointer = lPointer;
    pointers.push_back(lPointer);
  }
  void Beep() override { ++nBeeps; }
  void DoEvents() override { ++nDoEvents; }

  std::vector<scenarios::BoxSeen> boxes;
  std::vector<platform::MsgBoxIcon> icons;
  std::deque<platform::MsgBoxResult> answers;  ///< to the next questions, one each
  platform::MsgBoxResult answer = platform::MsgBoxResult::Yes;
  std::vector<platform::Long> pointers;
  int nBeeps = 0;
  int nDoEvents = 0;

 private:
  platform::Long m_lPointer = platform::kMousePointerDefault;
};

}  // namespace orvane::fakes
