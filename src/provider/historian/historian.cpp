#include "provider/historian/historian.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <random>

#include "platform/case_folding.h"
#include "platform/conversions.h"
#include "platform/failure.h"
#include "provider/historian/catalog_file.h"
#include "provider/historian/data_folder.h"
#include "provider/historian/functions_catalog.h"

namespace orvane::provider::historian {
namespace {

using platform::Failure;
using platform::Text;
using platform::Value;
namespace failure = platform::failure;
namespace fs = std::filesystem;

constexpr const char* kSystemFile = "Orvane.db";
constexpr const char* kCatalogsFolder = "catalogs";

Text NewIdentity() {
  std::random_device random;
  platform::Guid guid;
  for (auto& byte : guid.bytes) byte = static_cast<std::uint8_t>(random());
  // Marks of an identity made at random.
  guid.bytes[6] = static_cast<std::uint8_t>((guid.bytes[6] & 0x0FU) | 0x40U);
  guid.bytes[8] = static_cast<std::uint8_t>((guid.bytes[8] & 0x3FU) | 0x80U);
  return platform::ToText(guid);
}

bool MayWriteInto(const fs::path& folder) {
  return faccessat(AT_FDCWD, folder.c_str(), R_OK | W_OK | X_OK, AT_EACCESS) == 0;
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
  if (status.type() == fs::file_type::not_found) {
    throw Failure(failure::kServerNotFound,
                  "There is no historian \"" + sServer +
                      "\" on this machine; make it with \"orvane-historian init " + sServer +
                      "\" or choose another server.");
  }
  if (status.type() != fs::file_type::directory) {
    throw Failure(failure::kNotADatabase, "The historian " + sServer + " should be a folder, but " +
                                              folder.string() +
                                              " is none; move it away or choose another server.");
  }
  if (!MayWriteInto(folder)) FailNoRights(sServer, folder);
  if (!fs::exists(folder / kSystemFile, error)) {
    throw Failure(failure::kNotADatabase,
                  "The folder " + folder.string() + " holds no historian: the file " + kSystemFile +
                      " is missing; restore it from a copy or choose another server.");
  }
}

[[noreturn]] void FailToMake(const fs::path& folder, const std::error_code& error) {
  const bool bRights = error == std::errc::permission_denied ||
                       error == std::errc::operation_not_permitted ||
                       error == std::errc::read_only_file_system;
  throw Failure(bRights ? failure::kNoRights : failure::kStorage,
                "The folder " + folder.string() + " cannot be made: " + error.message() +
                    "; check the folder above it and the room on the disk.",
                "ORVOLEDB", error.value());
}

void MakeFunctions(const fs::path& folder) {
  try {
    MakeCatalogFile(folder / FunctionsFile(), FunctionsStatements());
  } catch (const Failure& failed) {
    // Another connection was faster.
    if (failed.Number() != failure::kKeyExists) throw;
  }
}

// Whatever has become of the catalog of functions, this puts it right.
void RestoreFunctions(const fs::path& folder) {
  std::error_code error;
  const fs::path file = folder / FunctionsFile();
  if (!fs::exists(file, error)) {
    MakeFunctions(folder);
  } else if (!IsSoundCatalogFile(file)) {
    ReplaceCatalogFile(file, FunctionsStatements());
  }
}

fs::path CheckedFolder(const Text& sPath) {
  const fs::path folder(sPath);
  std::error_code error;
  if (!folder.is_absolute()) {
    throw Failure(failure::kInvalidArgument,
                  "The path \"" + sPath + "\" is not complete; enter one that begins with \"/\".");
  }
  const auto status = fs::status(folder, error);
  if (error == std::errc::permission_denied ||
      (status.type() == fs::file_type::directory && !MayWriteInto(folder))) {
    throw Failure(failure::kNoRights,
                  "You have no right to write into the folder " + sPath +
                      "; ask its owner for the right or choose another folder.",
                  "ORVOLEDB", EACCES);
  }
  if (status.type() != fs::file_type::directory) {
    throw Failure(failure::kInvalidArgument,
                  "There is no folder " + sPath + "; make it first or choose another one.");
  }
  return folder.lexically_normal();
}

// Both with the same parts of their paths taken out: the historian's folder may be reached through
// a ".." and the folder that a user entered not.
bool LiesIn(const fs::path& file, const fs::path& folder) {
  const fs::path inside = file.lexically_normal().lexically_relative(folder.lexically_normal());
  return !inside.empty() && *inside.begin() != "..";
}

CatalogRecord OwnCatalog(const char* sName, fs::path file, const char* sDescription) {
  return {sName, {}, std::move(file), 0, sDescription, true};
}

}  // namespace

Historian::Historian(const fs::path& root, const Text& sServer, engines::Engine& engine,
                     std::stop_token stop)
    : m_folder(HistorianFolder(root, sServer)) {
  std::error_code error;
  if (sServer == kDefaultServer && fs::status(m_folder, error).type() == fs::file_type::not_found) {
    try {
      Make(root, sServer);
    } catch (const Failure& failed) {
      // Another connection was faster.
      if (failed.Number() != failure::kKeyExists) throw;
    }
  }
  CheckFolder(m_folder, sServer);
  RestoreFunctions(m_folder);
  m_session = engine.Open({kSystemCatalog, (m_folder / kSystemFile).string()}, stop);
}

void Historian::Make(const fs::path& root, const Text& sServer) {
  const fs::path folder = HistorianFolder(root, sServer);
  std::error_code error;
  if (fs::exists(folder, error)) {
    throw Failure(failure::kKeyExists, "There is a historian \"" + sServer +
                                           "\" on this machine already; choose another name.");
  }
  fs::create_directories(folder.parent_path(), error);
  if (error) FailToMake(folder.parent_path(), error);
  // Built under another name, so that nobody meets half a historian.
  Text sTemplate = (folder.parent_path() / ".new-XXXXXX").string();
  if (mkdtemp(sTemplate.data()) == nullptr) {
    FailToMake(folder, std::error_code(errno, std::generic_category()));
  }
  const fs::path temporary(sTemplate);
  try {
    fs::create_directory(temporary / kCatalogsFolder);
    MakeCatalogFile(temporary / kSystemFile, kNewSystemCatalog);
    MakeFunctions(temporary);
    fs::rename(temporary, folder);
  } catch (const fs::filesystem_error& failed) {
    fs::remove_all(temporary, error);
    if (fs::exists(folder, error)) {
      throw Failure(failure::kKeyExists, "There is a historian \"" + sServer +
                                             "\" on this machine already; choose another name.");
    }
    FailToMake(folder, failed.code());
  } catch (...) {
    fs::remove_all(temporary, error);
    throw;
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
    record.file = m_folder / text(2);
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
  records.push_back(OwnCatalog(kSystemCatalog, m_folder / kSystemFile,
                               "What the historian knows of its catalogs"));
  records.push_back(OwnCatalog(kFunctionsCatalog, m_folder / FunctionsFile(),
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
    if (IsSameCatalog(record.sName, sName)) return std::move(record);
  }
  return std::nullopt;
}

CatalogRecord Historian::CreateCatalog(const Text& sName, const Text& sPath,
                                       std::int64_t llKilobytes, std::stop_token stop) {
  CheckCatalogName(sName);
  // The tables of a new catalog need that much.
  constexpr std::int64_t kLeastKilobytes = 64;
  if (llKilobytes != 0 && llKilobytes < kLeastKilobytes) {
    throw Failure(failure::kInvalidArgument,
                  "A catalog of " + std::to_string(llKilobytes) +
                      " kilobytes has no room for its tables; enter a size of at least " +
                      std::to_string(kLeastKilobytes) + ".");
  }
  const fs::path stored = sPath.empty() ? fs::path(kCatalogsFolder) / (sName + ".db")
                                        : CheckedFolder(sPath) / (sName + ".db");
  CatalogRecord record{sName, NewIdentity(), m_folder / stored, llKilobytes, {}, false};
  bool bMade = false;
  try {
    m_session->InTransaction(
        {},
        [&] {
          CheckNew(record, stop);
          MakeCatalogFile(record.file, kNewCatalog);
          bMade = true;
          Register(record, stored, stop);
        },
        stop);
  } catch (...) {
    // A file without its record would stand in the way of the next attempt.
    if (bMade) RemoveCatalogFile(record.file);
    throw;
  }
  return record;
}

void Historian::CheckNew(const CatalogRecord& record, std::stop_token stop) {
  for (const auto& known : ReadRecords(stop)) {
    if (IsSameCatalog(known.sName, record.sName)) {
      throw Failure(failure::kKeyExists,
                    "There is a catalog \"" + known.sName + "\" already; choose another name.");
    }
  }
}

void Historian::Register(const CatalogRecord& record, const fs::path& stored,
                         std::stop_token stop) {
  using namespace std::chrono;
  engines::EngineStatement insert;
  insert.sSql =
      "INSERT INTO Historians (Name, Identity, Created, Path, SizeLimit) VALUES (?, ?, ?, ?, ?)";
  insert.parameters = {record.sName, record.sIdentity, floor<microseconds>(system_clock::now()),
                       stored.string(),
                       record.llKilobytes == 0 ? Value() : Value(record.llKilobytes)};
  m_session->Run(insert, stop);
}

void Historian::DropCatalog(const Text& sName, std::stop_token stop) {
  // Nothing takes the file away before the record is gone for good, and nobody opens it meanwhile.
  std::optional<HeldCatalogFile> file;
  auto fate = DroppedFile::Stays;
  const auto drop = [&] {
    const auto record = Find(sName, stop);
    if (!record) {
      throw Failure(failure::kInvalidArgument,
                    "There is no catalog \"" + sName + "\" to drop; reload the list of catalogs.");
    }
    if (record->bOwn) {
      throw Failure(failure::kInvalidArgument, "The catalog " + record->sName +
                                                   " belongs to the historian itself and cannot "
                                                   "be dropped; choose another one.");
    }
    engines::EngineStatement remove;
    remove.sSql = "DELETE FROM Historians WHERE Name = ?";
    remove.parameters = {record->sName};
    m_session->Run(remove, stop);
    if (LiesIn(record->file, m_folder)) fate = DroppedFile::Goes;
    file.emplace(record->file, fate, record->sName, stop);
  };
  m_session->InTransaction({}, drop, stop);
  if (file && fate == DroppedFile::Goes) file->Remove();
}

engines::Catalog EngineCatalog(const CatalogRecord& record, platform::Boolean bReadOnly) {
  return {record.sName, record.file.string(), bReadOnly, record.llKilobytes};
}

}  // namespace orvane::provider::historian
