#include "platform/console_version.h"

#include <array>
#include <cstddef>
#include <vector>

namespace orvane::platform {
namespace {

constexpr std::uint32_t kPathSize = 260;

std::int16_t LowWord(std::uint32_t dwValue) {
  return static_cast<std::int16_t>(dwValue & 0xFFFFU);
}
std::int16_t HighWord(std::uint32_t dwValue) {
  return static_cast<std::int16_t>(dwValue >> 16U);
}

}  // namespace

ConsoleVersion ReadConsoleVersion(FileVersion& functions) {
  std::array<char, kPathSize> path{};
  functions.GetModuleFileNameA(functions.GetModuleHandleA(nullptr), path.data(), kPathSize);
  path.back() = '\0';
  if (path.front() == '\0') return {};

  const std::uint32_t dwSize = functions.GetFileVersionInfoSizeA(path.data());
  if (dwSize < 1) return {};
  std::vector<std::byte> block(dwSize);
  if (!functions.GetFileVersionInfoA(path.data(), dwSize, block.data())) return {};

  const void* value = nullptr;
  std::uint32_t dwLength = 0;
  FixedFileInfo info{};
  if (!functions.VerQueryValueA(block.data(), dwSize, "\\", &value, &dwLength) ||
      value == nullptr || dwLength < sizeof info) {
    return {};
  }
  functions.RtlMoveMemory(&info, value, sizeof info);
  return {.Minor = LowWord(info.dwProductVersionMS),
          .Major = HighWord(info.dwProductVersionMS),
          .Revision = LowWord(info.dwProductVersionLS),
          .Build = HighWord(info.dwProductVersionLS)};
}

Boolean IsConsoleAtLeast51(const ConsoleVersion& version) {
  if (version.Major >= 6) return true;
  if (version.Major != 5) return false;
  if (version.Minor >= 2) return true;
  if (version.Minor != 1) return false;
  return version.Build >= 2601 || (version.Build == 2600 && version.Revision >= 0);
}

}  // namespace orvane::platform
