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

void WriteToCatalog(const Text& sServer, const Text& sCatalog, const Text& sSql) {
  provider::engines::SqliteEngine engine;
  provider::historian::Historian historian(provider::historian::DefaultRoot(), sServer, engine, {});
  const auto record = historian.Find(sCatalog, {});
  if (!record) throw std::runtime_error("The historian has no catalog " + sCatalog + ".");
  sqlite3* db = nullptr;
  const bool bDone = sqlite3_open(record->file.c_str(), &db) == SQLITE_OK &&
                     sqlite3_exec(db, sSql.c_str(), nullptr, nullptr, nullptr) == SQLITE_OK;
  const Text sMessage = sqlite3_errmsg(db);
  sqlite3_close(db);
  if (!bDone) throw std::runtime_error("The catalog was not written to: " + sMessage);
}

}  // namespace orvane::console
