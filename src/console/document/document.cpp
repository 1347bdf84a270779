#include "console/document/document.h"

#include <filesystem>

#include "console/document/document_format.h"
#include "platform/failure.h"

namespace orvane::console {

using platform::Boolean;
using platform::Text;

Document::Document(DocumentBag::ObjectCreator creator)
    : m_creator(std::move(creator)), m_content(std::make_unique<DocumentContent>(m_creator)) {}

std::unique_ptr<Document> Document::Open(const Text& sPath, DocumentBag::ObjectCreator creator) {
  auto document = std::make_unique<Document>(std::move(creator));
  document->m_sPath = std::filesystem::absolute(sPath).lexically_normal().string();
  document->m_file = DocumentFile::Open(document->m_sPath);
  ReadDocument(document->m_file->Read(), document->m_sPath, *document->m_content);
  return document;
}

Text Document::Name() const {
  return m_sPath.empty() ? "Untitled" : std::filesystem::path(m_sPath).stem().string();
}

Text Document::ReadOnlyReason() const {
  return m_file ? m_file->ReadOnlyReason() : Text();
}

std::unique_ptr<DocumentContent> Document::NewContent() const {
  return std::make_unique<DocumentContent>(m_creator);
}

Boolean Document::IsChangedOnDisk() const {
  return m_file && m_file->IsChanged();
}

void Document::Save(std::unique_ptr<DocumentContent> content, Boolean bOverwriteChanged) {
  if (!m_file) {
    throw platform::Failure(platform::failure::kDocument,
                            "The document has no file yet; save it under a name first.");
  }
  if (!bOverwriteChanged && m_file->IsChanged()) {
    throw platform::Failure(
        platform::failure::kDocument,
        "The document " + m_sPath +
            " was changed by another program since it was opened; save under another name, or "
            "open it again and lose what was done here.");
  }
  m_file->Replace(WriteDocument(*content));
  m_content = std::move(content);
}

void Document::SaveAs(const Text& sPath, std::unique_ptr<DocumentContent> content) {
  const Text sAbsolute = std::filesystem::absolute(sPath).lexically_normal().string();
  if (m_file && m_file->IsUnder(sAbsolute)) return Save(std::move(content), true);
  m_file = DocumentFile::Create(sAbsolute, WriteDocument(*content));
  m_sPath = sAbsolute;
  m_content = std::move(content);
}

}  // namespace orvane::console
