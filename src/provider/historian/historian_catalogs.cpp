// The historian's catalogs come and go: create, attach, drop and detach.
#include <algorithm>
#include <cerrno>
#include <chrono>
#include <random>

#include "files/private_files.h"
#include "platform/conversions.h"
#include "platform/failure.h"
#include "platform/historian_names.h"
#include "platform/quoting.h"
#include "provider/engines/same_catalog.h"
#include "provider/engines/sqlite/sqlite_files.h"
#include "provider/historian/catalog_change.h"
#include "provider/historian/catalog_file.h"
#include "provider/historian/catalog_tables.h"
#include "provider/historian/data_folder.h"
#include "provider/historian/held_catalog_file.h"
#include "provider/historian/historian.h"
#include "provider/historian/shell_word.h"

namespace orvane::provider::historian {
namespace {

using platform::Failure;
using platform::Text;
using platform::Value;
namespace failure = platform::failure;
namespace fs = std::filesystem;

Text NewIdentity() {
  std::random_device random;
  platform::Guid guid;
  for (auto& byte : guid.bytes) byte = static_cast<std::uint8_t>(random());
  // Marks of an identity made at random.
  guid.bytes[6] = static_cast<std::uint8_t>((guid.bytes[6] & 0x0FU) | 0x40U);
  guid.bytes[8] = static_cast<std::uint8_t>((guid.bytes[8] & 0x3FU) | 0x80U);
  return platform::ToText(guid);
}

// A text is greater than every stored time, and a number less than every date: a condition would
// choose it whatever it says, and a DELETE would take it.
void CheckStoredTimes(engines::FileSession& session, const CatalogRecord& record,
                      std::stop_token stop) {
  const engines::Catalog catalog = EngineCatalog(record, true);
  for (const auto& table : session.Schema(catalog, {}, stop)) {
    for (const auto& column : table.columns) {
      const bool bTime = column.type == platform::DataType::DBTimeStamp;
      const bool bDay = column.type == platform::DataType::DBDate;
      const bool bClock = column.type == platform::DataType::DBTime;
      if (table.bView || !(bTime || bDay || bClock)) continue;
      engines::EngineStatement look;
      look.sSql = "SELECT 1 FROM " + platform::QuotedName(catalog.sName) + "." +
                  platform::QuotedName(table.sName) + " WHERE typeof(" +
                  platform::QuotedName(column.sName) +
                  (bTime ? ") IN ('text', 'blob') LIMIT 1" : ") NOT IN ('text', 'null') LIMIT 1");
      look.catalogs = {catalog};
      look.bReadOnly = true;
      if (session.Run(look, stop).recordset->RecordCount() == 0) continue;
      if (!bTime) {
        throw Failure(failure::kInvalidArgument,
                      "The file " + record.file.string() + " holds numbers or bytes where " +
                          (bDay ? "dates" : "times of day") + " are stored, in the column \"" +
                          column.sName + "\" of the table \"" + table.sName +
                          "\"; write them as texts such as " +
                          (bDay ? "'2024-05-31'" : "'08:30:00'") +
                          " with the program that made it, or declare the column as INTEGER.");
      }
      throw Failure(
          failure::kInvalidArgument,
          "The file " + record.file.string() +
              " holds texts where times are stored, in "
              "the column \"" +
              column.sName + "\" of the table \"" + table.sName +
              "\"; write them as microseconds since 1970 in UTC with the program that made "
              "it, or declare the column as TEXT.");
    }
  }
}

fs::path CheckedFolder(const Text& sPath) {
  RequireComplete(sPath);
  const fs::path folder(sPath);
  std::error_code error;
  const auto status = fs::status(folder, error);
  if (error == std::errc::permission_denied ||
      (status.type() == fs::file_type::directory && !files::MayWriteInto(folder))) {
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

// A file that stayed when its catalog was dropped can be taken in again.
void CheckNoFile(const CatalogRecord& record, const fs::path& folder) {
  std::error_code error;
  if (fs::symlink_status(record.file, error).type() == fs::file_type::not_found) return;
  const Text sServer = folder.filename().string();
  throw Failure(
      failure::kKeyExists,
      "There is a file " + record.file.string() +
          " already, perhaps of a catalog that was removed; take it in again with "
          "\"orvane-historian attach " +
          (sServer == platform::kDefaultServer ? Text() : "--server " + InShell(sServer) + " ") +
          InShell(record.sName) + " " + InShell(record.file.string()) +
          "\", or choose another name or folder.");
}

}  // namespace

void RequireComplete(const Text& sPath) {
  if (fs::path(sPath).is_absolute()) return;
  throw Failure(failure::kInvalidArgument,
                "The path \"" + sPath + "\" is not complete; enter one that begins with \"/\".");
}

CatalogRecord Historian::CreateCatalog(const Text& sName, const Text& sPath,
                                       std::int64_t llKilobytes, std::stop_token stop,
                                       const Text& sDescription) {
  CheckCatalogName(sName);
  // The tables of a new catalog need that much.
  constexpr std::int64_t kLeastKilobytes = 64;
  if (llKilobytes != 0 && llKilobytes < kLeastKilobytes) {
    throw Failure(failure::kInvalidArgument,
                  "A catalog of " + std::to_string(llKilobytes) +
                      " kilobytes has no room for its tables; enter a size of at least " +
                      std::to_string(kLeastKilobytes) + ".");
  }
  CatalogRecord record;
  record.sName = sName;
  record.sIdentity = NewIdentity();
  record.stored =
      (sPath.empty() ? fs::path(kCatalogsFolder) : CheckedFolder(sPath)) / (sName + ".db");
  record.file = m_folder / record.stored;
  record.llKilobytes = llKilobytes;
  record.sDescription = sDescription;
  try {
    m_session->InTransaction(
        {},
        [&] {
          FinishChanges();
          CheckNew(record, stop);
          CheckNoFile(record, m_folder);
          const CatalogChange change(m_folder, record.stored);
          change.Make(kNewCatalog);
          Register(record, stop);
        },
        stop);
  } catch (...) {
    FinishChangesNow();
    throw;
  }
  FinishChangesNow();
  return record;
}

CatalogRecord Historian::AttachCatalog(const Text& sName, const fs::path& file,
                                       std::stop_token stop) {
  CheckCatalogName(sName);
  CatalogRecord record;
  record.sName = sName;
  record.sIdentity = NewIdentity();
  record.file = fs::absolute(file).lexically_normal();
  engines::CheckFile({sName, record.file.string()});
  if (!IsSoundCatalogFile(record.file)) {
    throw Failure(failure::kInvalidArgument, "The file " + record.file.string() +
                                                 " is no sound catalog; name another file, or "
                                                 "restore it from a copy.");
  }
  CheckStoredTimes(*m_session, record, stop);
  record.stored = LiesIn(record.file, m_folder)
                      ? record.file.lexically_relative(m_folder.lexically_normal())
                      : record.file;
  m_session->InTransaction(
      {},
      [&] {
        FinishChanges();
        CheckNew(record, stop);
        std::error_code error;
        for (const auto& known : Catalogs(stop)) {
          if (!fs::equivalent(known.file, record.file, error)) continue;
          throw Failure(failure::kKeyExists, "The file " + record.file.string() +
                                                 " is that of the catalog \"" + known.sName +
                                                 "\" already; name another file.");
        }
        Register(record, stop);
      },
      stop);
  return record;
}

void Historian::CheckNew(const CatalogRecord& record, std::stop_token stop) {
  for (const auto& known : ReadRecords(stop)) {
    if (engines::IsSameCatalog(known.sName, record.sName)) {
      throw Failure(failure::kKeyExists,
                    "There is a catalog \"" + known.sName + "\" already; choose another name.");
    }
  }
}

void Historian::Register(const CatalogRecord& record, std::stop_token stop) {
  using namespace std::chrono;
  engines::EngineStatement insert;
  insert.sSql =
      "INSERT INTO Historians (Name, Identity, Created, Path, SizeLimit, Description) VALUES (?, "
      "?, "
      "?, ?, ?, ?)";
  insert.parameters = {record.sName,
                       record.sIdentity,
                       floor<microseconds>(system_clock::now()),
                       record.stored.string(),
                       record.llKilobytes == 0 ? Value() : Value(record.llKilobytes),
                       record.sDescription};
  m_session->Run(insert, stop);
}

// Takes the record away, within a transaction.
CatalogRecord Historian::Forget(const Text& sName, const Forgetting& how, std::stop_token stop) {
  auto record = Find(sName, stop);
  if (!record) {
    throw Failure(failure::kInvalidArgument, "There is no catalog \"" + sName + "\" to " +
                                                 how.sVerb + "; " + how.sAdvice + ".");
  }
  if (record->bOwn) {
    throw Failure(failure::kInvalidArgument, "The catalog " + record->sName +
                                                 " belongs to the historian itself and cannot "
                                                 "be " +
                                                 how.sVerbed + "; choose another one.");
  }
  engines::EngineStatement remove;
  remove.sSql = "DELETE FROM Historians WHERE Name = ?";
  remove.parameters = {record->sName};
  m_session->Run(remove, std::move(stop));
  return *std::move(record);
}

void Historian::DropCatalog(const Text& sName, std::stop_token stop) {
  // Nobody uses the file from before it is hidden until the record is gone for good.
  std::optional<HeldCatalogFile> held;
  try {
    m_session->InTransaction(
        {},
        [&] {
          FinishChanges();
          const auto record =
              Forget(sName, {"drop", "dropped", "reload the list of catalogs"}, stop);
          const bool bGoes = ReallyLiesIn(record.file, m_folder);
          std::error_code error;
          if (bGoes && fs::exists(record.file, error) &&
              !files::MayWriteInto(record.file.parent_path())) {
            FailToWriteCatalogFile(record.file, EACCES, EACCES);
          }
          held.emplace(record.file, record.sName, stop);
          if (!bGoes) {
            CatalogChange::LeaveFile(m_folder, record.stored);
            return;
          }
          const CatalogChange change(m_folder, record.stored);
          change.Hide();
        },
        stop);
  } catch (...) {
    held.reset();
    FinishChangesNow();
    throw;
  }
  held.reset();
  FinishChangesNow();
}

CatalogRecord Historian::DetachCatalog(const Text& sName, std::stop_token stop) {
  std::optional<HeldCatalogFile> held;
  CatalogRecord detached;
  m_session->InTransaction(
      {},
      [&] {
        FinishChanges();
        detached = Forget(sName, {"detach", "detached", "name one that the historian has"}, stop);
        held.emplace(detached.file, detached.sName, stop);
        CatalogChange::LeaveFile(m_folder, detached.stored);
      },
      stop);
  return detached;
}

}  // namespace orvane::provider::historian
