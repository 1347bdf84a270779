#include "platform/user_folders.h"

#include <gtest/gtest.h>

#include "tests/fakes/variable.h"

namespace orvane::platform {
namespace {

namespace fs = std::filesystem;
using fakes::Variable;

TEST(user_folders, are_the_ones_that_the_environment_names) {
  const Variable data("XDG_DATA_HOME", "/users/me/data");
  const Variable settings("XDG_CONFIG_HOME", "/users/me/settings");
  const Variable state("XDG_STATE_HOME", "/users/me/state");
  const Variable home("HOME", nullptr);
  EXPECT_EQ(UserDataFolder(), "/users/me/data/orvane");
  EXPECT_EQ(UserSettingsFolder(), "/users/me/settings/orvane");
  EXPECT_EQ(UserStateFolder(), "/users/me/state/orvane");
}

TEST(user_folders, lie_in_the_home_folder_where_the_environment_names_no_absolute_path) {
  const Variable home("HOME", "/users/me");
  EXPECT_EQ(HomeFolder(), "/users/me");
  const Variable data("XDG_DATA_HOME", nullptr);
  const Variable settings("XDG_CONFIG_HOME", "");
  const Variable state("XDG_STATE_HOME", "not/absolute");
  EXPECT_EQ(UserDataFolder(), "/users/me/.local/share/orvane");
  EXPECT_EQ(UserSettingsFolder(), "/users/me/.config/orvane");
  EXPECT_EQ(UserStateFolder(), "/users/me/.local/state/orvane");
}

TEST(user_folders, there_are_none_without_a_home) {
  const Variable data("XDG_DATA_HOME", nullptr);
  const Variable settings("XDG_CONFIG_HOME", nullptr);
  const Variable state("XDG_STATE_HOME", nullptr);
  for (const char* const sHome : {static_cast<const char*>(nullptr), "", "here"}) {
    const Variable home("HOME", sHome);
    EXPECT_EQ(HomeFolder(), std::nullopt);
    EXPECT_EQ(UserDataFolder(), std::nullopt);
    EXPECT_EQ(UserSettingsFolder(), std::nullopt);
    EXPECT_EQ(UserStateFolder(), std::nullopt);
  }
}

TEST(user_folders, of_the_system_are_the_absolute_ones_in_their_order) {
  const Variable named("XDG_DATA_DIRS", "/opt/share::relative:/usr/share");
  EXPECT_EQ(SystemDataFolders(), (std::vector<fs::path>{"/opt/share/orvane", "/usr/share/orvane"}));
  const Variable none("XDG_DATA_DIRS", "");
  EXPECT_EQ(SystemDataFolders(),
            (std::vector<fs::path>{"/usr/local/share/orvane", "/usr/share/orvane"}));
}

}  // namespace
}  // namespace orvane::platform
