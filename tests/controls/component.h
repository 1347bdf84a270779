// The grid library as a host loads it, for tests of its entry points.
#pragma once

#include <dlfcn.h>
#include <gtest/gtest.h>

#include "platform/component.h"

namespace orvane::controls {

class LoadedComponent {
 public:
  LoadedComponent() : m_handle(dlopen(ORVANE_CONTROLS_COMPONENT, RTLD_NOW | RTLD_LOCAL)) {
    EXPECT_NE(m_handle, nullptr) << dlerror();
  }
  LoadedComponent(const LoadedComponent&) = delete;
  LoadedComponent& operator=(const LoadedComponent&) = delete;
  ~LoadedComponent() { dlclose(m_handle); }

  platform::HResult Register(platform::ComponentRegistrar* registrar) const {
    return Entry<decltype(&DllRegisterServer)>("DllRegisterServer")(registrar);
  }
  platform::HResult Unregister(platform::ComponentRegistrar* registrar) const {
    return Entry<decltype(&DllUnregisterServer)>("DllUnregisterServer")(registrar);
  }
  platform::HResult GetClassObject(const char* sProgId, const char* sInterface,
                                   void** factory) const {
    return Entry<decltype(&DllGetClassObject)>("DllGetClassObject")(sProgId, sInterface, factory);
  }
  platform::HResult CanUnloadNow() const {
    return Entry<decltype(&DllCanUnloadNow)>("DllCanUnloadNow")();
  }
  platform::ObjectPtr Create(const char* sProgId, const platform::Services& services = {}) const {
    void* factory = nullptr;
    EXPECT_EQ(GetClassObject(sProgId, platform::kClassFactoryInterface, &factory), platform::kOk);
    return static_cast<platform::ClassFactory*>(factory)->CreateInstance(services);
  }
  void* Symbol(const char* sName) const { return dlsym(m_handle, sName); }

 private:
  template <class Function>
  Function Entry(const char* sName) const {
    return reinterpret_cast<Function>(dlsym(m_handle, sName));
  }
  void* m_handle;
};

}  // namespace orvane::controls
