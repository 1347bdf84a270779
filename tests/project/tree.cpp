#include "tests/project/tree.h"

#include <algorithm>
#include <fstream>
#include <iterator>

namespace orvane::project {

namespace fs = std::filesystem;

fs::path Root() {
  return ORVANE_TREE;
}

std::vector<fs::path> Files(const std::vector<std::string>& sFolders,
                            const std::vector<std::string>& sEndings) {
  std::vector<fs::path> files;
  for (const auto& sFolder : sFolders) {
    if (!fs::exists(Root() / sFolder)) continue;
    for (const auto& entry : fs::recursive_directory_iterator(Root() / sFolder)) {
      const std::string sName = entry.path().filename().string();
      const bool bWanted =
          sEndings.empty() || std::any_of(sEndings.begin(), sEndings.end(),
                                          [&](const auto& sEnd) { return sName.ends_with(sEnd); });
      if (entry.is_regular_file() && bWanted) files.push_back(entry.path());
    }
  }
  std::sort(files.begin(), files.end());
  return files;
}

std::vector<fs::path> TopFiles() {
  std::vector<fs::path> files;
  for (const auto& entry : fs::directory_iterator(Root())) {
    // In a working copy of git's own making, ".git" is a file that names a folder of this machine.
    if (entry.is_regular_file() && entry.path().filename() != ".git") {
      files.push_back(entry.path());
    }
  }
  std::sort(files.begin(), files.end());
  return files;
}

std::vector<std::string> Lines(const fs::path& file) {
  std::ifstream stream(file);
  std::vector<std::string> sLines;
  for (std::string sLine; std::getline(stream, sLine);) sLines.push_back(sLine);
  return sLines;
}

std::string Content(const fs::path& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

std::string Said(const fs::path& file) {
  return fs::relative(file, Root()).string();
}

}  // namespace orvane::project
