#include "provider/engines/postgres/host_lookup.h"

#include <netdb.h>
#include <sys/socket.h>

#include <array>
#include <chrono>
#include <ctime>
#include <memory>

namespace orvane::provider::engines {

using platform::Text;

namespace {

struct AddressesEnd {
  void operator()(addrinfo* addresses) const noexcept { freeaddrinfo(addresses); }
};
using Addresses = std::unique_ptr<addrinfo, AddressesEnd>;

// A question, with all that it needs as long as it is being worked on.
struct Lookup {
  explicit Lookup(const Text& sWanted) : sName(sWanted) {
    wanted.ai_socktype = SOCK_STREAM;
    request.ar_name = sName.c_str();
    request.ar_request = &wanted;
  }
  Lookup(const Lookup&) = delete;
  Lookup& operator=(const Lookup&) = delete;
  ~Lookup() { const Addresses addresses(request.ar_result); }

  Text sName;
  addrinfo wanted{};
  gaicb request{};
};

HostAddresses InDigits(const addrinfo* addresses) {
  HostAddresses found;
  for (; addresses != nullptr; addresses = addresses->ai_next) {
    std::array<char, NI_MAXHOST> digits{};
    if (getnameinfo(addresses->ai_addr, addresses->ai_addrlen, digits.data(), digits.size(),
                    nullptr, 0, NI_NUMERICHOST) == 0) {
      found.addresses.emplace_back(digits.data());
    }
  }
  if (found.addresses.empty()) found.sProblem = gai_strerror(EAI_NONAME);
  return found;
}

}  // namespace

HostAddresses LookUpHost(const Text& sName, const std::stop_token& stop) {
  addrinfo digits{};
  digits.ai_socktype = SOCK_STREAM;
  digits.ai_flags = AI_NUMERICHOST;
  addrinfo* at = nullptr;
  if (getaddrinfo(sName.c_str(), nullptr, &digits, &at) == 0) return InDigits(Addresses(at).get());

  auto lookup = std::make_unique<Lookup>(sName);
  std::array<gaicb*, 1> asked = {&lookup->request};
  int nProblem = getaddrinfo_a(GAI_NOWAIT, asked.data(), 1, nullptr);
  if (nProblem != 0) return {{}, gai_strerror(nProblem)};
  while ((nProblem = gai_error(&lookup->request)) == EAI_INPROGRESS) {
    if (stop.stop_requested()) {
      // One that is being worked on cannot be taken back, and its answer is still written.
      if (gai_cancel(&lookup->request) == EAI_NOTCANCELED) (void)lookup.release();
      return {};
    }
    constexpr timespec kLookAtAnswerEvery{0, 20'000'000};
    const std::array<const gaicb*, 1> waited = {&lookup->request};
    gai_suspend(waited.data(), 1, &kLookAtAnswerEvery);
  }
  if (nProblem != 0) return {{}, gai_strerror(nProblem)};
  return InDigits(lookup->request.ar_result);
}

}  // namespace orvane::provider::engines
