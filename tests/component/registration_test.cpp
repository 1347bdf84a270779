#include "component/registration.h"

#include <dlfcn.h>
#include <gmock/gmock.h>
#include <sys/stat.h>

#include "component/registry.h"
#include "platform/failure.h"
#include "tests/component/temporary_folder.h"

namespace orvane::component {
namespace {

using platform::Failure;
using platform::Text;
using test::Fixture;
using test::TemporaryFolder;
using test::WriteText;
using testing::ElementsAre;
using testing::HasSubstr;

namespace fs = std::filesystem;

template <class Call>
Text FailureOf(const Call& call) {
  try {
    call();
  } catch (const Failure& failure) {
    EXPECT_EQ(failure.Number(), platform::failure::kComponent);
    return failure.Description();
  }
  ADD_FAILURE() << "nothing failed";
  return {};
}

std::size_t FilesIn(const fs::path& folder) {
  std::size_t n = 0;
  if (!fs::exists(folder)) return n;
  for ([[maybe_unused]] const auto& entry : fs::directory_iterator(folder)) ++n;
  return n;
}

TEST(RegistrationTest, a_registered_library_is_found_and_an_unregistered_one_is_not) {
  const TemporaryFolder folder;
  const auto place = folder / "made/when/needed";
  EXPECT_THAT(RegisterLibrary(Fixture("good"), place), ElementsAre("Fixture.Note"));
  const auto found = Registry({place}).Find("Fixture.Note");
  ASSERT_TRUE(found.has_value());
  EXPECT_EQ(found->library, fs::canonical(Fixture("good")));
  EXPECT_EQ(found->description.sKind, "Object");
  EXPECT_EQ(found->description.sDisplayName, "Note");
  EXPECT_EQ(found->description.sGuid, "{11111111-2222-3333-4444-555555555555}");
  EXPECT_EQ(found->description.sProvider, "Fixtures");
  EXPECT_THAT(UnregisterLibrary(Fixture("good"), place), ElementsAre("Fixture.Note"));
  EXPECT_EQ(FilesIn(place), 0U);
}

TEST(RegistrationTest, registering_leaves_the_library_unloaded) {
  const TemporaryFolder folder;
  RegisterLibrary(Fixture("good"), folder.Path());
  EXPECT_EQ(dlopen(Fixture("good").c_str(), RTLD_LAZY | RTLD_NOLOAD), nullptr);
}

TEST(RegistrationTest, a_file_is_replaced_whole_and_others_may_read_it) {
  const TemporaryFolder folder;
  WriteText(folder / "fixture.note.json", "{ damaged");
  RegisterLibrary(Fixture("good"), folder.Path());
  EXPECT_EQ(FilesIn(folder.Path()), 1U);
  EXPECT_TRUE(Registry({folder.Path()}).Find("Fixture.Note").has_value());
  struct stat status {};
  ASSERT_EQ(stat((folder / "fixture.note.json").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777U, 0644U);
}

TEST(RegistrationTest, unregistering_what_is_not_registered_is_no_failure) {
  const TemporaryFolder folder;
  EXPECT_THAT(UnregisterLibrary(Fixture("good"), folder / "absent"), ElementsAre("Fixture.Note"));
}

TEST(RegistrationTest, a_library_that_is_gone_is_unregistered_by_its_path) {
  const TemporaryFolder folder;
  const auto library = folder / "gone.so";
  fs::copy_file(Fixture("good"), library);
  RegisterLibrary(library, folder / "registry");
  fs::remove(library);
  EXPECT_THAT(UnregisterLibrary(library, folder / "registry"), ElementsAre("Fixture.Note"));
  EXPECT_EQ(FilesIn(folder / "registry"), 0U);
  EXPECT_THAT(FailureOf([&] { UnregisterLibrary(library, folder / "registry"); }),
              HasSubstr("is missing and nothing is registered of it"));
}

TEST(RegistrationTest, each_thing_that_is_wrong_with_a_library_is_a_sentence) {
  const TemporaryFolder folder;
  const auto registering = [&](const Text& sFixture) {
    return FailureOf([&] { RegisterLibrary(Fixture(sFixture), folder / "registry"); });
  };
  EXPECT_THAT(registering("of_nobody"), HasSubstr("is missing; install"));
  EXPECT_THAT(registering("lacks_RegisterServer"), HasSubstr("no entry point DllRegisterServer"));
  EXPECT_THAT(registering("throws_RegisterServer"),
              HasSubstr("broke off in DllRegisterServer (the fixture throws)"));
  EXPECT_THAT(registering("refuses"), HasSubstr("failed in DllRegisterServer (0x80004005)"));
  EXPECT_THAT(registering("no_class"), HasSubstr("registers no class"));
  EXPECT_THAT(registering("nameless"), HasSubstr("registers a class without a name"));
  EXPECT_THAT(registering("not_utf8"), HasSubstr("a text that is not UTF-8"));
  const auto unregistering = [&](const Text& sFixture) {
    return FailureOf([&] { UnregisterLibrary(Fixture(sFixture), folder / "registry"); });
  };
  EXPECT_THAT(unregistering("throws_UnregisterServer"), HasSubstr("broke off in DllUnregisterS"));
  EXPECT_THAT(unregistering("refuses"), HasSubstr("failed in DllUnregisterServer"));
  EXPECT_EQ(FilesIn(folder / "registry"), 0U);
}

TEST(RegistrationTest, a_component_that_throws_when_asked_to_unload_still_registers) {
  const TemporaryFolder folder;
  EXPECT_THAT(RegisterLibrary(Fixture("throws_CanUnloadNow"), folder.Path()),
              ElementsAre("Fixture.Note"));
}

TEST(RegistrationTest, a_folder_that_cannot_be_written_is_a_sentence) {
  const TemporaryFolder folder;
  WriteText(folder / "file", "in the way");
  EXPECT_THAT(FailureOf([&] { RegisterLibrary(Fixture("good"), folder / "file/registry"); }),
              HasSubstr("cannot be written (Not a directory); register into a folder that"));
}

TEST(RegistrationTest, a_file_that_cannot_be_removed_is_a_sentence) {
  const TemporaryFolder folder;
  fs::create_directories(folder / "fixture.note.json/in the way");
  EXPECT_THAT(FailureOf([&] { UnregisterLibrary(Fixture("good"), folder.Path()); }),
              HasSubstr("fixture.note.json\" cannot be removed"));
}

}  // namespace
}  // namespace orvane::component
