// Any file may be opened as a document: it is one, or is refused with a sentence. One that is
// read is written and read again as the same, with seals that fit.
#include <cstdint>
#include <cstdlib>
#include <string>

#include "console/document/document_format.h"
#include "platform/failure.h"

namespace {

using namespace orvane;

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
  if (console::ReadDocument(sWritten, "fuzz", again) != console::DocumentSeal::Whole) std::abort();
  if (console::WriteDocument(again) != sWritten) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Try({reinterpret_cast<const char*>(data), size});
  return 0;
}
