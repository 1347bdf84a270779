// The properties of a connection: the general ones first, then those of its provider in the
// provider's order. While the connection is open the provider's values come from its session;
// before that from what was set, the connection string and the provider's initial values.
// Owned by Connection; one thread at a time.
#pragma once

#include <memory>
#include <vector>

#include "ado/provider.h"

namespace orvane::ado {

class ConnectionProperties final : public platform::Properties {
 public:
  static constexpr const char* kPrompt = "Prompt";
  static constexpr const char* kUserId = "User ID";
  static constexpr const char* kProviderName = "Provider Name";

  ConnectionProperties();
  ~ConnectionProperties() override;

  platform::Long Count() const override { return static_cast<platform::Long>(m_entries.size()); }
  platform::Property& Item(const platform::Value& vtIndexName) override;

  /// Takes over what a connection string says: the properties that it names get its values, the
  /// others keep theirs. The provider's own properties replace those of the provider before; null
  /// takes them away.
  void Describe(const ConnectionSettings& settings, const Provider* provider);
  /// Puts into the settings every provider property that was set by hand.
  void AddValuesSet(ConnectionSettings& settings) const;
  /// The session of the open connection, which answers from now on; null when it is closed.
  void Attach(Session* session) { m_session = session; }

  platform::Value Get(const char* sName) const;
  /// Sets one of the general properties, also a read-only one.
  void Put(const char* sName, const platform::Value& vtValue);

 private:
  class Entry;

  Entry* Find(const platform::Text& sName) const;

  std::vector<std::unique_ptr<Entry>> m_entries;
  // References given out live as long as the connection, also when its provider changes.
  std::vector<std::unique_ptr<Entry>> m_retired;
  Session* m_session = nullptr;
};

}  // namespace orvane::ado
