#include "console/document/user_settings.h"

#include <QSettings>
#include <filesystem>
#include <system_error>

#include "files/private_files.h"
#include "files/replacement.h"

namespace orvane::console {

void KeepToUser(const QSettings& settings) {
  const std::filesystem::path file = settings.fileName().toStdString();
  std::error_code error;
  if (std::filesystem::exists(file, error) || error) {
    files::TakeFromOthers(file);
    return;
  }
  try {
    files::MakePrivateFolders(file.parent_path(), error);
    files::Replace(file, "");
  } catch (const std::system_error&) {
    // Told where it matters: nothing is lost but where the window was.
  }
}

}  // namespace orvane::console
