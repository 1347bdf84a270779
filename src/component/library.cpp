#include "component/library.h"

#include <dlfcn.h>

#include <cstdio>
#include <exception>
#include <system_error>
#include <utility>

#include "component/library_file.h"
#include "component/trusted_path.h"
#include "platform/failure.h"
#include "platform/quoting.h"
#include "platform/told_failure.h"

namespace orvane::component {
namespace {

using platform::Failure;
using platform::HResult;
using platform::InQuotes;
using platform::Text;

[[noreturn]] void Fail(const Text& sDescription, platform::Long lNativeError = 0) {
  throw Failure(platform::failure::kComponent, sDescription, "component", lNativeError);
}

Text Hex(HResult result) {
  char buffer[16];
  std::snprintf(buffer, sizeof buffer, "0x%08X", static_cast<unsigned>(result));
  return buffer;
}

// What the loader says, without the path that the sentence names anyway.
Text LoaderMessage(const std::filesystem::path& path) {
  const char* const sMessage = dlerror();
  Text sText = sMessage == nullptr ? "the loader does not say why" : sMessage;
  const Text sPrefix = path.string() + ": ";
  if (sText.compare(0, sPrefix.size(), sPrefix) == 0) sText.erase(0, sPrefix.size());
  return sText;
}

[[noreturn]] void FailThrown(const std::filesystem::path& path, const char* sEntryPoint,
                             const Text& sWhat) {
  Fail("The component " + InQuotes(path.string()) + " broke off in " + sEntryPoint + " (" + sWhat +
       "); ask its maker for a corrected one.");
}

// Calls an entry point; what it throws by mistake becomes a sentence.
template <class Call>
HResult Guarded(const std::filesystem::path& path, const char* sEntryPoint, const Call& call) {
  Text sWhat = "unknown exception";
  try {
    return call();
  } catch (const std::exception& exception) {
    sWhat = platform::ToldFailure(exception, 0, {}).Description();
  } catch (...) {
    // Told like any other, by the text above.
  }
  FailThrown(path, sEntryPoint, sWhat);
}

}  // namespace

Library::Library(std::filesystem::path path) : m_path(std::move(path)) {
  std::error_code error;
  if (!std::filesystem::exists(m_path, error)) {
    Fail("The library " + InQuotes(m_path.string()) +
             " is missing; install its component again, or register the library where it is now.",
         error.value());
  }
  RequireTrusted(m_path);
  RequireWholeLibrary(m_path);
  dlerror();
  m_handle = dlopen(m_path.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (m_handle == nullptr) {
    Fail("The library " + InQuotes(m_path.string()) + " cannot be loaded: " +
         LoaderMessage(m_path) + "; install its component again with everything that it needs.");
  }
  try {
    m_registerServer = EntryPoint<RegisterFunction>("DllRegisterServer");
    m_unregisterServer = EntryPoint<RegisterFunction>("DllUnregisterServer");
    m_getClassObject = EntryPoint<GetClassObjectFunction>("DllGetClassObject");
    m_canUnloadNow = EntryPoint<CanUnloadNowFunction>("DllCanUnloadNow");
  } catch (const Failure&) {
    Close();
    throw;
  }
}

platform::ClassFactory& Library::GetClassObject(const Text& sProgId) const {
  void* factory = nullptr;
  const HResult result = Guarded(m_path, "DllGetClassObject", [&] {
    return m_getClassObject(sProgId.c_str(), platform::kClassFactoryInterface, &factory);
  });
  if (result == platform::kNoInterface) {
    Fail("The component " + InQuotes(m_path.string()) +
             " was made for another version of this program; install both from one release.",
         result);
  }
  if (result == platform::kClassNotAvailable) {
    Fail("The component " + InQuotes(m_path.string()) + " does not have the class \"" + sProgId +
             "\" that is registered for it; register it again with orvane-regsvr.",
         result);
  }
  if (result < 0 || factory == nullptr) {
    Fail("The component " + InQuotes(m_path.string()) + " refused the class \"" + sProgId + "\" (" +
             Hex(result) + "); ask its maker for a corrected one.",
         result);
  }
  return *static_cast<platform::ClassFactory*>(factory);
}

void Library::RegisterServer(platform::ComponentRegistrar& registrar) const {
  Run("DllRegisterServer", m_registerServer, registrar);
}

void Library::UnregisterServer(platform::ComponentRegistrar& registrar) const {
  Run("DllUnregisterServer", m_unregisterServer, registrar);
}

bool Library::CanUnloadNow() const noexcept {
  try {
    return m_canUnloadNow() == platform::kOk;
  } catch (...) {
    return false;
  }
}

void Library::Close() noexcept {
  if (m_handle != nullptr) dlclose(std::exchange(m_handle, nullptr));
}

template <class Function>
Function Library::EntryPoint(const char* sName) const {
  void* const address = dlsym(m_handle, sName);
  if (address == nullptr) {
    Fail(Text("There is no entry point ") + sName + " in the library " + InQuotes(m_path.string()) +
         ", and so it is no component; name another library.");
  }
  return reinterpret_cast<Function>(address);
}

void Library::Run(const char* sEntryPoint, RegisterFunction function,
                  platform::ComponentRegistrar& registrar) const {
  const HResult result = Guarded(m_path, sEntryPoint, [&] { return function(&registrar); });
  if (result < 0) {
    Fail("The component " + InQuotes(m_path.string()) + " failed in " + sEntryPoint + " (" +
             Hex(result) + "); ask its maker for a corrected one.",
         result);
  }
}

}  // namespace orvane::component
