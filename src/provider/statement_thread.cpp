#include "provider/statement_thread.h"

#include <condition_variable>
#include <exception>
#include <mutex>
#include <system_error>
#include <thread>

namespace orvane::provider {
namespace {

// What the statement and whoever waits for it tell each other.
struct Shared {
  std::mutex mutex;
  std::condition_variable_any ended;
  bool bEnded = false;
  bool bCommitting = false;  // the change is being made for good
  bool bLeft = false;        // nobody waits any more
  engines::EngineResult result{};
  std::exception_ptr failure{};
};

}  // namespace

std::optional<engines::EngineResult> RunPatiently(std::shared_ptr<engines::EngineSession> session,
                                                  engines::EngineStatement statement,
                                                  std::stop_token stop,
                                                  std::chrono::milliseconds patience) {
  const auto shared = std::make_shared<Shared>();
  statement.mayCommit = [shared] {
    const std::lock_guard lock(shared->mutex);
    if (shared->bLeft) return false;
    shared->bCommitting = true;
    return true;
  };
  // Owns all that it uses, for it may outlive this call.
  auto work = [shared, session = std::move(session), statement = std::move(statement),
               stop]() mutable {
    engines::EngineResult result;
    std::exception_ptr failure;
    try {
      result = session->Run(statement, stop);
    } catch (...) {
      failure = std::current_exception();
    }
    session.reset();
    const std::lock_guard lock(shared->mutex);
    shared->result = std::move(result);
    shared->failure = std::move(failure);
    shared->bEnded = true;
    shared->ended.notify_all();
  };
  std::thread thread;
  try {
    thread = std::thread(work);
  } catch (const std::system_error&) {
    work();  // Without a thread there is nothing for it but to wait.
  }
  {
    std::unique_lock lock(shared->mutex);
    const auto hasEnded = [&] { return shared->bEnded; };
    if (!shared->ended.wait(lock, stop, hasEnded) &&
        !shared->ended.wait_for(lock, patience, hasEnded) && !shared->bCommitting) {
      shared->bLeft = true;
      thread.detach();
      return std::nullopt;
    }
    shared->ended.wait(lock, hasEnded);
  }
  if (thread.joinable()) thread.join();
  if (shared->failure) std::rethrow_exception(shared->failure);
  return std::move(shared->result);
}

}  // namespace orvane::provider
