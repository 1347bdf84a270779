#include "provider/engines/postgres/postgres_hosts.h"

#include <fmt/format.h>

#include <algorithm>

#include "platform/one_line.h"
#include "provider/engines/postgres/host_lookup.h"
#include "provider/engines/postgres/postgres_errors.h"

namespace orvane::provider::engines {

using platform::Text;

namespace {

// A setting that nobody here asks for, of a value that it cannot have, so that libpq stops before
// it looks for a server.
constexpr const char* kSpoilt = "gssencmode";
constexpr const char* kNoValue = "?";

bool IsSocket(std::string_view sName) {
  return sName.empty() || sName.front() == '/' || sName.front() == '@';
}

}  // namespace

std::vector<Text> PartsOf(const Text& sList) {
  std::vector<Text> parts;
  for (std::size_t nBegin = 0;;) {
    const std::size_t nEnd = sList.find(',', nBegin);
    parts.push_back(sList.substr(nBegin, nEnd == Text::npos ? Text::npos : nEnd - nBegin));
    if (nEnd == Text::npos) return parts;
    nBegin = nEnd + 1;
  }
}

Text OptionOf(const PQconninfoOption* options, std::string_view sKeyword) {
  for (const auto* option = options; option != nullptr && option->keyword != nullptr; ++option) {
    if (sKeyword == option->keyword) return option->val == nullptr ? Text() : Text(option->val);
  }
  return {};
}

PostgresOptions CompletedSettings(const PostgresSettings& settings, Text& sProblem) {
  std::vector<const char*> keywords;
  std::vector<const char*> values;
  for (const auto& [sKeyword, sValue] : settings) {
    keywords.push_back(sKeyword.c_str());
    values.push_back(sValue.c_str());
  }
  keywords.insert(keywords.end(), {kSpoilt, nullptr});
  values.insert(values.end(), {kNoValue, nullptr});
  const PostgresHandle unconnected(PQconnectStartParams(keywords.data(), values.data(), 0));
  PostgresOptions options(PQconninfo(unconnected.get()));
  if (OptionOf(options.get(), kSpoilt) == kNoValue) return options;
  sProblem = unconnected == nullptr ? Text("no memory") : LastWords(unconnected.get());
  return nullptr;
}

PostgresHosts HostsOf(const PQconninfoOption* options, const std::stop_token& stop) {
  const std::vector<Text> names = PartsOf(OptionOf(options, "host"));
  const std::vector<Text> addresses = PartsOf(OptionOf(options, "hostaddr"));
  const std::vector<Text> ports = PartsOf(OptionOf(options, "port"));
  const bool bNames = names != std::vector<Text>{Text()};
  const bool bAddresses = addresses != std::vector<Text>{Text()};
  const std::size_t nHosts = bAddresses ? addresses.size() : names.size();
  PostgresHosts found;
  if (bNames && names.size() != nHosts) {
    found.sProblem =
        fmt::format("could not match {} host names to {} hostaddr values", names.size(), nHosts);
    return found;
  }
  if (ports.size() != 1 && ports.size() != nHosts) {
    found.sProblem =
        fmt::format("could not match {} port numbers to {} hosts", ports.size(), nHosts);
    return found;
  }
  for (std::size_t n = 0; n < nHosts && !stop.stop_requested(); ++n) {
    const PostgresHost host{bNames ? names[n] : Text(), bAddresses ? addresses[n] : Text(),
                            ports[ports.size() == 1 ? 0 : n]};
    if (!host.sAddress.empty() || IsSocket(host.sName)) {
      found.hosts.push_back(host);
      continue;
    }
    const HostAddresses looked = LookUpHost(host.sName, stop);
    for (const Text& sAddress : looked.addresses) {
      found.hosts.push_back({host.sName, sAddress, host.sPort});
    }
    if (looked.sProblem.empty()) continue;
    AddWords(found.sProblem, fmt::format("could not translate host name \"{}\" to address: {}",
                                         platform::OneLine(host.sName), looked.sProblem));
  }
  return found;
}

PostgresSettings SettingsOf(const std::vector<PostgresHost>& hosts) {
  Text sNames;
  Text sAddresses;
  Text sPorts;
  for (const PostgresHost& host : hosts) {
    const char* const sBetween = &host == hosts.data() ? "" : ",";
    sNames += sBetween + host.sName;
    sAddresses += sBetween + host.sAddress;
    sPorts += sBetween + host.sPort;
  }
  return {{"host", std::move(sNames)},
          {"hostaddr", std::move(sAddresses)},
          {"port", std::move(sPorts)}};
}

std::size_t TriedOf(const PGconn* connection, const std::vector<PostgresHost>& hosts) {
  const std::string_view sName = PQhost(connection);
  const std::string_view sAddress = PQhostaddr(connection);
  const std::string_view sPort = PQport(connection);
  const auto found = std::ranges::find_if(hosts, [&](const PostgresHost& host) {
    // Where an address is on one network only, libpq tells it without that.
    const auto sDigits = std::string_view(host.sAddress).substr(0, host.sAddress.find('%'));
    return (host.sPort.empty() || host.sPort == sPort) && sDigits == sAddress &&
           (host.sName.empty() || host.sName == sName);
  });
  return found == hosts.end() ? 0 : static_cast<std::size_t>(found - hosts.begin());
}

void AddWords(Text& sWords, const Text& sMore) {
  if (!sWords.empty()) sWords += "; ";
  sWords += sMore;
}

Text SilenceOf(const PostgresHost& host) {
  const Text& sName = host.sName.empty() ? host.sAddress : host.sName;
  Text sWhere = fmt::format("\"{}\"", platform::OneLine(sName));
  if (!host.sAddress.empty() && host.sAddress != sName) sWhere += " (" + host.sAddress + ")";
  return fmt::format("connection to server at {}, port {} failed: timeout expired", sWhere,
                     host.sPort);
}

}  // namespace orvane::provider::engines
