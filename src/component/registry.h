// Where components are found: small files, one a class, in a few folders of which the first that
// has the class wins. Read by the component runtime and by orvane-regsvr.
// Nothing is kept between calls, so what is registered now is found now; any thread.
#pragma once

#include <filesystem>
#include <optional>
#include <string_view>
#include <vector>

#include "component/class_file.h"

namespace orvane::component {

class Registry {
 public:
  /// What is registered, and a sentence for each file that cannot be used.
  struct Listing {
    std::vector<RegisteredClass> classes;
    std::vector<platform::Text> sProblems;
  };

  /// Looks in the folders in their order; those that do not exist are skipped.
  explicit Registry(std::vector<std::filesystem::path> folders);

  /// The registry of this user: the folder that is named when one is, then the user's, then the
  /// system's. For a program it has that of its own build tree before the user's, and that of the
  /// place where it is installed before the system's.
  static Registry Standard(const std::optional<std::filesystem::path>& named = {},
                           const std::optional<std::filesystem::path>& program = {});
  /// The file of the program that runs, whatever name it was called by; none where the system does
  /// not tell.
  static std::optional<std::filesystem::path> RunningProgram();
  /// orvane/components in XDG_DATA_HOME, or in ~/.local/share. Fails with kComponent when the
  /// user has no home folder.
  static std::filesystem::path UserFolder();
  /// orvane/components in each of XDG_DATA_DIRS, or in /usr/local/share and /usr/share.
  static std::vector<std::filesystem::path> SystemFolders();

  /// The class of that name, in any case, or nothing. Fails with kComponent when the first file
  /// for it is damaged: another folder's class is not taken silently for the one meant.
  std::optional<RegisteredClass> Find(std::string_view sProgId) const;
  /// Everything that Find would find, by folder and file name.
  Listing List() const;

 private:
  std::vector<std::filesystem::path> m_folders;
};

}  // namespace orvane::component
