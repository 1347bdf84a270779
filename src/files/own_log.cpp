#include "files/own_log.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>

#include "files/private_files.h"
namespace orvane::files {
namespace {

namespace fs = std::filesystem;
using platform::Text;

constexpr int kMostLinks = 40;

bool IsOwnOrSystems(const struct stat& link) {
  return link.st_uid == 0 || link.st_uid == geteuid();
}

// Whoever may write in a folder on the way can lead it elsewhere. Links of the user and of the
// system are part of how the machine is set up.
bool LeadsThroughOthersLink(const fs::path& folder) {
  fs::path rest = folder;
  for (int i = 0; i < kMostLinks; ++i) {
    fs::path walked;
    auto part = rest.begin();
    struct stat status {};
    for (; part != rest.end(); ++part) {
      walked /= *part;
      if (lstat(walked.c_str(), &status) == 0 && S_ISLNK(status.st_mode)) break;
    }
    if (part == rest.end()) return false;
    if (!IsOwnOrSystems(status)) return true;
    std::error_code error;
    fs::path next = walked.parent_path() / fs::read_symlink(walked, error);
    if (error) return true;
    for (++part; part != rest.end(); ++part) next /= *part;
    rest = next;
  }
  return true;
}

OpenedLog Refused(LogRefusal refusal, int iError = 0) {
  return {Descriptor(), refusal, iError};
}

Descriptor OpenOrMake(const Text& sPath) {
  constexpr int kFlags = O_RDWR | O_APPEND | O_NONBLOCK | O_NOCTTY | O_CLOEXEC | O_NOFOLLOW;
  constexpr mode_t kOwners = S_IRUSR | S_IWUSR;
  // Once more for a file that goes or comes in between.
  for (int i = 0; i < 2; ++i) {
    Descriptor made(open(sPath.c_str(), kFlags | O_CREAT | O_EXCL, kOwners));
    if (made) {
      fchmod(made.Get(), kOwners);
      return made;
    }
    if (errno != EEXIST) return made;
    Descriptor present(open(sPath.c_str(), kFlags));
    if (present || errno != ENOENT) return present;
  }
  return Descriptor();
}

}  // namespace

OpenedLog OpenOwnLog(const Text& sPath, std::string_view sHeader) {
  if (LeadsThroughOthersLink(fs::path(sPath).parent_path())) return Refused(LogRefusal::Link);
  // Only now: whoever leads elsewhere must not choose where folders come to be, either.
  std::error_code ignored;
  MakePrivateFolders(fs::path(sPath).parent_path(), ignored);
  Descriptor file = OpenOrMake(sPath);
  if (!file) {
    // A link that is not followed; a socket.
    if (errno == ELOOP) return Refused(LogRefusal::Link);
    if (errno == ENXIO) return Refused(LogRefusal::NoFile);
    return Refused(LogRefusal::NotOpened, errno);
  }
  struct stat status {};
  if (fstat(file.Get(), &status) != 0) return Refused(LogRefusal::NotOpened, errno);
  if (!S_ISREG(status.st_mode)) return Refused(LogRefusal::NoFile);
  if (status.st_nlink != 1) return Refused(LogRefusal::OtherNames);
  const Text sFirst = Text(sHeader) + "\n";
  Text sBegin;
  if (const int iError = ReadAt(file, 0, sFirst.size(), sBegin)) {
    return Refused(LogRefusal::NotOpened, iError);
  }
  const bool bWhole = static_cast<std::size_t>(status.st_size) == sBegin.size();
  if (bWhole && sFirst.starts_with(sBegin)) {
    // New, empty, or begun on a disk that was full.
    AppendLine(file, std::string_view(sFirst).substr(sBegin.size()));
  } else if (sBegin != sFirst) {
    return Refused(LogRefusal::NoLog);
  }
  return {std::move(file)};
}

void AppendLine(const Descriptor& file, std::string_view sLine) noexcept {
  // In one piece, so that those of two writers do not mix; a place means nothing when appending.
  WriteAt(file, 0, sLine);
}

}  // namespace orvane::files
