// libORVOLEDB.so as a host meets it.
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <stdlib.h>
#include <unistd.h>

#include <thread>

#include "ado/provider.h"
#include "platform/component.h"
#include "tests/ado/failure_of.h"
#include "tests/fakes/gate.h"
#include "tests/provider/engines/database_folder.h"
#include "tests/provider/engines/process_parts.h"
#include "tests/provider/engines/silent_server.h"
#include "tests/provider/temporary_root.h"

namespace orvane::provider {
namespace {

using platform::Text;

class Registrar final : public platform::ComponentRegistrar {
 public:
  void Register(const platform::ComponentDescription& description) override {
    registered.push_back(description);
  }
  void Unregister(const Text& sProgId) override { sUnregistered += sProgId; }
  std::vector<platform::ComponentDescription> registered;
  Text sUnregistered;
};

class entry_points : public testing::Test {
 protected:
  entry_points() : m_library(dlopen(ORVANE_PROVIDER_LIBRARY, RTLD_NOW | RTLD_LOCAL)) {}
  // Rows may outlive a test, so the library stays.
  template <class Function>
  Function* Get(const char* sName) {
    return m_library == nullptr ? nullptr : reinterpret_cast<Function*>(dlsym(m_library, sName));
  }
  std::shared_ptr<ado::Provider> Create() {
    void* factory = nullptr;
    const auto result = Get<decltype(DllGetClassObject)>("DllGetClassObject")(
        "ORVOLEDB", platform::kClassFactoryInterface, &factory);
    if (result != platform::kOk) return nullptr;
    return std::dynamic_pointer_cast<ado::Provider>(
        static_cast<platform::ClassFactory*>(factory)->CreateInstance({}));
  }

  void* m_library;
};

TEST_F(entry_points, register_and_unregister_the_provider) {
  ASSERT_NE(m_library, nullptr) << dlerror();
  Registrar registrar;
  EXPECT_EQ(Get<decltype(DllRegisterServer)>("DllRegisterServer")(&registrar), platform::kOk);
  ASSERT_EQ(registrar.registered.size(), 1U);
  EXPECT_EQ(registrar.registered[0].sProgId, "ORVOLEDB");
  EXPECT_EQ(registrar.registered[0].sKind, "Provider");
  EXPECT_EQ(registrar.registered[0].sVersion, "1.00.0001");
  EXPECT_EQ(Get<decltype(DllUnregisterServer)>("DllUnregisterServer")(&registrar), platform::kOk);
  EXPECT_EQ(registrar.sUnregistered, "ORVOLEDB");
  EXPECT_EQ(Get<decltype(DllRegisterServer)>("DllRegisterServer")(nullptr), platform::kFail);
}

TEST_F(entry_points, refuse_other_classes_and_interfaces) {
  ASSERT_NE(m_library, nullptr) << dlerror();
  auto* const get = Get<decltype(DllGetClassObject)>("DllGetClassObject");
  void* factory = this;
  EXPECT_EQ(get("ORVOLEDBX", platform::kClassFactoryInterface, &factory),
            platform::kClassNotAvailable);
  EXPECT_EQ(factory, nullptr);
  EXPECT_EQ(get("ORVOLEDB", "orvane.platform.ClassFactory.0", &factory), platform::kNoInterface);
  EXPECT_EQ(get(nullptr, platform::kClassFactoryInterface, &factory), platform::kClassNotAvailable);
  EXPECT_EQ(get("ORVOLEDB", platform::kClassFactoryInterface, nullptr), platform::kFail);
}

TEST_F(entry_points, give_a_provider_that_works_and_keeps_its_library) {
  ASSERT_NE(m_library, nullptr) << dlerror();
  const TemporaryRoot root;
  ASSERT_EQ(setenv("XDG_DATA_HOME", root.Path().c_str(), 1), 0);
  ASSERT_EQ(setenv("XDG_STATE_HOME", root.Path().c_str(), 1), 0);
  auto* const canUnload = Get<decltype(DllCanUnloadNow)>("DllCanUnloadNow");
  EXPECT_EQ(canUnload(), platform::kOk);
  auto provider = Create();
  ASSERT_NE(provider, nullptr);
  EXPECT_EQ(canUnload(), platform::kFalse);
  provider.reset();
  EXPECT_EQ(canUnload(), platform::kOk);
  provider = Create();
  const auto rs = provider->Open(ado::ConnectionSettings::Parse(""), "", {})
                      ->Execute({"SELECT count(*) FROM Orvane..Historians", 0, {}}, {})
                      .recordset;
  provider.reset();
  // The rows are still the library's.
  EXPECT_EQ(canUnload(), platform::kFalse);
  EXPECT_EQ(Rows(*rs), "0\n");
  EXPECT_TRUE(std::filesystem::exists(root.Path() / "orvane" / "historians" / "localhost"));
}

bool IsLoaded() {
  void* const library = dlopen(ORVANE_PROVIDER_LIBRARY, RTLD_LAZY | RTLD_NOLOAD);
  if (library != nullptr) dlclose(library);
  return library != nullptr;
}

// A provider of the library, however it was loaded.
std::shared_ptr<ado::Provider> ProviderOf(void* library) {
  void* factory = nullptr;
  reinterpret_cast<decltype(DllGetClassObject)*>(dlsym(library, "DllGetClassObject"))(
      "ORVOLEDB", platform::kClassFactoryInterface, &factory);
  return std::dynamic_pointer_cast<ado::Provider>(
      static_cast<platform::ClassFactory*>(factory)->CreateInstance({}));
}

// Unloads the library while a server says nothing, as a host may that does not ask, has the server
// hang up then, and ends: whatever of the library still ran would run into nothing.
[[noreturn]] void UnloadBesideASilentServer() {
  tests::SilentServer silent;
  const auto threads = tests::Threads();
  void* const library = dlopen(ORVANE_PROVIDER_LIBRARY, RTLD_NOW | RTLD_LOCAL);
  {
    const auto provider = ProviderOf(library);
    std::stop_source stop;
    std::thread stops([&] {
      silent.TakeCall();
      stop.request_stop();
    });
    const auto failed = tests::FailureOf([&] {
      provider->Open(ado::ConnectionSettings::Parse("Data Source = " + silent.Address()), "",
                     stop.get_token());
    });
    stops.join();
    if (failed.lNumber != platform::failure::kCancelled) _exit(2);
  }
  // Other tests may have it loaded, too.
  do {
    dlclose(library);
  } while (IsLoaded());
  silent.HangUp();
  while (tests::Threads() > threads) std::this_thread::yield();
  exit(0);
}

// The same while a statement goes on that did not hear its stop: that one needs the library.
[[noreturn]] void UnloadBesideALeftStatement() {
  const TemporaryRoot root;
  setenv("XDG_DATA_HOME", root.Path().c_str(), 1);
  setenv("XDG_STATE_HOME", root.Path().c_str(), 1);
  fakes::Gate ends;
  std::stop_source stop;
  const tests::SqlCall call([&] {
    stop.request_stop();
    ends.Wait();
  });
  const auto threads = tests::Threads();
  void* const library = dlopen(ORVANE_PROVIDER_LIBRARY, RTLD_NOW | RTLD_LOCAL);
  {
    const auto session = ProviderOf(library)->Open(ado::ConnectionSettings::Parse(""), "", {});
    const auto failed = tests::FailureOf([&] {
      session->Execute({"SELECT called()", 0, {}}, stop.get_token());
    });
    if (failed.lNumber != platform::failure::kCancelled) _exit(2);
  }
  constexpr int kMostUses = 100;
  for (int n = 0; n < kMostUses && IsLoaded(); ++n) dlclose(library);
  ends.Open();
  while (tests::Threads() > threads) std::this_thread::yield();
  exit(0);
}

TEST(entry_points_death, the_library_stays_while_a_statement_is_left_to_itself) {
  EXPECT_EXIT(UnloadBesideALeftStatement(), testing::ExitedWithCode(0), "");
}

TEST(entry_points_death, the_library_goes_while_a_server_says_nothing) {
  EXPECT_EXIT(UnloadBesideASilentServer(), testing::ExitedWithCode(0), "");
}

}  // namespace
}  // namespace orvane::provider
