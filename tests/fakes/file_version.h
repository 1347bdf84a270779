// The file-version functions over a record given by the test; each step can be told to fail.
#pragma once

#include <algorithm>
#include <cstring>
#include <string>

#include "platform/file_version.h"

namespace orvane::fakes {

class FakeFileVersion : public platform::FileVersion {
 public:
  /// A console of that product version.
  static platform::FixedFileInfo Product(std::uint32_t dwMajor, std::uint32_t dwMinor,
                                         std::uint32_t dwBuild, std::uint32_t dwRevision) {
    platform::FixedFileInfo info{};
    info.dwSignature = platform::kFixedFileInfoSignature;
    info.dwFileVersionMS = 0x00090009U;
    info.dwFileVersionLS = 0x00090009U;
    info.dwProductVersionMS = (dwMajor << 16U) | dwMinor;
    info.dwProductVersionLS = (dwBuild << 16U) | dwRevision;
    return info;
  }

  platform::ModuleHandle GetModuleHandleA(const char* sName) override {
    bAskedForMain = sName == nullptr;
    return this;
  }
  std::uint32_t GetModuleFileNameA(platform::ModuleHandle module, char* buffer,
                                   std::uint32_t dwSize) override {
    dwPathSize = dwSize;
    if (module != this || sPath.empty()) return 0;
    const std::size_t nLength = std::min<std::size_t>(sPath.size(), dwSize - 1);
    std::memcpy(buffer, sPath.data(), nLength);
    buffer[nLength] = '\0';
    return static_cast<std::uint32_t>(nLength);
  }
  std::uint32_t GetFileVersionInfoSizeA(const char* sAskedPath) override {
    sPathAsked = sAskedPath;
    return dwBlockSize;
  }
  bool GetFileVersionInfoA(const char*, std::uint32_t dwSize, void* block) override {
    if (bFailBlock) return false;
    std::memcpy(block, &info, std::min<std::size_t>(dwSize, sizeof info));
    return true;
  }
  bool VerQueryValueA(const void* block, std::uint32_t, const char* sSubBlock, const void** value,
                      std::uint32_t* dwLength) override {
    sSubBlockAsked = sSubBlock;
    if (bFailQuery) return false;
    *value = block;
    *dwLength = dwValueLength;
    return true;
  }
  void RtlMoveMemory(void* destination, const void* source, std::size_t nBytes) override {
    nMoved = nBytes;
    std::memmove(destination, source, nBytes);
  }

  std::string sPath = "/opt/console";
  platform::FixedFileInfo info = Product(6, 0, 0, 0);
  std::uint32_t dwBlockSize = sizeof(platform::FixedFileInfo);
  std::uint32_t dwValueLength = sizeof(platform::FixedFileInfo);
  bool bFailBlock = false;
  bool bFailQuery = false;

  bool bAskedForMain = false;
  std::uint32_t dwPathSize = 0;
  std::string sPathAsked;
  std::string sSubBlockAsked;
  std::size_t nMoved = 0;
};

}  // namespace orvane::fakes
