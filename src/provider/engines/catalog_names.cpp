#include "provider/engines/catalog_names.h"

#include "platform/failure.h"

namespace orvane::provider::engines {

void RefuseCatalogName(const platform::Text& sName, const char* sWhy) {
  throw platform::Failure(
      platform::failure::kInvalidArgument,
      "A catalog cannot be called \"" + sName + "\": " + sWhy + "; choose another name.");
}

}  // namespace orvane::provider::engines
