// Waiting, as the host does it: slow work runs on a worker thread while the window keeps painting
// and nothing but Cancel can be pressed. Handed to components as their LongOperation.
#pragma once

#include <chrono>
#include <memory>

#include "platform/long_operation.h"

namespace orvane::console {

class InputHold;
class WaitingWorker;

class Waiting : public platform::LongOperation {
 public:
  /// How long a wait lasts before its panel is shown.
  static constexpr std::chrono::milliseconds kBeforePanel{500};
  /// Nothing is shown or handled for work that ends in less: nobody sees that.
  static constexpr std::chrono::milliseconds kUnnoticed{10};

  explicit Waiting(std::chrono::milliseconds beforePanel = kBeforePanel,
                   std::chrono::milliseconds unnoticed = kUnnoticed);
  /// Waits for the worker thread, which is idle then.
  ~Waiting() override;

  /// Called on the user-interface thread: runs the work on a worker thread, shows the waiting
  /// panel when that lasts, and holds back all input and the closing of windows meanwhile. A
  /// run that begins inside another one, from an event that was pending, has a worker of its own.
  /// Called on any other thread, or without an application: runs the work where it is called, with
  /// the stop token of the run it is part of.
  void Run(const platform::Text& sWhat, const std::function<void(std::stop_token)>& work) override;
  /// As Run. While tick returns true there is no panel, and Escape cancels all the same.
  void RunShown(const platform::Text& sWhat, const std::function<void(std::stop_token)>& work,
                const std::function<bool()>& tick) override;
  /// As Run, with no panel; see KeptInput for what becomes of the user's input.
  void RunGivingWay(const platform::Text& sWhat,
                    const std::function<void(std::stop_token)>& work) override;
  bool IsRunning() const override { return m_iRuns > 0; }

 private:
  /// What is told of a run, and how.
  struct Manner {
    const platform::Text& sWhat;
    const std::function<bool()>& tick;
    bool bGivesWay = false;
  };

  std::unique_ptr<WaitingWorker> TakeWorker();
  void RunIn(const Manner& manner, const std::function<void(std::stop_token)>& work);
  void HandleEventsUntilDone(const Manner& manner, WaitingWorker& worker, std::stop_source& stop);

  const std::chrono::milliseconds m_beforePanel;
  const std::chrono::milliseconds m_unnoticed;
  int m_iRuns = 0;  // a run within another one counts too
  std::unique_ptr<InputHold> m_hold;
  std::unique_ptr<WaitingWorker> m_idleWorker;
};

}  // namespace orvane::console
