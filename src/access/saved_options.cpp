#include "access/saved_options.h"

#include "platform/ado/extended_options.h"

namespace orvane::access {

platform::Text FormExtendedOptions(const platform::Text& sStored,
                                   const platform::ConnectionPtr& cn) {
  if (!cn) return sStored;
  return sStored + platform::ExtendedOptionsText(
                       [&](const char* sName) { return cn->Properties().Item(sName).Value(); });
}

}  // namespace orvane::access
