#include "provider/engines/sqlite/sqlite_errors.h"

#include <fmt/format.h>
#include <sqlite3.h>

#include <cerrno>

namespace orvane::provider::engines {

namespace failure = platform::failure;
using platform::Long;
using platform::Text;

namespace {

bool IsOfFiles(int nCode) {
  const int nPrimary = nCode & kPrimaryCode;
  return nPrimary == SQLITE_IOERR || nPrimary == SQLITE_CANTOPEN;
}

// What the system said last of the file; SQLite's own number may be that of a later call.
int LastErrorOf(sqlite3_file* file) {
  int nError = 0;
  if (file != nullptr && file->pMethods != nullptr) {
    file->pMethods->xFileControl(file, SQLITE_FCNTL_LAST_ERRNO, &nError);
  }
  return nError;
}

}  // namespace

bool IsHeldByOthers(int nCode) noexcept {
  const int nPrimary = nCode & kPrimaryCode;
  return nPrimary == SQLITE_BUSY || nPrimary == SQLITE_LOCKED;
}

bool IsNoRoom(int nSystemError) noexcept {
  return nSystemError == ENOSPC || nSystemError == EDQUOT || nSystemError == EFBIG;
}

int WithSystemError(int nCode, int nSystemError) noexcept {
  return IsOfFiles(nCode) && IsNoRoom(nSystemError) ? SQLITE_FULL : nCode;
}

int WithSystemError(sqlite3* database, int nCode) {
  if (!IsOfFiles(nCode)) return nCode;
  int nError = sqlite3_system_errno(database);
  for (int n = 0; !IsNoRoom(nError); ++n) {
    const char* const sName = sqlite3_db_name(database, n);
    if (sName == nullptr) break;
    for (const int nWhich : {SQLITE_FCNTL_FILE_POINTER, SQLITE_FCNTL_JOURNAL_POINTER}) {
      sqlite3_file* file = nullptr;
      sqlite3_file_control(database, sName, nWhich, static_cast<void*>(&file));
      if (const int nLast = LastErrorOf(file); IsNoRoom(nLast)) nError = nLast;
    }
  }
  return WithSystemError(nCode, nError);
}

Long FailureNumberOf(int nCode) noexcept {
  switch (nCode) {
    case SQLITE_CANTOPEN_ISDIR:
    case SQLITE_IOERR_SHORT_READ:
      return failure::kNotADatabase;
    case SQLITE_IOERR_ACCESS:
      return failure::kNoRights;
    default:
      break;
  }
  switch (nCode & kPrimaryCode) {
    case SQLITE_OK:
    case SQLITE_ROW:
    case SQLITE_DONE:
      return 0;
    case SQLITE_PERM:
    case SQLITE_READONLY:
    case SQLITE_CANTOPEN:  // that the file is there was looked at before
      return failure::kNoRights;
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
    case SQLITE_PROTOCOL:
    case SQLITE_SCHEMA:
      return failure::kBusy;
    case SQLITE_INTERRUPT:
    case SQLITE_ABORT:
      return failure::kCancelled;
    case SQLITE_NOMEM:
    case SQLITE_TOOBIG:
    case SQLITE_IOERR:
    case SQLITE_FULL:
    case SQLITE_NOLFS:
      return failure::kStorage;
    case SQLITE_CORRUPT:
    case SQLITE_FORMAT:
    case SQLITE_NOTADB:
      return failure::kNotADatabase;
    case SQLITE_CONSTRAINT:
    case SQLITE_MISMATCH:
      return failure::kConstraint;
    case SQLITE_AUTH:
      return failure::kNotSupported;
    default:
      return failure::kSqlError;
  }
}

namespace {

// The name from SQLite's "no such column: NAME", which some versions put in quotes and follow by
// advice of their own; empty for any other message.
std::string_view MissingColumn(std::string_view sDetail) {
  constexpr std::string_view kBefore = "no such column: ";
  if (!sDetail.starts_with(kBefore)) return {};
  std::string_view sName = sDetail.substr(kBefore.size());
  sName = sName.substr(0, sName.find(" - should this be"));
  if (sName.size() > 2 && sName.front() == '"' && sName.back() == '"') {
    sName = sName.substr(1, sName.size() - 2);
  }
  return sName;
}

}  // namespace

Text SentenceOf(int nCode, std::string_view sSubject, std::string_view sDetail,
                std::size_t nPlace) {
  switch (nCode & kPrimaryCode) {
    case SQLITE_NOMEM:
    case SQLITE_TOOBIG:
      return "There is not enough memory for the statement: set a row limit, or narrow it down.";
    case SQLITE_FULL:
      return fmt::format(
          "{} has no room left on its disk, so nothing was written: make room and "
          "try again.",
          sSubject);
    case SQLITE_CANTOPEN:
      if (nCode == SQLITE_CANTOPEN_ISDIR) break;
      return fmt::format(
          "{} cannot be opened: check that you may read and write its file and "
          "folder.",
          sSubject);
    case SQLITE_READONLY:
      if (nCode == SQLITE_READONLY_DBMOVED) {
        return fmt::format(
            "{} is in a file that was moved, removed or replaced while it was open: connect again.",
            sSubject);
      }
      if (nCode == SQLITE_READONLY_ROLLBACK) {
        return fmt::format(
            "{} was left in the middle of a change by a program that broke off: let someone who "
            "may write its file open it.",
            sSubject);
      }
      break;
    default:
      break;
  }
  switch (FailureNumberOf(nCode)) {
    case failure::kNoRights:
      return fmt::format(
          "{} is read-only for you: ask its owner for the right to write to its file and folder.",
          sSubject);
    case failure::kBusy:
      return fmt::format("{} is locked by another program: try again when that is done.", sSubject);
    case failure::kCancelled:
      return "The statement was cancelled.";
    case failure::kStorage:
      return fmt::format(
          "{} cannot be read or written, because its disk failed ({}): check the "
          "disk.",
          sSubject, sDetail);
    case failure::kNotADatabase:
      return (nCode & kPrimaryCode) == SQLITE_CORRUPT
                 ? fmt::format("{} is damaged ({}): restore its file from a copy.", sSubject,
                               sDetail)
                 : fmt::format(
                       "{} is in a file that is no database: name another file, or restore "
                       "it from a copy.",
                       sSubject);
    case failure::kConstraint:
      return fmt::format("A rule of the table refuses this: {}; correct the row.", sDetail);
    case failure::kNotSupported:
      return "The statement is refused: attaching and detaching, transactions and settings of the "
             "database are not for statements; leave them out.";
    default: {
      const Text sPlace =
          nPlace == 0 ? Text() : fmt::format(" (character {} of the statement)", nPlace);
      if (const auto sName = MissingColumn(sDetail); !sName.empty()) {
        return fmt::format(
            "There is no column \"{}\"{}: write the name of one that the tables have; a text or a "
            "time stands between single quotes.",
            sName, sPlace);
      }
      if (sDetail.ends_with("stack overflow") || sDetail.starts_with("Expression tree ")) {
        return "The statement is nested too deeply for the database: nest fewer brackets, calls "
               "and queries.";
      }
      return fmt::format("The statement cannot be run: {}{}; correct it.", sDetail, sPlace);
    }
  }
}

platform::Failure FailureOf(int nCode, std::string_view sSubject, std::string_view sDetail,
                            Text sSql, std::size_t nPlace) {
  return {FailureNumberOf(nCode), SentenceOf(nCode, sSubject, sDetail, nPlace), "SQLite", nCode,
          std::move(sSql)};
}

}  // namespace orvane::provider::engines
