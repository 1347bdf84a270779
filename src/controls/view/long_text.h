// A text for other programs that grows piece by piece, out of UTF-8 as values are written in.
// Used by copying; user-interface thread.
#pragma once

#include <QString>
#include <QStringDecoder>
#include <utility>

#include "platform/types.h"

namespace orvane::controls {

class LongText {
 public:
  /// What comes next is appended here; what was may have gone from it with Settle.
  platform::Text& Next() { return m_sNext; }
  /// Called between whole characters, often: takes over what was appended when it is worth it.
  void Settle() {
    if (m_sNext.size() >= kWorthIt) TakeOver();
  }
  /// Characters so far, but for a last few.
  qsizetype Size() const { return m_sText.size(); }
  QString Take() {
    TakeOver();
    return std::exchange(m_sText, {});
  }

 private:
  static constexpr std::size_t kWorthIt = 16'384;

  void TakeOver() {
    const qsizetype nBefore = m_sText.size();
    const auto nBytes = static_cast<qsizetype>(m_sNext.size());
    m_sText.resize(nBefore + m_decoder.requiredSpace(nBytes));
    const QChar* end =
        m_decoder.appendToBuffer(m_sText.data() + nBefore, QByteArrayView(m_sNext.data(), nBytes));
    m_sText.truncate(end - m_sText.constData());
    m_sNext.clear();
  }

  platform::Text m_sNext;
  QString m_sText;
  // A text may begin with what elsewhere is the mark of an encoding.
  QStringDecoder m_decoder{QStringDecoder::Utf8, QStringDecoder::Flag::ConvertInitialBom};
};

}  // namespace orvane::controls
