// The historians on this machine: a folder for each, with a database file for each catalog.
// Made by the provider; one thread at a time.
#pragma once

#include <chrono>
#include <filesystem>

#include "provider/engines/file_engine.h"
#include "provider/historian/known_historians.h"

namespace orvane::provider::engines {

/// Where embedded historians are, and what their sessions stand on.
struct EmbeddedPlace {
  std::filesystem::path root;          ///< folder of all historians
  std::shared_ptr<FileEngine> files;   ///< on which their catalogs are kept
  historian::KnownHistorians known{};  ///< those that were there once
  /// How long a statement that is to end is waited for before it is left to end by itself.
  std::chrono::milliseconds patience{1500};
};

class EmbeddedEngine final : public Engine {
 public:
  explicit EmbeddedEngine(EmbeddedPlace place) : m_place(std::move(place)) {}

  /// Every text may be the name of a historian here.
  platform::Boolean Serves(const platform::Text& sDataSource) const override;
  std::vector<platform::Text> KnownServers() const override;
  /// Nobody is asked for a password: the rights on the historian's folder decide.
  std::unique_ptr<EngineSession> Open(const Logon& logon, const platform::Text& sPassword,
                                      std::stop_token stop) override;

 private:
  EmbeddedPlace m_place;
};

}  // namespace orvane::provider::engines
