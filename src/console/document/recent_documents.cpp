#include "console/document/recent_documents.h"

#include <QFileInfo>
#include <QSettings>
#include <QStringList>
#include <filesystem>

namespace orvane::console {

using platform::Text;

namespace {

constexpr const char* kKey = "recentDocuments";

QString AbsoluteFile(const Text& sPath) {
  return QFileInfo(QString::fromStdString(sPath)).absoluteFilePath();
}

/// One that cannot be looked at, for lack of rights or because a server does not answer, may be
/// there again tomorrow.
bool IsGone(const QString& path) {
  std::error_code error;
  const auto type = std::filesystem::status(path.toStdString(), error).type();
  return type == std::filesystem::file_type::not_found ||
         type == std::filesystem::file_type::directory;
}

}  // namespace

void RecentDocuments::Add(const Text& sPath) {
  QStringList paths = m_settings.value(kKey).toStringList();
  const QString path = AbsoluteFile(sPath);
  paths.removeAll(path);
  paths.prepend(path);
  if (paths.size() > kMaximum) paths.resize(kMaximum);
  m_settings.setValue(kKey, paths);
}

void RecentDocuments::RemoveIfGone(const Text& sPath) {
  const QString path = AbsoluteFile(sPath);
  if (!IsGone(path)) return;
  QStringList paths = m_settings.value(kKey).toStringList();
  if (paths.removeAll(path) > 0) m_settings.setValue(kKey, paths);
}

std::vector<Text> RecentDocuments::List() {
  QStringList paths = m_settings.value(kKey).toStringList();
  if (paths.removeIf(IsGone) > 0) m_settings.setValue(kKey, paths);
  std::vector<Text> result;
  for (const QString& path : std::as_const(paths)) result.push_back(path.toStdString());
  return result;
}

}  // namespace orvane::console
