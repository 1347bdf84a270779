// The standard output: results and nothing else, written in large pieces. A reader that has gone
// ends the program quietly.
// Used by all commands of orvane; one thread at a time.
#pragma once

#include <string_view>

#include "platform/types.h"

namespace orvane::tools {

class Output {
 public:
  explicit Output(int nFile = 1) : m_nFile(nFile) {}
  Output(const Output&) = delete;
  Output& operator=(const Output&) = delete;

  /// What is appended here is written by the next Flush.
  platform::Text& Buffer() { return m_sBuffer; }
  /// Fails as Flush does.
  void Write(std::string_view sText);
  /// Ends the program with kOutputClosed where nobody reads any more, and with a sentence where it
  /// cannot be written for another reason.
  void Flush();
  /// While it is held nothing is written; all of it stays in the buffer.
  void Hold(bool bHold) { m_bHeld = bHold; }
  /// Flushes once there is much.
  void FlushLarge();

 private:
  int m_nFile;
  bool m_bHeld = false;
  platform::Text m_sBuffer;
};

}  // namespace orvane::tools
