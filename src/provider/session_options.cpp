#include "provider/session_options.h"

#include <unistd.h>

#include <algorithm>

#include "platform/ado/extended_options.h"
#include "platform/case_folding.h"
#include "platform/conversions.h"
#include "platform/failure.h"
#include "platform/stored_secret.h"

namespace orvane::provider {
namespace {

using platform::Failure;
using platform::Text;
using platform::Value;
namespace failure = platform::failure;

enum Option { LogFile, LogLevel, IdentifierPrefixes, TimeAsDouble, TimeZone, HistoriansByGuid };

constexpr const auto& kNames = platform::kExtendedOptions;

std::optional<Option> FindOption(const Text& sName) {
  const Text sFolded = platform::FoldCase(sName);
  for (std::size_t i = 0; i < kNames.size(); ++i) {
    if (sFolded == platform::FoldCase(kNames[i])) return static_cast<Option>(i);
  }
  return std::nullopt;
}

bool Is(const char* sKnown, const Text& sName) {
  return platform::FoldCase(sName) == platform::FoldCase(sKnown);
}

Option Known(const Text& sName) {
  const auto option = FindOption(sName);
  if (!option) {
    throw Failure(failure::kItemNotFound,
                  "The provider has no property \"" + sName + "\"; check its name.");
  }
  return *option;
}

bool IsInitial(const Value& vtValue) {
  const auto* const sText = vtValue.As<Text>();
  return vtValue.IsNull() || (sText != nullptr && sText->empty());
}

platform::Boolean ReadBoolean(Option option, const Value& vtValue) {
  try {
    return platform::ToBoolean(vtValue);
  } catch (const Failure&) {
    throw Failure(failure::kInvalidArgument,
                  "\"" + Text(kNames[option]) +
                      "\" is either True or False; write one of them into the server's extended "
                      "options.");
  }
}

platform::Long ReadNumber(const char* sName, platform::Long lLeast, platform::Long lMost,
                          const Value& vtValue) {
  platform::Long lNumber = lLeast - 1;
  try {
    lNumber = platform::ToLong(vtValue);
  } catch (const Failure&) {
    lNumber = lLeast - 1;
  }
  if (lNumber < lLeast || lNumber > lMost) {
    throw Failure(failure::kInvalidArgument,
                  Text("\"") + sName + "\" is a number from " + std::to_string(lLeast) + " to " +
                      std::to_string(lMost) + "; write one into the server's extended options.");
  }
  return lNumber;
}

Text ReadText(Option option, const Value& vtValue) {
  const auto* const sText = vtValue.As<Text>();
  if (sText == nullptr) {
    throw Failure(failure::kInvalidArgument,
                  "\"" + Text(kNames[option]) +
                      "\" is a text; write one into the server's extended options.");
  }
  // The texts of options are saved with the document.
  if (platform::HoldsSecret(*sText)) {
    throw Failure(
        failure::kInvalidArgument,
        "\"" + Text(kNames[option]) +
            "\" must not hold a password: take it out of the server's extended options and "
            "type it in the logon dialog.");
  }
  return *sText;
}

Text ReadLogFile(const Value& vtValue) {
  const Text sFile = ReadText(LogFile, vtValue);
  if (sFile.front() != '/') {
    throw Failure(failure::kInvalidArgument, "The path \"" + sFile +
                                                 "\" of the log file is not complete; write one "
                                                 "that begins with \"/\" into the server's "
                                                 "extended options.");
  }
  if (sFile.find(';') != Text::npos) {
    throw Failure(failure::kInvalidArgument,
                  "The path \"" + sFile +
                      "\" of the log file holds a semicolon, which a connection string cannot "
                      "keep; write one without into the server's extended options.");
  }
  return sFile;
}

zones::TimeZone ReadTimeZone(const Value& vtValue) {
  const Text sZone = ReadText(TimeZone, vtValue);
  try {
    return zones::TimeZone(sZone);
  } catch (const Failure& failed) {
    throw Failure(failed.Number(), "There is no time zone \"" + sZone +
                                       "\"; write Local, UTC or a name such as Europe/Madrid into "
                                       "the server's extended options.");
  }
}

}  // namespace

std::vector<ado::PropertyDescription> SessionOptions::Descriptions() {
  const SessionOptions initial;
  std::vector<ado::PropertyDescription> descriptions;
  for (const char* const sName : kNames) descriptions.push_back({sName, initial.Get(sName)});
  return descriptions;
}

Value SessionOptions::Get(const Text& sName) const {
  if (Is(platform::kTimeZoneInUse, sName)) return m_timeZone.NameInUse();
  if (Is(kStatementMemory, sName)) return m_lMegabytes;
  switch (Known(sName)) {
    case Option::LogFile:
      return m_sLogFile;
    case Option::LogLevel:
      return m_lLogLevel;
    case Option::IdentifierPrefixes:
      return m_bIdentifierPrefixes;
    case Option::TimeAsDouble:
      return m_bTimeAsDouble;
    case Option::TimeZone:
      return m_timeZone.Name();
    case Option::HistoriansByGuid:
      return m_bHistoriansByGuid;
  }
  return {};
}

void SessionOptions::Set(const Text& sName, const Value& vtValue) {
  if (Is(platform::kTimeZoneInUse, sName)) {
    throw Failure(failure::kNotSupported, Text("The property \"") + platform::kTimeZoneInUse +
                                              "\" can be read, but not set; set \"Time Zone\".");
  }
  if (Is(platform::kLinkInUse, sName)) {
    throw Failure(failure::kNotSupported,
                  Text("The property \"") + platform::kLinkInUse +
                      "\" can be read, but not set; set \"sslmode\" in the data source.");
  }
  const bool bInitial = IsInitial(vtValue);
  if (Is(kStatementMemory, sName)) {
    constexpr platform::Long kLeast = 16;
    constexpr platform::Long kMost = 4096;
    m_lMegabytes =
        bInitial ? kInitialMegabytes : ReadNumber(kStatementMemory, kLeast, kMost, vtValue);
    return;
  }
  const Option option = Known(sName);
  switch (option) {
    case Option::LogFile:
      m_sLogFile = bInitial ? Text() : ReadLogFile(vtValue);
      break;
    case Option::LogLevel:
      m_lLogLevel = bInitial ? 0 : ReadNumber(kNames[option], 0, 3, vtValue);
      break;
    case Option::IdentifierPrefixes:
      m_bIdentifierPrefixes = !bInitial && ReadBoolean(option, vtValue);
      break;
    case Option::TimeAsDouble:
      m_bTimeAsDouble = !bInitial && ReadBoolean(option, vtValue);
      break;
    case Option::TimeZone:
      m_timeZone = bInitial ? zones::TimeZone(Text()) : ReadTimeZone(vtValue);
      break;
    case Option::HistoriansByGuid:
      m_bHistoriansByGuid = !bInitial && ReadBoolean(option, vtValue);
      break;
  }
}

std::size_t SessionOptions::StatementMemory() const {
  const auto bytes = static_cast<std::size_t>(m_lMegabytes) << 20;
  const long nPages = ::sysconf(_SC_PHYS_PAGES);
  const long nPageSize = ::sysconf(_SC_PAGESIZE);
  if (nPages <= 0 || nPageSize <= 0) return bytes;
  return std::min(bytes,
                  static_cast<std::size_t>(nPages) / 2 * static_cast<std::size_t>(nPageSize));
}

void SessionOptions::SetAll(const ado::ConnectionSettings& settings) {
  if (const auto sValue = settings.Find(kStatementMemory)) Set(kStatementMemory, *sValue);
  for (const char* const sName : kNames) {
    if (const auto sValue = settings.Find(sName)) Set(sName, *sValue);
  }
}

}  // namespace orvane::provider
