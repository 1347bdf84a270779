#include "console/document/document_seal.h"

namespace orvane::console {

namespace {

/// Keeps a name of nothing but "_" from being a part a letter.
constexpr int kMostLevels = 16;

}  // namespace

void SealMaker::Add(std::string_view sBytes) {
  m_hash.addData(QByteArrayView(sBytes.data(), static_cast<qsizetype>(sBytes.size())));
}

platform::Text SealMaker::Take() {
  constexpr std::string_view kDigits = "0123456789abcdef";
  const QByteArrayView bytes = m_hash.resultView();
  platform::Text sSeal;
  sSeal.reserve(2 * static_cast<std::size_t>(bytes.size()));
  for (const char c : bytes) {
    const auto uByte = static_cast<unsigned char>(c);
    sSeal += kDigits[uByte >> 4];
    sSeal += kDigits[uByte & 0x0F];
  }
  m_hash.reset();
  return sSeal;
}

platform::Text SealOf(std::string_view sBytes) {
  SealMaker maker;
  maker.Add(sBytes);
  return maker.Take();
}

std::string_view PartOf(std::string_view sName) {
  sName = sName.substr(0, kLongestPart);
  std::size_t nEnd = 0;
  for (int i = 0; i < kMostLevels; ++i) {
    const std::size_t nNext = sName.find('_', nEnd);
    if (nNext == std::string_view::npos) break;
    nEnd = nNext + 1;
  }
  return sName.substr(0, nEnd);
}

std::string_view PartAbove(std::string_view sPart) {
  return sPart.empty() ? sPart : PartOf(sPart.substr(0, sPart.size() - 1));
}

std::string_view EndNameOf(std::string_view sPart) {
  return sPart.substr(PartAbove(sPart).size());
}

}  // namespace orvane::console
