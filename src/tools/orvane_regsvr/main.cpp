// orvane-regsvr: registers in-process components, takes them out again and lists them.
// Ends with 0, or with 1 and a sentence for each thing that went wrong.
#include <CLI/CLI.hpp>
#include <exception>
#include <filesystem>
#include <iostream>
#include <optional>
#include <vector>

#include "component/registration.h"
#include "component/registry.h"
#include "platform/failure.h"
#include "platform/told_failure.h"
#include "tools/manual/manual.h"

namespace {

namespace fs = std::filesystem;
using orvane::component::Registry;
using orvane::platform::Text;

constexpr int kFailed = 1;

struct Options {
  bool bUser = false;
  bool bSystem = false;
  bool bUnregister = false;
  bool bList = false;
  std::optional<fs::path> registry;
  std::vector<fs::path> libraries;
};

// The folders of the place that was asked for; the first is written to.
std::vector<fs::path> Folders(const Options& options) {
  if (options.registry) return {*options.registry};
  if (options.bSystem) return Registry::SystemFolders();
  return {Registry::UserFolder()};
}

int List(const Options& options) {
  const bool bAll = !options.registry && !options.bSystem && !options.bUser;
  const auto registry =
      bAll ? Registry::Standard({}, Registry::RunningProgram()) : Registry(Folders(options));
  const auto listing = registry.List();
  for (const auto& registered : listing.classes) {
    const auto& description = registered.description;
    std::cout << description.sProgId << '\t' << description.sKind << '\t' << description.sVersion
              << '\t' << registered.library.string() << '\n';
  }
  for (const auto& sProblem : listing.sProblems) std::cerr << sProblem << '\n';
  return listing.sProblems.empty() ? 0 : kFailed;
}

int Register(const Options& options) {
  const auto folders = Folders(options);
  if (folders.empty()) {
    std::cerr << "XDG_DATA_DIRS names no folder to register in; use --registry DIR.\n";
    return kFailed;
  }
  int nStatus = 0;
  for (const auto& library : options.libraries) {
    try {
      const auto sProgIds = options.bUnregister
                                ? orvane::component::UnregisterLibrary(library, folders.front())
                                : orvane::component::RegisterLibrary(library, folders.front());
      for (const auto& sProgId : sProgIds) {
        std::cout << (options.bUnregister ? "Unregistered " : "Registered ") << sProgId << ".\n";
      }
    } catch (const orvane::platform::Failure& failure) {
      std::cerr << failure.Description() << '\n';
      nStatus = kFailed;
    }
  }
  return nStatus;
}

int Main(int argc, char** argv) {
  Options options;
  CLI::App app("Registers ORVANE components, so that the console finds them by their names.",
               "orvane-regsvr");
  app.set_version_flag("--version", ORVANE_VERSION);
  auto* const user = app.add_flag("--user", options.bUser, "in the user's data folder (default)");
  auto* const system = app.add_flag("--system", options.bSystem, "in the system's data folder");
  auto* const registry = app.add_option("--registry", options.registry, "in this folder");
  registry->type_name("DIR");
  user->excludes(system)->excludes(registry);
  system->excludes(registry);
  auto* const unregister =
      app.add_flag("-u,--unregister", options.bUnregister, "take the components out again");
  auto* const list = app.add_flag("--list", options.bList,
                                  "print name, kind, version and library of what is registered");
  auto* const libraries = app.add_option("LIBRARY", options.libraries, "the components' libraries");
  list->excludes(unregister)->excludes(libraries);
  if (const auto nTold = orvane::tools::ToldManual(argc, argv, [&app] {
        return orvane::tools::DescribedProgram{orvane::tools::CommandOf(app), ORVANE_VERSION, {}};
      })) {
    return *nTold;
  }
  try {
    app.parse(argc, argv);
    if (!options.bList && options.libraries.empty()) {
      throw CLI::ValidationError("Name a library to register, or --list");
    }
  } catch (const CLI::ParseError& error) {
    if (error.get_exit_code() == 0) return app.exit(error);
    std::cerr << error.what() << "; see orvane-regsvr --help.\n";
    return kFailed;
  }
  return options.bList ? List(options) : Register(options);
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return Main(argc, argv);
  } catch (const orvane::platform::Failure& failure) {
    std::cerr << failure.Description() << '\n';
  } catch (const std::exception& exception) {
    std::cerr << "Registration broke off: "
              << orvane::platform::ToldFailure(exception, 0, {}).Description() << '\n';
  }
  return kFailed;
}
