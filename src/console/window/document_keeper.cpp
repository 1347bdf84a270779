#include "console/window/document_keeper.h"

#include "console/document/recent_documents.h"
#include "console/window/document_questions.h"
#include "console/window/unsaved_work.h"
#include "platform/told_failure.h"

namespace orvane::console {

using platform::Failure;
using platform::Text;

DocumentKeeper::DocumentKeeper(const WindowParts& parts, ConsoleSession& session, QWidget* window)
    : m_parts(parts),
      m_session(session),
      m_window(window),
      m_document(std::make_unique<console::Document>()),
      m_unsaved(new UnsavedWork(m_parts.boxes, m_parts.optionTexts, this)) {
  if (m_parts.settings) m_recent = std::make_unique<RecentDocuments>(*m_parts.settings);
  connect(m_unsaved, &UnsavedWork::ModifiedChanged, this, &DocumentKeeper::ModifiedChanged);
}

DocumentKeeper::~DocumentKeeper() = default;

void DocumentKeeper::Start() {
  m_bReadWhole = true;
  m_sSnapInFailure.clear();
  const auto& sProgId = m_parts.sSnapInProgId;
  // A document that never held this snap-in is as good as a new one.
  const bool bStored = m_document->Content().FindSnapIn(sProgId) != nullptr;
  emit ViewRead(m_document->Content().View());
  if (m_parts.documentOpened) m_parts.documentOpened(m_document->Content());
  try {
    m_bReadWhole =
        m_session.Start(sProgId, bStored ? &m_document->Content().SnapIn(sProgId) : nullptr);
    m_unsaved->Watch(&m_session);
    if (m_document->IsUnsaved()) m_unsaved->NeverSaved();
  } catch (const std::exception& e) {
    m_sSnapInFailure = NoteFailure(e);
    m_unsaved->Watch(nullptr);
  }
  emit Started();
}

void DocumentKeeper::Close() {
  emit Closing();
  m_unsaved->Watch(nullptr);
  m_session.Close();
  if (m_parts.services.unsentRows) m_parts.services.unsentRows->Lose({});
}

bool DocumentKeeper::New() {
  if (!MayDropWork()) return false;
  Close();
  m_document = std::make_unique<console::Document>();
  Start();
  return true;
}

bool DocumentKeeper::AskAndOpen() {
  auto sPath = AskForFileToOpen(*m_document, m_window);
  return sPath && Open(*std::move(sPath));
}

bool DocumentKeeper::Open(Text sPath) {
  if (!MayDropWork()) return false;
  const auto create = m_parts.createStored ? m_parts.createStored : [this](const Text& sProgId) {
    return m_parts.create(sProgId, m_session.Services());
  };
  std::unique_ptr<console::Document> document;
  try {
    // Read whole before anything is let go; for the document that is open, its hold passes over.
    document = console::Document::Open(sPath, create, m_document.get(), [&](DocumentDoubt doubt) {
      return AskToOpenDoubtful(sPath, doubt, m_window);
    });
  } catch (const std::exception& e) {
    if (m_recent) m_recent->RemoveIfGone(sPath);
    if (!m_session.IsOpen()) Start();
    ShowFailure(e);
    return false;
  }
  if (!document) {
    if (!m_session.IsOpen()) Start();
    return false;
  }
  Close();
  m_document = std::move(document);
  if (m_recent) m_recent->Add(m_document->Path());
  Start();
  return true;
}

bool DocumentKeeper::CanSave() const {
  return m_session.IsOpen() && m_bReadWhole;
}

bool DocumentKeeper::IsModified() {
  return m_session.IsOpen() && m_unsaved->IsModified();
}

bool DocumentKeeper::IsKnownModified() const {
  return m_unsaved->IsKnownModified();
}

void DocumentKeeper::ControlInput() {
  m_unsaved->ControlInput();
}

std::vector<Text> DocumentKeeper::Recent() const {
  return m_recent ? m_recent->List() : std::vector<Text>();
}

bool DocumentKeeper::MayDropWork() {
  if (m_session.IsBusy()) {
    emit Refused();
    return false;
  }
  if (m_parts.services.unsentRows && !m_parts.services.unsentRows->MayLose({})) return false;
  if (!IsModified()) return true;
  switch (AskAboutUnsavedWork(*m_document, m_window)) {
    case UnsavedAnswer::Save:
      return Save();
    case UnsavedAnswer::Discard:
      return true;
    case UnsavedAnswer::Cancel:
      break;
  }
  return false;
}

std::unique_ptr<DocumentContent> DocumentKeeper::ContentToSave() {
  auto content = m_document->NewContent();
  // What other snap-ins keep in the document stays in it.
  for (const auto& section : m_document->Content().SnapIns()) {
    auto& bag = content->SnapIn(section.sProgId);
    if (section.sProgId == m_parts.sSnapInProgId) continue;
    for (const auto& entry : section.bag->Entries()) bag.Add(entry.sName, entry.value);
  }
  if (!m_session.Write(content->SnapIn(m_parts.sSnapInProgId))) return nullptr;
  emit ViewAsked(content->View());
  return content;
}

bool DocumentKeeper::Written(const std::function<void()>& write) {
  try {
    write();
  } catch (const std::exception& e) {
    ShowFailure(e);
    return false;
  }
  const auto* bag = m_document->Content().FindSnapIn(m_parts.sSnapInProgId);
  if (bag) m_unsaved->Saved(*bag);
  if (m_recent) m_recent->Add(m_document->Path());
  emit Saved();
  return true;
}

bool DocumentKeeper::Save() {
  if (m_session.IsBusy() || !CanSave()) return false;
  if (m_document->Path().empty() || m_document->IsReadOnly()) return SaveAs();
  auto content = ContentToSave();
  if (!content) return false;
  const bool bChanged = m_document->IsChangedOnDisk();
  if (bChanged && !AskToReplaceChanged(*m_document, m_window)) return false;
  return Written([&] { m_document->Save(std::move(content), bChanged); });
}

bool DocumentKeeper::SaveAs() {
  if (m_session.IsBusy() || !CanSave()) return false;
  const auto sPath = AskForFileToSave(*m_document, m_window);
  return sPath && SaveTo(*sPath);
}

bool DocumentKeeper::SaveTo(const Text& sPath) {
  if (m_session.IsBusy() || !CanSave()) return false;
  auto content = ContentToSave();
  if (!content) return false;
  const bool bChanged = m_document->IsOwnFile(sPath) && m_document->IsChangedOnDisk();
  if (bChanged && !AskToReplaceChanged(*m_document, m_window)) return false;
  return Written([&] { m_document->SaveAs(sPath, std::move(content), bChanged); });
}

platform::Text DocumentKeeper::NoteFailure(const std::exception& e) {
  const auto told = platform::ToldFailure(e, platform::failure::kDocument, "console");
  if (m_parts.services.failures) m_parts.services.failures->Note(told);
  return told.Description();
}

void DocumentKeeper::ShowFailure(const std::exception& e) {
  ShowFailureBox(NoteFailure(e), m_window);
}

}  // namespace orvane::console
