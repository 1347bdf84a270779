// The built component, loaded as a console loads it.
#include "platform/component.h"

#include <dlfcn.h>
#include <elf.h>
#include <gtest/gtest.h>

#include <cstring>
#include <fstream>
#include <functional>
#include <iterator>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "platform/console/snap_in.h"
#include "tests/snapin/fake_driver.h"

namespace orvane::snapin {
namespace {

using platform::HResult;

class RecordingRegistrar : public platform::ComponentRegistrar {
 public:
  void Register(const platform::ComponentDescription& description) override {
    if (onRegister) onRegister();
    registered.push_back(description);
  }
  void Unregister(const platform::Text& sProgId) override {
    if (onUnregister) onUnregister();
    unregistered.push_back(sProgId);
  }
  std::vector<platform::ComponentDescription> registered;
  std::vector<platform::Text> unregistered;
  std::function<void()> onRegister;
  std::function<void()> onUnregister;
};

class component : public testing::Test {
 protected:
  component() : library(dlopen(ORVANE_COMPONENT, RTLD_NOW | RTLD_LOCAL), &dlclose) {
    if (!library) throw std::runtime_error(dlerror());
    registerServer = Find<decltype(&DllRegisterServer)>("DllRegisterServer");
    unregisterServer = Find<decltype(&DllUnregisterServer)>("DllUnregisterServer");
    getClassObject = Find<decltype(&DllGetClassObject)>("DllGetClassObject");
    canUnloadNow = Find<decltype(&DllCanUnloadNow)>("DllCanUnloadNow");
  }

  template <class Function>
  Function Find(const char* sName) const {
    void* symbol = dlsym(library.get(), sName);
    EXPECT_NE(symbol, nullptr) << sName;
    return reinterpret_cast<Function>(symbol);
  }
  platform::Services Services() {
    platform::Services services;
    services.console = std::make_shared<fakes::FakeConsole>();
    services.objects =
        std::make_shared<fakes::FakeObjects>(std::make_shared<fakes::FakeHistorian>());
    services.forms = std::make_shared<fakes::FakeForms>();
    services.ui = std::make_shared<fakes::FakeUserInterface>();
    return services;
  }
  platform::ClassFactory* Factory() {
    void* factory = nullptr;
    EXPECT_EQ(getClassObject(platform::kSnapInProgId, platform::kClassFactoryInterface, &factory),
              platform::kOk);
    return static_cast<platform::ClassFactory*>(factory);
  }

  std::unique_ptr<void, int (*)(void*)> library;
  HResult (*registerServer)(platform::ComponentRegistrar*) = nullptr;
  HResult (*unregisterServer)(platform::ComponentRegistrar*) = nullptr;
  HResult (*getClassObject)(const char*, const char*, void**) = nullptr;
  HResult (*canUnloadNow)() = nullptr;
};

/// The bytes of the section of that name in an executable of this machine's kind.
std::vector<char> Section(const char* sPath, const char* sName) {
  std::ifstream file(sPath, std::ios::binary);
  const std::vector<char> bytes{std::istreambuf_iterator<char>(file), {}};
  Elf64_Ehdr header{};
  std::memcpy(&header, bytes.data(), sizeof header);
  std::vector<Elf64_Shdr> sections(header.e_shnum);
  std::memcpy(sections.data(), bytes.data() + header.e_shoff, sections.size() * sizeof(Elf64_Shdr));
  const char* sNames = bytes.data() + sections.at(header.e_shstrndx).sh_offset;
  for (const Elf64_Shdr& section : sections) {
    if (std::strcmp(sNames + section.sh_name, sName) != 0) continue;
    const char* begin = bytes.data() + section.sh_offset;
    return {begin, begin + section.sh_size};
  }
  return {};
}

/// The names that the library gives to those who link or load it.
std::set<std::string> ExportedNames(const char* sPath) {
  const auto bytes = Section(sPath, ".dynsym");
  const auto names = Section(sPath, ".dynstr");
  std::vector<Elf64_Sym> symbols(bytes.size() / sizeof(Elf64_Sym));
  std::memcpy(symbols.data(), bytes.data(), symbols.size() * sizeof(Elf64_Sym));
  std::set<std::string> exported;
  for (const Elf64_Sym& symbol : symbols) {
    if (symbol.st_shndx == SHN_UNDEF || ELF64_ST_BIND(symbol.st_info) == STB_LOCAL) continue;
    exported.insert(names.data() + symbol.st_name);
  }
  return exported;
}

TEST_F(component, exports_nothing_but_its_entry_points) {
  EXPECT_EQ(ExportedNames(ORVANE_COMPONENT),
            (std::set<std::string>{"DllCanUnloadNow", "DllGetClassObject", "DllRegisterServer",
                                   "DllUnregisterServer"}));
}

TEST_F(component, registers_its_one_class) {
  RecordingRegistrar registrar;
  EXPECT_EQ(registerServer(&registrar), platform::kOk);
  ASSERT_EQ(registrar.registered.size(), 1U);
  const auto& description = registrar.registered[0];
  EXPECT_EQ(description.sProgId, "ORVOLEDBSnapIn");
  EXPECT_EQ(description.sKind, "SnapIn");
  EXPECT_EQ(description.sDisplayName, "ORVANE OLE DB");
  EXPECT_EQ(description.sDescription, "Manages ORVANE System via ORVANE OLE DB");
  EXPECT_EQ(description.sVersion, "1.00.0001");
  EXPECT_EQ(description.sProvider, "ORVANE");
  EXPECT_EQ(description.sGuid.size(), 38U);
  EXPECT_EQ(unregisterServer(&registrar), platform::kOk);
  EXPECT_EQ(registrar.unregistered, (std::vector<platform::Text>{"ORVOLEDBSnapIn"}));
}

TEST_F(component, lets_no_failure_of_the_registration_out) {
  RecordingRegistrar registrar;
  registrar.onRegister = [] { throw platform::Failure(3807, "The disk is full."); };
  registrar.onUnregister = registrar.onRegister;
  EXPECT_EQ(registerServer(&registrar), platform::kFail);
  EXPECT_EQ(unregisterServer(&registrar), platform::kFail);
  EXPECT_EQ(registerServer(nullptr), platform::kFail);
  EXPECT_EQ(unregisterServer(nullptr), platform::kFail);
}

TEST_F(component, lets_nothing_else_out_of_the_registration_either) {
  RecordingRegistrar registrar;
  registrar.onRegister = [] { throw 1; };
  registrar.onUnregister = registrar.onRegister;
  EXPECT_EQ(registerServer(&registrar), platform::kFail);
  EXPECT_EQ(unregisterServer(&registrar), platform::kFail);
}

TEST_F(component, gives_a_factory_for_its_class_and_interface_only) {
  void* factory = this;
  EXPECT_EQ(getClassObject("Other", platform::kClassFactoryInterface, &factory),
            platform::kClassNotAvailable);
  EXPECT_EQ(factory, nullptr);
  EXPECT_EQ(getClassObject(platform::kSnapInProgId, "orvane.platform.ClassFactory.0", &factory),
            platform::kNoInterface);
  EXPECT_EQ(getClassObject(nullptr, nullptr, &factory), platform::kClassNotAvailable);
  EXPECT_EQ(getClassObject(platform::kSnapInProgId, nullptr, &factory), platform::kNoInterface);
  EXPECT_EQ(getClassObject(platform::kSnapInProgId, platform::kClassFactoryInterface, nullptr),
            platform::kFail);
  EXPECT_NE(Factory(), nullptr);
}

TEST_F(component, makes_snap_in_objects_that_a_console_can_use) {
  const auto object = Factory()->CreateInstance(Services());
  const auto snapIn = std::dynamic_pointer_cast<platform::SnapIn>(object);
  ASSERT_NE(snapIn, nullptr);
  EXPECT_EQ(snapIn->Description().sDisplayName, "ORVANE OLE DB");
  snapIn->SnapIn_Initialize();
}

TEST_F(component, refuses_to_work_without_what_it_always_needs) {
  using platform::Services;
  const std::vector<std::function<void(Services&)>> withouts = {
      [](Services& services) { services.console.reset(); },
      [](Services& services) { services.objects.reset(); },
      [](Services& services) { services.forms.reset(); },
      [](Services& services) { services.ui.reset(); }};
  for (std::size_t i = 0; i < withouts.size(); ++i) {
    Services services = component::Services();
    withouts[i](services);
    try {
      Factory()->CreateInstance(services);
      ADD_FAILURE() << "it was made without what it needs: " << i;
    } catch (const platform::Failure& failure) {
      EXPECT_EQ(failure.Number(), platform::failure::kComponent);
      EXPECT_EQ(failure.Description(),
                "The snap-in needs a console, data access, forms and a user interface; open it in "
                "a console that offers them.");
    }
  }
}

TEST_F(component, can_be_unloaded_only_when_no_object_of_it_is_alive) {
  EXPECT_EQ(canUnloadNow(), platform::kOk);
  const platform::Services services = Services();
  const auto console = std::static_pointer_cast<fakes::FakeConsole>(services.console);
  auto object = Factory()->CreateInstance(services);
  auto snapIn = std::dynamic_pointer_cast<platform::SnapIn>(object);
  EXPECT_EQ(canUnloadNow(), platform::kFalse);
  snapIn->SnapIn_Initialize();
  snapIn->ScopeItems_Initialize(console->staticItem);
  snapIn->SnapIn_Unload();
  snapIn.reset();
  object.reset();
  EXPECT_EQ(canUnloadNow(), platform::kFalse) << "the console still holds the root";
  console->staticItem->Tag(nullptr);
  EXPECT_EQ(canUnloadNow(), platform::kOk);
}

TEST_F(component, can_be_unloaded_and_loaded_again) {
  for (int i = 0; i < 2; ++i) {
    library.reset();
    EXPECT_EQ(dlopen(ORVANE_COMPONENT, RTLD_LAZY | RTLD_NOLOAD), nullptr)
        << "it is still in memory";
    library.reset(dlopen(ORVANE_COMPONENT, RTLD_NOW | RTLD_LOCAL));
    ASSERT_NE(library, nullptr);
    getClassObject = Find<decltype(&DllGetClassObject)>("DllGetClassObject");
    const auto snapIn =
        std::dynamic_pointer_cast<platform::SnapIn>(Factory()->CreateInstance(Services()));
    ASSERT_NE(snapIn, nullptr);
    snapIn->SnapIn_Initialize();
    snapIn->SnapIn_Terminate();
  }
}

TEST_F(component, carries_version_1_00_0001_as_file_and_product_version) {
  const auto record = Section(ORVANE_COMPONENT, ".orvane.version");
  platform::FixedFileInfo info{};
  ASSERT_EQ(record.size(), sizeof info);
  std::memcpy(&info, record.data(), sizeof info);
  EXPECT_EQ(info.dwSignature, platform::kFixedFileInfoSignature);
  for (const auto& [dwMS, dwLS] : {std::pair(info.dwFileVersionMS, info.dwFileVersionLS),
                                   std::pair(info.dwProductVersionMS, info.dwProductVersionLS)}) {
    EXPECT_EQ(dwMS >> 16U, 1U) << "major";
    EXPECT_EQ(dwMS & 0xFFFFU, 0U) << "minor";
    EXPECT_EQ(dwLS >> 16U, 0U) << "build";
    EXPECT_EQ(dwLS & 0xFFFFU, 1U) << "revision";
  }
}

}  // namespace
}  // namespace orvane::snapin
