#include "tests/console/whole_job/new_user.h"

#include <sqlite3.h>

#include <cstdlib>
#include <stdexcept>

#include "component/registration.h"
#include "provider/engines/sqlite/sqlite_engine.h"
#include "provider/historian/data_folder.h"
#include "provider/historian/historian.h"

namespace orvane::console {

using platform::Text;

void BeginAsNewUser(const std::filesystem::path& folder) {
  for (const auto& [sVariable, sName] : {std::pair{"XDG_DATA_HOME", "data"},
                                         {"XDG_CONFIG_HOME", "config"},
                                         {"XDG_STATE_HOME", "state"},
                                         {"XDG_CACHE_HOME", "cache"},
                                         {"HOME", "home"}}) {
    std::filesystem::create_directories(folder / sName);
    setenv(sVariable, (folder / sName).c_str(), 1);
  }
  for (const char* sVariable :
       {"DBUS_SESSION_BUS_ADDRESS", "WAYLAND_DISPLAY", "XDG_CURRENT_DESKTOP", "QT_STYLE_OVERRIDE",
        "QT_SCALE_FACTOR", "XMODIFIERS"}) {
    unsetenv(sVariable);
  }
  setenv("QT_QPA_PLATFORM", "xcb", 1);
  setenv("QT_IM_MODULE", "none", 1);
}

std::filesystem::path RegisterComponents(const std::filesystem::path& folder) {
  for (const char* sLibrary : {ORVANE_SNAP_IN, ORVANE_CONTROLS, ORVANE_PROVIDER}) {
    component::RegisterLibrary(sLibrary, folder / "components");
  }
  return folder / "components";
}

namespace {

/// The catalog's file, opened by the library alone.
class CatalogFile {
 public:
  CatalogFile(const Text& sServer, const Text& sCatalog) {
    provider::engines::SqliteEngine engine;
    provider::historian::Historian historian(provider::historian::DefaultRoot(), sServer, engine,
                                             {});
    const auto record = historian.Find(sCatalog, {});
    if (!record) throw std::runtime_error("The historian has no catalog " + sCatalog + ".");
    if (sqlite3_open(record->file.c_str(), &m_db) != SQLITE_OK) Fail();
  }
  ~CatalogFile() { sqlite3_close(m_db); }
  CatalogFile(const CatalogFile&) = delete;
  CatalogFile& operator=(const CatalogFile&) = delete;

  /// Runs statements; the first value of the last row that came, or nothing.
  Text Run(const Text& sSql) {
    Text sFirst;
    const auto take = [](void* first, int, char** values, char**) {
      *static_cast<Text*>(first) = values[0] ? values[0] : "";
      return 0;
    };
    if (sqlite3_exec(m_db, sSql.c_str(), take, &sFirst, nullptr) != SQLITE_OK) Fail();
    return sFirst;
  }

 private:
  [[noreturn]] void Fail() {
    throw std::runtime_error(Text("The catalog's file did not take it: ") + sqlite3_errmsg(m_db));
  }

  sqlite3* m_db = nullptr;
};

}  // namespace

void WriteToCatalog(const Text& sServer, const Text& sCatalog, const Text& sSql) {
  CatalogFile(sServer, sCatalog).Run(sSql);
}

Text ReadFromCatalog(const Text& sServer, const Text& sCatalog, const Text& sSql) {
  return CatalogFile(sServer, sCatalog).Run(sSql);
}

}  // namespace orvane::console
