#include "provider/historian/historian.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>

#include "files/private_files.h"
#include "platform/case_folding.h"
#include "platform/conversions.h"
#include "platform/failure.h"
#include "platform/historian_names.h"
#include "provider/deadline.h"
#include "provider/engines/same_catalog.h"
#include "provider/historian/catalog_change.h"
#include "provider/historian/catalog_file.h"
#include "provider/historian/catalog_tables.h"
#include "provider/historian/data_folder.h"
#include "provider/historian/functions_catalog.h"
#include "provider/historian/new_historian.h"
#include "provider/historian/shell_word.h"

namespace orvane::provider::historian {
namespace {

using platform::Failure;
using platform::Text;
using platform::Value;
namespace failure = platform::failure;
namespace fs = std::filesystem;

constexpr const char* kSystemFile = "Orvane.db";

bool MayReadIn(const fs::path& folder) {
  return faccessat(AT_FDCWD, folder.c_str(), R_OK | X_OK, AT_EACCESS) == 0;
}

[[noreturn]] void FailNoRights(const Text& sServer, const fs::path& folder) {
  throw Failure(failure::kNoRights,
                "You have no rights on the folder of the historian " + sServer + ", " +
                    folder.string() + "; ask its owner for the right to read and write there.",
                "ORVOLEDB", EACCES);
}

void CheckFolder(const fs::path& folder, const Text& sServer) {
  std::error_code error;
  const auto status = fs::status(folder, error);
  if (error == std::errc::permission_denied) FailNoRights(sServer, folder);
  if (status.type() == fs::file_type::none) {
    throw Failure(failure::kServerNotFound,
                  "The historian \"" + sServer + "\" in the folder " + folder.string() +
                      " cannot be reached (" + error.message() +
                      "): bring its disk back, or choose another server.",
                  "ORVOLEDB", error.value());
  }
  if (status.type() == fs::file_type::not_found) {
    throw Failure(failure::kServerNotFound,
                  "There is no historian \"" + sServer +
                      "\" on this machine; make it with \"orvane-historian init " +
                      InShell(sServer) + "\" or choose another server.");
  }
  if (status.type() != fs::file_type::directory) {
    throw Failure(failure::kNotADatabase, "The historian " + sServer + " should be a folder, but " +
                                              folder.string() +
                                              " is none; move it away or choose another server.");
  }
  if (!MayReadIn(folder)) FailNoRights(sServer, folder);
  if (!fs::exists(folder / kSystemFile, error)) {
    throw Failure(failure::kNotADatabase,
                  "The folder " + folder.string() + " holds no historian: the file " + kSystemFile +
                      " is missing; restore it from a copy or choose another server.");
  }
}

// One that was there before is not made again without being asked for.
[[noreturn]] void FailGone(const fs::path& folder, const Text& sServer) {
  throw Failure(failure::kServerNotFound,
                "The historian \"" + sServer + "\" was in the folder " + folder.string() +
                    " and is gone: bring that back (its disk may not be mounted), or make a new, "
                    "empty one with \"orvane-historian init " +
                    InShell(sServer) + "\".");
}

CatalogRecord OwnCatalog(const char* sName, fs::path file, const char* sDescription) {
  return {sName, {}, std::move(file), {}, 0, sDescription, true};
}

// Whether the file is there and kept from this user, who is not the one that the historian is of.
// To make it anew is not his.
bool IsKeptBack(const fs::path& file, const fs::path& systemFile) {
  if (faccessat(AT_FDCWD, file.c_str(), R_OK, AT_EACCESS) == 0 || errno != EACCES) return false;
  struct stat own {};
  return stat(systemFile.c_str(), &own) == 0 && own.st_uid != geteuid();
}

}  // namespace

Historian::Historian(const fs::path& root, const Text& sServer, engines::FileEngine& engine,
                     std::stop_token stop, const KnownHistorians& known)
    : m_folder(HistorianFolder(root, sServer)) {
  std::error_code error;
  NewHistorian::RemoveLeftovers(m_folder.parent_path());
  if (fs::status(m_folder, error).type() == fs::file_type::not_found) {
    // A link tells as well that there was something.
    if (fs::is_symlink(fs::symlink_status(m_folder, error)) || known.Has(m_folder)) {
      FailGone(m_folder, sServer);
    }
    if (sServer == platform::kDefaultServer) {
      try {
        Make(root, sServer);
      } catch (const Failure& failed) {
        // Another connection was faster.
        if (failed.Number() != failure::kKeyExists) throw;
      }
    }
  }
  CheckFolder(m_folder, sServer);
  m_session = engine.Open({platform::kSystemCatalog, (m_folder / kSystemFile).string()}, stop);
  CheckSystemCatalog(sServer, stop);
  PutRight(stop);
  known.Remember(m_folder);
}

void Historian::Make(const fs::path& root, const Text& sServer, const KnownHistorians& known) {
  const fs::path folder = HistorianFolder(root, sServer);
  std::error_code error;
  if (fs::exists(folder, error)) FailHistorianExists(sServer);
  NewHistorian made(folder);
  files::MakePrivateFolders(made.Hidden() / kCatalogsFolder, error);
  MakeCatalogFile(made.Hidden() / kSystemFile, kNewSystemCatalog);
  MakeCatalogFile(made.Hidden() / FunctionsFile(), FunctionsStatements());
  made.Name();
  known.Remember(folder);
}

// A file that was emptied, or put there by mistake, is a sound database all the same.
void Historian::CheckSystemCatalog(const Text& sServer, std::stop_token stop) {
  engines::EngineStatement statement;
  statement.sSql =
      "SELECT Name, Identity, Created, Path, SizeLimit, Description FROM Historians LIMIT 0";
  try {
    m_session->Run(statement, std::move(stop));
  } catch (const Failure& failed) {
    if (failed.Number() != failure::kSqlError) throw;
    throw Failure(failure::kNotADatabase,
                  "The file " + (m_folder / kSystemFile).string() + " of the historian " + sServer +
                      " has lost its list of catalogs; restore it from a copy or choose another "
                      "server.",
                  failed.Source(), failed.NativeError());
  }
}

// What broken-off programs left, and the catalog of functions, whatever has become of it. Whoever
// may only read here leaves it to others.
void Historian::PutRight(std::stop_token stop) {
  std::error_code error;
  const fs::path functions = m_folder / FunctionsFile();
  const auto isSound = [&] {
    return IsKeptBack(functions, m_folder / kSystemFile) ||
           (fs::exists(functions, error) && IsSoundCatalogFile(functions));
  };
  if ((!CatalogChange::AnyLeft(m_folder) && isSound()) || !files::MayWriteInto(m_folder)) return;
  try {
    m_session->InTransaction(
        {},
        [&] {
          FinishChanges();
          // Another connection may have been faster.
          if (!isSound()) {
            ReplaceCatalogFile(functions, FunctionsStatements(), m_folder / kSystemFile);
          }
        },
        std::move(stop));
  } catch (const Failure& failed) {
    // Somebody is changing catalogs, so what is left is perhaps his; or may not write the list.
    if (failed.Number() != failure::kBusy && failed.Number() != failure::kNoRights) throw;
  }
}

void Historian::FinishChanges() {
  if (!CatalogChange::AnyLeft(m_folder)) return;
  const auto records = ReadRecords({});
  CatalogChange::FinishAll(m_folder, [&](const fs::path& stored) {
    return std::any_of(records.begin(), records.end(),
                       [&](const auto& record) { return record.stored == stored; });
  });
}

void Historian::FinishChangesNow() noexcept {
  if (!CatalogChange::AnyLeft(m_folder)) return;
  try {
    // Whatever has ended the change: nobody waits long for this.
    Deadline({}, std::chrono::seconds(1)).Run([&](std::stop_token stop) {
      m_session->InTransaction(
          {}, [&] { FinishChanges(); }, std::move(stop));
    });
  } catch (const std::exception&) {
    // The next program that opens the historian, or changes its catalogs, does it.
  }
}

std::vector<CatalogRecord> Historian::ReadRecords(std::stop_token stop) {
  engines::EngineStatement statement;
  statement.sSql = "SELECT Name, Identity, Path, SizeLimit, Description FROM Historians";
  const auto rs = m_session->Run(statement, stop).recordset;
  std::vector<CatalogRecord> records;
  for (platform::RowIndex row = 0; row < rs->RecordCount(); ++row) {
    const auto text = [&](platform::ColumnIndex column) {
      return platform::ToText(rs->ValueAt(row, column));
    };
    CatalogRecord record;
    record.sName = text(0);
    record.sIdentity = text(1);
    // What lies in the folder is stored without it, so that the folder can be moved.
    record.stored = text(2);
    record.file = m_folder / record.stored;
    if (const auto limit = rs->ValueAt(row, 3); const auto* const ll = limit.As<std::int64_t>()) {
      record.llKilobytes = *ll;
    }
    record.sDescription = text(4);
    records.push_back(std::move(record));
  }
  return records;
}

std::vector<CatalogRecord> Historian::Catalogs(std::stop_token stop) {
  auto records = ReadRecords(stop);
  records.push_back(OwnCatalog(platform::kSystemCatalog, m_folder / kSystemFile,
                               "What the historian knows of its catalogs"));
  records.push_back(OwnCatalog(platform::kFunctionsCatalog, m_folder / FunctionsFile(),
                               "Functions and time expressions that statements can use"));
  std::sort(records.begin(), records.end(), [](const auto& left, const auto& right) {
    const Text sLeft = platform::FoldCase(left.sName);
    const Text sRight = platform::FoldCase(right.sName);
    return sLeft != sRight ? sLeft < sRight : left.sName < right.sName;
  });
  return records;
}

std::optional<CatalogRecord> Historian::Find(const Text& sName, std::stop_token stop) {
  for (auto& record : Catalogs(stop)) {
    if (engines::IsSameCatalog(record.sName, sName)) return std::move(record);
  }
  return std::nullopt;
}

engines::Catalog EngineCatalog(const CatalogRecord& record, platform::Boolean bReadOnly) {
  return {record.sName,     record.file.string(), bReadOnly,  record.llKilobytes,
          record.sIdentity, record.sDescription,  record.bOwn};
}

}  // namespace orvane::provider::historian
