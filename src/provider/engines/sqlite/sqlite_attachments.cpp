#include "provider/engines/sqlite/sqlite_attachments.h"

#include <fmt/format.h>

#include <algorithm>

#include "platform/case_folding.h"
#include "platform/quoting.h"
#include "provider/engines/sqlite/sqlite_files.h"
#include "provider/engines/sqlite/sqlite_statement.h"

namespace orvane::provider::engines {

using platform::Failure;
using platform::Text;
namespace failure = platform::failure;

SqliteAttachments::SqliteAttachments(sqlite3* database, Attached& attached,
                                     std::span<const Catalog> catalogs)
    : m_database(database), m_attached(attached) {
  try {
    for (const Catalog& catalog : catalogs) Attach(catalog);
  } catch (...) {
    Detach();
    throw;
  }
}

void SqliteAttachments::Attach(const Catalog& catalog) {
  Text sKey = platform::FoldCase(catalog.sName);
  if (m_attached.contains(sKey)) return;
  if (sqlite3_get_autocommit(m_database) == 0) {
    // It could not be detached again before the end of the transaction.
    throw Failure(failure::kInvalidArgument,
                  fmt::format("The catalog \"{}\" is not part of the transaction: name it when "
                              "the transaction begins.",
                              catalog.sName),
                  "SQLite");
  }
  m_own.push_back({"DETACH " + platform::QuotedName(catalog.sName), sKey});
  m_attached.insert(std::move(sKey));
  CheckFile(catalog);
  const Text sSubject = SubjectOf(catalog);
  SqliteStatement::RunOnce(m_database,
                           "ATTACH " + platform::QuotedText(UriOf(catalog)) + " AS " +
                               platform::QuotedName(catalog.sName),
                           sSubject);
  if (catalog.llMaxKilobytes == 0 || catalog.bReadOnly) return;
  // The limit belongs to the connection, not to the file.
  constexpr std::int64_t kPageKilobytes = 4;
  SqliteStatement::RunOnce(
      m_database,
      "PRAGMA " + platform::QuotedName(catalog.sName) + ".max_page_count = " +
          std::to_string(std::max<std::int64_t>(catalog.llMaxKilobytes / kPageKilobytes, 1)),
      sSubject);
}

// Takes no memory of its own: it also runs when there is none left.
void SqliteAttachments::Detach() noexcept {
  for (const Own& own : m_own) {
    // Of a catalog that could not be attached this fails, as it should.
    sqlite3_exec(m_database, own.sDetach.c_str(), nullptr, nullptr, nullptr);
    m_attached.erase(own.sKey);
  }
}

}  // namespace orvane::provider::engines
