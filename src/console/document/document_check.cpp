#include "console/document/document_check.h"

#include <algorithm>

#include "console/document/document_format.h"
#include "console/document/document_line.h"
#include "platform/failure.h"

namespace orvane::console {

using platform::Failure;
using platform::Text;
namespace failure = platform::failure;

namespace {

/// The number of the line that keeps an object under that name; 0 when there is none.
std::size_t LineOfObject(std::string_view sBytes, const Text& sName) {
  std::size_t nLine = 0;
  for (std::size_t nBegin = 0; nBegin < sBytes.size();) {
    ++nLine;
    const std::size_t nEnd = std::min(sBytes.find('\n', nBegin), sBytes.size());
    DocumentLine line;
    line.Read(sBytes.substr(nBegin, nEnd - nBegin));
    const Text* const sFound = line.Find<Text>("name");
    if (line.Has("object") && sFound && *sFound == sName) return nLine;
    nBegin = nEnd + 1;
  }
  return 0;
}

void CheckObjects(const DocumentBag& bag, std::string_view sBytes, const Text& sName) {
  for (const DocumentBag::Entry& entry : bag.Entries()) {
    if (!std::holds_alternative<StoredObject>(entry.value)) continue;
    try {
      bag.ReadProperty(entry.sName, {});
    } catch (const Failure& failed) {
      throw Failure(failure::kDocument,
                    "The document " + sName + " holds at line " +
                        std::to_string(LineOfObject(sBytes, entry.sName)) +
                        " an object that cannot be made. " + failed.Description(),
                    "Document");
    }
  }
}

}  // namespace

void CheckDocument(std::string_view sBytes, const Text& sName,
                   const DocumentBag::ObjectCreator& creator) {
  DocumentContent content(creator);
  std::size_t nBroken = 0;
  const DocumentSeal seal = ReadDocument(sBytes, sName, content, &nBroken);
  for (const auto& section : content.SnapIns()) CheckObjects(*section.bag, sBytes, sName);
  CheckObjects(content.View(), sBytes, sName);
  if (seal == DocumentSeal::Whole) return;
  throw Failure(failure::kDocument,
                "The document " + sName +
                    " was changed outside since it was saved: the first seal that does not fit is "
                    "that of what begins at line " +
                    std::to_string(nBroken) +
                    "; look at what was changed, and write new seals with \"orvane seal\".",
                "Document");
}

}  // namespace orvane::console
