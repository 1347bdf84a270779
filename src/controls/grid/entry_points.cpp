// The four entry points of the grid library. No exception leaves them.
#include "controls/grid/class_factories.h"
#include "platform/component.h"

namespace {

using orvane::controls::Library;
using orvane::platform::HResult;

Library& TheLibrary() {
  static Library library;
  return library;
}

}  // namespace

HResult DllRegisterServer(orvane::platform::ComponentRegistrar* registrar) {
  if (!registrar) return orvane::platform::kFail;
  try {
    for (const auto& description : Library::Classes()) registrar->Register(description);
    return orvane::platform::kOk;
  } catch (...) {
    return orvane::platform::kFail;
  }
}

HResult DllUnregisterServer(orvane::platform::ComponentRegistrar* registrar) {
  if (!registrar) return orvane::platform::kFail;
  try {
    for (const auto& description : Library::Classes()) registrar->Unregister(description.sProgId);
    return orvane::platform::kOk;
  } catch (...) {
    return orvane::platform::kFail;
  }
}

HResult DllGetClassObject(const char* sProgId, const char* sInterface, void** factory) {
  if (!sProgId || !sInterface || !factory) return orvane::platform::kFail;
  *factory = nullptr;
  try {
    if (std::string_view(sInterface) != orvane::platform::kClassFactoryInterface) {
      return orvane::platform::kNoInterface;
    }
    orvane::platform::ClassFactory* found = TheLibrary().Factory(sProgId);
    if (!found) return orvane::platform::kClassNotAvailable;
    *factory = found;
    return orvane::platform::kOk;
  } catch (...) {
    return orvane::platform::kFail;
  }
}

HResult DllCanUnloadNow() {
  try {
    return TheLibrary().Unused() ? orvane::platform::kOk : orvane::platform::kFalse;
  } catch (...) {
    return orvane::platform::kFalse;
  }
}
