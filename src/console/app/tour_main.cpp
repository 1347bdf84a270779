// The program orvane-tour: the console's window, gone through by the tour on no screen.
#include <CLI/CLI.hpp>
#include <QApplication>
#include <filesystem>
#include <iostream>
#include <string>

#include "console/app/appearance.h"
#include "console/app/host.h"
#include "console/app/threads_end.h"
#include "console/tour/tour.h"

namespace {

struct TourArguments {
  std::string sFolder;
  std::string sDocument;
  std::string sRegistry;
};

void DescribeTour(CLI::App& line, TourArguments& arguments) {
  line.description(
      "Does the main job in the console's window without a screen: prints what is seen and leaves "
      "pictures.");
  line.add_option("FOLDER", arguments.sFolder, "Where pictures and a copy of the document go")
      ->required();
  line.add_option("DOCUMENT", arguments.sDocument, "The console document to open")->required();
  line.add_option("--registry", arguments.sRegistry,
                  "A folder of registered components to look in first")
      ->type_name("DIR");
  line.set_version_flag("--version", std::string("orvane-tour ") + ORVANE_VERSION);
}

int EndWith(const std::string& sSentence) {
  std::cerr << "orvane-tour: " << sSentence << '\n';
  return 1;
}

// Without a screen the toolkit says at every turn which wishes its windows cannot have, and without
// a session where it lays its files; of what else it says somebody should hear.
void TellOfToolkit(QtMsgType type, const QMessageLogContext& context, const QString& sText) {
  if (sText.startsWith("This plugin does not support")) return;
  if (sText.startsWith("QStandardPaths: XDG_RUNTIME_DIR not set")) return;
  std::cerr << qFormatLogMessage(type, context, sText).toStdString() << '\n';
}

}  // namespace

int main(int argc, char** argv) {
  TourArguments arguments;
  CLI::App line("", "orvane-tour");
  DescribeTour(line, arguments);
  try {
    line.parse(argc, argv);
  } catch (const CLI::Success& e) {
    return line.exit(e);
  } catch (const CLI::ParseError& e) {
    return EndWith(std::string(e.what()) + "; see orvane-tour --help.");
  }
  if (std::error_code error; !std::filesystem::exists(arguments.sDocument, error)) {
    return EndWith("There is no document " + arguments.sDocument + "; check its name.");
  }
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  qInstallMessageHandler(TellOfToolkit);
  const orvane::console::ThreadsEnd threadsEnd;
  QApplication application(argc, argv);
  orvane::console::PrepareApplication(application);
  try {
    orvane::console::Host host(arguments.sRegistry.empty()
                                   ? std::nullopt
                                   : std::optional<std::filesystem::path>(arguments.sRegistry));
    // The user's settings stay as they are: a tour is no work of his.
    orvane::console::MainWindow window(host.Parts(nullptr));
    window.show();
    orvane::console::Tour(window, QDir(QString::fromStdString(arguments.sFolder)), std::cout)
        .Run([&] { return window.OpenDocument(arguments.sDocument); });
    return 0;
  } catch (const std::exception& e) {
    return EndWith(e.what());
  }
}
