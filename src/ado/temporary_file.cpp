#include "ado/temporary_file.h"

#include <fcntl.h>
#include <stdlib.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <vector>

#include "platform/failure.h"

namespace orvane::ado {

namespace fs = std::filesystem;

namespace {

std::vector<fs::path> UsualFolders() {
  std::vector<fs::path> folders;
  const char* const sFolder = ::getenv("TMPDIR");
  if (sFolder != nullptr && *sFolder == '/') folders.emplace_back(sFolder);
  folders.emplace_back("/var/tmp");
  folders.emplace_back("/tmp");
  return folders;
}

// What lies in memory anyway saves none.
bool IsOnDisk(const fs::path& folder) {
  constexpr long kTmpfs = 0x01021994;
  constexpr long kRamfs = 0x858458F6;
  struct statfs system {};
  if (::statfs(folder.c_str(), &system) != 0) return false;
  const auto type = static_cast<long>(system.f_type);
  return type != kTmpfs && type != kRamfs;
}

}  // namespace

TemporaryFile::TemporaryFile(std::span<const fs::path> folders) {
  std::vector<fs::path> all(folders.begin(), folders.end());
  if (all.empty()) all = UsualFolders();
  std::stable_partition(all.begin(), all.end(), IsOnDisk);
  for (const fs::path& folder : all) {
    if (OpenIn(folder)) return;
  }
  throw platform::Failure(platform::failure::kStorage,
                          "There is no memory left for rows, and no temporary file can be made in "
                          "\"" +
                              all.front().string() + "\": make room there, or set a row limit.");
}

bool TemporaryFile::OpenIn(const fs::path& folder) {
  int iFile = ::open(folder.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC | O_EXCL, 0600);
  if (iFile < 0) {
    std::string sName = (folder / "orvane-rows-XXXXXX").string();
    iFile = ::mkostemp(sName.data(), O_CLOEXEC);
    if (iFile >= 0) ::unlink(sName.c_str());
  }
  if (iFile < 0) return false;
  m_file = files::Descriptor(iFile);
  m_folder = folder;
  return true;
}

void TemporaryFile::Fail(int nError) const {
  const bool bFull = nError == ENOSPC || nError == EDQUOT || nError == EFBIG;
  throw platform::Failure(
      platform::failure::kStorage,
      bFull ? "The disk of \"" + m_folder.string() +
                  "\" has no room left for more rows: make room there, or set a row limit."
            : "The temporary file for rows in \"" + m_folder.string() + "\" cannot be written (" +
                  std::strerror(nError) + "): check the disk.");
}

}  // namespace orvane::ado
