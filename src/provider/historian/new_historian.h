// The folder of a historian in the making: built under a hidden name, so that nobody meets half a
// historian, and held by a lock for as long as its maker lives.
// Used when a historian is made and, for what others left, when one is opened; any thread.
#pragma once

#include <filesystem>

#include "platform/types.h"

namespace orvane::provider::historian {

class NewHistorian {
 public:
  /// Makes the hidden folder beside the one that the historian is to have. Fails with kNoRights or
  /// kStorage.
  explicit NewHistorian(const std::filesystem::path& folder);
  NewHistorian(const NewHistorian&) = delete;
  NewHistorian& operator=(const NewHistorian&) = delete;
  /// What has not got its name is removed.
  ~NewHistorian();

  const std::filesystem::path& Hidden() const { return m_hidden; }
  /// Gives the folder its name. Fails with failure::kKeyExists when another program was faster.
  void Name();

  /// Removes the hidden folders of makers that broke off.
  static void RemoveLeftovers(const std::filesystem::path& historians);

 private:
  std::filesystem::path m_folder;
  std::filesystem::path m_hidden;
  int m_nLock = -1;
};

/// Fails with failure::kKeyExists for a historian that is there.
[[noreturn]] void FailHistorianExists(const platform::Text& sServer);

}  // namespace orvane::provider::historian
