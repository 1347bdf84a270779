#include "provider/historian/catalog_record.h"

#include <algorithm>

#include "platform/case_folding.h"
#include "platform/failure.h"
#include "platform/historian_names.h"
#include "provider/engines/catalog_names.h"
#include "provider/engines/same_catalog.h"

namespace orvane::provider::historian {

using platform::Text;

void CheckCatalogName(const Text& sName) {
  const auto fail = [&](const char* sWhy) { engines::RefuseCatalogName(sName, sWhy); };
  if (sName.empty()) {
    throw platform::Failure(platform::failure::kInvalidArgument,
                            "A catalog needs a name; enter one.");
  }
  if (sName.size() > 128) fail("the name is longer than 128 bytes");
  if (sName.front() == ' ' || sName.back() == ' ') fail("it begins or ends with a blank");
  // A key of the tree is made of names with dots between them.
  if (sName.find('.') != Text::npos) fail("it holds a dot");
  if (sName.front() == '{') fail("names in braces are identities");
  // Each of these would not come back from a file name, a statement or a document as it went in.
  constexpr std::string_view kForbidden = "/\\\"'`[];\x7F";
  if (std::any_of(sName.begin(), sName.end(), [&](char c) {
        return static_cast<unsigned char>(c) < 0x20 || kForbidden.find(c) != Text::npos;
      })) {
    fail("it holds a quote, a bracket, a slash, a semicolon or a control character");
  }
  const Text sFolded = platform::FoldCase(sName);
  if (sFolded.starts_with("orv_")) fail(engines::kPrefixedName);
  // The last two are the engine's.
  for (const char* const sOwn :
       {platform::kSystemCatalog, platform::kFunctionsCatalog, "main", "temp"}) {
    if (engines::IsSameCatalog(sName, sOwn)) fail("the historian uses this name itself");
  }
}

}  // namespace orvane::provider::historian
