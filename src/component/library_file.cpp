#include "component/library_file.h"

#include <elf.h>
#include <link.h>

#include <algorithm>
#include <cstring>
#include <vector>

#include "component/readable_file.h"
#include "platform/failure.h"

namespace orvane::component {
namespace {

using platform::Failure;
using platform::Text;

// More than any linker makes; a damaged count shall not keep us reading.
constexpr std::uint64_t kMostEntries = 65536;

template <class Record>
bool ReadRecords(const ReadableFile& file, std::uint64_t nOffset, std::vector<Record>& records) {
  return file.Read(nOffset, std::as_writable_bytes(std::span(records)));
}

/// Whether nSize bytes from nStart lie within nEnd.
bool Within(std::uint64_t nStart, std::uint64_t nSize, std::uint64_t nEnd) {
  return nStart <= nEnd && nSize <= nEnd - nStart;
}

/// Whether the bytes in memory come from the file by way of the segment.
bool IsLoadedBy(const ElfW(Phdr) & segment, std::uint64_t nAddress, std::uint64_t nSize) {
  return segment.p_type == PT_LOAD && nAddress >= segment.p_vaddr &&
         Within(nAddress - segment.p_vaddr, nSize, segment.p_filesz);
}

/// Whether the table that the loader links by can be read and names what it must: a file of which a
/// crash has left the end as zeros has none.
bool HasDynamicTable(const ReadableFile& file, const std::vector<ElfW(Phdr)>& segments) {
  const auto table = std::find_if(segments.begin(), segments.end(),
                                  [](const auto& it) { return it.p_type == PT_DYNAMIC; });
  if (table == segments.end() || table->p_filesz / sizeof(ElfW(Dyn)) > kMostEntries) return false;
  const bool bLoaded = std::any_of(segments.begin(), segments.end(), [&](const auto& it) {
    return IsLoadedBy(it, table->p_vaddr, table->p_filesz);
  });
  std::vector<ElfW(Dyn)> entries(table->p_filesz / sizeof(ElfW(Dyn)));
  if (!bLoaded || !ReadRecords(file, table->p_offset, entries)) return false;
  const auto end = std::find_if(entries.begin(), entries.end(),
                                [](const auto& entry) { return entry.d_tag == DT_NULL; });
  const auto names = [&](auto tag) {
    return std::any_of(entries.begin(), end, [&](const auto& entry) {
      return entry.d_tag == tag &&
             std::any_of(segments.begin(), segments.end(),
                         [&](const auto& it) { return IsLoadedBy(it, entry.d_un.d_ptr, 1); });
    });
  };
  return end != entries.end() && names(DT_STRTAB) && names(DT_SYMTAB);
}

bool IsWhole(const ReadableFile& file) {
  ElfW(Ehdr) header{};
  std::vector<unsigned char> magic(SELFMAG);
  if (!ReadRecords(file, 0, magic) || std::memcmp(magic.data(), ELFMAG, SELFMAG) != 0) return true;
  if (!file.Read(0, std::as_writable_bytes(std::span(&header, 1)))) return false;
  constexpr auto kNativeClass = sizeof(void*) == 8 ? ELFCLASS64 : ELFCLASS32;
  if (header.e_ident[EI_CLASS] != kNativeClass) return true;
  if (header.e_phentsize != sizeof(ElfW(Phdr)) || header.e_phnum == 0) return false;
  std::vector<ElfW(Phdr)> segments(header.e_phnum);
  if (!ReadRecords(file, header.e_phoff, segments)) return false;
  const bool bInside = std::all_of(segments.begin(), segments.end(), [&](const auto& segment) {
    return segment.p_type == PT_NULL ||
           (Within(segment.p_offset, segment.p_filesz, file.Size()) &&
            (segment.p_type != PT_LOAD || segment.p_filesz <= segment.p_memsz));
  });
  return bInside && HasDynamicTable(file, segments);
}

}  // namespace

void RequireWholeLibrary(const std::filesystem::path& path) {
  const ReadableFile file(path);
  // What cannot be opened is left to the loader, which says why.
  if (file.Error() != 0) return;
  if (!file.IsRegular()) {
    throw Failure(platform::failure::kComponent,
                  "The library \"" + path.string() + "\" is no file; name the component's library.",
                  "component");
  }
  if (!IsWhole(file)) {
    throw Failure(
        platform::failure::kComponent,
        "The library \"" + path.string() + "\" is cut off or damaged; install its component again.",
        "component");
  }
}

}  // namespace orvane::component
