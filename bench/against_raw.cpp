// The main of a program of benchmarks: runs the measurements in turns and then compares, for each
// work W, every "W/..." with "W/raw" of the same run.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <map>
#include <string>
#include <vector>

namespace {

using Times = std::vector<double>;

double Median(Times times) {
  const auto middle = times.begin() + static_cast<Times::difference_type>(times.size() / 2);
  std::nth_element(times.begin(), middle, times.end());
  return *middle;
}

class Comparison final : public benchmark::ConsoleReporter {
 public:
  Comparison() : ConsoleReporter(OO_Tabular) {}

  void ReportRuns(const std::vector<Run>& runs) override {
    ConsoleReporter::ReportRuns(runs);
    for (const Run& run : runs) {
      if (run.run_type != Run::RT_Iteration || run.error_occurred) continue;
      m_times[run.run_name.function_name].push_back(run.real_accumulated_time /
                                                    static_cast<double>(run.iterations));
    }
  }

  void Print() const {
    for (const auto& [sName, times] : m_times) {
      const auto raw = m_times.find(sName.substr(0, sName.rfind('/')) + "/raw");
      if (raw == m_times.end() || raw->first == sName) continue;
      std::printf("%-40s %8.2f ms, raw %8.2f ms: %.2f times the raw call (best of each: %.2f)\n",
                  sName.c_str(), Median(times) * 1e3, Median(raw->second) * 1e3,
                  Median(times) / Median(raw->second),
                  *std::min_element(times.begin(), times.end()) /
                      *std::min_element(raw->second.begin(), raw->second.end()));
    }
  }

 private:
  std::map<std::string, Times> m_times;
};

}  // namespace

int main(int argc, char** argv) {
  std::vector<std::string> defaults = {"--benchmark_enable_random_interleaving=true",
                                       "--benchmark_repetitions=9",
                                       "--benchmark_report_aggregates_only=false"};
  std::vector<char*> arguments(argv, argv + 1);
  for (std::string& sDefault : defaults) arguments.push_back(sDefault.data());
  arguments.insert(arguments.end(), argv + 1, argv + argc);
  int nArguments = static_cast<int>(arguments.size());
  benchmark::Initialize(&nArguments, arguments.data());
  if (benchmark::ReportUnrecognizedArguments(nArguments, arguments.data())) return 1;
  Comparison comparison;
  benchmark::RunSpecifiedBenchmarks(&comparison);
  comparison.Print();
  benchmark::Shutdown();
  return 0;
}
