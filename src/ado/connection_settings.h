// A connection string, read: its items in order, later ones overriding earlier ones of that name.
// Made by the connection from its text, handed to providers; a plain value, any thread.
#pragma once

#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/types.h"

namespace orvane::ado {

class ConnectionSettings {
 public:
  /// Reads "Name = value;" items as they are written: blanks around names and values are dropped,
  /// nothing is quoted or escaped, names compare without regard to case. Fails with 5 for an item
  /// without "=" or without a name.
  static ConnectionSettings Parse(std::string_view sConnectionString);

  /// The last value given for the name, or none.
  std::optional<platform::Text> Find(std::string_view sName) const;
  /// Replaces the value, or appends the item.
  void Set(std::string_view sName, std::string_view sValue);
  const std::vector<std::pair<platform::Text, platform::Text>>& Items() const { return m_items; }

  /// Whether the user has said that nothing need be encrypted on the way to the server. No item
  /// says so, as connection strings come out of documents.
  platform::Boolean MayGoUnencrypted() const { return m_bMayGoUnencrypted; }
  void MayGoUnencrypted(platform::Boolean bMay) { m_bMayGoUnencrypted = bMay; }

 private:
  platform::Boolean m_bMayGoUnencrypted = false;
  std::vector<std::pair<platform::Text, platform::Text>> m_items;
};

}  // namespace orvane::ado
