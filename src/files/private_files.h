// Files and folders that are their maker's alone, whatever the umask, until he shares them.
// Used for historians, logs and settings; any thread.
#pragma once

#include <sys/types.h>

#include <filesystem>
#include <system_error>

namespace orvane::files {

constexpr mode_t kPrivateFile = 0600;
constexpr mode_t kPrivateFolder = 0700;

/// Gives a folder that was just made its rights: its maker alone may use it, and what is made in it
/// has its group where the folder above says so, so that he can share it. False, with errno, when
/// that fails.
bool KeepPrivate(const std::filesystem::path& folder);

/// Makes the folder and those above it, as far as they are not there.
void MakePrivateFolders(const std::filesystem::path& folder, std::error_code& error);

/// Makes an empty file; fails with std::errc::file_exists when there is anything of its name.
void MakePrivateFile(const std::filesystem::path& file, std::error_code& error);

/// Takes all rights of others on a file from them, access lists included; what the user himself may
/// do stays. False, with errno, when that fails, as it does for the file of another user; a link is
/// followed to the user's own file.
bool TakeFromOthers(const std::filesystem::path& file);

/// Whether this user may make and remove files in the folder.
bool MayWriteInto(const std::filesystem::path& folder);

}  // namespace orvane::files
