// Message box, mouse pointer, beep and pending events on the toolkit: the UserInterface that
// components are handed. Failures for the log go to the one it was made with. User-interface
// thread.
#pragma once

#include <memory>
#include <utility>

#include "platform/failure_log.h"
#include "platform/user_interface.h"

namespace orvane::console {

class MessageBoxes : public platform::UserInterface, public platform::FailureLog {
 public:
  /// Without a log, failures are not noted.
  explicit MessageBoxes(std::shared_ptr<platform::FailureLog> log = {}) : m_log(std::move(log)) {}
  /// Restores the mouse pointer.
  ~MessageBoxes() override;

  /// Shows the box over the window in front, with the pointer as it is without MousePointer. The
  /// text is plain text. Escape and the window's own button answer Ok, or No. While a
  /// MessageBoxSuppression lives, nothing is shown and the first button is the answer.
  platform::MsgBoxResult MsgBox(const platform::Text& sText, platform::MsgBoxButtons buttons,
                                platform::MsgBoxIcon icon, const platform::Text& sTitle) override;
  platform::Long MousePointer() const override { return m_lPointer; }
  /// Any number but 0 lays a shape over the whole program, replacing the one laid before; 0 takes
  /// it away.
  void MousePointer(platform::Long lPointer) override;
  void Beep() override;
  void DoEvents() override;
  /// Notes nothing while boxes are kept from being shown.
  void Note(const platform::Failure& failure) noexcept override;

 private:
  friend class MessageBoxSuppression;

  std::shared_ptr<platform::FailureLog> m_log;
  platform::Long m_lPointer = platform::kMousePointerDefault;
  int m_iSuppressions = 0;
};

/// Keeps boxes from being shown while it lives: for asking a snap-in what it would save, without a
/// word to the user.
class MessageBoxSuppression {
 public:
  /// The boxes must outlive this.
  explicit MessageBoxSuppression(MessageBoxes& boxes);
  MessageBoxSuppression(const MessageBoxSuppression&) = delete;
  MessageBoxSuppression& operator=(const MessageBoxSuppression&) = delete;
  ~MessageBoxSuppression();

 private:
  MessageBoxes& m_boxes;
};

}  // namespace orvane::console
