// A session that was opened without the log file that its settings name. It goes on to tell that
// file, so that a save keeps what the document says.
// Made by the host's providers; as every session, one thread at a time.
#pragma once

#include <memory>
#include <optional>

#include "ado/provider.h"

namespace orvane::console {

class UnloggedSession final : public ado::Session {
 public:
  UnloggedSession(std::unique_ptr<ado::Session> session, platform::Text sLogFile)
      : m_session(std::move(session)), m_sLogFile(std::move(sLogFile)) {}

  ado::StatementResult Execute(const ado::Statement& statement, std::stop_token stop) override;
  platform::RecordsetPtr OpenSchema(platform::SchemaNumber schema,
                                    std::span<const platform::Value> vtRestrictions,
                                    std::stop_token stop) override;
  platform::Value PropertyValue(const platform::Text& sName) const override;
  /// A log file that is set from now on is written.
  void PropertyValue(const platform::Text& sName, const platform::Value& vtValue) override;
  void Close() override { m_session->Close(); }

 private:
  std::unique_ptr<ado::Session> m_session;
  std::optional<platform::Text> m_sLogFile;
};

}  // namespace orvane::console
