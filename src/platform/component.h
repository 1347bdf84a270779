// The four standard entry points of an in-process component, and what passes through them.
// No exception leaves an entry point: failures are result codes.
#pragma once

#include <cstdint>
#include <memory>

#include "platform/services.h"

namespace orvane::platform {

/// Result codes by their published numbers.
using HResult = std::int32_t;
constexpr HResult kOk = 0;
constexpr HResult kFalse = 1;
constexpr HResult kFail = static_cast<HResult>(0x80004005U);
constexpr HResult kNoInterface = static_cast<HResult>(0x80004002U);
constexpr HResult kClassNotAvailable = static_cast<HResult>(0x80040111U);

/// Identity of ClassFactory as declared here. It changes whenever an interface of this folder
/// changes, so that a component built against another one is refused by DllGetClassObject.
constexpr const char* kClassFactoryInterface = "orvane.platform.ClassFactory.5";

/// Makes objects of one class. Owned by its component's library.
class ClassFactory {
 public:
  ClassFactory() = default;
  ClassFactory(const ClassFactory&) = delete;
  ClassFactory& operator=(const ClassFactory&) = delete;
  virtual ~ClassFactory() = default;

  virtual ObjectPtr CreateInstance(const Services& services) = 0;
};

/// One class as a component registers it.
struct ComponentDescription {
  Text sProgId;
  Text sGuid;
  Text sKind;  ///< "SnapIn", "Control", "Object" or "Provider"
  Text sDisplayName;
  Text sDescription;
  Text sVersion;
  Text sProvider;  ///< the maker
};

/// Where a component writes itself in and out; the one who calls the entry point owns the files.
class ComponentRegistrar {
 public:
  ComponentRegistrar() = default;
  ComponentRegistrar(const ComponentRegistrar&) = delete;
  ComponentRegistrar& operator=(const ComponentRegistrar&) = delete;
  virtual ~ComponentRegistrar() = default;

  virtual void Register(const ComponentDescription& description) = 0;
  /// Removes the class; an absent one is no failure.
  virtual void Unregister(const Text& sProgId) = 0;
};

}  // namespace orvane::platform

#if defined(__GNUC__)
#define ORVANE_ENTRY_POINT extern "C" __attribute__((visibility("default")))
#else
#define ORVANE_ENTRY_POINT extern "C"
#endif

/// Registers the component's classes.
ORVANE_ENTRY_POINT orvane::platform::HResult DllRegisterServer(
    orvane::platform::ComponentRegistrar* registrar);
ORVANE_ENTRY_POINT orvane::platform::HResult DllUnregisterServer(
    orvane::platform::ComponentRegistrar* registrar);
/// Gives the class's factory, as a ClassFactory*, when sInterface is kClassFactoryInterface.
ORVANE_ENTRY_POINT orvane::platform::HResult DllGetClassObject(const char* sProgId,
                                                               const char* sInterface,
                                                               void** factory);
/// kOk when no object of the component is alive any more, kFalse otherwise.
ORVANE_ENTRY_POINT orvane::platform::HResult DllCanUnloadNow();
