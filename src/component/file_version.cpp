#include "component/file_version.h"

#include <link.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "component/version_section.h"

namespace orvane::component {
namespace {

using platform::ModuleHandle;

struct Module {
  ModuleHandle handle;
  std::string sPath;
};

std::string ExecutablePath() {
  std::error_code error;
  return std::filesystem::read_symlink("/proc/self/exe", error).string();
}

// The modules of this process; the first is the main executable. A handle is the address of the
// module's program headers, which is never null, not even for an executable loaded at 0.
std::vector<Module> Modules() {
  std::vector<Module> modules;
  dl_iterate_phdr(
      [](dl_phdr_info* info, std::size_t, void* data) {
        auto& found = *static_cast<std::vector<Module>*>(data);
        const bool bMain = found.empty();
        found.push_back({info->dlpi_phdr, bMain ? ExecutablePath() : info->dlpi_name});
        return 0;
      },
      &modules);
  return modules;
}

bool IsNamed(const Module& module, std::string_view sName) {
  if (module.sPath == sName) return true;
  const std::string sFile = std::filesystem::path(module.sPath).filename().string();
  return sFile == sName || sFile == "lib" + std::string(sName) + ".so";
}

}  // namespace

ModuleHandle FileVersion::GetModuleHandleA(const char* sName) {
  const auto modules = Modules();
  if (sName == nullptr) return modules.empty() ? nullptr : modules.front().handle;
  const auto found = std::find_if(modules.begin(), modules.end(), [&](const Module& module) {
    return *sName != '\0' && IsNamed(module, sName);
  });
  return found == modules.end() ? nullptr : found->handle;
}

std::uint32_t FileVersion::GetModuleFileNameA(ModuleHandle module, char* buffer,
                                              std::uint32_t dwSize) {
  if (buffer == nullptr || dwSize == 0) return 0;
  buffer[0] = '\0';
  const auto modules = Modules();
  const auto found = std::find_if(modules.begin(), modules.end(), [&](const Module& candidate) {
    return module == nullptr || candidate.handle == module;
  });
  if (found == modules.end()) return 0;
  const std::size_t nLength = std::min<std::size_t>(found->sPath.size(), dwSize - 1);
  std::memcpy(buffer, found->sPath.data(), nLength);
  buffer[nLength] = '\0';
  return static_cast<std::uint32_t>(nLength);
}

std::uint32_t FileVersion::GetFileVersionInfoSizeA(const char* sPath) {
  if (sPath == nullptr || !ReadVersionSection(std::filesystem::path(sPath))) return 0;
  return sizeof(platform::FixedFileInfo);
}

bool FileVersion::GetFileVersionInfoA(const char* sPath, std::uint32_t dwSize, void* block) {
  if (sPath == nullptr || block == nullptr) return false;
  const auto info = ReadVersionSection(std::filesystem::path(sPath));
  if (!info) return false;
  std::memcpy(block, &*info, std::min<std::size_t>(dwSize, sizeof *info));
  return true;
}

bool FileVersion::VerQueryValueA(const void* block, std::uint32_t dwBlockSize,
                                 const char* sSubBlock, const void** value,
                                 std::uint32_t* dwLength) {
  if (block == nullptr || sSubBlock == nullptr || value == nullptr || dwLength == nullptr ||
      dwBlockSize < sizeof(platform::FixedFileInfo) || std::string_view(sSubBlock) != "\\") {
    return false;
  }
  std::uint32_t dwSignature = 0;
  std::memcpy(&dwSignature, block, sizeof dwSignature);
  if (dwSignature != platform::kFixedFileInfoSignature) return false;
  *value = block;
  *dwLength = sizeof(platform::FixedFileInfo);
  return true;
}

void FileVersion::RtlMoveMemory(void* destination, const void* source, std::size_t nBytes) {
  if (nBytes != 0) std::memmove(destination, source, nBytes);
}

}  // namespace orvane::component
