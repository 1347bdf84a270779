// The console document as bytes: one JSON object a line, in parts that end in a seal each.
// docs/document-format.md describes it. Pure functions; the fuzz target and the tests call them
// without a file.
#pragma once

#include <string_view>
#include <vector>

#include "console/document/document_content.h"
#include "console/document/document_seal.h"

namespace orvane::console {

constexpr const char* kDocumentMediaType = "application/vnd.orvane.console";
constexpr const char* kDocumentSuffix = "orvc";
/// What the first line names as its format.
constexpr const char* kDocumentFormat = "orvane-console";
/// The version of the format that this program writes, and the newest that it reads.
constexpr int kDocumentVersion = 3;

/// The whole file. Texts and states that are not UTF-8 are written losslessly as bytes.
platform::Text WriteDocument(const DocumentContent& content);

/// Where things stand in a file that was read, by the numbers of its lines.
struct DocumentLines {
  struct Object {
    const DocumentBag& bag;
    const platform::Text& sName;  ///< owned by the bag
    std::size_t nLine;
  };

  /// The first line that no seal fits; behind a part or a section that was changed, that is where
  /// it begins. 0 when all fit.
  std::size_t nBroken = 0;
  std::vector<Object> objects;
};

/// Fails as ReadDocument does for the first line of a file, of which these are the first bytes:
/// when it is no document, or one of a newer version. What is behind that line is not looked at.
void CheckDocumentStart(std::string_view sBytes, const platform::Text& sName);

/// Reads a whole file into an empty content and tells whether it is as a console wrote it. Lines
/// may end with a carriage return, and a byte order mark may stand before the first. The name is
/// used in sentences only. Where things stand goes to lines, if there is one. Fails with
/// failure::kDocument for bytes that are no document, a damaged one, or one of a newer version; the
/// sentence names the line.
DocumentSeal ReadDocument(std::string_view sBytes, const platform::Text& sName,
                          DocumentContent& content, DocumentLines* lines = nullptr);

}  // namespace orvane::console
