#include "ado/connection_settings.h"

#include "platform/case_folding.h"
#include "platform/failure.h"
#include "platform/one_line.h"
#include "platform/stored_secret.h"

namespace orvane::ado {

using platform::Text;

namespace {

// Of an item that a sentence repeats.
constexpr std::size_t kMostQuoted = 100;

std::string_view Trimmed(std::string_view sText) {
  constexpr std::string_view kBlanks = " \t\r\n";
  const std::size_t first = sText.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return sText.substr(first, sText.find_last_not_of(kBlanks) - first + 1);
}

}  // namespace

ConnectionSettings ConnectionSettings::Parse(std::string_view sConnectionString) {
  ConnectionSettings settings;
  while (!sConnectionString.empty()) {
    const std::size_t end = sConnectionString.find(';');
    const std::string_view sItem = Trimmed(sConnectionString.substr(0, end));
    sConnectionString =
        end == std::string_view::npos ? std::string_view() : sConnectionString.substr(end + 1);
    if (sItem.empty()) continue;
    // The first "=" ends the name; further ones belong to the value.
    const std::size_t equals = sItem.find('=');
    if (equals == std::string_view::npos) {
      // A sentence must not repeat such an item.
      if (platform::MentionsSecret(sItem)) {
        throw platform::Failure(platform::failure::kInvalidArgument,
                                "The connection string has an item without \"=\" that looks like a "
                                "password: leave it out and type the password in the logon "
                                "dialog.");
      }
      throw platform::Failure(platform::failure::kInvalidArgument,
                              "The connection string has an item without \"=\": \"" +
                                  platform::OneLine(sItem, kMostQuoted) +
                                  "\"; write it as \"Name = value;\".");
    }
    const std::string_view sName = Trimmed(sItem.substr(0, equals));
    const std::string_view sValue = Trimmed(sItem.substr(equals + 1));
    if (sName.empty()) {
      throw platform::Failure(platform::failure::kInvalidArgument,
                              "The connection string has an item without a name before \"=\"; "
                              "write it as \"Name = value;\".");
    }
    settings.m_items.emplace_back(sName, sValue);
  }
  return settings;
}

std::optional<Text> ConnectionSettings::Find(std::string_view sName) const {
  const Text sKey = platform::FoldCase(sName);
  for (auto item = m_items.rbegin(); item != m_items.rend(); ++item) {
    if (platform::FoldCase(item->first) == sKey) return item->second;
  }
  return std::nullopt;
}

void ConnectionSettings::Set(std::string_view sName, std::string_view sValue) {
  const Text sKey = platform::FoldCase(sName);
  for (auto item = m_items.rbegin(); item != m_items.rend(); ++item) {
    if (platform::FoldCase(item->first) == sKey) {
      item->second = sValue;
      return;
    }
  }
  m_items.emplace_back(sName, sValue);
}

}  // namespace orvane::ado
