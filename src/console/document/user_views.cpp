#include "console/document/user_views.h"

#include <QSettings>
#include <QStringList>

#include "console/document/document_format.h"
#include "platform/failure.h"

namespace orvane::console {

using platform::Text;

namespace {

const QString kViews = QStringLiteral("DocumentViews");
/// The marks of the documents, the latest first; the views stand under them.
const QString kMarks = QStringLiteral("Latest");
constexpr std::size_t kMarkLength = 32;

/// A path may be any bytes, and a key of settings not.
QString MarkOf(const Text& sPath) {
  return QString::fromStdString(SealOf(sPath).substr(0, kMarkLength));
}

}  // namespace

platform::Boolean UserViews::Read(const Text& sPath, DocumentBag& bag) const {
  const Text sKept = m_settings.value(kViews + '/' + MarkOf(sPath)).toByteArray().toStdString();
  if (sKept.empty()) return false;
  DocumentContent content;
  try {
    if (ReadDocument(sKept, "view", content) != DocumentSeal::Whole) return false;
  } catch (const platform::Failure&) {
    return false;  // nothing is lost but where the window was
  }
  for (const auto& entry : content.View().Entries()) bag.Add(entry.sName, entry.value);
  return true;
}

void UserViews::Keep(const Text& sPath, const DocumentBag& bag) {
  DocumentContent content;
  for (const auto& entry : bag.Entries()) content.View().Add(entry.sName, entry.value);
  // Another console may have kept something meanwhile.
  m_settings.sync();
  m_settings.beginGroup(kViews);
  const QString mark = MarkOf(sPath);
  m_settings.setValue(mark, QByteArray::fromStdString(WriteDocument(content)));
  QStringList marks = m_settings.value(kMarks).toStringList();
  marks.removeAll(mark);
  marks.prepend(mark);
  if (marks.size() > kMaximum) marks.resize(kMaximum);
  m_settings.setValue(kMarks, marks);
  const QStringList keys = m_settings.childKeys();
  for (const QString& key : keys) {
    if (key != kMarks && !marks.contains(key)) m_settings.remove(key);
  }
  m_settings.endGroup();
}

}  // namespace orvane::console
