#include "provider/engines/embedded/embedded_engine.h"

#include "provider/engines/embedded/embedded_session.h"
#include "provider/historian/data_folder.h"

namespace orvane::provider::engines {

using platform::Text;

platform::Boolean EmbeddedEngine::Serves(const Text& /*sDataSource*/) const {
  return true;
}

std::vector<Text> EmbeddedEngine::KnownServers() const {
  return historian::KnownServers(m_place.root);
}

std::unique_ptr<EngineSession> EmbeddedEngine::Open(const Logon& logon, const Text& /*sPassword*/,
                                                    std::stop_token stop) {
  return std::make_unique<EmbeddedSession>(
      m_place, historian::ServerFromDataSource(logon.sDataSource), std::move(stop));
}

}  // namespace orvane::provider::engines
