// Loading and saving a console document of 100,000 tables, against the bare parser and the bare
// writer of the same lines. Both writers end on the disk, since a save does.
#include "console/document/document.h"

#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "console/document/document_format.h"
#include "console/document/document_state.h"

namespace {

using namespace orvane;
using console::Document;
using nlohmann::json;
using platform::Long;
using platform::Text;

constexpr int kCatalogs = 100;
constexpr int kTablesEach = 1000;
constexpr const char* kSnapIn = "ORVOLEDBSnapIn";

class Query : public platform::PersistedObject {
 public:
  Text ProgId() const override { return "ORVOLEDBCtls.TableQuery"; }
  Text WriteState() const override { return sState; }
  void ReadState(const Text& sText) override { sState = sText; }

  Text sState;
};

/// What a snap-in writes for one server.
void Fill(platform::PropertyBag& bag) {
  const Text sServer = "ServersNode_ServerNodes_ServerNode1_";
  bag.WriteProperty("ServersNode", true);
  bag.WriteProperty("ServersNode_ServerNodes_ServerNodeCount", Long{1});
  bag.WriteProperty(sServer + "Server", "localhost");
  bag.WriteProperty(sServer + "CatalogNodes_CatalogNodeCount", Long{kCatalogs});
  const auto query = std::make_shared<Query>();
  for (int i = 1; i <= kCatalogs; ++i) {
    const Text sCatalog = sServer + "CatalogNodes_CatalogNode" + std::to_string(i) + "_";
    bag.WriteProperty(sCatalog + "Catalog", "Plant" + std::to_string(i));
    bag.WriteProperty(sCatalog + "TableNodes_TableNodeCount", Long{kTablesEach});
    for (int j = 1; j <= kTablesEach; ++j) {
      const Text sTable = sCatalog + "TableNodes_TableNode" + std::to_string(j) + "_";
      query->sState = R"({"catalog":"Plant)" + std::to_string(i) +
                      R"(","columns":[],"filter":"Timestamp BETWEEN '*-1h' AND '*'",)"
                      R"("maxRows":100,"queryTimeout":60,"sort":null,"table":"Table )" +
                      std::to_string(j) + R"("})";
      bag.WriteProperty(sTable + "Query", query);
      bag.WriteProperty(sTable + "DefaultFilterCondition", true);
    }
  }
}

std::unique_ptr<console::DocumentContent> FilledContent() {
  auto content = std::make_unique<console::DocumentContent>();
  Fill(content->SnapIn(kSnapIn));
  return content;
}

std::vector<json> ParseLines(const std::filesystem::path& path) {
  std::ostringstream stream;
  stream << std::ifstream(path, std::ios::binary).rdbuf();
  const Text sBytes = stream.str();
  std::vector<json> lines;
  for (auto start = sBytes.begin(); start != sBytes.end();) {
    const auto end = std::find(start, sBytes.end(), '\n');
    lines.push_back(json::parse(start, end));
    start = end + 1;
  }
  return lines;
}

Text DumpLines(const std::vector<json>& lines) {
  Text sBytes;
  for (const json& line : lines) sBytes += line.dump() + "\n";
  return sBytes;
}

bool WriteLines(const std::vector<json>& lines, const std::filesystem::path& path) {
  const Text sBytes = DumpLines(lines);
  const int iFile = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
  const bool bWritten =
      write(iFile, sBytes.data(), sBytes.size()) == static_cast<ssize_t>(sBytes.size()) &&
      fsync(iFile) == 0;
  close(iFile);
  return bWritten;
}

/// A folder with the document, gone at the end.
class Folder {
 public:
  Folder() {
    std::filesystem::create_directory(m_path);
    Document().SaveAs(File().string(), FilledContent());
  }
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;
  ~Folder() { std::filesystem::remove_all(m_path); }

  std::filesystem::path File() const { return m_path / "plant.orvc"; }
  std::filesystem::path Bare() const { return m_path / "bare"; }

 private:
  std::filesystem::path m_path =
      std::filesystem::temp_directory_path() / ("orvane-bench-" + std::to_string(getpid()));
};

const Folder& TheFolder() {
  static const Folder folder;
  return folder;
}

void LoadRaw(benchmark::State& state) {
  const auto file = TheFolder().File();
  for (auto _ : state) {
    const std::vector<json> lines = ParseLines(file);
    benchmark::DoNotOptimize(lines.data());
    state.counters["lines"] = static_cast<double>(lines.size());
  }
  state.counters["megabytes"] = static_cast<double>(std::filesystem::file_size(file)) / 1e6;
}

void Load(benchmark::State& state) {
  const Text sFile = TheFolder().File().string();
  for (auto _ : state) {
    const auto document = Document::Open(sFile);
    benchmark::DoNotOptimize(document.get());
  }
}

void SaveRaw(benchmark::State& state) {
  const std::vector<json> lines = ParseLines(TheFolder().File());
  for (auto _ : state) {
    if (!WriteLines(lines, TheFolder().Bare())) state.SkipWithError("not written");
  }
}

// Filling the bag is the snap-in's work.
void Save(benchmark::State& state) {
  const auto document = Document::Open(TheFolder().File().string());
  for (auto _ : state) {
    state.PauseTiming();
    auto content = FilledContent();
    state.ResumeTiming();
    document->Save(std::move(content));
  }
}

void FormatRaw(benchmark::State& state) {
  const std::vector<json> lines = ParseLines(TheFolder().File());
  for (auto _ : state) benchmark::DoNotOptimize(DumpLines(lines).data());
}

void Format(benchmark::State& state) {
  const auto content = FilledContent();
  for (auto _ : state) benchmark::DoNotOptimize(console::WriteDocument(*content).data());
}

// What each command costs for the unsaved mark, the snap-in's writing included.
void UnsavedMark(benchmark::State& state) {
  console::DocumentState documentState;
  documentState.Rebase(FilledContent()->SnapIn(kSnapIn));
  for (auto _ : state) {
    console::SaveSnapshot snapshot;
    Fill(snapshot);
    if (documentState.IsModified(snapshot, {})) state.SkipWithError("modified");
  }
}

BENCHMARK(LoadRaw)->Name("load_document/raw")->Unit(benchmark::kMillisecond)->Iterations(1);
BENCHMARK(Load)->Name("load_document/console")->Unit(benchmark::kMillisecond)->Iterations(1);
BENCHMARK(SaveRaw)->Name("save_document/raw")->Unit(benchmark::kMillisecond)->Iterations(1);
BENCHMARK(Save)->Name("save_document/console")->Unit(benchmark::kMillisecond)->Iterations(1);
BENCHMARK(FormatRaw)->Name("format_document/raw")->Unit(benchmark::kMillisecond)->Iterations(1);
BENCHMARK(Format)->Name("format_document/console")->Unit(benchmark::kMillisecond)->Iterations(1);
BENCHMARK(UnsavedMark)->Name("unsaved_mark")->Unit(benchmark::kMillisecond)->Iterations(1);

}  // namespace
