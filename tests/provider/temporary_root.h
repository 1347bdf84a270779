// A root of historians for one test, gone with it; and what sessions on it need.
#pragma once

#include <stdlib.h>
#include <unistd.h>

#include <filesystem>
#include <memory>
#include <stdexcept>

#include "platform/conversions.h"
#include "platform/failure.h"
#include "provider/engines/embedded/embedded_engine.h"
#include "provider/engines/sqlite/sqlite_engine.h"
#include "provider/historian_provider.h"

namespace orvane::provider {

class TemporaryRoot {
 public:
  TemporaryRoot() {
    std::string sTemplate = (std::filesystem::temp_directory_path() / "orvane-XXXXXX").string();
    if (mkdtemp(sTemplate.data()) == nullptr) throw std::runtime_error("no temporary folder");
    m_path = sTemplate;
  }
  TemporaryRoot(const TemporaryRoot&) = delete;
  TemporaryRoot& operator=(const TemporaryRoot&) = delete;
  ~TemporaryRoot() {
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
  }
  const std::filesystem::path& Path() const { return m_path; }
  std::filesystem::path Historian(const platform::Text& sServer = "localhost") const {
    return m_path / "historians" / sServer;
  }

 private:
  std::filesystem::path m_path;
};

// The rights of files do not bind root: while this lives, root works as nobody.
class WithoutRoot {
 public:
  WithoutRoot() : m_bRoot(geteuid() == 0) { Become(65534); }
  WithoutRoot(const WithoutRoot&) = delete;
  WithoutRoot& operator=(const WithoutRoot&) = delete;
  ~WithoutRoot() { Become(0); }

 private:
  void Become(uid_t user) const {
    if (m_bRoot && seteuid(user) != 0) std::abort();
  }
  bool m_bRoot;
};

// Wednesday noon.
inline platform::Timestamp FixedNow() {
  using namespace std::chrono;
  return sys_days(year{2024} / 5 / 15) + hours(12);
}

// A place whose clock stands still and whose engine, if not told otherwise, does not wait long for
// locks.
inline SessionPlace PlaceAt(const std::filesystem::path& root,
                            std::chrono::milliseconds lockWait = std::chrono::milliseconds(50),
                            std::chrono::milliseconds patience = std::chrono::milliseconds(1500)) {
  return {{std::make_shared<engines::EmbeddedEngine>(engines::EmbeddedPlace{
              root, std::make_shared<engines::SqliteEngine>(lockWait), {}, patience})},
          FixedNow};
}

// "number: description" of the failure, or "no failure".
template <class Call>
platform::Text FailureOf(Call&& call) {
  try {
    call();
  } catch (const platform::Failure& failed) {
    return std::to_string(failed.Number()) + ": " + failed.Description();
  }
  return "no failure";
}

// A recordset's rows as text: cells parted by "|", rows by a line break.
inline platform::Text Rows(const platform::Recordset& rs) {
  platform::Text sRows;
  for (platform::RowIndex row = 0; row < rs.RecordCount(); ++row) {
    for (platform::ColumnIndex column = 0; column < rs.FieldCount(); ++column) {
      if (column > 0) sRows += "|";
      sRows += platform::ToText(rs.ValueAt(row, column));
    }
    sRows += "\n";
  }
  return sRows;
}

// One column's cells, parted by blanks.
inline platform::Text Cells(platform::Recordset& rs, const platform::Text& sField) {
  platform::Text sCells;
  for (rs.MoveFirst(); !rs.Eof(); rs.MoveNext()) {
    if (!sCells.empty()) sCells += " ";
    sCells += platform::ToText(rs.Fields().Item(sField).Value());
  }
  return sCells;
}

}  // namespace orvane::provider
