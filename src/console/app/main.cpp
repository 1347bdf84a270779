// The program orvane-console: reads its command line and opens the window.
#include <CLI/CLI.hpp>
#include <QApplication>
#include <QSettings>
#include <algorithm>
#include <filesystem>
#include <iostream>
#include <optional>
#include <string_view>
#include <vector>

#include "console/app/appearance.h"
#include "console/app/display_guard.h"
#include "console/app/host.h"
#include "console/app/threads_end.h"
#include "console/document/row_memory.h"
#include "console/document/user_settings.h"
#include "platform/failure.h"
#include "platform/told_failure.h"
#include "platform/user_folders.h"
#include "tools/manual/manual.h"

namespace {

struct Arguments {
  std::string sDocument;
  std::string sRegistry;
};

void Describe(CLI::App& line, Arguments& arguments) {
  line.description("Manages ORVANE historian servers.");
  line.add_option("DOCUMENT", arguments.sDocument, "The console document to open");
  line.add_option("--registry", arguments.sRegistry,
                  "A folder of registered components to look in first")
      ->type_name("DIR");
  line.set_version_flag("--version", std::string("orvane-console ") + ORVANE_VERSION);
}

// The options that the toolkit takes out of the command line.
bool IsToolkitOption(std::string_view sArgument) {
  static constexpr std::string_view kOptions[] = {
      "display",       "geometry",   "icon",          "platform",        "platformpluginpath",
      "platformtheme", "plugin",     "qmljsdebugger", "qwindowgeometry", "qwindowicon",
      "qwindowtitle",  "reverse",    "session",       "style",           "stylesheet",
      "title",         "widgetcount"};
  sArgument.remove_prefix(sArgument.starts_with("--") ? 2 : 1);
  return std::ranges::find(kOptions, sArgument.substr(0, sArgument.find('='))) !=
         std::end(kOptions);
}

// What cannot be done is told in one sentence.
int Fail(const std::string& sSentence) {
  std::cerr << "orvane-console: " << sSentence << '\n';
  return 1;
}

int FailToUnderstand(const CLI::ParseError& error) {
  return Fail(std::string(error.what()) + "; see orvane-console --help.");
}

}  // namespace

int main(int argc, char** argv) {
  Arguments arguments;
  {
    // Help, version and a wrong option need no window system.
    CLI::App line("", "orvane-console");
    Arguments unused;
    Describe(line, unused);
    if (const auto nTold = orvane::tools::ToldManual(argc, argv, [&line] {
          return orvane::tools::DescribedProgram{
              orvane::tools::CommandOf(line), ORVANE_VERSION, {}};
        })) {
      return *nTold;
    }
    line.allow_extras();
    try {
      line.parse(argc, argv);
    } catch (const CLI::Success& e) {
      return line.exit(e);
    } catch (const CLI::ParseError& e) {
      return FailToUnderstand(e);
    }
    for (const std::string& sExtra : line.remaining()) {
      if (sExtra.starts_with('-') && !IsToolkitOption(sExtra)) {
        return FailToUnderstand(CLI::ExtrasError(std::vector<std::string>{sExtra}));
      }
    }
    // What else is too much is told below, when the toolkit has taken its own options out.
  }
  const orvane::console::ThreadsEnd threadsEnd;
  auto guard = std::make_optional<orvane::console::DisplayGuard>();
  QApplication application(argc, argv);
  guard.reset();
  orvane::console::PrepareApplication(application);
  CLI::App line("", "orvane-console");
  Describe(line, arguments);
  try {
    line.parse(argc, argv);
  } catch (const CLI::ParseError& e) {
    return FailToUnderstand(e);
  }
  if (std::error_code error;
      !arguments.sDocument.empty() && !std::filesystem::exists(arguments.sDocument, error)) {
    return Fail("There is no document " + arguments.sDocument +
                "; check its name, or start without one.");
  }
  try {
    // Without a home the settings are those of this one run.
    const auto folder = orvane::platform::UserSettingsFolder();
    std::optional<QSettings> settings;
    if (folder) {
      settings.emplace(QString::fromStdString((*folder / "orvane-console.conf").string()),
                       QSettings::NativeFormat);
      orvane::console::KeepToUser(*settings);
    }
    orvane::console::Host host(arguments.sRegistry.empty()
                                   ? std::nullopt
                                   : std::optional<std::filesystem::path>(arguments.sRegistry),
                               settings ? orvane::console::RowMemory(*settings) : std::nullopt);
    orvane::console::MainWindow window(host.Parts(settings ? &*settings : nullptr));
    // The document says where the window was and how large.
    const bool bOpened =
        arguments.sDocument.empty() ? window.OpenLast() : window.OpenDocument(arguments.sDocument);
    if (!bOpened && !window.Session().IsOpen()) window.NewDocument();
    window.show();
    return QApplication::exec();
  } catch (const std::exception& e) {
    return Fail(orvane::platform::ToldFailure(e, 0, {}).Description());
  }
}
