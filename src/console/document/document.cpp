#include "console/document/document.h"

#include <exception>
#include <filesystem>
#include <new>

#include "console/document/document_format.h"
#include "platform/failure.h"

namespace orvane::console {

using platform::Boolean;
using platform::Text;

namespace {

std::filesystem::path Absolute(const Text& sPath) {
  return std::filesystem::absolute(sPath).lexically_normal();
}

/// Runs the step. What fails in it without a sentence of its own, for lack of memory for instance,
/// fails with one.
template <class Step>
auto Told(const Text& sPath, const char* sWhat, Step&& step) {
  try {
    return step();
  } catch (const platform::Failure&) {
    throw;
  } catch (const std::bad_alloc&) {
    throw platform::Failure(platform::failure::kDocument,
                            "The document " + sPath + " cannot be " + sWhat +
                                ": there is not enough memory; close other programs first.",
                            "Document");
  } catch (const std::exception& e) {
    throw platform::Failure(platform::failure::kDocument,
                            "The document " + sPath + " cannot be " + sWhat + ": " + e.what() +
                                "; look at its folder and try again.",
                            "Document");
  }
}

}  // namespace

Document::Document(DocumentBag::ObjectCreator creator)
    : m_creator(std::move(creator)), m_content(std::make_unique<DocumentContent>(m_creator)) {}

std::unique_ptr<Document> Document::Open(const Text& sPath, DocumentBag::ObjectCreator creator,
                                         Document* present, const OpenAnyway& openAnyway) {
  return Told(sPath, "read", [&]() -> std::unique_ptr<Document> {
    auto document = std::make_unique<Document>(std::move(creator));
    document->m_sPath = Absolute(sPath).string();
    // A lock of one's own would look like another's, so the file that has it is read.
    const bool bIsPresent = present && present->m_file && !present->IsReadOnly() &&
                            present->m_file->IsUnder(document->m_sPath);
    std::unique_ptr<DocumentFile> opened;
    if (!bIsPresent) opened = DocumentFile::Open(document->m_sPath);
    if (!document->ReadFrom(bIsPresent ? *present->m_file : *opened, openAnyway)) return nullptr;
    document->m_file = std::move(bIsPresent ? present->m_file : opened);
    document->m_file->Path(document->m_sPath);
    return document;
  });
}

std::unique_ptr<Document> Document::OpenToRead(const Text& sPath,
                                               DocumentBag::ObjectCreator creator,
                                               const OpenAnyway& openAnyway) {
  return Told(sPath, "read", [&]() -> std::unique_ptr<Document> {
    auto document = std::make_unique<Document>(std::move(creator));
    document->m_sPath = Absolute(sPath).string();
    auto opened = DocumentFile::OpenToRead(document->m_sPath);
    if (!document->ReadFrom(*opened, openAnyway)) return nullptr;
    document->m_file = std::move(opened);
    return document;
  });
}

Boolean Document::ReadFrom(DocumentFile& file, const OpenAnyway& openAnyway) {
  DocumentSeal seal = DocumentSeal::Broken;
  const auto take = [&](std::string_view sBytes) {
    m_content = NewContent();
    seal = ReadDocument(sBytes, m_sPath, *m_content);
  };
  const auto asked = [&](DocumentDoubt doubt) { return !openAnyway || openAnyway(doubt); };
  std::exception_ptr damage;
  try {
    CheckDocumentStart(file.Start(), m_sPath);
    file.Read(take);
    if (seal == DocumentSeal::Whole) return true;
  } catch (const platform::Failure&) {
    damage = std::current_exception();
  }
  m_bUnsaved = true;
  if (IsBrokenSaveWhole(file)) {
    if (asked(DocumentDoubt::SaveBrokenOff)) {
      file.Read([](std::string_view) {});
      return file.ReadBrokenSave(take);
    }
    if (damage) return false;
  }
  if (damage) std::rethrow_exception(damage);
  return asked(DocumentDoubt::ChangedOutside);
}

Boolean Document::IsBrokenSaveWhole(const DocumentFile& file) const {
  try {
    DocumentSeal seal = DocumentSeal::Broken;
    file.ReadBrokenSave(
        [&](std::string_view sBytes) { seal = ReadDocument(sBytes, m_sPath, *NewContent()); });
    return seal == DocumentSeal::Whole;
  } catch (const platform::Failure&) {
    return false;
  }
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

Boolean Document::IsOwnFile(const Text& sPath) const {
  if (!m_file) return false;
  // Another program may have put another file under the name; that is the document's own still.
  std::error_code error;
  const auto own = std::filesystem::weakly_canonical(m_sPath, error);
  if (!error && std::filesystem::weakly_canonical(sPath, error) == own && !error) return true;
  return m_file->IsUnder(sPath);
}

Boolean Document::IsChangedOnDisk() const {
  return m_file && m_file->IsChanged();
}

void Document::Write(const DocumentContent& content, Boolean bOverwriteChanged) {
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
  Told(m_sPath, "saved", [&] { m_file->Replace(WriteDocument(content)); });
  m_bUnsaved = false;
}

void Document::Save(std::unique_ptr<DocumentContent> content, Boolean bOverwriteChanged) {
  Write(*content, bOverwriteChanged);
  m_content = std::move(content);
}

void Document::Seal() {
  Write(*m_content, false);
}

void Document::SaveAs(const Text& sPath, std::unique_ptr<DocumentContent> content,
                      Boolean bOverwriteChanged) {
  if (IsOwnFile(sPath)) return Save(std::move(content), bOverwriteChanged);
  Told(sPath, "saved", [&] {
    Text sAbsolute = Absolute(sPath).string();
    m_file = DocumentFile::Create(sAbsolute, WriteDocument(*content));
    m_sPath = std::move(sAbsolute);
  });
  m_content = std::move(content);
  m_bUnsaved = false;
}

}  // namespace orvane::console
