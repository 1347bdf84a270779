// Watches a session for work that is not saved. The snap-in does not tell, so what a save would
// write now is compared with what was last read or written: after commands and after input to a
// control, when things have calmed down. What an expansion finds in a document without unsaved work
// becomes part of what is compared with. Moving about costs nothing: it changes no document.
// User-interface thread.
#pragma once

#include <QObject>
#include <QTimer>
#include <memory>
#include <set>

#include "console/document/document_state.h"
#include "console/session/console_session.h"

namespace orvane::console {

class MessageBoxes;

class UnsavedWork final : public QObject {
  Q_OBJECT

 public:
  /// Texts that connections opened so far add to what is saved (see DocumentState).
  using OptionTexts = std::function<std::vector<platform::Text>()>;

  /// The boxes are kept silent while the snap-in is asked; null when there are none to silence.
  UnsavedWork(MessageBoxes* boxes, OptionTexts optionTexts, QObject* parent = nullptr);

  /// Watches a session that has just read its document or has begun a new one.
  void Watch(ConsoleSession* session);
  /// What is there now was never saved as it is: unsaved work until it is.
  void NeverSaved();
  /// This is what was saved.
  void Saved(const DocumentBag& bag);
  /// The control shown gets input, which may change what would be saved.
  void ControlInput();

  /// Looks now if something may have changed since the last look.
  bool IsModified();
  /// As of the last look.
  bool IsKnownModified() const noexcept { return m_bModified; }

 signals:
  void ModifiedChanged(bool bModified);

 private:
  /// What a save would write now, or none when the snap-in cannot give all of it.
  std::unique_ptr<SaveSnapshot> Snapshot();
  void Begins(EventKind kind);
  void Ended(EventKind kind);
  void Look();
  void Rebase();
  void Settle();
  void Modified(bool bModified);

  MessageBoxes* m_boxes;
  OptionTexts m_optionTexts;
  std::set<platform::Text> m_knownOptionTexts;
  ConsoleSession* m_session = nullptr;
  DocumentState m_state;
  QTimer m_timer;
  bool m_bModified = false;
  bool m_bNeverSaved = false;
  bool m_bLookDue = false;
  bool m_bRebaseDue = false;
};

}  // namespace orvane::console
