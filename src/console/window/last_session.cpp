#include "console/window/last_session.h"

#include <QSettings>
#include <QStringList>

namespace orvane::console {

using platform::Text;

namespace {

constexpr const char* kLastDocument = "LastSession/Document";
/// The keys of the item and of those above it, the deepest first.
constexpr const char* kLastItems = "LastSession/Items";
constexpr const char* kLastWanted = "LastSession/Wanted";

}  // namespace

bool LastSession::IsWanted() const {
  return m_settings.value(kLastWanted).toBool();
}

void LastSession::Wanted(bool bWanted) {
  m_settings.remove("LastSession");
  if (bWanted) m_settings.setValue(kLastWanted, true);
}

void LastSession::Keep(const Text& sDocument, const ScopeTreeItem* item) {
  if (!IsWanted()) return;
  m_settings.setValue(kLastDocument, QString::fromStdString(sDocument));
  QStringList keys;
  for (; item && item->Parent(); item = item->Parent()) {
    keys.push_back(QString::fromStdString(item->Key()));
  }
  m_settings.setValue(kLastItems, keys);
}

Text LastSession::Document() const {
  return IsWanted() ? m_settings.value(kLastDocument).toString().toStdString() : Text();
}

ScopeTreeItemPtr LastSession::Item(const ScopeTree& tree) const {
  for (const QString& sKey : m_settings.value(kLastItems).toStringList()) {
    if (auto item = tree.Find(sKey.toStdString())) return item;
  }
  return nullptr;
}

}  // namespace orvane::console
