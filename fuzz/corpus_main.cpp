// Runs a fuzz target over files instead of a fuzzer's inputs: over those of its corpus and over
// every beginning of each. One that does not hold ends the program, as under a fuzzer.
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

std::vector<std::uint8_t> Bytes(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

}  // namespace

int main(int argc, char** argv) {
  int nFiles = 0;
  for (int i = 1; i < argc; ++i) {
    for (const auto& entry : std::filesystem::directory_iterator(argv[i])) {
      const auto bytes = Bytes(entry.path());
      // A vector of its own, so that a sanitizer sees a read beyond the end.
      for (std::size_t nSize = 0; nSize <= bytes.size(); ++nSize) {
        const std::vector<std::uint8_t> input(bytes.begin(),
                                              bytes.begin() + static_cast<std::ptrdiff_t>(nSize));
        LLVMFuzzerTestOneInput(input.data(), input.size());
      }
      ++nFiles;
    }
  }
  if (nFiles == 0) {
    std::cerr << "There are no files to run the target over; name the folder of its corpus.\n";
    return 1;
  }
  std::cout << nFiles << " files held.\n";
  return 0;
}
