// The console document as bytes: one JSON object a line, a digest in the last one.
// docs/document-format.md describes it. Pure functions; the fuzz target and the tests call them
// without a file.
#pragma once

#include <string_view>

#include "console/document/document_content.h"

namespace orvane::console {

constexpr const char* kDocumentMediaType = "application/vnd.orvane.console";
constexpr const char* kDocumentSuffix = "orvc";
/// The version of the format that this program writes, and the newest that it reads.
constexpr int kDocumentVersion = 1;

/// The whole file. Texts and states that are not UTF-8 are written losslessly as bytes.
platform::Text WriteDocument(const DocumentContent& content);

/// Fails as ReadDocument does for the first line of a file, of which these are the first bytes:
/// when it is no document, or one of a newer version. What is behind that line is not looked at.
void CheckDocumentStart(std::string_view sBytes, const platform::Text& sName);

/// Reads a whole file into an empty content. The name is used in sentences only. Fails with
/// failure::kDocument for bytes that are no document, a damaged one, or one of a newer version;
/// the sentence names the line.
void ReadDocument(std::string_view sBytes, const platform::Text& sName, DocumentContent& content);

}  // namespace orvane::console
