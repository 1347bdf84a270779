#include "provider/engines/statement_thread.h"

#include <condition_variable>
#include <exception>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

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
    thread.detach();
    if (gate) gate->Close();
    return std::nullopt;
  }
  if (thread.joinable()) thread.join();
  if (shared->failure) std::rethrow_exception(shared->failure);
  return std::move(shared->result);
}

}  // namespace orvane::provider::engines
