#include "nodes/keyed_list.h"

#include <string>

#include "platform/conversions.h"

namespace orvane::nodes {

using platform::Failure;
using platform::Long;
using platform::Text;

namespace failure = platform::failure;

void FailKeyExists(const Text& sKey) {
  throw Failure(failure::kKeyExists,
                "The key \"" + sKey + "\" is already in the collection; choose another name.");
}

void FailNoSuchKey(const Text& sKey) {
  throw Failure(failure::kInvalidArgument, "The argument is invalid: the collection has no key \"" +
                                               sKey + "\"; check the name.");
}

void FailNoSuchPosition(Long lIndex, std::size_t nCount) {
  const Text sRemedy = nCount == 0 ? "the collection is empty."
                                   : "choose a position from 1 to " + std::to_string(nCount) + ".";
  throw Failure(failure::kOutOfRange,
                "The position " + std::to_string(lIndex) + " is out of range; " + sRemedy);
}

void FailNoItem() {
  throw Failure(failure::kObjectNotSet,
                "Nothing was given to be added to the collection; name what is to be added.");
}

Long PositionOf(const platform::Value& vtIndexKey) {
  return platform::ToLong(vtIndexKey);
}

}  // namespace orvane::nodes
