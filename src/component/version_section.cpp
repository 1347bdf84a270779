#include "component/version_section.h"

#include <elf.h>

#include <bit>
#include <cstring>
#include <limits>

#include "component/readable_file.h"

namespace orvane::component {
namespace {

using platform::FixedFileInfo;

static_assert(std::endian::native == std::endian::little,
              "the records of the file are read as they lie in memory");

constexpr char kSectionName[] = ".orvane.version";
// More sections than any linker makes; a damaged count shall not keep us reading.
constexpr std::uint64_t kMostSections = 1U << 20U;

template <class Record>
bool ReadRecord(const ReadAt& readAt, std::uint64_t nOffset, Record& record) {
  return readAt(nOffset, std::as_writable_bytes(std::span(&record, 1)));
}

// The sections of one file.
class Sections {
 public:
  explicit Sections(const ReadAt& readAt) : m_readAt(readAt) {}

  bool Open() {
    Elf64_Ehdr header{};
    if (!ReadRecord(m_readAt, 0, header)) return false;
    if (std::memcmp(header.e_ident, ELFMAG, SELFMAG) != 0 ||
        header.e_ident[EI_CLASS] != ELFCLASS64 || header.e_ident[EI_DATA] != ELFDATA2LSB ||
        header.e_shoff == 0 || header.e_shentsize != sizeof(Elf64_Shdr)) {
      return false;
    }
    m_nTable = header.e_shoff;
    m_nCount = 1;
    Elf64_Shdr first{};
    if (!Header(0, first)) return false;
    // Counts that do not fit into the file header stand in the first section header.
    m_nCount = header.e_shnum == 0 ? first.sh_size : header.e_shnum;
    const std::uint64_t nNames =
        header.e_shstrndx == SHN_XINDEX ? first.sh_link : header.e_shstrndx;
    return m_nCount <= kMostSections && Header(nNames, m_names);
  }

  std::uint64_t Count() const { return m_nCount; }

  bool Header(std::uint64_t nIndex, Elf64_Shdr& header) const {
    if (nIndex >= m_nCount) return false;
    const std::uint64_t nOffset = nIndex * sizeof header;
    return nOffset <= std::numeric_limits<std::uint64_t>::max() - m_nTable &&
           ReadRecord(m_readAt, m_nTable + nOffset, header);
  }

  bool HasName(const Elf64_Shdr& header, const auto& sWanted) const {
    char sName[sizeof sWanted];
    if (m_names.sh_size < sizeof sName || header.sh_name > m_names.sh_size - sizeof sName) {
      return false;
    }
    return m_names.sh_offset <= std::numeric_limits<std::uint64_t>::max() - header.sh_name &&
           ReadRecord(m_readAt, m_names.sh_offset + header.sh_name, sName) &&
           std::memcmp(sName, sWanted, sizeof sName) == 0;
  }

 private:
  const ReadAt& m_readAt;
  std::uint64_t m_nTable = 0;
  std::uint64_t m_nCount = 0;
  Elf64_Shdr m_names{};
};

}  // namespace

std::optional<FixedFileInfo> ReadVersionSection(const ReadAt& readAt) {
  Sections sections(readAt);
  if (!sections.Open()) return {};
  for (std::uint64_t nIndex = 1; nIndex < sections.Count(); ++nIndex) {
    Elf64_Shdr header{};
    if (!sections.Header(nIndex, header)) return {};
    if (!sections.HasName(header, kSectionName)) continue;
    FixedFileInfo info{};
    if (header.sh_type != SHT_PROGBITS || header.sh_size < sizeof info ||
        !ReadRecord(readAt, header.sh_offset, info) ||
        info.dwSignature != platform::kFixedFileInfoSignature) {
      return {};
    }
    return info;
  }
  return {};
}

std::optional<FixedFileInfo> ReadVersionSection(std::span<const std::byte> file) {
  return ReadVersionSection([file](std::uint64_t nOffset, std::span<std::byte> buffer) {
    if (nOffset > file.size() || buffer.size() > file.size() - nOffset) return false;
    std::memcpy(buffer.data(), file.data() + nOffset, buffer.size());
    return true;
  });
}

std::optional<FixedFileInfo> ReadVersionSection(const std::filesystem::path& path) {
  const ReadableFile file(path);
  return ReadVersionSection([&file](std::uint64_t nOffset, std::span<std::byte> buffer) {
    return file.Read(nOffset, buffer);
  });
}

}  // namespace orvane::component
