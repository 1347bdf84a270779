// An access list for files of tests, written as the system has it: no tool need be there for it.
#pragma once

#include <gtest/gtest.h>
#include <sys/xattr.h>

#include <cerrno>
#include <cstdint>
#include <cstring>
#include <string>

namespace orvane::files {

constexpr const char* kAccessList = "system.posix_acl_access";
constexpr const char* kDefaultList = "system.posix_acl_default";

/// user::rw-, user:NAMED:rw-, group::r--, mask::rw-, other::---.
inline std::string ListOfOne(std::uint32_t uNamed = 1234) {
  unsigned char list[] = {2,    0, 0, 0,                          //
                          1,    0, 6, 0, 0xFF, 0xFF, 0xFF, 0xFF,  //
                          2,    0, 6, 0, 0,    0,    0,    0,     //
                          4,    0, 4, 0, 0xFF, 0xFF, 0xFF, 0xFF,  //
                          0x10, 0, 6, 0, 0xFF, 0xFF, 0xFF, 0xFF,  //
                          0x20, 0, 0, 0, 0xFF, 0xFF, 0xFF, 0xFF};
  std::memcpy(&list[16], &uNamed, sizeof uNamed);
  return {reinterpret_cast<const char*>(list), sizeof list};
}

/// Gives the file or folder that list. False where its file system has no access lists.
inline bool GiveList(const std::string& sPath, const char* sName = kAccessList,
                     std::uint32_t uNamed = 1234) {
  const std::string sList = ListOfOne(uNamed);
  if (setxattr(sPath.c_str(), sName, sList.data(), sList.size(), 0) == 0) return true;
  EXPECT_EQ(errno, ENOTSUP) << sPath;
  return false;
}

/// The access list of the file; empty for none.
inline std::string ListOf(const std::string& sPath) {
  char list[256];
  const ssize_t nList = getxattr(sPath.c_str(), kAccessList, list, sizeof list);
  return nList < 0 ? std::string() : std::string(list, static_cast<std::size_t>(nList));
}

}  // namespace orvane::files
