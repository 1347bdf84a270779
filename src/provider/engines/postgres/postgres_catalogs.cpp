// The catalogs of a PostgreSQL session: listed, made and dropped.
#include <algorithm>

#include "platform/case_folding.h"
#include "platform/conversions.h"
#include "platform/historian_names.h"
#include "platform/quoting.h"
#include "provider/engines/postgres/postgres_errors.h"
#include "provider/engines/postgres/postgres_historian.h"
#include "provider/engines/postgres/postgres_session.h"
#include "provider/engines/postgres/postgres_types.h"
#include "provider/engines/same_catalog.h"
#include "provider/historian/catalog_record.h"

namespace orvane::provider::engines {

using platform::Failure;
using platform::Text;
using platform::Value;
namespace failure = platform::failure;

namespace {

// The server keeps so many bytes of a name and would cut a longer one.
constexpr std::size_t kMostOfAName = 63;

// The tables of a new catalog, as every historian has them.
constexpr const char* kNewTables = R"(
CREATE TABLE @."Tags" (
  "Tag" text PRIMARY KEY,
  "Description" text,
  "Unit" text,
  "Type" text NOT NULL DEFAULT 'number' CHECK ("Type" IN ('number', 'text')));
CREATE TABLE @."Data" (
  "Tag" text NOT NULL,
  "Timestamp" timestamptz NOT NULL,
  "Value" double precision,
  "Status" text NOT NULL DEFAULT 'Good',
  PRIMARY KEY ("Tag", "Timestamp"));
CREATE INDEX "DataByTime" ON @."Data" ("Timestamp");
CREATE TABLE @."Data2" (
  "Tag" text NOT NULL,
  "Timestamp" timestamptz NOT NULL,
  "Value" text,
  "Status" text NOT NULL DEFAULT 'Good',
  PRIMARY KEY ("Tag", "Timestamp"));
CREATE INDEX "Data2ByTime" ON @."Data2" ("Timestamp");)";

// What stands on a schema's tables from outside: views, and keys of other tables.
constexpr const char* kStandingOnIt =
    "SELECT v.oid::regclass::text FROM pg_depend d JOIN pg_rewrite r ON d.classid = "
    "'pg_rewrite'::regclass AND r.oid = d.objid JOIN pg_class v ON v.oid = r.ev_class JOIN "
    "pg_class "
    "t ON d.refclassid = 'pg_class'::regclass AND t.oid = d.refobjid JOIN pg_namespace n ON n.oid "
    "= "
    "t.relnamespace WHERE n.nspname = ? AND v.relnamespace <> n.oid UNION SELECT "
    "k.conrelid::regclass::text FROM pg_constraint k JOIN pg_class t ON t.oid = k.confrelid JOIN "
    "pg_class f ON f.oid = k.conrelid JOIN pg_namespace n ON n.oid = t.relnamespace WHERE "
    "n.nspname "
    "= ? AND f.relnamespace <> n.oid ORDER BY 1 LIMIT 1";

[[noreturn]] void Refuse(platform::Long lNumber, Text sSentence) {
  throw Failure(lNumber, std::move(sSentence), "PostgreSQL");
}

void CheckName(const Text& sName) {
  historian::CheckCatalogName(sName);
  if (sName.size() > kMostOfAName) {
    Refuse(failure::kInvalidArgument, "The name " + platform::InQuotes(sName) +
                                          " is longer than the 63 bytes that the server keeps; "
                                          "enter a shorter one.");
  }
}

}  // namespace

std::vector<Catalog> PostgresSession::Catalogs(std::stop_token stop) {
  RequireOpen();
  const auto rs = Ask("SELECT \"Name\", \"Identity\", \"Description\" FROM (" +
                          PostgresHistoriansQuery(m_bRecords) + ") AS h",
                      {}, stop);
  std::vector<Catalog> catalogs;
  for (platform::RowIndex row = 0; row < rs->RecordCount(); ++row) {
    Catalog& catalog = catalogs.emplace_back();
    catalog.sName = platform::ToText(rs->ValueAt(row, 0));
    catalog.sIdentity = platform::ToText(rs->ValueAt(row, 1));
    catalog.sDescription = platform::ToText(rs->ValueAt(row, 2));
  }
  for (const char* const sOwn : {platform::kSystemCatalog, platform::kFunctionsCatalog}) {
    Catalog& catalog = catalogs.emplace_back();
    catalog.sName = sOwn;
    catalog.bSystem = true;
  }
  std::ranges::sort(catalogs, {}, [](const Catalog& catalog) {
    return std::pair(platform::FoldCase(catalog.sName), catalog.sName);
  });
  return catalogs;
}

void PostgresSession::Do(const Text& sStatements, const std::stop_token& stop) {
  try {
    m_link->Command(("BEGIN READ WRITE; SET LOCAL lock_timeout = '5s'; " + sStatements).c_str(),
                    stop);
    // The server may have done it all before it heard of the stop.
    if (stop.stop_requested()) {
      throw Failure(failure::kCancelled, "The statement was cancelled.", "PostgreSQL", 0,
                    sStatements);
    }
    m_link->Command("COMMIT", {});
  } catch (const Failure&) {
    m_link->Rollback();
    throw;
  }
}

void PostgresSession::CreateCatalog(const NewCatalog& catalog, std::stop_token stop) {
  RequireOpen();
  CheckName(catalog.sName);
  if (!catalog.sPath.empty()) {
    Refuse(failure::kNotSupported,
           "The server keeps its catalogs where its administrator chose; leave the path out.");
  }
  if (!catalog.sFile.empty()) {
    Refuse(failure::kNotSupported,
           "The server keeps no catalog in a file; make a new one and import the rows into it.");
  }
  if (catalog.llKilobytes != 0) {
    Refuse(failure::kNotSupported, "The server limits no catalog's size; leave the size out.");
  }
  for (const Catalog& known : Catalogs(stop)) {
    if (IsSameCatalog(known.sName, catalog.sName)) {
      Refuse(failure::kKeyExists, "There is a catalog " + platform::InQuotes(known.sName) +
                                      " already; choose another name.");
    }
  }
  const Text sSchema = platform::QuotedName(catalog.sName);
  Text sStatements = "CREATE SCHEMA " + sSchema + ';';
  for (const char character : std::string_view(kNewTables)) {
    if (character == '@') {
      sStatements += sSchema;
    } else {
      sStatements += character;
    }
  }
  if (m_bKeepsRecords) {
    sStatements += "INSERT INTO \"Orvane\".\"Historians\" (\"Name\") VALUES (" +
                   platform::QuotedText(catalog.sName) +
                   ") ON CONFLICT (\"Name\") DO UPDATE SET \"Identity\" = gen_random_uuid(), "
                   "\"Created\" = now()";
  }
  Do(sStatements, stop);
}

void PostgresSession::DropCatalog(const Text& sName, std::stop_token stop) {
  RequireOpen();
  const auto catalogs = Catalogs(stop);
  const auto found = std::ranges::find(catalogs, sName, &Catalog::sName);
  if (found == catalogs.end()) {
    Refuse(failure::kInvalidArgument, "There is no catalog " + platform::InQuotes(sName) +
                                          " to drop; reload the list of catalogs.");
  }
  if (found->bSystem) {
    Refuse(failure::kInvalidArgument,
           "The catalog " + sName +
               " belongs to the historian itself and cannot be dropped; choose another one.");
  }
  if (const auto rs = Ask(kStandingOnIt, {Value(sName), Value(sName)}, stop);
      rs->RecordCount() != 0) {
    Refuse(failure::kBusy, "The catalog " + platform::InQuotes(sName) + " is used by " +
                               platform::ToText(rs->ValueAt(0, 0)) +
                               ", which is in another one; drop that first.");
  }
  Text sStatements = "DROP SCHEMA " + platform::QuotedName(sName) + " CASCADE";
  if (m_bKeepsRecords) {
    sStatements +=
        "; DELETE FROM \"Orvane\".\"Historians\" WHERE \"Name\" = " + platform::QuotedText(sName);
  }
  Do(sStatements, stop);
}

std::span<const TypeSchema> PostgresSession::Types() const {
  return PostgresTypes();
}

}  // namespace orvane::provider::engines
