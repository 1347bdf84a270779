// The file-version functions through which the snap-in learns which console hosts it.
// Offered by the component runtime; tests hand in their own.
#pragma once

#include <cstddef>
#include <cstdint>

namespace orvane::platform {

/// A module of this process; null names the executable that started it.
using ModuleHandle = const void*;

/// The fixed file-information record of a version resource, 52 bytes.
struct FixedFileInfo {
  std::uint32_t dwSignature;  ///< always kFixedFileInfoSignature
  std::uint32_t dwStrucVersion;
  std::uint32_t dwFileVersionMS;
  std::uint32_t dwFileVersionLS;
  std::uint32_t dwProductVersionMS;
  std::uint32_t dwProductVersionLS;
  std::uint32_t dwFileFlagsMask;
  std::uint32_t dwFileFlags;
  std::uint32_t dwFileOS;
  std::uint32_t dwFileType;
  std::uint32_t dwFileSubtype;
  std::uint32_t dwFileDateMS;
  std::uint32_t dwFileDateLS;
};
static_assert(sizeof(FixedFileInfo) == 52);
constexpr std::uint32_t kFixedFileInfoSignature = 0xFEEF04BD;

class FileVersion {
 public:
  FileVersion() = default;
  FileVersion(const FileVersion&) = delete;
  FileVersion& operator=(const FileVersion&) = delete;
  virtual ~FileVersion() = default;

  /// The module of that name, or the main executable for a null name; null when not loaded.
  virtual ModuleHandle GetModuleHandleA(const char* sName) = 0;
  /// Fills the buffer with the module's path, ended by 0 and cut to fit; returns its length in
  /// bytes without the end, 0 on failure.
  virtual std::uint32_t GetModuleFileNameA(ModuleHandle module, char* buffer,
                                           std::uint32_t dwSize) = 0;
  /// Size in bytes of the file's version block, 0 when it has none.
  virtual std::uint32_t GetFileVersionInfoSizeA(const char* sPath) = 0;
  /// Copies at most dwSize bytes of the file's version block; false when it has none.
  virtual bool GetFileVersionInfoA(const char* sPath, std::uint32_t dwSize, void* block) = 0;
  /// Points into the block at the value of the sub-block ("\" is the fixed file information) and
  /// gives its length; false when there is none. The block owns the value.
  virtual bool VerQueryValueA(const void* block, std::uint32_t dwBlockSize, const char* sSubBlock,
                              const void** value, std::uint32_t* dwLength) = 0;
  /// Copies bytes; the ranges may overlap.
  virtual void RtlMoveMemory(void* destination, const void* source, std::size_t nBytes) = 0;
};

}  // namespace orvane::platform
