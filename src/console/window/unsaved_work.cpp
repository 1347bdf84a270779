#include "console/window/unsaved_work.h"

#include <QElapsedTimer>
#include <algorithm>
#include <optional>

#include "console/dialogs/message_boxes.h"

namespace orvane::console {

namespace {

constexpr int kCalmMilliseconds = 300;

}  // namespace

UnsavedWork::UnsavedWork(MessageBoxes* boxes, OptionTexts optionTexts, QObject* parent)
    : QObject(parent), m_boxes(boxes), m_optionTexts(std::move(optionTexts)) {
  m_timer.setSingleShot(true);
  m_timer.setInterval(kCalmMilliseconds);
  connect(&m_timer, &QTimer::timeout, this, &UnsavedWork::Settle);
}

void UnsavedWork::Watch(ConsoleSession* session) {
  if (m_session) disconnect(m_session, nullptr, this, nullptr);
  m_timer.stop();
  m_session = session;
  m_bLookDue = false;
  m_bRebaseDue = false;
  m_bNeverSaved = false;
  m_state = {};
  m_knownOptionTexts.clear();
  if (session) {
    connect(session, &ConsoleSession::EventBegins, this, &UnsavedWork::Begins);
    connect(session, &ConsoleSession::EventEnded, this, &UnsavedWork::Ended);
    Rebase();
  }
  Modified(false);
}

void UnsavedWork::NeverSaved() {
  m_bNeverSaved = true;
  Modified(true);
}

void UnsavedWork::Saved(const DocumentBag& bag) {
  m_bNeverSaved = false;
  m_state.Rebase(bag);
  m_bLookDue = false;
  m_bRebaseDue = false;
  Modified(false);
}

void UnsavedWork::ControlInput() {
  if (!m_session || m_session->IsBusy()) return;
  if (m_bRebaseDue) Rebase();
  m_bLookDue = true;
  m_timer.start();
}

bool UnsavedWork::IsModified() {
  if (m_bLookDue) Look();
  return m_bModified;
}

std::unique_ptr<SaveSnapshot> UnsavedWork::Snapshot() {
  if (!m_session || !m_session->IsOpen()) return nullptr;
  QElapsedTimer elapsed;
  elapsed.start();
  auto snapshot = std::make_unique<SaveSnapshot>();
  std::optional<MessageBoxSuppression> silence;
  if (m_boxes) silence.emplace(*m_boxes);
  const bool bWhole = m_session->Write(*snapshot);
  // Of a large document one look in ten pauses is enough.
  m_timer.setInterval(std::max(kCalmMilliseconds,
                               static_cast<int>(std::min<qint64>(elapsed.elapsed(), 3000) * 10)));
  for (auto& sText : m_optionTexts ? m_optionTexts() : std::vector<platform::Text>()) {
    m_knownOptionTexts.insert(std::move(sText));
  }
  return bWhole ? std::move(snapshot) : nullptr;
}

void UnsavedWork::Begins(EventKind kind) {
  // Each kind of event meets the document as the other kind has left it.
  if (kind == EventKind::Finding && m_bLookDue) Look();
  if (kind == EventKind::Command && m_bRebaseDue) Rebase();
}

void UnsavedWork::Ended(EventKind kind) {
  if (kind == EventKind::Browsing) return;
  if (kind == EventKind::Command) {
    m_bLookDue = true;
  } else if (!m_bModified) {
    m_bRebaseDue = true;
  }
  m_timer.start();
}

void UnsavedWork::Settle() {
  if (!m_session || m_session->IsBusy()) {
    m_timer.start();
    return;
  }
  if (m_bLookDue) Look();
  if (m_bRebaseDue) Rebase();
}

void UnsavedWork::Look() {
  m_bLookDue = false;
  if (!m_session || !m_session->IsOpen()) return;
  const auto snapshot = Snapshot();
  const std::vector<platform::Text> texts(m_knownOptionTexts.begin(), m_knownOptionTexts.end());
  // Work that cannot be saved as it is must not be lost without a word either.
  Modified(m_bNeverSaved || !snapshot || m_state.IsModified(*snapshot, texts));
}

void UnsavedWork::Rebase() {
  m_bRebaseDue = false;
  if (const auto snapshot = Snapshot()) m_state.Rebase(*snapshot);
}

void UnsavedWork::Modified(bool bModified) {
  if (bModified == m_bModified) return;
  m_bModified = bModified;
  emit ModifiedChanged(bModified);
}

}  // namespace orvane::console
