#include "provider/historian/catalog_change.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <vector>

#include "provider/historian/catalog_file.h"
#include "provider/historian/catalog_tables.h"

namespace orvane::provider::historian {
namespace {

namespace fs = std::filesystem;

// A note is a link to the catalog's file: made with its content at once, or not at all. It bears
// the name of the hidden file.
constexpr std::string_view kNote = ".change";

bool IsNote(const fs::directory_entry& entry) {
  std::error_code error;
  return entry.path().filename().string().starts_with(kNote) && entry.is_symlink(error);
}

// Of files that the historian makes for itself.
bool IsLeftover(const fs::directory_entry& entry) {
  const std::string sName = entry.path().filename().string();
  std::error_code error;
  return sName.starts_with(".Functions.") && IsHiddenName(sName) && entry.is_regular_file(error);
}

bool IsSameFile(const fs::path& left, const fs::path& right) {
  struct stat first {};
  struct stat second {};
  return lstat(left.c_str(), &first) == 0 && lstat(right.c_str(), &second) == 0 &&
         first.st_dev == second.st_dev && first.st_ino == second.st_ino;
}

// Whoever may write into the historian's folder can put a note there, and must reach with it no
// file that only the opener may remove.
bool MayBeAbout(const fs::path& note, const fs::path& file) {
  struct stat noted {};
  struct stat found {};
  return lstat(note.c_str(), &noted) == 0 && lstat(file.c_str(), &found) == 0 &&
         S_ISREG(found.st_mode) && (noted.st_uid == found.st_uid || noted.st_uid == geteuid());
}

// A hidden name of that file, as HiddenName gives it.
bool IsHiddenNameOf(const fs::path& file, const std::string& sHidden) {
  return IsHiddenName(sHidden) &&
         fs::path(sHidden).stem().string() == "." + file.filename().string();
}

std::vector<fs::directory_entry> Entries(const fs::path& folder) {
  std::vector<fs::directory_entry> entries;
  std::error_code error;
  for (fs::directory_iterator it(folder, error), end; !error && it != end; it.increment(error)) {
    if (IsNote(*it) || IsLeftover(*it)) entries.push_back(*it);
  }
  return entries;
}

}  // namespace

CatalogChange::CatalogChange(fs::path note, fs::path file, fs::path hidden)
    : m_note(std::move(note)), m_file(std::move(file)), m_hidden(std::move(hidden)) {}

CatalogChange::CatalogChange(const fs::path& folder, const fs::path& stored)
    : m_file(folder / stored), m_hidden(HiddenName(m_file)) {
  m_note = folder / (std::string(kNote) + m_hidden.filename().string());
  if (symlink(stored.c_str(), m_note.c_str()) != 0) FailToWriteCatalogFile(m_note, errno, errno);
}

void CatalogChange::Make(std::string_view sStatements) const {
  MakeHidden(m_file, m_hidden, sStatements);
  NameHidden(m_hidden, m_file);
}

void CatalogChange::Hide() const {
  HideFiles(m_file, m_hidden);
}

void CatalogChange::Finish(bool bRecorded) const {
  std::error_code error;
  if (!fs::is_directory(m_file.parent_path(), error)) return;  // its disk may come back
  const bool bHidden = fs::exists(fs::symlink_status(m_hidden, error));
  // In the historian's folder a colleague's file may have been hidden.
  if (bHidden && !MayBeAbout(m_note, m_hidden) && !ReallyLiesIn(m_hidden, m_note.parent_path())) {
    fs::remove(m_note, error);
    return;
  }
  if (bRecorded && !fs::exists(m_file, error)) {
    UnhideFiles(m_hidden, m_file);
  } else if (IsSameFile(m_file, m_hidden)) {
    // Made, and perhaps never recorded.
    if (!bRecorded) fs::remove(m_file, error);
    RemoveCatalogFile(m_hidden);
  } else if (!bRecorded) {
    if (bHidden) {
      RemoveCatalogFile(m_hidden);
      // Or made where a file has one name only.
    } else if (MayBeAbout(m_note, m_file) && WasHidden(m_file, m_hidden, kNewCatalog)) {
      RemoveCatalogFile(m_file);
    }
  }
  // Otherwise somebody has put another file into the place of the hidden one; both stay. So does
  // the note, as long as there is something left to be done.
  if (!fs::exists(m_hidden, error)) fs::remove(m_note, error);
}

void CatalogChange::LeaveFile(const fs::path& folder, const fs::path& stored) {
  for (const auto& entry : Entries(folder)) {
    std::error_code error;
    if (IsNote(entry) && fs::read_symlink(entry.path(), error) == stored) {
      fs::remove(entry.path(), error);
    }
  }
}

bool CatalogChange::AnyLeft(const fs::path& folder) {
  return !Entries(folder).empty();
}

void CatalogChange::FinishAll(const fs::path& folder,
                              const std::function<bool(const fs::path& stored)>& isRecorded) {
  for (const auto& entry : Entries(folder)) {
    std::error_code error;
    if (!IsNote(entry)) {
      fs::remove(entry.path(), error);
      continue;
    }
    const fs::path stored = fs::read_symlink(entry.path(), error);
    if (error) continue;
    const fs::path file = folder / stored;
    const std::string sHidden = entry.path().filename().string().substr(kNote.size());
    if (!IsHiddenNameOf(file, sHidden)) continue;
    CatalogChange(entry.path(), file, file.parent_path() / sHidden).Finish(isRecorded(stored));
  }
}

}  // namespace orvane::provider::historian
