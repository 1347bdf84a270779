#include "tests/console/whole_job/stage.h"

#include <gtest/gtest.h>

#include <QAbstractEventDispatcher>
#include <QAbstractItemView>
#include <QAbstractScrollArea>
#include <QEventLoop>
#include <QMenu>
#include <QScreen>
#include <QSemaphore>
#include <QThread>
#include <QWindow>

#include "tests/console/window/panes.h"

namespace orvane::console {

namespace {

constexpr int kPatienceMilliseconds = 60'000;

/// Looks at a condition whenever the program is about to wait for something to happen.
class Watch {
 public:
  explicit Watch(Stage::Condition condition) : m_condition(std::move(condition)) {
    auto* dispatcher = QAbstractEventDispatcher::instance();
    for (auto signal :
         {&QAbstractEventDispatcher::aboutToBlock, &QAbstractEventDispatcher::awake}) {
      QObject::connect(dispatcher, signal, &m_context, [this] { Look(); });
    }
    dispatcher->wakeUp();
  }
  QSemaphore& Met() { return m_met; }

 private:
  void Look() {
    if (m_bMet || !m_condition()) return;
    m_bMet = true;
    m_met.release();
  }

  Stage::Condition m_condition;
  QObject m_context;
  QSemaphore m_met;
  bool m_bMet = false;
};

}  // namespace

Stage::Stage(const std::string& sDisplay, std::filesystem::path registry)
    : m_input(sDisplay), m_registry(std::move(registry)) {}

Stage::~Stage() = default;

Stage::Text Stage::Play(const std::function<void()>& story) {
  Text sStopped;
  QEventLoop loop;
  const std::unique_ptr<QThread> thread(QThread::create([&] {
    try {
      story();
    } catch (const std::exception& e) {
      sStopped = e.what();
      Ask([&] {
        const auto sPicture = qEnvironmentVariable("ORVANE_STOPPED_PICTURE", "whole-job.png");
        QGuiApplication::primaryScreen()->grabWindow(0).save(sPicture);
        sStopped += " What was to be seen is in " + sPicture.toStdString() + ".";
      });
    }
    try {
      while (Ask([] {
        QWidget* front = QApplication::activePopupWidget();
        if (!front) front = QApplication::activeModalWidget();
        if (front) front->close();
        return front != nullptr;
      })) {
      }
      EndProgram();
    } catch (const std::exception& e) {
      if (sStopped.empty()) sStopped = e.what();
    }
  }));
  QObject::connect(thread.get(), &QThread::finished, &loop, &QEventLoop::quit);
  thread->start();
  loop.exec();
  thread->wait();
  return sStopped;
}

void Stage::StartProgram() {
  Ask([this] {
    m_settings = std::make_unique<QSettings>();
    m_host = std::make_unique<console::Host>(m_registry);
    m_window = std::make_unique<MainWindow>(m_host->Parts(m_settings.get()));
    m_window->NewDocument();
    m_window->show();
  });
  WaitUntilSettled(m_window.get());
}

void Stage::EndProgram() {
  Ask([this] {
    m_window.reset();
    m_host.reset();
    m_settings.reset();
  });
}

void Stage::WaitFor(const Text& sWhat, const Condition& condition) {
  WaitFor(sWhat, condition, [] {});
}

void Stage::WaitFor(const Text& sWhat, const Condition& condition,
                    const std::function<void()>& act) {
  auto* watch = Ask([&] { return new Watch(condition); });
  act();
  const bool bMet = watch->Met().tryAcquire(1, kPatienceMilliseconds);
  Ask([&] { delete watch; });
  if (!bMet) throw Stopped("Waited in vain until " + sWhat + ".");
}

bool Stage::IsSettled(QWidget* window) {
  if (QApplication::activeWindow() != window || QApplication::activePopupWidget()) return false;
  if (!window->windowHandle() || !window->windowHandle()->isExposed()) return false;
  int iX = 0;
  int iY = 0;
  m_input.Place(window->winId(), iX, iY);
  return window->mapToGlobal(QPoint()) == QPoint(iX, iY);
}

bool Stage::IsIdle() {
  return m_window && !m_window->Session().IsBusy() && !QApplication::activeModalWidget() &&
         IsSettled(m_window.get());
}

void Stage::WaitUntilSettled(QWidget* window) {
  WaitFor("the window is in front", [=, this] { return IsSettled(window); });
}

void Stage::WaitUntilIdle() {
  WaitFor("the window has nothing more to do", [this] { return IsIdle(); });
}

QDialog* Stage::WaitForDialog(const char* sName) {
  QDialog* dialog = nullptr;
  WaitFor(Text("the dialog ") + sName + " is in front", [&] {
    dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
    return dialog && (dialog->objectName() == sName || dialog->windowTitle() == sName) &&
           IsSettled(dialog);
  });
  return dialog;
}

ScopeTreeItemPtr Stage::Item(const Text& sKey) {
  auto& tree = m_window->Session().Tree();
  return sKey.empty() ? tree.StaticItem() : tree.Find(sKey);
}

QModelIndex Stage::Index(const Text& sKey) {
  const auto item = Item(sKey);
  if (!item) throw Stopped("The tree has no item " + sKey + ".");
  return m_window->Session().Tree().IndexOf(*item);
}

QAbstractItemView* Stage::Rows() {
  for (auto* table : ResultsOf(*m_window).findChildren<QAbstractItemView*>("rows")) {
    if (ResultsOf(*m_window).IsInControl(table)) return table;
  }
  return nullptr;
}

QWidget* Stage::SqlBox() {
  for (auto* box : ResultsOf(*m_window).findChildren<QAbstractScrollArea*>()) {
    if (box->inherits("QsciScintilla") && box->isVisible()) return box;
  }
  return nullptr;
}

}  // namespace orvane::console
