// Where the data, settings and state of this user live, and the data of the system.
// The one rule for console, provider, components and programs: a folder that the environment names
// counts when its path is absolute; otherwise it lies in the home folder. Any thread.
#pragma once

#include <filesystem>
#include <optional>
#include <vector>

namespace orvane::platform {

/// $HOME; none when that is not set or not absolute.
std::optional<std::filesystem::path> HomeFolder();
/// $XDG_DATA_HOME/orvane, or ~/.local/share/orvane; none without a home.
std::optional<std::filesystem::path> UserDataFolder();
/// $XDG_CONFIG_HOME/orvane, or ~/.config/orvane; none without a home.
std::optional<std::filesystem::path> UserSettingsFolder();
/// $XDG_STATE_HOME/orvane, or ~/.local/state/orvane; none without a home.
std::optional<std::filesystem::path> UserStateFolder();
/// orvane in each folder of $XDG_DATA_DIRS, or in /usr/local/share and /usr/share.
std::vector<std::filesystem::path> SystemDataFolders();

}  // namespace orvane::platform
