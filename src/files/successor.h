// A new file on its way to the place of another one, or to a free name: whoever looks there finds
// all of the old or all of the new bytes, also after a crash.
// Used by what replaces files: at once by Replace, row by row by exports. One thread at a time.
#pragma once

#include <sys/file.h>
#include <sys/stat.h>

#include <filesystem>

#include "files/descriptor.h"

namespace orvane::files {

/// Takes the lock of a descriptor as flock does.
using LockFunction = int (*)(int iDescriptor, int iOperation);

/// False, without waiting, when another descriptor holds the lock. Any other error means that this
/// file system has no locks to give, and nobody is kept from a file by that.
bool TryLock(const Descriptor& file, LockFunction lock = flock);

/// The file behind a chain of symbolic links, which need not exist.
std::filesystem::path BehindLinks(const std::filesystem::path& path);

/// A hidden name beside the file's own with that end, which the file system has room for.
std::filesystem::path Beside(const std::filesystem::path& file, const char* sEnd);

/// The file that is there, open for the most that one may.
struct Present {
  Descriptor file;  ///< none when there is none
  struct stat status {};
};

/// Fails with std::system_error for what may not be written, and with EINVAL for what is no file.
Present OpenPresent(const std::filesystem::path& target);

struct SuccessorOptions {
  const char* sEnd;        ///< of its hidden name
  mode_t mode;             ///< as open takes it: without what the umask takes away
  bool bNameless = false;  ///< has no name before its end, where the file system can do that
  int nNames = 1;          ///< of several hidden ones, which have numbers, the first that is free
  LockFunction lock = flock;
};

/// It carries the lock of its writer from the first moment under a name, so that one left behind by
/// a crash is known by having none; such a one is cleared by the next. Gone at the end unless it
/// succeeded or stays.
class Successor {
 public:
  /// Fails with std::system_error; its code is EBUSY when all of its hidden names are in use.
  Successor(std::filesystem::path target, const SuccessorOptions& options);
  Successor(const Successor&) = delete;
  Successor& operator=(const Successor&) = delete;
  ~Successor();

  const Descriptor& File() const { return m_file; }
  /// Another hidden name, and the file of that name gone.
  void Rename(const std::filesystem::path& path);
  /// The present name lasts once its folder is on the disk; a file system that cannot say so keeps
  /// its own order.
  void KeepName() const;
  /// Whether it stays at the end, under its hidden name.
  void Stay(bool bStays) { m_bStays = bStays; }
  bool Stays() const { return m_bStays; }
  /// Takes the place of the target, or of another file in the same folder, and gives what it is
  /// open by. Fails with std::system_error, what stood there being whole.
  Descriptor Succeed(const std::filesystem::path& target);

 private:
  std::filesystem::path HiddenName(const std::filesystem::path& target, int number) const;
  template <class Make>
  void TakeName(const std::filesystem::path& target, Make make);
  bool RemoveLeftover(const std::filesystem::path& path, bool bLastName) const;

  SuccessorOptions m_options;
  std::filesystem::path m_path;  ///< empty for a file without a name
  Descriptor m_file;
  bool m_bStays = false;
};

}  // namespace orvane::files
