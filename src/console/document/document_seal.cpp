#include "console/document/document_seal.h"

#include <QByteArray>
#include <QCryptographicHash>

namespace orvane::console {

platform::Text SealOf(std::string_view sBytes) {
  const auto bytes = QByteArray::fromRawData(sBytes.data(), static_cast<qsizetype>(sBytes.size()));
  return QCryptographicHash::hash(bytes, QCryptographicHash::Blake2b_256).toHex().toStdString();
}

std::string_view PartOf(std::string_view sName) {
  for (std::size_t n = sName.find('_'); n != std::string_view::npos; n = sName.find('_', n + 1)) {
    if (n > 0 && sName[n - 1] >= '0' && sName[n - 1] <= '9') return sName.substr(0, n + 1);
  }
  return {};
}

}  // namespace orvane::console
