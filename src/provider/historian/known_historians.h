// The historians that this user has worked with, remembered apart from where they lie: one that is
// gone is a lost folder or a disk that is not mounted, and not one to be made anew.
// Used when a historian is opened or made; any thread, any number of programs.
#pragma once

#include <filesystem>

namespace orvane::provider::historian {

class KnownHistorians {
 public:
  /// Remembers nothing.
  KnownHistorians() = default;
  /// Remembers in that file, which is made with its folders when there is something to remember.
  explicit KnownHistorians(std::filesystem::path file) : m_file(std::move(file)) {}
  /// Where the state of this user lives; without a home nothing is remembered.
  static KnownHistorians OfUser();

  /// True when a historian was in that folder once.
  bool Has(const std::filesystem::path& folder) const;
  /// From now on there was one. Where that cannot be written down it is not: nobody is kept from
  /// working by that.
  void Remember(const std::filesystem::path& folder) const;

 private:
  std::filesystem::path m_file;
};

}  // namespace orvane::provider::historian
