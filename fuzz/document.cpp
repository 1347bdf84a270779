// Any file may be opened as a document: it is one, or is refused with a sentence. One that is
// read is written and read again as the same.
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "console/document/document_format.h"
#include "platform/failure.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace orvane;
  console::DocumentContent content;
  try {
    console::ReadDocument({reinterpret_cast<const char*>(data), size}, "fuzz", content);
  } catch (const platform::Failure& failure) {
    if (failure.Number() != platform::failure::kDocument || failure.Description().empty()) {
      std::abort();
    }
    return 0;
  }
  const auto sWritten = console::WriteDocument(content);
  console::DocumentContent again;
  console::ReadDocument(sWritten, "fuzz", again);
  if (console::WriteDocument(again) != sWritten) std::abort();
  return 0;
}
