#include "component/trusted_path.h"

#include <grp.h>
#include <pwd.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <algorithm>
#include <system_error>
#include <vector>

#include "platform/failure.h"

namespace orvane::component {
namespace {

namespace fs = std::filesystem;
using platform::Failure;
using platform::Text;

constexpr int kMostLinks = 40;

/// The group that bears this user's name and has nobody else in it, as many systems make one for
/// each user; where the umask is 002, all that he makes can be written by it.
std::optional<gid_t> PrivateGroup() {
  std::vector<char> userBuffer(65536);
  std::vector<char> groupBuffer(65536);
  passwd user{};
  passwd* foundUser = nullptr;
  group ownGroup{};
  group* foundGroup = nullptr;
  if (getpwuid_r(geteuid(), &user, userBuffer.data(), userBuffer.size(), &foundUser) != 0 ||
      foundUser == nullptr ||
      getgrgid_r(user.pw_gid, &ownGroup, groupBuffer.data(), groupBuffer.size(), &foundGroup) !=
          0 ||
      foundGroup == nullptr || Text(ownGroup.gr_name) != user.pw_name) {
    return {};
  }
  for (char** member = ownGroup.gr_mem; *member != nullptr; ++member) {
    if (Text(*member) != user.pw_name) return {};
  }
  return user.pw_gid;
}

fs::path Program() {
  std::error_code error;
  return fs::read_symlink("/proc/self/exe", error);
}

/// A list of rights grants writing to others by way of the group's bits.
bool HasRightsList(const fs::path& path) {
  return lgetxattr(path.c_str(), "system.posix_acl_access", nullptr, 0) > 0;
}

bool IsAbove(const fs::path& folder, const fs::path& file) {
  return std::mismatch(folder.begin(), folder.end(), file.begin(), file.end()).first ==
         folder.end();
}

[[noreturn]] void FailUntrusted(const fs::path& file, const fs::path& culprit) {
  throw Failure(platform::failure::kComponent,
                "\"" + file.string() + "\" is not used, since other users can change \"" +
                    culprit.string() +
                    "\"; take their right to write away from them (chmod go-w), or install the "
                    "component where only you and the administrator can write.",
                "component");
}

/// Walks to the file as the system does, one name after the other, and looks at each.
class WayTo {
 public:
  explicit WayTo(fs::path file)
      : m_file(std::move(file)), m_trust(Trust::OfProcess()), m_program(Program()) {}

  void Check() {
    std::error_code error;
    Push(fs::absolute(m_file, error));
    m_at = "/";
    Look(m_at, !m_names.empty());
    while (!m_names.empty()) {
      const fs::path name = m_names.back();
      m_names.pop_back();
      if (name.empty() || name == "." || name == "/") continue;
      if (name == "..") {
        m_at = m_at.parent_path();
        continue;
      }
      if (!Step(m_at / name)) return;
    }
  }

 private:
  void Push(const fs::path& path) {
    std::vector<fs::path> names(path.begin(), path.end());
    m_names.insert(m_names.end(), names.rbegin(), names.rend());
  }

  /// False when there is nothing.
  bool Step(const fs::path& next) {
    struct stat status {};
    if (lstat(next.c_str(), &status) != 0) return false;
    if (!S_ISLNK(status.st_mode)) {
      m_at = next;
      // The file's own folder may not be shared: others could add to it.
      const auto nLeft = std::count_if(m_names.begin(), m_names.end(),
                                       [](const auto& name) { return !name.empty(); });
      Look(next, S_ISDIR(status.st_mode) && nLeft > 1);
      return true;
    }
    // Whoever can change a link's folder was looked at; in a shared one the link has an owner.
    if (!m_trust.owners.contains(status.st_uid)) FailUntrusted(m_file, next);
    std::error_code error;
    const fs::path target = fs::read_symlink(next, error);
    if (error || ++m_nLinks > kMostLinks) return false;
    if (target.is_absolute()) m_at = "/";
    Push(target);
    return true;
  }

  void Look(const fs::path& path, bool bFolderAbove) {
    struct stat status {};
    if (lstat(path.c_str(), &status) != 0) return;
    if (S_ISDIR(status.st_mode) && bFolderAbove && IsAbove(path, m_program)) return;
    Trust trust = m_trust;
    if ((status.st_mode & S_IWGRP) != 0 && HasRightsList(path)) trust.ownGroup.reset();
    if (!IsTrusted(status, trust, bFolderAbove)) FailUntrusted(m_file, path);
  }

  fs::path m_file;
  Trust m_trust;
  fs::path m_program;
  fs::path m_at;
  std::vector<fs::path> m_names;  ///< still to go, the next one last
  int m_nLinks = 0;
};

}  // namespace

Trust Trust::OfProcess() {
  static const std::optional<gid_t> privateGroup = PrivateGroup();
  Trust trust{{0, geteuid()}, privateGroup};
  struct stat program {};
  if (stat("/proc/self/exe", &program) == 0) trust.owners.insert(program.st_uid);
  return trust;
}

bool IsTrusted(const struct stat& status, const Trust& trust, bool bFolderAbove) {
  if (!trust.owners.contains(status.st_uid)) return false;
  if (bFolderAbove && (status.st_mode & S_ISVTX) != 0) return true;
  if ((status.st_mode & S_IWOTH) != 0) return false;
  // What the administrator lets a group write is his decision, as in /usr/local of some systems.
  return (status.st_mode & S_IWGRP) == 0 || status.st_uid == 0 || trust.ownGroup == status.st_gid;
}

void RequireTrusted(const fs::path& file) {
  WayTo(file).Check();
}

}  // namespace orvane::component
