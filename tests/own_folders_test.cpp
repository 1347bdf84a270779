// Test programs of each kind of main function leave alone what is kept for their user.
#include <gtest/gtest.h>
#include <pwd.h>
#include <unistd.h>

#include <filesystem>

#include "platform/user_folders.h"

namespace orvane::tests {

TEST(own_folders, a_test_program_keeps_nothing_for_whoever_runs_it) {
  const passwd* const user = getpwuid(getuid());
  ASSERT_NE(user, nullptr);
  const std::filesystem::path home = std::filesystem::path(user->pw_dir) / "";
  for (const auto& folder :
       {platform::UserDataFolder(), platform::UserSettingsFolder(), platform::UserStateFolder()}) {
    ASSERT_TRUE(folder.has_value());
    EXPECT_FALSE(folder->string().starts_with(home.string())) << folder->string();
  }
}

}  // namespace orvane::tests
