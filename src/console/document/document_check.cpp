#include "console/document/document_check.h"

#include "console/document/document_format.h"
#include "platform/failure.h"

namespace orvane::console {

using platform::Failure;
using platform::Text;
namespace failure = platform::failure;

namespace {

void CheckObject(const DocumentLines::Object& object, const Text& sName) {
  try {
    object.bag.ReadProperty(object.sName, {});
  } catch (const Failure& failed) {
    throw Failure(failure::kDocument,
                  "The document " + sName + " holds at line " + std::to_string(object.nLine) +
                      " an object that cannot be made. " + failed.Description(),
                  "Document");
  }
}

}  // namespace

void CheckDocument(std::string_view sBytes, const Text& sName,
                   const DocumentBag::ObjectCreator& creator) {
  DocumentContent content(creator);
  DocumentLines lines;
  const DocumentSeal seal = ReadDocument(sBytes, sName, content, &lines);
  for (const auto& object : lines.objects) CheckObject(object, sName);
  if (seal == DocumentSeal::Whole) return;
  throw Failure(failure::kDocument,
                "The document " + sName +
                    " was changed outside since it was saved: the first seal that does not fit is "
                    "that of what begins at line " +
                    std::to_string(lines.nBroken) +
                    "; look at what was changed, and write new seals with \"orvane seal\".",
                "Document");
}

}  // namespace orvane::console
