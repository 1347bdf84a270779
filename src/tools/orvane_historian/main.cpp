// orvane-historian: makes, fills and records historians.
// Ends with 0, or with 1 and a sentence when something went wrong or the command line cannot be
// understood. With 2 and a sentence where nothing was generated because the catalog is another's.
#include <CLI/CLI.hpp>
#include <cerrno>
#include <fstream>
#include <iostream>
#include <system_error>

#include "platform/failure.h"
#include "platform/historian_names.h"
#include "provider/engines/sqlite/sqlite_engine.h"
#include "provider/historian/data_folder.h"
#include "provider/historian/historian.h"
#include "tools/manual/manual.h"
#include "tools/orvane_historian/ending.h"
#include "tools/orvane_historian/generate.h"
#include "tools/orvane_historian/import.h"
#include "tools/orvane_historian/record.h"
#include "tools/orvane_historian/server_catalog.h"
#include "tools/orvane_historian/server_rows.h"
#include "tools/terminal/standard_files.h"

namespace {

using namespace orvane;
using platform::Failure;
using platform::Text;
namespace failure = platform::failure;

constexpr int kFailed = 1;

struct Options {
  tools::ServerPlace place{provider::historian::DefaultRoot(), Text(platform::kDefaultServer),
                           provider::historian::KnownHistorians::OfUser()};
  Text sFile;
  Text sCatalog;
  Text sTable;
  Text sTimeZone = "Local";
  bool bReplace = false;
  bool bOnce = false;
  std::int64_t llCount = 0;
  Text sKeep = "7d";
  std::filesystem::path proc = "/proc";
  std::int64_t llHours = 24;
  std::int64_t llStep = 10;
};

void Init(const Options& options) {
  if (tools::IsServerAddress(options.place.sServer)) {
    tools::MakeServerHistorian(options.place.sServer);
    std::cout << "Made the historian in the database, or found it there.\n";
    return;
  }
  const Text sServer = provider::historian::ServerFromDataSource(options.place.sServer);
  const auto folder = provider::historian::HistorianFolder(options.place.root, sServer);
  const char* sWhat = "Made";
  try {
    provider::historian::Historian::Make(options.place.root, sServer, options.place.known);
  } catch (const Failure& failed) {
    if (failed.Number() != failure::kKeyExists) throw;
    sWhat = "Found";
  }
  // Opening tells whether what is there can be used.
  provider::engines::SqliteEngine engine;
  const auto opened = tools::OpenHistorian(options.place, engine);
  std::cout << sWhat << " the historian " << sServer << " in " << folder.string() << ".\n";
}

// Files of catalogs are those of historians on this machine.
void RequireHere(const Options& options) {
  if (!tools::IsServerAddress(options.place.sServer)) return;
  throw Failure(failure::kNotSupported,
                "A server keeps no files of catalogs; name a historian on this machine.");
}

void Attach(const Options& options) {
  RequireHere(options);
  provider::engines::SqliteEngine engine;
  const auto record = tools::OpenHistorian(options.place, engine)
                          .AttachCatalog(options.sCatalog, options.sFile, {});
  std::cout << "Attached the catalog " << record.sName << " in " << record.file.string() << ".\n";
}

void Detach(const Options& options) {
  RequireHere(options);
  provider::engines::SqliteEngine engine;
  const auto record =
      tools::OpenHistorian(options.place, engine).DetachCatalog(options.sCatalog, {});
  std::cout << "Detached the catalog " << record.sName << "; its file stays in "
            << record.file.string() << ".\n";
}

void Import(const Options& options) {
  std::ifstream stream(options.sFile, std::ios::binary);
  if (!stream || std::filesystem::is_directory(options.sFile)) {
    const int nError = stream ? EISDIR : errno;
    throw Failure(failure::kInvalidArgument, "The file " + options.sFile + " cannot be read: " +
                                                 std::generic_category().message(nError) +
                                                 "; name another one.");
  }
  const tools::ImportOrder order{options.sTable, zones::TimeZone(options.sTimeZone),
                                 options.bReplace};
  Text sCatalog;
  std::int64_t llRows = 0;
  if (tools::IsServerAddress(options.place.sServer)) {
    tools::ServerCatalog catalog(options.place.sServer, options.sCatalog, false);
    sCatalog = catalog.Name();
    llRows = tools::ImportToServer(catalog, stream, order);
  } else {
    const auto record = tools::FindCatalog(options.place, options.sCatalog);
    sCatalog = record.sName;
    llRows = tools::Import(record, stream, order);
  }
  std::cout << "Imported " << llRows << (llRows == 1 ? " row" : " rows") << " into " << sCatalog
            << ".." << options.sTable << ".\n";
}

std::chrono::seconds ReadSpan(const Text& sSpan) {
  std::int64_t llSeconds = 0;
  const std::size_t nDigits = sSpan.find_first_not_of("0123456789");
  const Text sUnit = nDigits == Text::npos ? "" : sSpan.substr(nDigits);
  constexpr std::pair<const char*, std::int64_t> kUnits[] = {
      {"s", 1}, {"m", 60}, {"h", 3600}, {"d", 86400}, {"w", 604800}};
  for (const auto& [sName, llUnit] : kUnits) {
    if (sUnit == sName && nDigits > 0 && nDigits < 7) llSeconds = std::stoll(sSpan) * llUnit;
  }
  if (llSeconds == 0 && sSpan != "0") {
    throw Failure(failure::kInvalidArgument,
                  "\"" + sSpan +
                      "\" is no time to keep rows; write a number and s, m, h, d or w, "
                      "such as 7d, or 0 to keep all.");
  }
  return std::chrono::seconds(llSeconds);
}

void Record(const Options& options) {
  tools::RecordOrder order;
  order.sCatalog = options.sCatalog;
  order.llCount = options.bOnce ? 1 : options.llCount;
  order.keep = ReadSpan(options.sKeep);
  order.proc = options.proc;
  order.waits = [&] {
    std::cout << "Another recorder is at work on the catalog " << options.sCatalog
              << "; this one takes over when that ends." << std::endl;
  };
  const auto llSamples = tools::IsServerAddress(options.place.sServer)
                             ? tools::RecordOnServer(options.place.sServer, order)
                             : tools::Record(options.place, order);
  std::cout << "Recorded " << llSamples << (llSamples == 1 ? " sample" : " samples") << " into "
            << options.sCatalog << ".\n";
}

void Generate(const Options& options) {
  using namespace std::chrono;
  const tools::GenerateOrder order{options.sCatalog, hours(options.llHours),
                                   seconds(options.llStep),
                                   floor<microseconds>(system_clock::now())};
  std::int64_t llNew = 0;
  if (tools::IsServerAddress(options.place.sServer)) {
    tools::ServerCatalog catalog(options.place.sServer, options.sCatalog, true);
    llNew = tools::GenerateOnServer(catalog, order);
  } else {
    llNew = tools::Generate(options.place, order);
  }
  std::cout << "Generated " << llNew << (llNew == 1 ? " value" : " values") << " in "
            << options.sCatalog << ".\n";
}

int Main(int argc, char** argv) {
  Options options;
  CLI::App app("Makes, fills and records ORVANE historians.", "orvane-historian");
  app.set_version_flag("--version", ORVANE_VERSION);
  app.require_subcommand(1);
  app.add_option("--root", options.place.root,
                 "folder of all historians (default: orvane in the user's data folder)")
      ->type_name("DIR");
  const auto server = [&](CLI::App* command) {
    command
        ->add_option("--server", options.place.sServer,
                     "the historian, or postgresql://USER@HOST:PORT/DATABASE (default: localhost)")
        ->type_name("NAME");
    command->fallthrough();
  };

  auto* const init = app.add_subcommand("init", "make a historian, or check that it can be used");
  server(init);
  init->add_option("NAME", options.place.sServer, "the historian (default: localhost)");

  auto* const attach =
      app.add_subcommand("attach", "take a catalog's file in, such as one that was detached");
  server(attach);
  attach->add_option("NAME", options.sCatalog, "the catalog's name")->required();
  attach->add_option("FILE", options.sFile, "its file, which stays where it is")->required();

  auto* const detach = app.add_subcommand("detach", "let go of a catalog; its file stays");
  server(detach);
  detach->add_option("NAME", options.sCatalog, "the catalog")->required();

  auto* const import = app.add_subcommand("import", "read rows into a table, all of them or none");
  server(import);
  import->add_option("FILE", options.sFile, "comma-separated values; the first line names columns")
      ->required();
  import->add_option("--catalog", options.sCatalog, "the catalog")->required()->type_name("NAME");
  import->add_option("--table", options.sTable, "the table")->required()->type_name("NAME");
  import
      ->add_option("--time-zone", options.sTimeZone,
                   "of times without an offset: Local, UTC or a name")
      ->type_name("ZONE");
  import->add_flag("--replace", options.bReplace, "rows take the place of those with their key");

  auto* const record = app.add_subcommand("record", "record this machine's counters once a second");
  server(record);
  Text sRecordCatalog = "Machine";
  record->add_option("--catalog", sRecordCatalog, "the catalog (default: Machine)")
      ->type_name("NAME");
  auto* const once = record->add_flag("--once", options.bOnce, "one sample only");
  record->add_option("--count", options.llCount, "so many samples only")
      ->type_name("N")
      ->check(CLI::Range(std::int64_t{1}, std::int64_t{1'000'000'000}))
      ->excludes(once);
  record->add_option("--keep", options.sKeep, "drop older rows (default: 7d)")->type_name("TIME");
  record->add_option("--proc", options.proc, "folder to read counters from (default: /proc)")
      ->type_name("DIR");

  auto* const generate = app.add_subcommand("generate", "write signals of an invented plant");
  server(generate);
  Text sGenerateCatalog = "Plant1";
  generate->add_option("--catalog", sGenerateCatalog, "the catalog (default: Plant1)")
      ->type_name("NAME");
  generate->add_option("--hours", options.llHours, "so many hours up to now (default: 24)")
      ->type_name("N")
      ->check(CLI::Range(1, 10'000));
  generate->add_option("--step", options.llStep, "seconds between two values (default: 10)")
      ->type_name("N")
      ->check(CLI::Range(1, 3600));

  if (const auto nTold = tools::ToldManual(argc, argv, [&app] {
        return tools::DescribedProgram{tools::CommandOf(app), ORVANE_VERSION, {}};
      })) {
    return *nTold;
  }
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    if (error.get_exit_code() == 0) return app.exit(error);
    std::cerr << error.what() << "; see orvane-historian --help.\n";
    return kFailed;
  }
  if (*init) Init(options);
  if (*attach) Attach(options);
  if (*detach) Detach(options);
  if (*import) Import(options);
  if (*record) {
    options.sCatalog = sRecordCatalog;
    Record(options);
  }
  if (*generate) {
    options.sCatalog = sGenerateCatalog;
    Generate(options);
  }
  std::cout.flush();
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  tools::HoldStandardFiles();
  return tools::EndingTold(std::cerr, [&] { return Main(argc, argv); });
}
