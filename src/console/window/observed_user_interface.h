// The user interface as the snap-in is handed it: passes everything on, the failures for the log
// too, and lets the session see that a failure was reported. User-interface thread.
#pragma once

#include <memory>
#include <utility>

#include "platform/failure_log.h"

namespace orvane::console {

class ObservedUserInterface final : public platform::UserInterface, public platform::FailureLog {
 public:
  explicit ObservedUserInterface(std::shared_ptr<platform::UserInterface> ui)
      : m_ui(std::move(ui)) {}

  platform::MsgBoxResult MsgBox(const platform::Text& sText, platform::MsgBoxButtons buttons,
                                platform::MsgBoxIcon icon, const platform::Text& sTitle) override {
    // A snap-in reports a failure in a box of this title; confirmations have others.
    if (buttons == platform::MsgBoxButtons::OkOnly && sTitle == "Error") ++m_lErrorBoxes;
    return m_ui->MsgBox(sText, buttons, icon, sTitle);
  }
  platform::Long MousePointer() const override { return m_ui->MousePointer(); }
  void MousePointer(platform::Long lPointer) override { m_ui->MousePointer(lPointer); }
  void Beep() override { m_ui->Beep(); }
  void DoEvents() override { m_ui->DoEvents(); }
  void Note(const platform::Failure& failure) noexcept override {
    platform::NoteFailure(*m_ui, failure);
  }

  /// Failures reported since this was made.
  platform::Long ErrorBoxes() const noexcept { return m_lErrorBoxes; }

 private:
  std::shared_ptr<platform::UserInterface> m_ui;
  platform::Long m_lErrorBoxes = 0;
};

}  // namespace orvane::console
