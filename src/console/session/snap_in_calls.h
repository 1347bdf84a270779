// The way of every call into the snap-in. A call belongs to an event, which lasts from the first
// handler to the last that it leads to; what a handler lets out by mistake is shown as the snap-in
// shows its failures. Used by the session's parts; user-interface thread.
#pragma once

#include <QObject>
#include <memory>

#include "platform/console/snap_in.h"
#include "platform/services.h"

namespace orvane::console {

/// What an event means for the document: nothing, for moving about in what is known; something
/// found by expanding, which would be found again; or work that may be worth saving.
enum class EventKind : std::uint8_t { Browsing, Finding, Command };

class SnapInCalls final : public QObject {
  Q_OBJECT

 public:
  /// The services outlive the calls.
  explicit SnapInCalls(const platform::Services& services) : m_services(services) {}

  /// Calls go to this one from now on; null when there is none, and then nothing is called.
  void Target(std::shared_ptr<platform::SnapIn> snapIn) { m_snapIn = std::move(snapIn); }
  const std::shared_ptr<platform::SnapIn>& Target() const noexcept { return m_snapIn; }
  bool IsOpen() const noexcept { return m_snapIn != nullptr; }
  bool IsRunning() const noexcept { return m_iDepth > 0; }

  template <class F>
  void Call(EventKind kind, F&& handler) {
    if (!m_snapIn) return;
    const auto snapIn = m_snapIn;
    const Event event(*this, kind);
    try {
      handler(*snapIn);
    } catch (const std::exception& e) {
      ShowError(e);
    }
  }
  /// Notes the failure and shows it.
  void ShowError(const std::exception& e);
  /// Gives the sentence in which it is told.
  platform::Text NoteFailure(const std::exception& e);
  /// An expansion belongs to the event that runs.
  void Found() noexcept { m_bFinding = true; }

  /// Several calls that belong together.
  class Event {
   public:
    Event(SnapInCalls& calls, EventKind kind) : m_calls(calls), m_kind(kind) {
      m_calls.Begin(kind);
    }
    Event(const Event&) = delete;
    Event& operator=(const Event&) = delete;
    ~Event() { m_calls.End(m_kind); }

   private:
    SnapInCalls& m_calls;
    EventKind m_kind;
  };

 signals:
  /// An event begins that the snap-in will hear of; nothing has happened yet.
  void Begins(orvane::console::EventKind kind);
  /// The outermost handler has returned; what it left to do belongs to the event still.
  void Ending();
  void Ended(orvane::console::EventKind kind);

 private:
  void Begin(EventKind kind);
  void End(EventKind kind);

  const platform::Services& m_services;
  std::shared_ptr<platform::SnapIn> m_snapIn;
  int m_iDepth = 0;
  bool m_bFinding = false;
};

}  // namespace orvane::console
