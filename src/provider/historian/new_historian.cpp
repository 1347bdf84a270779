#include "provider/historian/new_historian.h"

#include <fcntl.h>
#include <stdlib.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <system_error>
#include <vector>

#include "files/private_files.h"
#include "platform/failure.h"

namespace orvane::provider::historian {
namespace {

using platform::Failure;
using platform::Text;
namespace failure = platform::failure;
namespace fs = std::filesystem;

constexpr std::string_view kHidden = ".new-";
constexpr std::size_t kHiddenLength = 11;  // with the six signs that make it unique

[[noreturn]] void FailToMake(const fs::path& folder, const std::error_code& error) {
  const bool bRights = error == std::errc::permission_denied ||
                       error == std::errc::operation_not_permitted ||
                       error == std::errc::read_only_file_system;
  throw Failure(bRights ? failure::kNoRights : failure::kStorage,
                "The folder " + folder.string() + " cannot be made: " + error.message() +
                    "; check the folder above it and the room on the disk.",
                "ORVOLEDB", error.value());
}

std::error_code LastError() {
  return {errno, std::generic_category()};
}

// The lock on a hidden folder, which goes when its holder ends. None, and errno tells why: ENOENT
// or EWOULDBLOCK when another program has removed the folder or is about to.
int Lock(const fs::path& hidden) {
  const int nFolder = open(hidden.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
  if (nFolder < 0) return -1;
  int nError = 0;
  struct stat opened {};
  struct stat named {};
  if (flock(nFolder, LOCK_EX | LOCK_NB) != 0 || fstat(nFolder, &opened) != 0 ||
      lstat(hidden.c_str(), &named) != 0) {
    nError = errno;
  } else if (opened.st_dev != named.st_dev || opened.st_ino != named.st_ino) {
    nError = ENOENT;
  }
  if (nError == 0) return nFolder;
  close(nFolder);
  errno = nError;
  return -1;
}

}  // namespace

void FailHistorianExists(const Text& sServer) {
  throw Failure(failure::kKeyExists, "There is a historian \"" + sServer +
                                         "\" on this machine already; choose another name.");
}

NewHistorian::NewHistorian(const fs::path& folder) : m_folder(folder) {
  std::error_code error;
  files::MakePrivateFolders(folder.parent_path(), error);
  if (error) FailToMake(folder.parent_path(), error);
  // Between making it and locking it another program may take it for a leftover, and remove it.
  constexpr int kMostTries = 100;
  for (int i = 0; i < kMostTries; ++i) {
    Text sTemplate = (folder.parent_path() / (Text(kHidden) + "XXXXXX")).string();
    if (mkdtemp(sTemplate.data()) == nullptr) FailToMake(folder, LastError());
    m_hidden = sTemplate;
    const bool bPrivate = files::KeepPrivate(m_hidden);
    if (bPrivate) m_nLock = Lock(m_hidden);
    if (m_nLock >= 0) return;
    error = LastError();
    if (error == std::errc::no_such_file_or_directory ||
        error == std::errc::operation_would_block) {
      continue;
    }
    if (!bPrivate) break;
    // Where folders cannot be locked, nobody takes this one for a leftover.
    return;
  }
  std::error_code ignored;
  fs::remove_all(m_hidden, ignored);
  FailToMake(folder, error);
}

NewHistorian::~NewHistorian() {
  std::error_code ignored;
  fs::remove_all(m_hidden, ignored);
  if (m_nLock >= 0) close(m_nLock);
}

void NewHistorian::Name() {
  // Unlike a plain rename, this never takes the place of a folder that is there.
  if (renameat2(AT_FDCWD, m_hidden.c_str(), AT_FDCWD, m_folder.c_str(), RENAME_NOREPLACE) == 0 ||
      ((errno == EINVAL || errno == ENOSYS) && rename(m_hidden.c_str(), m_folder.c_str()) == 0)) {
    return;
  }
  const auto error = LastError();
  if (error == std::errc::file_exists || error == std::errc::directory_not_empty) {
    FailHistorianExists(m_folder.filename().string());
  }
  FailToMake(m_folder, error);
}

void NewHistorian::RemoveLeftovers(const fs::path& historians) {
  std::vector<fs::path> folders;
  std::error_code error;
  for (fs::directory_iterator it(historians, error), end; !error && it != end;
       it.increment(error)) {
    const Text sName = it->path().filename().string();
    if (sName.starts_with(kHidden) && sName.size() == kHiddenLength) folders.push_back(it->path());
  }
  for (const auto& folder : folders) {
    const int nLock = Lock(folder);
    if (nLock < 0) continue;
    std::error_code ignored;
    fs::remove_all(folder, ignored);
    close(nLock);
  }
}

}  // namespace orvane::provider::historian
