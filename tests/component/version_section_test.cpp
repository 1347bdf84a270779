#include "component/version_section.h"

#include <elf.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstring>
#include <limits>
#include <vector>

#include "tests/component/temporary_folder.h"

namespace orvane::component {
namespace {

using platform::FixedFileInfo;
using Bytes = std::vector<std::byte>;

constexpr char kNames[] = "\0.text\0.orvane.version\0.shstrtab";
constexpr std::uint64_t kNamesAt = sizeof(Elf64_Ehdr);
constexpr std::uint64_t kVersionAt = kNamesAt + sizeof kNames;
constexpr std::uint64_t kTableAt = kVersionAt + sizeof(FixedFileInfo);
constexpr std::size_t kSections = 4;

// The smallest file with a version resource: header, names, record, section headers.
struct SmallElf {
  Elf64_Ehdr header{};
  FixedFileInfo info{};
  Elf64_Shdr sections[kSections]{};

  SmallElf() {
    std::memcpy(header.e_ident, ELFMAG, SELFMAG);
    header.e_ident[EI_CLASS] = ELFCLASS64;
    header.e_ident[EI_DATA] = ELFDATA2LSB;
    header.e_shoff = kTableAt;
    header.e_shentsize = sizeof(Elf64_Shdr);
    header.e_shnum = kSections;
    header.e_shstrndx = 3;
    info.dwSignature = platform::kFixedFileInfoSignature;
    info.dwProductVersionMS = 0x00050001;
    sections[1].sh_type = SHT_PROGBITS;
    sections[1].sh_name = 1;
    sections[2].sh_type = SHT_PROGBITS;
    sections[2].sh_name = 7;
    sections[2].sh_offset = kVersionAt;
    sections[2].sh_size = sizeof info;
    sections[3].sh_type = SHT_STRTAB;
    sections[3].sh_name = 23;
    sections[3].sh_offset = kNamesAt;
    sections[3].sh_size = sizeof kNames;
  }

  Bytes File() const {
    Bytes bytes(kTableAt + sizeof sections);
    std::memcpy(bytes.data(), &header, sizeof header);
    std::memcpy(bytes.data() + kNamesAt, kNames, sizeof kNames);
    std::memcpy(bytes.data() + kVersionAt, &info, sizeof info);
    std::memcpy(bytes.data() + kTableAt, sections, sizeof sections);
    return bytes;
  }

  std::optional<FixedFileInfo> Read() const { return ReadVersionSection(File()); }
};

TEST(VersionSectionTest, the_record_is_read_from_its_section) {
  const auto info = SmallElf().Read();
  ASSERT_TRUE(info.has_value());
  EXPECT_EQ(info->dwSignature, platform::kFixedFileInfoSignature);
  EXPECT_EQ(info->dwProductVersionMS, 0x00050001U);
}

TEST(VersionSectionTest, a_cut_file_has_no_version) {
  const Bytes whole = SmallElf().File();
  for (std::size_t n = 0; n < whole.size(); ++n) {
    // The last section header is that of the names, so that every cut takes something needed.
    EXPECT_FALSE(ReadVersionSection(std::span(whole).first(n)).has_value()) << n;
  }
}

TEST(VersionSectionTest, every_flipped_byte_gives_a_record_or_no_version) {
  const Bytes whole = SmallElf().File();
  int nRead = 0;
  for (std::size_t n = 0; n < whole.size(); ++n) {
    for (int nFlip = 1; nFlip < 256; ++nFlip) {
      Bytes flipped = whole;
      flipped[n] ^= static_cast<std::byte>(nFlip);
      if (const auto info = ReadVersionSection(flipped)) {
        EXPECT_EQ(info->dwSignature, platform::kFixedFileInfoSignature);
        ++nRead;
      }
    }
  }
  EXPECT_GT(nRead, 0);
}

TEST(VersionSectionTest, what_is_not_64_bit_little_endian_elf_has_no_version) {
  SmallElf file;
  file.header.e_ident[EI_CLASS] = ELFCLASS32;
  EXPECT_FALSE(file.Read().has_value());
  file = SmallElf();
  file.header.e_ident[EI_DATA] = ELFDATA2MSB;
  EXPECT_FALSE(file.Read().has_value());
  file = SmallElf();
  file.header.e_ident[0] = 'M';
  EXPECT_FALSE(file.Read().has_value());
}

TEST(VersionSectionTest, a_section_without_content_short_or_unsigned_is_no_version) {
  SmallElf file;
  file.sections[2].sh_type = SHT_NOBITS;
  EXPECT_FALSE(file.Read().has_value());
  file = SmallElf();
  file.sections[2].sh_size = sizeof(FixedFileInfo) - 1;
  EXPECT_FALSE(file.Read().has_value());
  file = SmallElf();
  file.info.dwSignature = 0;
  EXPECT_FALSE(file.Read().has_value());
}

TEST(VersionSectionTest, a_longer_section_begins_with_the_record) {
  SmallElf file;
  file.sections[2].sh_size = 64;
  EXPECT_TRUE(file.Read().has_value());
}

TEST(VersionSectionTest, a_file_without_the_section_has_no_version) {
  SmallElf file;
  file.sections[2].sh_name = 1;
  EXPECT_FALSE(file.Read().has_value());
}

TEST(VersionSectionTest, offsets_that_wrap_around_are_outside) {
  constexpr auto kLast = std::numeric_limits<std::uint64_t>::max();
  for (const std::uint64_t nOffset : {kLast, kLast - 63, kLast - 200, std::uint64_t{1} << 63U}) {
    SmallElf file;
    file.header.e_shoff = nOffset;
    EXPECT_FALSE(file.Read().has_value());
    file = SmallElf();
    file.sections[3].sh_offset = nOffset;
    EXPECT_FALSE(file.Read().has_value());
    file = SmallElf();
    file.sections[2].sh_offset = nOffset;
    EXPECT_FALSE(file.Read().has_value());
  }
  SmallElf file;
  file.sections[2].sh_name = std::numeric_limits<std::uint32_t>::max();
  EXPECT_FALSE(file.Read().has_value());
  file = SmallElf();
  file.sections[3].sh_size = 3;
  EXPECT_FALSE(file.Read().has_value());
}

TEST(VersionSectionTest, counts_too_large_for_the_header_stand_in_the_first_section) {
  SmallElf file;
  file.header.e_shnum = 0;
  file.header.e_shstrndx = SHN_XINDEX;
  file.sections[0].sh_size = kSections;
  file.sections[0].sh_link = 3;
  EXPECT_TRUE(file.Read().has_value());
  file.sections[0].sh_size = std::numeric_limits<std::uint64_t>::max();
  EXPECT_FALSE(file.Read().has_value());
}

TEST(VersionSectionTest, a_path_that_is_no_file_has_no_version) {
  const test::TemporaryFolder folder;
  EXPECT_FALSE(ReadVersionSection(folder / "absent").has_value());
  EXPECT_FALSE(ReadVersionSection(folder.Path()).has_value());
  ASSERT_EQ(mkfifo((folder / "pipe").c_str(), 0600), 0);
  EXPECT_FALSE(ReadVersionSection(folder / "pipe").has_value());
  test::WriteText(folder / "empty", "");
  EXPECT_FALSE(ReadVersionSection(folder / "empty").has_value());
}

TEST(VersionSectionTest, a_file_on_disk_is_read) {
  const test::TemporaryFolder folder;
  const Bytes bytes = SmallElf().File();
  std::string sBytes(bytes.size(), '\0');
  std::memcpy(sBytes.data(), bytes.data(), bytes.size());
  test::WriteText(folder / "small", sBytes);
  EXPECT_TRUE(ReadVersionSection(folder / "small").has_value());
}

}  // namespace
}  // namespace orvane::component
