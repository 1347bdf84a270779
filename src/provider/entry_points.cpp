// The entry points of libORVOLEDB.so.
#include <atomic>
#include <cstring>

#include "platform/component.h"
#include "provider/historian_provider.h"

namespace {

using namespace orvane;

constexpr const char* kProgId = "ORVOLEDB";

std::atomic<long> g_nProviders{0};
// Sessions and above all rows are handed out for as long as someone wants them, and their code is
// here: after the first session the library stays.
std::atomic<bool> g_bSessionOpened{false};

class ComponentProvider final : public provider::HistorianProvider {
 public:
  ComponentProvider() { ++g_nProviders; }
  ~ComponentProvider() override { --g_nProviders; }
  std::unique_ptr<ado::Session> Open(const ado::ConnectionSettings& settings,
                                     const platform::Text& sPassword,
                                     std::stop_token stop) override {
    g_bSessionOpened = true;
    return HistorianProvider::Open(settings, sPassword, stop);
  }
};

class Factory final : public platform::ClassFactory {
 public:
  platform::ObjectPtr CreateInstance(const platform::Services& /*services*/) override {
    return std::make_shared<ComponentProvider>();
  }
};

// No exception leaves an entry point.
template <class Work>
platform::HResult Guarded(Work&& work) noexcept {
  try {
    return work();
  } catch (...) {
    return platform::kFail;
  }
}

}  // namespace

platform::HResult DllRegisterServer(platform::ComponentRegistrar* registrar) {
  return Guarded([&] {
    if (registrar == nullptr) return platform::kFail;
    registrar->Register({kProgId, "{6C0C2E6B-3D3B-4F0E-9C55-5B1B0F6F2A71}", "Provider",
                         "ORVANE OLE DB Provider", "Reaches ORVANE historians", "1.00.0001",
                         "ORVANE"});
    return platform::kOk;
  });
}

platform::HResult DllUnregisterServer(platform::ComponentRegistrar* registrar) {
  return Guarded([&] {
    if (registrar == nullptr) return platform::kFail;
    registrar->Unregister(kProgId);
    return platform::kOk;
  });
}

platform::HResult DllGetClassObject(const char* sProgId, const char* sInterface, void** factory) {
  return Guarded([&] {
    if (factory == nullptr) return platform::kFail;
    *factory = nullptr;
    if (sProgId == nullptr || std::strcmp(sProgId, kProgId) != 0) {
      return platform::kClassNotAvailable;
    }
    if (sInterface == nullptr || std::strcmp(sInterface, platform::kClassFactoryInterface) != 0) {
      return platform::kNoInterface;
    }
    static Factory theFactory;
    *factory = static_cast<platform::ClassFactory*>(&theFactory);
    return platform::kOk;
  });
}

platform::HResult DllCanUnloadNow() {
  return g_nProviders == 0 && !g_bSessionOpened ? platform::kOk : platform::kFalse;
}
