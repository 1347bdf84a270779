#include "access/extended_options.h"

#include "platform/conversions.h"

namespace orvane::access {
namespace {

constexpr const char* kNames[] = {"Log File",       "Log Level", "Identifier Prefixes",
                                  "Time as Double", "Time Zone", "Historians By GUID"};

}  // namespace

platform::Text FormExtendedOptions(const platform::Text& sStored,
                                   const platform::ConnectionPtr& cn) {
  platform::Text sOptions = sStored;
  if (!cn) return sOptions;
  for (const char* sName : kNames) {
    sOptions += sName;
    sOptions += " = ";
    sOptions += platform::ToText(cn->Properties().Item(sName).Value());
    sOptions += ';';
  }
  return sOptions;
}

}  // namespace orvane::access
