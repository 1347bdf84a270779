#include "platform/ado/extended_options.h"

#include "platform/conversions.h"

namespace orvane::platform {

Text ExtendedOptionsText(const std::function<Value(const char* sName)>& valueOf) {
  Text sOptions;
  for (const char* const sName : kExtendedOptions) {
    sOptions.append(sName).append(" = ").append(ToText(valueOf(sName))).append(";");
  }
  return sOptions;
}

}  // namespace orvane::platform
