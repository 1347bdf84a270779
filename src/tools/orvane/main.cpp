// orvane: works on console documents, and asks their servers, without a window. Results go to the
// standard output, sentences to the standard error; statuses.h has what it ends with.
#include <CLI/CLI.hpp>
#include <iostream>
#include <system_error>

#include "platform/told_failure.h"
#include "tools/orvane/command_line.h"
#include "tools/orvane/document_commands.h"
#include "tools/orvane/statuses.h"
#include "tools/orvane/tree_commands.h"

namespace {

using namespace orvane;
using tools::Command;
using tools::Output;

void Do(const tools::Arguments& arguments, const std::shared_ptr<tools::DataHost>& host,
        Output& output) {
  const auto model = [&] { return tools::ReadModel(arguments.sDocument, host); };
  const auto asking = [&] { return tools::ServerCommands(model(), host, output); };
  switch (arguments.command) {
    case Command::Check:
      return tools::Check(arguments.sDocument, host, output);
    case Command::Seal:
      return tools::Seal(arguments.sDocument, host, output);
    case Command::Tree:
      return tools::Tree(*model(), arguments.bJson, output);
    case Command::Options:
      return tools::Options(*model(), arguments.bJson, output);
    case Command::Rows:
      return asking().Rows(arguments.sServer, arguments.rows);
    case Command::Query:
      return asking().Query(arguments.sServer, arguments.sQuery, arguments.rows);
    case Command::Sql:
      return asking().Sql(arguments.sServer, tools::StandardInput, arguments.rows);
    case Command::Structure:
      return asking().Structure(arguments.sServer, arguments.bJson);
  }
}

int Tell(const std::exception& exception, const tools::Interruption& interruption) {
  if (const auto* const ending = dynamic_cast<const tools::Ending*>(&exception)) {
    if (*ending->what() != '\0') std::cerr << "orvane: " << ending->what() << '\n';
    return ending->ExitStatus();
  }
  const auto told = platform::ToldFailure(exception, platform::failure::kComponent, "orvane");
  if (told.Number() == platform::failure::kCancelled) {
    if (const int nStatus = interruption.ExitStatus()) return nStatus;
  }
  std::cerr << "orvane: " << told.Description() << '\n';
  return tools::StatusOf(told.Number());
}

int Main(int argc, char** argv, const std::shared_ptr<tools::Interruption>& interruption) {
  tools::Arguments arguments;
  CLI::App line("", "orvane");
  tools::Describe(line, arguments);
  try {
    line.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    if (error.get_exit_code() == 0) return line.exit(error);
    std::cerr << "orvane: " << error.what() << "; see orvane --help.\n";
    return tools::kWrongUse;
  }
  Output output;
  Do(arguments,
     std::make_shared<tools::DataHost>(arguments.registry, interruption, arguments.logon), output);
  output.Flush();
  return tools::kDone;
}

}  // namespace

int main(int argc, char** argv) {
  // A reader that has gone is told by the write.
  signal(SIGPIPE, SIG_IGN);
  const auto interruption = std::make_shared<tools::Interruption>();
  try {
    return Main(argc, argv, interruption);
  } catch (const std::exception& exception) {
    return Tell(exception, *interruption);
  }
}
