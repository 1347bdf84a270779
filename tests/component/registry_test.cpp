#include "component/registry.h"

#include <gmock/gmock.h>
#include <sys/stat.h>

#include "platform/failure.h"
#include "tests/component/temporary_folder.h"
#include "tests/fakes/variable.h"

namespace orvane::component {
namespace {

using fakes::Variable;
using platform::Failure;
using platform::Text;
using test::TemporaryFolder;
using test::WriteText;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace fs = std::filesystem;

void Write(const fs::path& folder, const Text& sProgId, const fs::path& library) {
  platform::ComponentDescription description;
  description.sProgId = sProgId;
  WriteText(folder / ClassFileName(sProgId), WriteClassFile({description, library}));
}

Text FailureOf(const Registry& registry, const Text& sProgId) {
  try {
    registry.Find(sProgId);
  } catch (const Failure& failure) {
    EXPECT_EQ(failure.Number(), platform::failure::kComponent);
    return failure.Description();
  }
  ADD_FAILURE() << "nothing failed";
  return {};
}

std::vector<fs::path> Libraries(const Registry& registry) {
  std::vector<fs::path> libraries;
  for (const auto& registered : registry.List().classes) libraries.push_back(registered.library);
  return libraries;
}

TEST(RegistryTest, the_first_folder_that_has_the_class_wins) {
  const TemporaryFolder folder;
  const Registry registry({folder / "build", folder / "user", folder / "system"});
  EXPECT_FALSE(registry.Find("A").has_value());
  Write(folder / "system", "A", "/system/a.so");
  EXPECT_EQ(registry.Find("A")->library, "/system/a.so");
  Write(folder / "user", "A", "/user/a.so");
  EXPECT_EQ(registry.Find("A")->library, "/user/a.so");
  Write(folder / "build", "A", "/build/a.so");
  EXPECT_EQ(registry.Find("A")->library, "/build/a.so");
}

TEST(RegistryTest, a_damaged_file_does_not_hide_other_classes) {
  const TemporaryFolder folder;
  const Registry registry({folder / "user", folder / "system"});
  WriteText(folder / "user" / "bad.json", "{");
  Write(folder / "user", "Good", "/good.so");
  EXPECT_EQ(registry.Find("Good")->library, "/good.so");
  const auto listing = registry.List();
  ASSERT_EQ(listing.classes.size(), 1U);
  EXPECT_EQ(listing.classes.front().description.sProgId, "Good");
  EXPECT_THAT(listing.sProblems, ElementsAre(HasSubstr("bad.json\" is damaged")));
}

TEST(RegistryTest, a_damaged_file_is_not_passed_over_for_another_folders_class) {
  const TemporaryFolder folder;
  const Registry registry({folder / "user", folder / "system"});
  WriteText(folder / "user" / "a.json", "{");
  Write(folder / "system", "A", "/system/a.so");
  EXPECT_THAT(FailureOf(registry, "A"), HasSubstr("is damaged"));
  EXPECT_THAT(registry.List().classes, IsEmpty());
}

TEST(RegistryTest, a_file_that_cannot_be_read_is_a_sentence) {
  const TemporaryFolder folder;
  fs::create_directories(folder / "a.json");
  EXPECT_THAT(FailureOf(Registry({folder.Path()}), "A"), HasSubstr("a.json\" cannot be read"));
}

TEST(RegistryTest, a_pipe_is_a_sentence_and_nobody_waits_for_it) {
  const TemporaryFolder folder;
  ASSERT_EQ(mkfifo((folder / "a.json").c_str(), 0600), 0);
  const Registry registry({folder.Path()});
  EXPECT_THAT(FailureOf(registry, "A"), HasSubstr("a.json\" cannot be read"));
  EXPECT_THAT(registry.List().sProblems, ElementsAre(HasSubstr("a.json\" cannot be read")));
}

TEST(RegistryTest, an_enormous_file_is_damaged) {
  const TemporaryFolder folder;
  WriteText(folder / "a.json", Text(1000000, ' '));
  EXPECT_THAT(FailureOf(Registry({folder.Path()}), "A"), HasSubstr("is damaged"));
}

TEST(RegistryTest, the_list_is_what_would_be_found) {
  const TemporaryFolder folder;
  const Registry registry({folder / "user", folder / "none", folder / "system"});
  Write(folder / "user", "B", "/user/b.so");
  Write(folder / "user", "A", "/user/a.so");
  Write(folder / "system", "A", "/system/a.so");
  Write(folder / "system", "C", "/system/c.so");
  WriteText(folder / "system" / "README", "other files do not matter");
  EXPECT_THAT(Libraries(registry), ElementsAre("/user/a.so", "/user/b.so", "/system/c.so"));
  EXPECT_THAT(registry.List().sProblems, IsEmpty());
}

TEST(RegistryTest, the_standard_order_is_build_tree_user_system) {
  const TemporaryFolder folder;
  const fs::path components = fs::path("orvane") / "components";
  const fs::path user = folder / "me" / components;
  const fs::path first = folder / "opt" / components;
  const fs::path second = folder / "usr" / components;
  const Text sSystem = (folder / "opt").string() + "::relative:" + (folder / "usr").string();
  const Variable data("XDG_DATA_HOME", (folder / "me").c_str());
  const Variable system("XDG_DATA_DIRS", sSystem.c_str());
  Write(folder / "build", "A", "/build/a.so");
  Write(user, "A", "/user/a.so");
  Write(user, "B", "/user/b.so");
  Write(first, "B", "/first/b.so");
  Write(first, "C", "/first/c.so");
  Write(second, "C", "/second/c.so");
  Write(second, "D", "/second/d.so");
  EXPECT_THAT(Libraries(Registry::Standard(folder / "build")),
              ElementsAre("/build/a.so", "/user/b.so", "/first/c.so", "/second/d.so"));
  EXPECT_THAT(Libraries(Registry::Standard()),
              ElementsAre("/user/a.so", "/user/b.so", "/first/c.so", "/second/d.so"));
  EXPECT_THAT(Registry::SystemFolders(), ElementsAre(first, second));
}

TEST(RegistryTest, a_program_finds_what_lies_in_its_build_tree_and_beside_its_installation) {
  const TemporaryFolder folder;
  const fs::path components = fs::path("orvane") / "components";
  const fs::path prefix = folder / "prefix";
  const Variable data("XDG_DATA_HOME", (folder / "me").c_str());
  const Variable system("XDG_DATA_DIRS", (folder / "usr").c_str());
  const auto found = [&] {
    return Libraries(Registry::Standard(folder / "named", prefix / "bin/program"));
  };
  Write(folder / "named", "A", "/named/a.so");
  Write(folder / "me" / components, "B", "/user/b.so");
  Write(folder / "me" / components, "C", "/user/c.so");
  Write(folder / "usr" / components, "D", "/system/d.so");
  Write(folder / "usr" / components, "E", "/system/e.so");
  EXPECT_THAT(found(), ElementsAre("/named/a.so", "/user/b.so", "/user/c.so", "/system/d.so",
                                   "/system/e.so"));
  Write(prefix / "components", "A", "/built/a.so");
  Write(prefix / "components", "B", "/built/b.so");
  Write(prefix / "share" / components, "C", "/installed/c.so");
  Write(prefix / "share" / components, "D", "/installed/d.so");
  EXPECT_THAT(found(), ElementsAre("/named/a.so", "/built/b.so", "/user/c.so", "/installed/d.so",
                                   "/system/e.so"));
  const Variable same("XDG_DATA_DIRS", (prefix / "share").c_str());
  EXPECT_THAT(found(), ElementsAre("/named/a.so", "/built/b.so", "/user/c.so", "/installed/d.so"));
}

TEST(RegistryTest, without_settings_the_usual_data_folders_are_taken) {
  const Variable data("XDG_DATA_HOME", "not/absolute");
  const Variable home("HOME", "/users/me");
  const Variable system("XDG_DATA_DIRS", "");
  EXPECT_EQ(Registry::UserFolder(), "/users/me/.local/share/orvane/components");
  EXPECT_THAT(Registry::SystemFolders(),
              ElementsAre("/usr/local/share/orvane/components", "/usr/share/orvane/components"));
}

TEST(RegistryTest, without_a_home_folder_the_system_is_still_found) {
  const TemporaryFolder folder;
  const Variable data("XDG_DATA_HOME", nullptr);
  const Variable home("HOME", nullptr);
  const Variable system("XDG_DATA_DIRS", folder.Path().c_str());
  Write(folder / "orvane" / "components", "A", "/system/a.so");
  EXPECT_THAT(Libraries(Registry::Standard()), ElementsAre("/system/a.so"));
  EXPECT_THROW(Registry::UserFolder(), Failure);
}

}  // namespace
}  // namespace orvane::component
