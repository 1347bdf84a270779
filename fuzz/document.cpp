// Any file may be opened as a document: it is one, or is refused with a sentence. One that is
// read is written and read again as the same. Each input is tried as it is and with the digest
// that its lines ought to have, which nobody finds by trying.
#include <QCryptographicHash>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "console/document/document_format.h"
#include "platform/failure.h"

namespace {

using namespace orvane;

std::string Sealed(std::string sLines) {
  const auto end = sLines.rfind("{\"blake2b\"");
  if (end != std::string::npos) sLines.resize(end);
  if (!sLines.empty() && sLines.back() != '\n') sLines += '\n';
  const auto digest = QCryptographicHash::hash(
      {sLines.data(), static_cast<qsizetype>(sLines.size())}, QCryptographicHash::Blake2b_256);
  return sLines + "{\"blake2b\":\"" + digest.toHex().toStdString() + "\"}\n";
}

void Try(const std::string& sBytes) {
  console::DocumentContent content;
  try {
    console::ReadDocument(sBytes, "fuzz", content);
  } catch (const platform::Failure& failure) {
    if (failure.Number() != platform::failure::kDocument || failure.Description().empty()) {
      std::abort();
    }
    return;
  }
  const auto sWritten = console::WriteDocument(content);
  console::DocumentContent again;
  console::ReadDocument(sWritten, "fuzz", again);
  if (console::WriteDocument(again) != sWritten) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string sBytes(reinterpret_cast<const char*>(data), size);
  Try(sBytes);
  Try(Sealed(sBytes));
  return 0;
}
