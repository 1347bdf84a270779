// The file-version functions over this process and its files: modules as the dynamic loader
// knows them, versions from the section that version_section.h reads.
// Handed to components by the host. No state; any thread.
#pragma once

#include "platform/file_version.h"

namespace orvane::component {

/// A library is found by its path, its file name, or that without "lib" and ".so"; the main
/// executable also by its own file name.
class FileVersion final : public platform::FileVersion {
 public:
  platform::ModuleHandle GetModuleHandleA(const char* sName) override;
  std::uint32_t GetModuleFileNameA(platform::ModuleHandle module, char* buffer,
                                   std::uint32_t dwSize) override;
  std::uint32_t GetFileVersionInfoSizeA(const char* sPath) override;
  bool GetFileVersionInfoA(const char* sPath, std::uint32_t dwSize, void* block) override;
  bool VerQueryValueA(const void* block, std::uint32_t dwBlockSize, const char* sSubBlock,
                      const void** value, std::uint32_t* dwLength) override;
  void RtlMoveMemory(void* destination, const void* source, std::size_t nBytes) override;
};

}  // namespace orvane::component
