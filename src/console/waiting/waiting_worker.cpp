#include "console/waiting/waiting_worker.h"

#include <QEventLoop>
#include <utility>

namespace orvane::console {

namespace {

thread_local std::stop_token t_currentStop;

}  // namespace

WaitingWorker::WaitingWorker() : m_thread([this] { Main(); }) {}

WaitingWorker::~WaitingWorker() {
  {
    const std::lock_guard lock(m_mutex);
    m_bEnd = true;
  }
  m_changed.notify_all();
  m_thread.join();
}

void WaitingWorker::Main() {
  std::unique_lock lock(m_mutex);
  for (;;) {
    m_changed.wait(lock, [this] { return m_work || m_bEnd; });
    if (!m_work) return;
    const Work& work = *m_work;
    t_currentStop = m_stop;
    lock.unlock();
    std::exception_ptr exception;
    try {
      work(t_currentStop);
    } catch (...) {
      exception = std::current_exception();
    }
    t_currentStop = {};
    lock.lock();
    m_exception = std::move(exception);
    m_work = nullptr;
    m_bDone = true;
    if (m_loop) QMetaObject::invokeMethod(m_loop, &QEventLoop::quit, Qt::QueuedConnection);
    m_changed.notify_all();
  }
}

void WaitingWorker::Start(const Work& work, std::stop_token stop) {
  {
    const std::lock_guard lock(m_mutex);
    m_work = &work;
    m_stop = std::move(stop);
    m_bDone = false;
  }
  m_changed.notify_all();
}

bool WaitingWorker::IsDone() const {
  const std::lock_guard lock(m_mutex);
  return m_bDone;
}

bool WaitingWorker::WaitFor(std::chrono::milliseconds duration) {
  std::unique_lock lock(m_mutex);
  return m_changed.wait_for(lock, duration, [this] { return m_bDone; });
}

void WaitingWorker::WaitUntilDone() {
  std::unique_lock lock(m_mutex);
  m_changed.wait(lock, [this] { return m_bDone; });
}

void WaitingWorker::QuitWhenDone(QEventLoop* loop) {
  const std::lock_guard lock(m_mutex);
  m_loop = loop;
  if (loop && m_bDone) QMetaObject::invokeMethod(loop, &QEventLoop::quit, Qt::QueuedConnection);
}

std::exception_ptr WaitingWorker::TakeException() {
  const std::lock_guard lock(m_mutex);
  m_stop = {};
  return std::exchange(m_exception, nullptr);
}

std::stop_token WaitingWorker::CurrentStop() {
  return t_currentStop;
}

}  // namespace orvane::console
