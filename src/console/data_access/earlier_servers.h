// The servers that this user was connected to, kept in his state, so that the logon dialog can
// offer them whatever document they were in. Read before the dialog, on the user-interface thread;
// written where a session is opened, on any thread, by any number of programs.
#pragma once

#include <filesystem>
#include <vector>

#include "platform/types.h"

namespace orvane::console {

class EarlierServers {
 public:
  static constexpr std::size_t kMost = 20;

  /// Remembers nothing.
  EarlierServers() = default;
  /// Remembers in that file, which is made with its folders when there is something to remember.
  explicit EarlierServers(std::filesystem::path file) : m_file(std::move(file)) {}
  /// Without a home nothing is remembered.
  static EarlierServers OfUser();

  /// Those that were connected last, the newest first, kMost of them at most.
  std::vector<platform::Text> All() const;
  /// A data source that was connected just now. Nothing that looks like a password is written.
  /// Where it cannot be written down it is not remembered: nobody is kept from working by that.
  void Remember(const platform::Text& sServer) const;

 private:
  std::filesystem::path m_file;
};

}  // namespace orvane::console
