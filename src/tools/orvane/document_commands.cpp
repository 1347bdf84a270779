#include "tools/orvane/document_commands.h"

#include "console/document/document.h"
#include "console/document/document_check.h"
#include "platform/console/snap_in.h"
#include "platform/failure.h"

namespace orvane::tools {

using console::Document;
using console::DocumentContent;
using console::DocumentDoubt;
using nodes::ServersNode;
using platform::Failure;
using platform::Text;
namespace failure = platform::failure;

namespace {

console::DocumentBag::ObjectCreator CreatorOf(const std::shared_ptr<DataHost>& host) {
  return [host](const Text& sProgId) { return host->CreateObject(sProgId); };
}

[[noreturn]] void FailBrokenOff(const Text& sDocument) {
  throw Failure(failure::kDocument,
                "The document " + sDocument +
                    " is not whole, as a save of it was broken off; open it in the console, which "
                    "offers what was to be saved.");
}

/// Nobody can be asked whether to go on.
bool RefuseDoubt(DocumentDoubt doubt, const Text& sDocument) {
  if (doubt == DocumentDoubt::SaveBrokenOff) FailBrokenOff(sDocument);
  throw Failure(failure::kDocument,
                "The document " + sDocument +
                    " was changed outside since it was saved; look at what was changed, then "
                    "write new seals with \"orvane seal\", or open and save it in the "
                    "console.");
}

}  // namespace

nodes::ServersNodePtr ModelOf(const DocumentContent& content, const Text& sDocument,
                              const std::shared_ptr<DataHost>& host) {
  const auto* const bag = content.FindSnapIn(platform::kSnapInProgId);
  if (!bag) return ServersNode::Create(host);
  try {
    const auto root = ServersNode::OfDocument(*bag, host);
    return root ? root : ServersNode::Create(host);
  } catch (const Failure& failed) {
    throw Failure(failure::kDocument, "The document " + sDocument +
                                          " cannot be used: what it keeps of the servers does not "
                                          "fit together. " +
                                          failed.Description());
  }
}

nodes::ServersNodePtr ReadModel(const Text& sDocument, const std::shared_ptr<DataHost>& host) {
  const auto document = Document::OpenToRead(
      sDocument, CreatorOf(host),
      [&](DocumentDoubt doubt) -> bool { return RefuseDoubt(doubt, sDocument); });
  host->DataAccess().DocumentOpened(document->Content().Texts());
  return ModelOf(document->Content(), sDocument, host);
}

std::unique_ptr<Document> OpenToChange(const Text& sDocument,
                                       const std::shared_ptr<DataHost>& host) {
  auto document =
      Document::Open(sDocument, CreatorOf(host), nullptr,
                     [&](DocumentDoubt doubt) -> bool { return RefuseDoubt(doubt, sDocument); });
  if (document->IsReadOnly()) {
    throw Failure(failure::kDocument, document->ReadOnlyReason() + " Nothing was changed.");
  }
  host->DataAccess().DocumentOpened(document->Content().Texts());
  return document;
}

void Check(const Text& sDocument, const std::shared_ptr<DataHost>& host, Output& output) {
  const auto document = Document::OpenToRead(sDocument, CreatorOf(host), [&](DocumentDoubt doubt) {
    if (doubt == DocumentDoubt::SaveBrokenOff) FailBrokenOff(sDocument);
    return true;  // where is told below
  });
  console::DocumentFile::OpenToRead(sDocument)->Read(
      [&](std::string_view sBytes) { console::CheckDocument(sBytes, sDocument, CreatorOf(host)); });
  ModelOf(document->Content(), sDocument, host);
  output.Write("The document " + sDocument + " is whole.\n");
}

void Seal(const Text& sDocument, const std::shared_ptr<DataHost>& host, Output& output) {
  const auto document =
      Document::Open(sDocument, CreatorOf(host), nullptr, [&](DocumentDoubt doubt) {
        if (doubt == DocumentDoubt::SaveBrokenOff) FailBrokenOff(sDocument);
        return true;
      });
  ModelOf(document->Content(), sDocument, host);
  if (!document->IsUnsaved()) {
    output.Write("The seals of the document " + sDocument + " fit; nothing was written.\n");
    return;
  }
  document->Seal();
  output.Write("Sealed the document " + sDocument + ".\n");
}

}  // namespace orvane::tools
