#include "controls/view/copied_data.h"

#include <QStringDecoder>
#include <utility>

#include "controls/view/copied_cells.h"
#include "controls/view/copied_forms.h"
#include "platform/utf8.h"

namespace orvane::controls {

namespace {

constexpr QLatin1String kPlainText("text/plain");
constexpr QLatin1String kPage("text/html");

QString Decoded(const platform::Text& sText) {
  // A text may begin with what elsewhere is the mark of an encoding.
  QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::ConvertInitialBom);
  return decoder(QByteArrayView(sText.data(), static_cast<qsizetype>(sText.size())));
}

/// As who asked wants it. Values may have bytes that are no text; no other program gets these.
QVariant AsWanted(const platform::Text& sText, QMetaType type) {
  if (type.id() == QMetaType::QString) return Decoded(sText);
  if (!platform::IsUtf8(sText)) return Decoded(sText).toUtf8();
  return QByteArray(sText.data(), static_cast<qsizetype>(sText.size()));
}

}  // namespace

CopiedData::CopiedData(CopiedText copied, Forms forms, zones::TimeZone zone,
                       std::shared_ptr<void> life)
    : m_life(std::move(life)),
      m_copied(std::move(copied)),
      m_forms(forms),
      m_zone(std::move(zone)) {}

QStringList CopiedData::formats() const {
  QStringList formats{kPlainText};
  if (m_forms.bPage) formats << kPage;
  if (m_forms.bExact) formats << QLatin1String(kCellsFormat);
  return formats;
}

QVariant CopiedData::retrieveData(const QString& sFormat, QMetaType type) const {
  if (sFormat == kPlainText) return AsWanted(m_copied.sText, type);
  if (sFormat == kPage && m_forms.bPage) return AsWanted(PageOf(m_copied), type);
  if (sFormat == QLatin1String(kCellsFormat) && m_forms.bExact) {
    return ExactCells(m_copied, m_zone);
  }
  return {};
}

}  // namespace orvane::controls
