#include "component/runtime.h"

#include <dlfcn.h>
#include <gmock/gmock.h>

#include <memory>
#include <thread>
#include <vector>

#include "component/registration.h"
#include "platform/failure.h"
#include "platform/property_bag.h"
#include "tests/component/fixtures/note.h"
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

TEST_F(RuntimeTest, a_maker_makes_many_objects_of_a_class_looked_up_once) {
  RegisterLibrary(Fixture("good"), m_folder.Path());
  {
    const auto make = m_runtime.Maker("Fixture.Note");
    UnregisterLibrary(Fixture("good"), m_folder.Path());
    const auto first = make(m_services);
    const auto second = make(m_services);
    EXPECT_NE(std::dynamic_pointer_cast<PersistedObject>(first), nullptr);
    EXPECT_NE(first, second);
    m_runtime.UnloadUnused();
    EXPECT_TRUE(IsLoaded(Fixture("good")));
  }
  m_runtime.UnloadUnused();
  EXPECT_FALSE(IsLoaded(Fixture("good")));
}

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

TEST_F(RuntimeTest, a_progid_is_found_in_any_case) {
  Register(Fixture("good"));
  EXPECT_EQ(m_runtime.Create<PersistedObject>("FIXTURE.note", m_services)->ProgId(),
            "Fixture.Note");
}

TEST_F(RuntimeTest, a_library_is_loaded_once_by_whatever_path) {
  std::filesystem::create_symlink(Fixture("good"), m_folder / "link.so");
  Register(Fixture("good"));
  const auto first = m_runtime.Create<PersistedObject>("Fixture.Note", m_services);
  Register(m_folder / "link.so");
  const auto second = m_runtime.Create<PersistedObject>("Fixture.Note", m_services);
  EXPECT_EQ(first->WriteState(), "note 1");
  EXPECT_EQ(second->WriteState(), "note 2");
  EXPECT_THAT(m_runtime.Loaded(), ElementsAre(std::filesystem::canonical(Fixture("good"))));
}

TEST_F(RuntimeTest, a_class_that_is_not_registered_is_named) {
  const auto failure = CreationFailure("Nobody.Knows");
  EXPECT_EQ(failure.Number(), platform::failure::kComponent);
  EXPECT_EQ(failure.Description(),
            "No component is registered as \"Nobody.Knows\"; register its library with "
            "orvane-regsvr.");
}

TEST_F(RuntimeTest, a_missing_library_is_named) {
  const auto failure = FailureOf("of_nobody");
  EXPECT_EQ(failure.Number(), platform::failure::kComponent);
  EXPECT_EQ(failure.Description(),
            "The library \"" + Fixture("of_nobody").string() +
                "\" is missing; install its component again, or register the library where it "
                "is now.");
}

TEST_F(RuntimeTest, a_file_that_is_no_library_says_what_the_loader_says) {
  const auto library = m_folder / "text.so";
  WriteText(library, "not an executable at all");
  Register(library);
  const auto failure = CreationFailure();
  EXPECT_EQ(failure.Number(), platform::failure::kComponent);
  EXPECT_THAT(failure.Description(), HasSubstr("The library \"" + library.string() +
                                               "\" cannot be loaded: file too short; install"));
}

TEST_F(RuntimeTest, a_library_that_needs_an_absent_name_cannot_be_loaded) {
  const auto failure = FailureOf("unresolved");
  EXPECT_EQ(failure.Number(), platform::failure::kComponent);
  EXPECT_THAT(failure.Description(), HasSubstr("cannot be loaded: undefined symbol: "));
  EXPECT_THAT(failure.Description(), HasSubstr("AbsentEverywhere"));
}

TEST_F(RuntimeTest, a_library_that_lacks_an_entry_point_is_no_component) {
  for (const Text sName :
       {"RegisterServer", "UnregisterServer", "GetClassObject", "CanUnloadNow"}) {
    const Text sFixture = "lacks_" + sName;
    const auto failure = FailureOf(sFixture);
    EXPECT_EQ(failure.Number(), platform::failure::kComponent);
    EXPECT_EQ(failure.Description(), "There is no entry point Dll" + sName + " in the library \"" +
                                         Fixture(sFixture).string() +
                                         "\", and so it is no component; name another library.");
    EXPECT_FALSE(IsLoaded(Fixture(sFixture)));
  }
}

TEST_F(RuntimeTest, a_component_of_another_version_is_refused) {
  const auto failure = FailureOf("wrong_version");
  EXPECT_EQ(failure.Number(), platform::failure::kComponent);
  EXPECT_EQ(failure.Description(),
            "The component \"" + Fixture("wrong_version").string() +
                "\" was made for another version of this program; install both from one release.");
}

TEST_F(RuntimeTest, a_class_that_its_component_does_not_know_is_named) {
  const auto failure = FailureOf("unknown_class");
  EXPECT_EQ(failure.Number(), platform::failure::kComponent);
  EXPECT_THAT(failure.Description(), HasSubstr("does not have the class \"Fixture.Note\""));
}

TEST_F(RuntimeTest, a_result_of_failure_is_told_by_its_number) {
  const auto failure = FailureOf("refuses");
  EXPECT_EQ(failure.Number(), platform::failure::kComponent);
  EXPECT_EQ(failure.NativeError(), platform::kFail);
  EXPECT_THAT(failure.Description(), HasSubstr("refused the class \"Fixture.Note\" (0x80004005)"));
}

TEST_F(RuntimeTest, success_without_a_factory_is_a_failure) {
  const auto failure = FailureOf("no_factory");
  EXPECT_EQ(failure.Number(), platform::failure::kComponent);
  EXPECT_THAT(failure.Description(), HasSubstr("refused the class \"Fixture.Note\""));
}

TEST_F(RuntimeTest, an_exception_from_an_entry_point_is_caught) {
  const auto failure = FailureOf("throws_GetClassObject");
  EXPECT_EQ(failure.Number(), platform::failure::kComponent);
  EXPECT_EQ(failure.Description(),
            "The component \"" + Fixture("throws_GetClassObject").string() +
                "\" broke off in DllGetClassObject (the fixture throws); ask its maker for a "
                "corrected one.");
  EXPECT_THAT(FailureOf("throws_number").Description(), HasSubstr("(unknown exception)"));
}

TEST_F(RuntimeTest, a_component_that_throws_when_asked_to_unload_stays_loaded) {
  Register(Fixture("throws_CanUnloadNow"));
  m_runtime.CreateInstance("Fixture.Note", m_services).reset();
  m_runtime.UnloadUnused();
  EXPECT_TRUE(IsLoaded(Fixture("throws_CanUnloadNow")));
}

TEST_F(RuntimeTest, an_exception_from_a_factory_is_caught) {
  auto failure = FailureOf("factory_throws");
  EXPECT_EQ(failure.Number(), platform::failure::kComponent);
  EXPECT_EQ(failure.Description(),
            "The component \"Fixture.Note\" could not be created: the fixture throws");
  EXPECT_THAT(FailureOf("factory_throws_number").Description(), HasSubstr("unknown exception"));
}

TEST_F(RuntimeTest, a_failure_from_a_factory_keeps_its_sentence_and_number) {
  const auto failure = FailureOf("factory_fails");
  EXPECT_EQ(failure.Number(), platform::failure::kComponent);
  EXPECT_EQ(failure.NativeError(), platform::failure::kNoRights);
  EXPECT_EQ(failure.Description(),
            "The component \"Fixture.Note\" could not be created: The folder is locked away.");
}

TEST_F(RuntimeTest, a_cancel_from_a_factory_stays_a_cancel) {
  const auto failure = FailureOf("factory_cancelled");
  EXPECT_EQ(failure.Number(), platform::failure::kCancelled);
  EXPECT_EQ(failure.Description(), "Cancelled.");
}

TEST_F(RuntimeTest, a_factory_that_gives_nothing_is_a_failure) {
  const auto failure = FailureOf("gives_null");
  EXPECT_EQ(failure.Number(), platform::failure::kComponent);
  EXPECT_EQ(failure.Description(),
            "The component \"Fixture.Note\" gave no object when one was created; ask its maker "
            "for a corrected one.");
}

TEST_F(RuntimeTest, an_object_without_the_wanted_interface_is_of_another_kind) {
  Register(Fixture("good"));
  try {
    m_runtime.Create<platform::Recordset>("Fixture.Note", m_services);
    ADD_FAILURE() << "nothing failed";
  } catch (const Failure& failure) {
    EXPECT_EQ(failure.Number(), platform::failure::kComponent);
    EXPECT_THAT(failure.Description(), HasSubstr("is of another kind than is needed here"));
  }
}

TEST_F(RuntimeTest, a_damaged_registration_is_a_sentence) {
  WriteText(m_folder / ClassFileName("Fixture.Note"), "{\"format\":1,");
  const auto failure = CreationFailure();
  EXPECT_EQ(failure.Number(), platform::failure::kComponent);
  EXPECT_THAT(failure.Description(), HasSubstr("fixture.note.json\" is damaged; register"));
}

TEST_F(RuntimeTest, nothing_broken_stays_loaded_or_stands_in_the_way_of_the_good_one) {
  for (const Text sFixture : {"wrong_version", "throws_GetClassObject", "factory_throws"}) {
    FailureOf(sFixture);
    m_runtime.UnloadUnused();
    EXPECT_FALSE(IsLoaded(Fixture(sFixture))) << sFixture;
  }
  EXPECT_THAT(m_runtime.Loaded(), IsEmpty());
  Register(Fixture("good"));
  EXPECT_NE(m_runtime.CreateInstance("Fixture.Note", m_services), nullptr);
}

TEST_F(RuntimeTest, a_library_stays_loaded_while_an_object_lives) {
  Register(Fixture("good"));
  auto note = m_runtime.Create<PersistedObject>("Fixture.Note", m_services);
  m_runtime.UnloadUnused();
  EXPECT_TRUE(IsLoaded(Fixture("good")));
  EXPECT_EQ(note->WriteState(), "note 1");
  note.reset();
  m_runtime.UnloadUnused();
  EXPECT_FALSE(IsLoaded(Fixture("good")));
}

TEST_F(RuntimeTest, a_library_stays_loaded_while_its_component_says_that_objects_live) {
  Register(Fixture("good"));
  auto outer = m_runtime.Create<test::Note>("Fixture.Note", m_services);
  // What an object hands out of itself is not known to the runtime, only to the component.
  auto inner = outer->Self();
  outer.reset();
  m_runtime.UnloadUnused();
  EXPECT_TRUE(IsLoaded(Fixture("good")));
  inner.reset();
  m_runtime.UnloadUnused();
  EXPECT_FALSE(IsLoaded(Fixture("good")));
}

TEST_F(RuntimeTest, an_object_may_outlive_the_runtime) {
  Register(Fixture("good"));
  platform::ObjectPtr object;
  {
    Runtime runtime(Registry({m_folder.Path()}));
    object = runtime.CreateInstance("Fixture.Note", m_services);
  }
  EXPECT_EQ(std::dynamic_pointer_cast<PersistedObject>(object)->WriteState(), "note 1");
  object.reset();
  // Nobody asks any more: the library stays, and is unloaded here to leave the next test a new one.
  ASSERT_TRUE(IsLoaded(Fixture("good")));
  void* const handle = dlopen(Fixture("good").c_str(), RTLD_LAZY | RTLD_NOLOAD);
  dlclose(handle);
  dlclose(handle);
}

TEST_F(RuntimeTest, a_runtime_unloads_at_its_end) {
  Register(Fixture("good"));
  {
    Runtime runtime(Registry({m_folder.Path()}));
    runtime.CreateInstance("Fixture.Note", m_services).reset();
    EXPECT_TRUE(IsLoaded(Fixture("good")));
  }
  EXPECT_FALSE(IsLoaded(Fixture("good")));
}

TEST_F(RuntimeTest, a_component_starts_afresh_each_time_it_is_unloaded_and_loaded_again) {
  Register(Fixture("good"));
  for (int n = 0; n < 100; ++n) {
    auto note = m_runtime.Create<PersistedObject>("Fixture.Note", m_services);
    ASSERT_EQ(note->WriteState(), "note 1");
    ASSERT_THROW(note->ReadState(""), Failure);
    note.reset();
    m_runtime.UnloadUnused();
    ASSERT_FALSE(IsLoaded(Fixture("good")));
  }
}

TEST_F(RuntimeTest, several_threads_may_create_and_unload_at_once) {
  Register(Fixture("good"));
  std::vector<std::jthread> threads;
  for (int nThread = 0; nThread < 4; ++nThread) {
    threads.emplace_back([this] {
      for (int n = 0; n < 50; ++n) {
        auto note = m_runtime.Create<PersistedObject>("Fixture.Note", m_services);
        EXPECT_EQ(note->ProgId(), "Fixture.Note");
        note.reset();
        m_runtime.UnloadUnused();
      }
    });
  }
  threads.clear();
  m_runtime.UnloadUnused();
  EXPECT_THAT(m_runtime.Loaded(), IsEmpty());
}

}  // namespace
}  // namespace orvane::component
