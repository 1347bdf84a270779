// A console document: its content, its file, and the hold on that file which lets only one console
// write it. Apart from widgets; the main window owns one. User-interface thread.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>

#include "console/document/document_content.h"
#include "console/document/document_file.h"

namespace orvane::console {

/// Why a document is not opened without a question, although it can be read.
enum class DocumentDoubt : std::uint8_t {
  ChangedOutside,  ///< its seals do not fit: it was merged, edited or mailed
  SaveBrokenOff,   ///< it is not whole, but what a save that broke off was to write is; asked first
};

class Document {
 public:
  /// Answers whether a doubtful document is opened.
  using OpenAnyway = std::function<platform::Boolean(DocumentDoubt doubt)>;

  /// A new, empty document without a file.
  explicit Document(DocumentBag::ObjectCreator creator = {});

  /// Reads a document. One that another console holds, or that may not be written, is opened
  /// read-only. When that is the file of the document present, the hold on it passes over once
  /// all is read, and present can no longer be saved. A doubtful one is opened as unsaved work when
  /// openAnyway says so, or is not given; otherwise the result is null. Fails with
  /// failure::kDocument, leaving the file, and present, untouched.
  static std::unique_ptr<Document> Open(const platform::Text& sPath,
                                        DocumentBag::ObjectCreator creator = {},
                                        Document* present = nullptr,
                                        const OpenAnyway& openAnyway = {});

  /// Reads a document to look at it, as Open does; it is not held and cannot be saved.
  static std::unique_ptr<Document> OpenToRead(const platform::Text& sPath,
                                              DocumentBag::ObjectCreator creator = {},
                                              const OpenAnyway& openAnyway = {});

  /// Absolute path, or empty for a document that was never saved.
  const platform::Text& Path() const noexcept { return m_sPath; }
  /// The file's name without its suffix, or "Untitled".
  platform::Text Name() const;
  platform::Boolean IsReadOnly() const noexcept { return m_file && m_file->IsReadOnly(); }
  /// True for a document that was opened in spite of a doubt, until it is saved.
  platform::Boolean IsUnsaved() const noexcept { return m_bUnsaved; }
  /// Why the document is read-only, as a sentence; empty when it is not.
  platform::Text ReadOnlyReason() const;

  const DocumentContent& Content() const noexcept { return *m_content; }
  DocumentContent& Content() noexcept { return *m_content; }
  /// An empty content for a save to fill, or for a comparison with what was saved.
  std::unique_ptr<DocumentContent> NewContent() const;

  /// True when the document's own file is meant by that path.
  platform::Boolean IsOwnFile(const platform::Text& sPath) const;
  /// True when another program has changed or replaced the file since it was last read or
  /// written here.
  platform::Boolean IsChangedOnDisk() const;
  /// Writes the content to the document's own file and keeps it. Fails with failure::kDocument,
  /// and the old file and content stay whole, when the file cannot be written, is read-only, or
  /// was changed by another program and bOverwriteChanged is false.
  void Save(std::unique_ptr<DocumentContent> content, platform::Boolean bOverwriteChanged = false);
  /// Writes the content that was read with seals that fit. Fails as Save does.
  void Seal();
  /// Writes the content to another file, replacing what is there, and goes on with that file; for
  /// the document's own file this is Save. Fails with failure::kDocument, also when another console
  /// holds that file; the document then stays what it was.
  void SaveAs(const platform::Text& sPath, std::unique_ptr<DocumentContent> content,
              platform::Boolean bOverwriteChanged = false);

 private:
  void Write(const DocumentContent& content, platform::Boolean bOverwriteChanged);
  /// Fills the content; false when a doubtful one is not to be opened.
  platform::Boolean ReadFrom(DocumentFile& file, const OpenAnyway& openAnyway);
  platform::Boolean IsBrokenSaveWhole(const DocumentFile& file) const;

  DocumentBag::ObjectCreator m_creator;
  std::unique_ptr<DocumentContent> m_content;
  platform::Text m_sPath;
  std::unique_ptr<DocumentFile> m_file;
  platform::Boolean m_bUnsaved = false;
};

}  // namespace orvane::console
