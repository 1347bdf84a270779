// The project's own files as the project tests read them. Standard library only.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace orvane::project {

/// The top folder of the project.
std::filesystem::path Root();

/// Every file under these folders of the project, sorted, whose name ends with one of the
/// endings; all of them when there are no endings. A folder that does not exist has no files.
std::vector<std::filesystem::path> Files(const std::vector<std::string>& sFolders,
                                         const std::vector<std::string>& sEndings = {});

/// The files of the top folder itself.
std::vector<std::filesystem::path> TopFiles();

std::vector<std::string> Lines(const std::filesystem::path& file);
std::string Content(const std::filesystem::path& file);
/// The path as it is said to a reader: from the top folder.
std::string Said(const std::filesystem::path& file);

}  // namespace orvane::project
