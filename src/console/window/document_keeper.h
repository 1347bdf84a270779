// The comings and goings of a window's one document: made new, opened, saved, let go, never without
// a question while there is unsaved work. Starts and ends the session on it. The window shows what
// the keeper tells. User-interface thread; each call returns when its questions are answered.
#pragma once

#include <QObject>
#include <memory>

#include "console/document/document.h"
#include "console/window/window_parts.h"

class QWidget;

namespace orvane::console {

class RecentDocuments;
class UnsavedWork;

class DocumentKeeper final : public QObject {
  Q_OBJECT

 public:
  /// Parts, session and window outlive the keeper; questions come up over the window.
  DocumentKeeper(const WindowParts& parts, ConsoleSession& session, QWidget* window);
  ~DocumentKeeper() override;

  /// These ask about unsaved work first, and return false when the user cancelled or it failed,
  /// which was shown.
  bool New();
  bool AskAndOpen();
  /// Taken by value: the path is often that of the document, or of the menu item, that goes.
  bool Open(platform::Text sPath);
  /// Each returns false when nothing was saved; the document then stays as it was, unsaved mark
  /// too.
  bool Save();
  bool SaveAs();
  bool SaveTo(const platform::Text& sPath);
  /// True when there is no unsaved work, or the user has said what becomes of it.
  bool MayDropWork();
  /// Ends the session.
  void Close();

  const console::Document& Document() const noexcept { return *m_document; }
  /// False where saving would lose what could not be read, or there is nothing to save.
  bool CanSave() const;
  /// False when something of the document could not be read.
  bool IsReadWhole() const noexcept { return m_bReadWhole; }
  /// True while there is unsaved work; looks when it may have changed.
  bool IsModified();
  /// As of the last look.
  bool IsKnownModified() const;
  /// The control shown gets input, which may change what would be saved.
  void ControlInput();
  /// Why the snap-in could not be loaded; empty when it was.
  const platform::Text& SnapInFailure() const noexcept { return m_sSnapInFailure; }
  /// Documents opened or saved lately, the latest first.
  std::vector<platform::Text> Recent() const;

 signals:
  /// The session is about to end, and the document is still the one that it was about.
  void Closing();
  /// What the document keeps of the view, before the session starts on it.
  void ViewRead(const orvane::console::DocumentBag& view);
  /// The window is to put what the document keeps of the view into the bag.
  void ViewAsked(orvane::console::DocumentBag& view);
  /// There is another document, and the session has started on it, or SnapInFailure tells why not.
  void Started();
  void Saved();
  /// Unsaved work has come or gone.
  void ModifiedChanged();
  /// The session is at work, so that nothing can be let go now.
  void Refused();

 private:
  void Start();
  /// What a save would write, the view included; null when the snap-in could not give all of it.
  std::unique_ptr<DocumentContent> ContentToSave();
  bool Written(const std::function<void()>& write);
  /// Notes the failure and shows its sentence.
  void ShowFailure(const std::exception& e);
  // Gives the sentence in which it is told.
  platform::Text NoteFailure(const std::exception& e);

  const WindowParts& m_parts;
  ConsoleSession& m_session;
  QWidget* m_window;
  std::unique_ptr<RecentDocuments> m_recent;
  std::unique_ptr<console::Document> m_document;
  UnsavedWork* m_unsaved;
  bool m_bReadWhole = true;
  platform::Text m_sSnapInFailure;
};

}  // namespace orvane::console
