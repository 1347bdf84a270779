// One thread that runs one piece of work at a time, kept for the next one.
// Driven by Waiting from the user-interface thread.
#pragma once

#include <chrono>
#include <condition_variable>
#include <exception>
#include <functional>
#include <memory>
#include <mutex>
#include <stop_token>
#include <thread>

class QEventLoop;

namespace orvane::console {

class WaitingWorker {
 public:
  using Work = std::function<void(std::stop_token)>;

  WaitingWorker();
  WaitingWorker(const WaitingWorker&) = delete;
  WaitingWorker& operator=(const WaitingWorker&) = delete;
  /// Waits until the work in hand is done.
  ~WaitingWorker();

  /// Begins the work, which must live until it is done; only while the worker is idle.
  void Start(const Work& work, std::stop_token stop);
  bool IsDone() const;
  /// Waits at most so long; true when the work is done.
  bool WaitFor(std::chrono::milliseconds duration);
  void WaitUntilDone();
  /// From now on the loop is told to quit when the work is done, at once when it already is. Null
  /// ends that; the loop may go then.
  void QuitWhenDone(QEventLoop* loop);
  /// What the work threw, or null; only once it is done.
  std::exception_ptr TakeException();

  /// The stop token of the work that the calling thread is running; one that never stops on a
  /// thread that is no worker.
  static std::stop_token CurrentStop();

 private:
  void Main();

  mutable std::mutex m_mutex;
  std::condition_variable m_changed;
  const Work* m_work = nullptr;
  std::stop_token m_stop;
  std::exception_ptr m_exception;
  QEventLoop* m_loop = nullptr;
  bool m_bDone = true;
  bool m_bEnd = false;
  // The last member: it uses all others. Joined, not only waited for as a QThread is: what the
  // toolkit keeps for a thread goes at the thread's very end, after a QThread's wait is over.
  std::thread m_thread;
};

}  // namespace orvane::console
