// The four standard entry points of the component. Nothing thrown leaves them: each ends in a code.
#include <cstring>

#include "snapin/class_factory.h"
#include "snapin/description.h"

namespace {

using orvane::platform::HResult;

template <class Body>
HResult NoFailureLeaves(Body&& body) noexcept {
  try {
    return body();
  } catch (...) {
    return orvane::platform::kFail;
  }
}

}  // namespace

HResult DllRegisterServer(orvane::platform::ComponentRegistrar* registrar) {
  return NoFailureLeaves([&] {
    if (registrar == nullptr) return orvane::platform::kFail;
    registrar->Register(orvane::snapin::RegisteredClass());
    return orvane::platform::kOk;
  });
}

HResult DllUnregisterServer(orvane::platform::ComponentRegistrar* registrar) {
  return NoFailureLeaves([&] {
    if (registrar == nullptr) return orvane::platform::kFail;
    registrar->Unregister(orvane::platform::kSnapInProgId);
    return orvane::platform::kOk;
  });
}

HResult DllGetClassObject(const char* sProgId, const char* sInterface, void** factory) {
  return NoFailureLeaves([&] {
    if (factory == nullptr) return orvane::platform::kFail;
    *factory = nullptr;
    if (sProgId == nullptr || std::strcmp(sProgId, orvane::platform::kSnapInProgId) != 0) {
      return orvane::platform::kClassNotAvailable;
    }
    if (sInterface == nullptr ||
        std::strcmp(sInterface, orvane::platform::kClassFactoryInterface) != 0) {
      return orvane::platform::kNoInterface;
    }
    static orvane::snapin::SnapInFactory snapInFactory;
    *factory = static_cast<orvane::platform::ClassFactory*>(&snapInFactory);
    return orvane::platform::kOk;
  });
}

HResult DllCanUnloadNow() {
  return orvane::snapin::AliveObjects() == 0 ? orvane::platform::kOk : orvane::platform::kFalse;
}
