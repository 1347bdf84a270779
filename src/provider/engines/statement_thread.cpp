#include "provider/engines/statement_thread.h"

#include <dlfcn.h>

#include <algorithm>
#include <condition_variable>
#include <exception>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

namespace orvane::provider::engines {
namespace {

// What the statement and whoever waits for it tell each other.
struct Shared {
  std::mutex mutex;
  std::condition_variable_any ended;
  bool bEnded = false;
  bool bCommitting = false;  // the change is being made for good
  bool bLeft = false;        // nobody waits any more
  EngineResult result{};
  std::exception_ptr failure{};
};

// False when the statement was left to itself.
bool WaitForEnd(Shared& shared, const std::stop_token& stop, std::chrono::milliseconds patience) {
  std::unique_lock lock(shared.mutex);
  const auto hasEnded = [&] { return shared.bEnded; };
  if (!shared.ended.wait(lock, stop, hasEnded) &&
      !shared.ended.wait_for(lock, patience, hasEnded) && !shared.bCommitting) {
    shared.bLeft = true;
    return false;
  }
  shared.ended.wait(lock, hasEnded);
  return true;
}

/// The threads of statements that were left to themselves. SQLite hears its stop between two steps
/// of its machine and not within one, and a thread in the middle of one can be taken down by
/// nothing: it holds locks and memory of SQLite's. So the program waits for them at its end, for a
/// while, and then ends beneath those that do not; their changes are none, since they may not
/// commit. A library that this is part of stays loaded from the first one on.
class LeftThreads {
 public:
  static LeftThreads& The() {
    static LeftThreads threads;
    return threads;
  }
  LeftThreads(const LeftThreads&) = delete;
  LeftThreads& operator=(const LeftThreads&) = delete;

  void Take(std::thread thread, std::shared_ptr<Shared> shared) {
    const std::lock_guard lock(m_mutex);
    std::erase_if(m_threads, [](Left& left) { return JoinedWithin({}, left); });
    m_threads.push_back({std::move(thread), std::move(shared)});
  }

 private:
  struct Left {
    std::thread thread;
    std::shared_ptr<Shared> shared;
  };

  LeftThreads() { KeepLibrary(); }
  ~LeftThreads() {
    constexpr std::chrono::seconds kUntilTheEnd{5};
    const auto end = std::chrono::steady_clock::now() + kUntilTheEnd;
    for (Left& left : m_threads) {
      const auto patience = std::max(end - std::chrono::steady_clock::now(),
                                     std::chrono::steady_clock::duration::zero());
      if (!JoinedWithin(patience, left)) left.thread.detach();
    }
  }

  static bool JoinedWithin(std::chrono::steady_clock::duration patience, Left& left) {
    std::unique_lock lock(left.shared->mutex);
    if (!left.shared->ended.wait_for(lock, patience, [&] { return left.shared->bEnded; })) {
      return false;
    }
    lock.unlock();
    left.thread.join();
    return true;
  }

  // What a host unloads without asking stays all the same. A program needs no keeping, and is not
  // found by its name as a library is.
  static void KeepLibrary() {
    Dl_info self{};
    if (dladdr(reinterpret_cast<void*>(&KeepLibrary), &self) != 0) {
      dlopen(self.dli_fname, RTLD_LAZY | RTLD_NOLOAD | RTLD_NODELETE);
    }
  }

  std::mutex m_mutex;
  std::vector<Left> m_threads;
};

/// Keeps the rows of a statement that is left to itself from whoever took them.
class GatedRows final : public ado::RowReceiver {
 public:
  explicit GatedRows(std::shared_ptr<ado::RowReceiver> rows) : m_rows(std::move(rows)) {}

  void Begin(std::vector<ado::ColumnDescription> columns, platform::Boolean bReads) override {
    Pass([&] { m_rows->Begin(std::move(columns), bReads); });
  }
  void Take(std::span<ado::Column> block) override {
    Pass([&] { m_rows->Take(block); });
  }
  void End(platform::Boolean bTruncated) override {
    Pass([&] { m_rows->End(bTruncated); });
  }
  std::atomic<bool>& Wanted() override { return m_rows->Wanted(); }

  /// Waits until what is being taken is taken.
  void Close() {
    const std::lock_guard lock(m_mutex);
    m_bClosed = true;
  }

 private:
  template <class Call>
  void Pass(Call&& call) {
    const std::lock_guard lock(m_mutex);
    if (m_bClosed) {
      throw platform::Failure(platform::failure::kCancelled, "The statement was cancelled.");
    }
    std::forward<Call>(call)();
  }

  std::mutex m_mutex;
  bool m_bClosed = false;
  std::shared_ptr<ado::RowReceiver> m_rows;
};

}  // namespace

std::optional<EngineResult> RunPatiently(std::shared_ptr<FileSession> session,
                                         EngineStatement statement, std::stop_token stop,
                                         std::chrono::milliseconds patience) {
  const auto shared = std::make_shared<Shared>();
  statement.mayCommit = [shared, mayCommit = std::move(statement.mayCommit)] {
    if (mayCommit && !mayCommit()) return false;
    const std::lock_guard lock(shared->mutex);
    if (shared->bLeft) return false;
    shared->bCommitting = true;
    return true;
  };
  std::shared_ptr<GatedRows> gate;
  if (statement.rows) {
    gate = std::make_shared<GatedRows>(std::move(statement.rows));
    statement.rows = gate;
  }
  // Owns all that it uses, for it may outlive this call.
  auto work = [shared, session = std::move(session), statement = std::move(statement),
               stop]() mutable {
    EngineResult result;
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
  if (!WaitForEnd(*shared, stop, patience)) {
    LeftThreads::The().Take(std::move(thread), shared);
    if (gate) gate->Close();
    return std::nullopt;
  }
  if (thread.joinable()) thread.join();
  if (shared->failure) std::rethrow_exception(shared->failure);
  return std::move(shared->result);
}

}  // namespace orvane::provider::engines
