#include "console/document/recent_documents.h"

#include <QFileInfo>
#include <QSettings>
#include <QStringList>
#include <algorithm>

namespace orvane::console {

using platform::Text;

namespace {

constexpr const char* kKey = "recentDocuments";

QString Absolute(const Text& sPath) {
  return QFileInfo(QString::fromStdString(sPath)).absoluteFilePath();
}

}  // namespace

void RecentDocuments::Add(const Text& sPath) {
  QStringList paths = m_settings.value(kKey).toStringList();
  const QString path = Absolute(sPath);
  paths.removeAll(path);
  paths.prepend(path);
  if (paths.size() > kMaximum) paths.resize(kMaximum);
  m_settings.setValue(kKey, paths);
}

void RecentDocuments::Remove(const Text& sPath) {
  QStringList paths = m_settings.value(kKey).toStringList();
  paths.removeAll(Absolute(sPath));
  m_settings.setValue(kKey, paths);
}

std::vector<Text> RecentDocuments::List() {
  QStringList paths = m_settings.value(kKey).toStringList();
  const auto isMissing = [](const QString& path) { return !QFileInfo(path).isFile(); };
  if (paths.removeIf(isMissing) > 0) m_settings.setValue(kKey, paths);
  std::vector<Text> result;
  for (const QString& path : std::as_const(paths)) result.push_back(path.toStdString());
  return result;
}

}  // namespace orvane::console
