#include "files/access_list.h"

#include <linux/posix_acl_xattr.h>
#include <sys/stat.h>
#include <sys/xattr.h>

#include <cstdint>
#include <cstring>
#include <map>
#include <vector>

namespace orvane::files {
namespace {

constexpr const char* kName = "system.posix_acl_access";
// As the system writes them.
constexpr std::uint16_t kOwner = 0x01;
constexpr std::uint16_t kUser = 0x02;
constexpr std::uint16_t kGroupOfFile = 0x04;
constexpr std::uint16_t kGroup = 0x08;
constexpr std::uint16_t kMask = 0x10;
constexpr std::uint16_t kOthers = 0x20;
constexpr std::uint32_t kNoId = 0xFFFFFFFF;
constexpr std::uint16_t kAll = 07;
constexpr std::uint16_t kReadAndWrite = 06;

struct Entry {
  std::uint16_t uTag;
  std::uint16_t uRights;
  std::uint32_t uId;
};

// Those of a file without a list, by its mode.
std::vector<Entry> FromMode(const struct stat& file) {
  const auto rights = [&](unsigned uShift) {
    return static_cast<std::uint16_t>((file.st_mode >> uShift) & kAll);
  };
  return {
      {kOwner, rights(6), kNoId}, {kGroupOfFile, rights(3), kNoId}, {kOthers, rights(0), kNoId}};
}

std::vector<Entry> Entries(const char* sFile, const struct stat& file) {
  // Long enough for any list of a disk's: it fits a block.
  std::vector<char> bytes(65536);
  const ssize_t nBytes = getxattr(sFile, kName, bytes.data(), bytes.size());
  constexpr std::size_t kHeader = sizeof(posix_acl_xattr_header);
  if (nBytes < static_cast<ssize_t>(kHeader)) return FromMode(file);
  std::vector<Entry> entries;
  for (std::size_t n = kHeader;
       n + sizeof(posix_acl_xattr_entry) <= static_cast<std::size_t>(nBytes);
       n += sizeof(posix_acl_xattr_entry)) {
    posix_acl_xattr_entry entry{};
    std::memcpy(&entry, &bytes[n], sizeof entry);
    entries.push_back({entry.e_tag, entry.e_perm, entry.e_id});
  }
  return entries;
}

std::vector<char> Bytes(const std::vector<Entry>& entries) {
  const posix_acl_xattr_header header{POSIX_ACL_XATTR_VERSION};
  std::vector<char> bytes(sizeof header + entries.size() * sizeof(posix_acl_xattr_entry));
  std::memcpy(bytes.data(), &header, sizeof header);
  std::size_t n = sizeof header;
  for (const Entry& entry : entries) {
    const posix_acl_xattr_entry written{entry.uTag, entry.uRights, entry.uId};
    std::memcpy(&bytes[n], &written, sizeof written);
    n += sizeof written;
  }
  return bytes;
}

}  // namespace

bool ListAccess(const platform::Text& sFrom, const Descriptor& to) {
  struct stat wanted {};
  if (stat(sFrom.c_str(), &wanted) != 0) return false;
  std::map<std::uint32_t, std::uint16_t> users;
  std::map<std::uint32_t, std::uint16_t> groups;
  std::uint16_t uMask = kAll;
  std::uint16_t uOthers = 0;
  const auto entries = Entries(sFrom.c_str(), wanted);
  for (const Entry& entry : entries) {
    if (entry.uTag == kMask) uMask = entry.uRights;
  }
  for (const Entry& entry : entries) {
    const auto uMasked = static_cast<std::uint16_t>(entry.uRights & uMask & kReadAndWrite);
    if (entry.uTag == kUser) users.emplace(entry.uId, uMasked);
    if (entry.uTag == kGroup) groups[entry.uId] |= uMasked;
    if (entry.uTag == kGroupOfFile) groups[wanted.st_gid] |= uMasked;
    if (entry.uTag == kOwner) users[wanted.st_uid] = entry.uRights & kReadAndWrite;
    if (entry.uTag == kOthers) uOthers = entry.uRights & kReadAndWrite;
  }
  std::vector<Entry> list{{kOwner, kReadAndWrite, kNoId}};
  for (const auto& [uUser, uRights] : users) list.push_back({kUser, uRights, uUser});
  list.push_back({kGroupOfFile, 0, kNoId});
  for (const auto& [uGroup, uRights] : groups) list.push_back({kGroup, uRights, uGroup});
  list.push_back({kMask, kReadAndWrite, kNoId});
  list.push_back({kOthers, uOthers, kNoId});
  const auto bytes = Bytes(list);
  return fsetxattr(to.Get(), kName, bytes.data(), bytes.size(), 0) == 0;
}

}  // namespace orvane::files
