#include "console/waiting/waiting.h"

#include <QApplication>
#include <QEventLoop>
#include <QScopeGuard>
#include <QThread>
#include <QTimer>
#include <algorithm>
#include <optional>

#include "console/look/window_in_front.h"
#include "console/waiting/input_hold.h"
#include "console/waiting/waiting_worker.h"

namespace orvane::console {

using namespace std::chrono_literals;

namespace {

constexpr auto kBetweenTicks = 20ms;

bool IsUserInterfaceThread() {
  return qobject_cast<QApplication*>(QCoreApplication::instance()) &&
         QThread::currentThread() == qApp->thread();
}

/// The busy shape of the mouse pointer, from Show to the end of the wait; where a handler has laid
/// the hourglass, that stays, since it says the same more strongly.
class BusyPointer {
 public:
  BusyPointer() = default;
  BusyPointer(const BusyPointer&) = delete;
  BusyPointer& operator=(const BusyPointer&) = delete;
  ~BusyPointer() {
    if (m_bShown) QApplication::restoreOverrideCursor();
  }
  void Show() {
    if (QApplication::overrideCursor()) return;
    QApplication::setOverrideCursor(Qt::BusyCursor);
    m_bShown = true;
  }

 private:
  bool m_bShown = false;
};

}  // namespace

Waiting::Waiting(std::chrono::milliseconds beforePanel, std::chrono::milliseconds unnoticed)
    : m_beforePanel(beforePanel), m_unnoticed(unnoticed), m_hold(std::make_unique<InputHold>()) {}

Waiting::~Waiting() = default;

std::unique_ptr<WaitingWorker> Waiting::TakeWorker() {
  return m_idleWorker ? std::move(m_idleWorker) : std::make_unique<WaitingWorker>();
}

void Waiting::Run(const platform::Text& sWhat, const std::function<void(std::stop_token)>& work) {
  RunShown(sWhat, work, {});
}

void Waiting::RunShown(const platform::Text& sWhat,
                       const std::function<void(std::stop_token)>& work,
                       const std::function<bool()>& tick) {
  RunIn({sWhat, tick}, work);
}

void Waiting::RunGivingWay(const platform::Text& sWhat,
                           const std::function<void(std::stop_token)>& work) {
  RunIn({sWhat, {}, true}, work);
}

void Waiting::RunIn(const Manner& manner, const std::function<void(std::stop_token)>& work) {
  if (!IsUserInterfaceThread()) {
    work(WaitingWorker::CurrentStop());
    return;
  }
  ++m_iRuns;
  const auto ended = qScopeGuard([this] { --m_iRuns; });
  std::unique_ptr<WaitingWorker> worker = TakeWorker();
  std::stop_source stop;
  worker->Start(work, stop.get_token());
  if (!worker->WaitFor(m_unnoticed)) HandleEventsUntilDone(manner, *worker, stop);
  const std::exception_ptr exception = worker->TakeException();
  if (!m_idleWorker) m_idleWorker = std::move(worker);
  if (exception) std::rethrow_exception(exception);
}

void Waiting::HandleEventsUntilDone(const Manner& manner, WaitingWorker& worker,
                                    std::stop_source& stop) {
  const auto& tick = manner.tick;
  InputHold::Run run;
  run.bGivesWay = manner.bGivesWay;
  run.isDone = [&worker] { return worker.IsDone(); };
  run.cancel = [&run, &stop] {
    stop.request_stop();
    if (run.panel) run.panel->ShowCancelling();
  };
  std::optional<BusyPointer> pointer;
  QTimer panelTimer;
  panelTimer.setSingleShot(true);
  QObject::connect(&panelTimer, &QTimer::timeout, &panelTimer, [&] {
    run.panel = new WaitingPanel(QString::fromStdString(manner.sWhat), WindowInFront());
    QObject::connect(run.panel, &WaitingPanel::Cancelled, run.panel, run.cancel);
    pointer.emplace();
    pointer->Show();
  });
  if (!manner.bGivesWay) panelTimer.start(std::max(m_beforePanel - m_unnoticed, 0ms));
  bool bInTick = false;
  const auto tickOnce = [&] {
    // What the work is done with is shown by its caller, who is about to have it.
    if (bInTick || worker.IsDone()) return;
    bInTick = true;
    run.bShown = tick();
    bInTick = false;
    if (!run.bShown) return;
    panelTimer.stop();
    delete run.panel;
    pointer.reset();
  };
  QTimer tickTimer;
  QObject::connect(&tickTimer, &QTimer::timeout, &tickTimer, tickOnce);
  m_hold->Push(run);
  if (tick) {
    tickOnce();
    tickTimer.start(kBetweenTicks);
  }
  QEventLoop loop;
  worker.QuitWhenDone(&loop);
  loop.exec();
  worker.QuitWhenDone(nullptr);
  if (!worker.IsDone()) {
    // The program is ending: the loop does not run any more.
    stop.request_stop();
    worker.WaitUntilDone();
  }
  m_hold->Pop(run);
  delete run.panel;
}

}  // namespace orvane::console
