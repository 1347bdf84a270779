// Who logs on, for a program without a window: the user of the command line or of the document; the
// password from a file descriptor, of what the server finds by its own means, or from the terminal.
// Asked by the connection layer; one thread.
#pragma once

#include <optional>

#include "ado/logon_prompt.h"

namespace orvane::tools {

struct LogonOptions {
  std::optional<platform::Text> sUser;
  std::optional<int> nPasswordFile;
};

class Logon final : public ado::LogonPrompt {
 public:
  explicit Logon(LogonOptions options) : m_options(std::move(options)) {}
  ~Logon() override;

  /// The password of the next logon is asked for on the terminal. False where none can be asked
  /// for: there is no terminal, nothing was typed, or one was given by a file.
  bool AskTerminal(const platform::Text& sServer);
  platform::Boolean Ask(ado::LogonRequest& request) override;

 private:
  LogonOptions m_options;
  platform::Text m_sPassword;
};

}  // namespace orvane::tools
