#include "component/runtime.h"

#include <dlfcn.h>
#include <gmock/gmock.h>

#include <memory>
#include <thread>
#include <vector>

#include "component/registration.h"
#include "platform/failure.h"
#include "platform/property_bag.h"
#include "tests/component/temporary_folder.h"

namespace orvane::component {
namespace {

using platform::Failure;
using platform::PersistedObject;
using platform::Text;
using test::Fixture;
using test::TemporaryFolder;
using test::WriteText;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class RuntimeTest : public testing::Test {
 protected:
  // Registers by hand, as the broken ones cannot register themselves.
  void Register(const std::filesystem::path& library, const Text& sProgId = "Fixture.Note") {
    platform::ComponentDescription description;
    description.sProgId = sProgId;
    WriteText(m_folder / ClassFileName(sProgId), WriteClassFile({description, library}));
  }

  // The failure with which creating the class of that library ends.
  Failure FailureOf(const Text& sFixture) {
    Register(Fixture(sFixture));
    return CreationFailure();
  }

  Failure CreationFailure(const Text& sProgId = "Fixture.Note") {
    try {
      m_runtime.CreateInstance(sProgId, m_services);
    } catch (const Failure& failure) {
      return failure;
    }
    ADD_FAILURE() << "nothing failed";
    return {0, ""};
  }

  static bool IsLoaded(const std::filesystem::path& library) {
    void* const handle = dlopen(library.c_str(), RTLD_LAZY | RTLD_NOLOAD);
    if (handle != nullptr) dlclose(handle);
    return handle != nullptr;
  }

  TemporaryFolder m_folder;
  platform::Services m_services;
  Runtime m_runtime{Registry({m_folder.Path()})};
};

TEST_F(RuntimeTest, an_object_is_made_by_its_progid_and_has_its_interfaces) {
  RegisterLibrary(Fixture("good"), m_folder.Path());
  const auto note = m_runtime.Create<PersistedObject>("Fixture.Note", m_services);
  EXPECT_EQ(note->ProgId(), "Fixture.Note");
  note->ReadState("hello");
  EXPECT_EQ(note->WriteState(), "hello");
  const platform::ObjectPtr object = note;
  EXPECT_EQ(std::dynamic_pointer_cast<PersistedObject>(object), note);
}

TEST_F(RuntimeTest, a_failure_thrown_by_an_object_of_a_component_is_caught_by_its_type) {
  Register(Fixture("good"));
  const auto note = m_runtime.Create<PersistedObject>("Fixture.Note", m_services);
  try {
    note->ReadState("");
    ADD_FAILURE() << "nothing failed";
  } catch (const Failure& failure) {
    EXPECT_EQ(failure.Number(), platform::failure::kTypeMismatch);
    EXPECT_EQ(failure.Description(), "A note has a text; enter one.");
  }
}

}  // namespace
}  // namespace orvane::component
