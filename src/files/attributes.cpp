#include "files/attributes.h"

#include <sys/xattr.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <optional>
#include <string_view>
#include <vector>

namespace orvane::files {
namespace {

using platform::Text;

constexpr int kMostTries = 10;

// What the call gives, which is asked for its size first; none when it fails. A file system without
// such attributes has none to give.
template <class Call>
std::optional<Text> Asked(Call&& call) {
  for (int i = 0; i < kMostTries; ++i) {
    const ssize_t nSize = call(nullptr, 0);
    if (nSize < 0) return errno == ENOTSUP ? std::optional<Text>("") : std::nullopt;
    Text sBytes(static_cast<std::size_t>(nSize), '\0');
    if (nSize == 0) return sBytes;
    const ssize_t nRead = call(sBytes.data(), sBytes.size());
    if (nRead >= 0) {
      sBytes.resize(static_cast<std::size_t>(nRead));
      return sBytes;
    }
    // It has grown in between.
    if (errno != ERANGE) return std::nullopt;
  }
  return std::nullopt;
}

std::optional<std::vector<Text>> Names(const Descriptor& file) {
  const auto sNames =
      Asked([&](char* sBytes, std::size_t nSize) { return flistxattr(file.Get(), sBytes, nSize); });
  if (!sNames) return std::nullopt;
  std::vector<Text> names;
  for (std::string_view sRest = *sNames; !sRest.empty();) {
    const std::size_t nEnd = std::min(sRest.find('\0'), sRest.size());
    names.emplace_back(sRest.substr(0, nEnd));
    sRest.remove_prefix(std::min(nEnd + 1, sRest.size()));
  }
  return names;
}

std::optional<Text> Get(const Descriptor& file, const Text& sName) {
  return Asked([&](char* sBytes, std::size_t nSize) {
    return fgetxattr(file.Get(), sName.c_str(), sBytes, nSize);
  });
}

// The access list is one of these attributes.
bool TakeExtended(const Descriptor& from, const Descriptor& to) {
  const auto wanted = Names(from);
  const auto present = Names(to);
  if (!wanted || !present) return false;
  for (const Text& sName : *present) {
    if (std::ranges::find(*wanted, sName) != wanted->end()) continue;
    if (fremovexattr(to.Get(), sName.c_str()) != 0) return false;
  }
  for (const Text& sName : *wanted) {
    const auto sValue = Get(from, sName);
    if (!sValue) return false;
    const bool bPresent = std::ranges::find(*present, sName) != present->end();
    if (bPresent && Get(to, sName) == sValue) continue;
    if (fsetxattr(to.Get(), sName.c_str(), sValue->data(), sValue->size(), 0) != 0) return false;
  }
  return true;
}

}  // namespace

bool TakeAttributes(const Descriptor& from, const Descriptor& to) {
  struct stat wanted {};
  struct stat present {};
  if (fstat(from.Get(), &wanted) != 0 || fstat(to.Get(), &present) != 0) return false;
  const bool bSameOwner = wanted.st_uid == present.st_uid && wanted.st_gid == present.st_gid;
  if (!bSameOwner && fchown(to.Get(), wanted.st_uid, wanted.st_gid) != 0) return false;
  constexpr mode_t kMode = 07777;
  return fchmod(to.Get(), wanted.st_mode & kMode) == 0 && TakeExtended(from, to);
}

bool TakeAccess(const Text& sFrom, const Descriptor& to) {
  constexpr const char* kList = "system.posix_acl_access";
  constexpr auto kSameUser = static_cast<uid_t>(-1);
  struct stat wanted {};
  struct stat present {};
  if (stat(sFrom.c_str(), &wanted) != 0 || fstat(to.Get(), &present) != 0) return false;
  if (wanted.st_gid != present.st_gid && fchown(to.Get(), kSameUser, wanted.st_gid) != 0) {
    return false;
  }
  const auto sList = Asked([&](char* sBytes, std::size_t nSize) {
    const ssize_t nList = getxattr(sFrom.c_str(), kList, sBytes, nSize);
    return nList < 0 && errno == ENODATA ? 0 : nList;
  });
  if (!sList) return false;
  // One that the folder gave to what is made in it.
  if (sList->empty() && fremovexattr(to.Get(), kList) != 0 && errno != ENODATA &&
      errno != ENOTSUP) {
    return false;
  }
  if (!sList->empty() && fsetxattr(to.Get(), kList, sList->data(), sList->size(), 0) != 0) {
    return false;
  }
  constexpr mode_t kAccess = 0666;
  return fchmod(to.Get(), wanted.st_mode & kAccess) == 0;
}

}  // namespace orvane::files
