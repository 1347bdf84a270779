// The program on its screen, seen from the thread of whoever uses it: the real host and window are
// started in this process, live on the user-interface thread, and are only ever looked at from
// outside. Waits are for conditions, looked at whenever the program has nothing to do.
#pragma once

#include <QApplication>
#include <QDialog>
#include <QSettings>
#include <functional>
#include <optional>
#include <stdexcept>

#include "console/app/host.h"
#include "tests/console/whole_job/x_input.h"

class QAbstractButton;
class QAbstractItemView;

namespace orvane::console {

/// The story cannot go on; says why.
class Stopped : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

class Stage {
 public:
  using Text = platform::Text;
  using Condition = std::function<bool()>;

  Stage(const std::string& sDisplay, std::filesystem::path registry);
  ~Stage();
  Stage(const Stage&) = delete;
  Stage& operator=(const Stage&) = delete;

  /// Runs the story on a thread of its own, this one being the user interface's, until it ends.
  /// Returns why it stopped; empty when it went through.
  Text Play(const std::function<void()>& story);

  // All below is for the story's thread.

  /// Does what the program does when it is started, and when it ends.
  void StartProgram();
  void EndProgram();

  /// Asks something on the user-interface thread.
  template <class F>
  auto Ask(F ask) -> decltype(ask());
  void WaitFor(const Text& sWhat, const Condition& condition);
  /// The same, starting with something that is to happen once the condition is being watched.
  void WaitFor(const Text& sWhat, const Condition& condition, const std::function<void()>& act);
  /// No handler is running and nothing is in front of the window.
  void WaitUntilIdle();
  /// A dialog of that name or title is in front and takes keys; returns it.
  QDialog* WaitForDialog(const char* sName);
  /// Keys go to the window and it lies where the toolkit believes.
  void WaitUntilSettled(QWidget* window);

  XInput& Input() { return m_input; }
  MainWindow& Window() { return *m_window; }

  // These are for the user-interface thread: within Ask and conditions.
  bool IsSettled(QWidget* window);
  bool IsIdle();
  ScopeTreeItemPtr Item(const Text& sKey);
  QModelIndex Index(const Text& sKey);
  /// The rows of the grid that is shown, or null.
  QAbstractItemView* Rows();
  /// The box with the statement above the grid's rows; null when it is not shown.
  QWidget* SqlBox();

 private:
  XInput m_input;
  std::filesystem::path m_registry;
  std::unique_ptr<QSettings> m_settings;
  std::unique_ptr<console::Host> m_host;
  std::unique_ptr<MainWindow> m_window;
};

template <class F>
auto Stage::Ask(F ask) -> decltype(ask()) {
  using Result = decltype(ask());
  std::exception_ptr failure;
  if constexpr (std::is_void_v<Result>) {
    QMetaObject::invokeMethod(
        qApp,
        [&] {
          try {
            ask();
          } catch (...) {
            failure = std::current_exception();
          }
        },
        Qt::BlockingQueuedConnection);
    if (failure) std::rethrow_exception(failure);
  } else {
    std::optional<Result> result;
    Ask([&] { result.emplace(ask()); });
    return std::move(*result);
  }
}

}  // namespace orvane::console
