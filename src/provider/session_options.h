// The six extended options of a connection: their names, order, kinds and values; the memory that a
// statement may use; and the name of the time zone that one of the options comes to.
// Held by a session; one thread at a time.
#pragma once

#include <array>

#include "ado/provider.h"
#include "zones/time_zone.h"

namespace orvane::provider {

class SessionOptions {
 public:
  /// Megabytes that the rows of a statement may take, and the engine while it works on it.
  static constexpr const char* kStatementMemory = "Statement Memory";
  static constexpr platform::Long kInitialMegabytes = 512;

  /// Name and initial value of each option in the published order.
  static std::vector<ado::PropertyDescription> Descriptions();

  /// The current value, also of the statement memory and of the time zone in use. Fails with
  /// failure::kItemNotFound for another name.
  platform::Value Get(const platform::Text& sName) const;
  /// Takes a value of the option's kind or a text that reads as one; null and the empty text
  /// restore the initial value. Fails with kItemNotFound for another name, with kInvalidArgument
  /// and a sentence, unchanged, for what the option cannot be.
  void Set(const platform::Text& sName, const platform::Value& vtValue);
  /// Takes every option of a connection string, of many items of one name the last one; other
  /// items are not looked at.
  void SetAll(const ado::ConnectionSettings& settings);

  const platform::Text& LogFile() const { return m_sLogFile; }
  /// 0 nothing, 1 failures, 2 statements too, 3 schema rowsets and the engine's SQL too.
  platform::Long LogLevel() const { return m_lLogLevel; }
  /// Names of catalogs and tables appear as "Orv_" and the name.
  platform::Boolean IdentifierPrefixes() const { return m_bIdentifierPrefixes; }
  /// Times come out as days since 1899-12-30 in the time zone.
  platform::Boolean TimeAsDouble() const { return m_bTimeAsDouble; }
  const zones::TimeZone& TimeZone() const { return m_timeZone; }
  /// In bytes; never more than half of the machine's memory.
  std::size_t StatementMemory() const;
  /// Catalogs are known by their identity.
  platform::Boolean HistoriansByGuid() const { return m_bHistoriansByGuid; }

 private:
  platform::Text m_sLogFile;
  platform::Long m_lLogLevel = 0;
  platform::Boolean m_bIdentifierPrefixes = false;
  platform::Boolean m_bTimeAsDouble = false;
  zones::TimeZone m_timeZone;
  platform::Boolean m_bHistoriansByGuid = false;
  platform::Long m_lMegabytes = kInitialMegabytes;
};

}  // namespace orvane::provider
