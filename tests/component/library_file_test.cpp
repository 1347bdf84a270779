#include "component/library_file.h"

#include <dlfcn.h>
#include <elf.h>
#include <gmock/gmock.h>
#include <link.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstring>
#include <vector>

#include "component/library.h"
#include "platform/failure.h"
#include "tests/component/temporary_folder.h"

namespace orvane::component {
namespace {

using platform::Failure;
using test::Fixture;
using test::ReadText;
using test::TemporaryFolder;
using test::WriteText;
using testing::HasSubstr;

namespace fs = std::filesystem;

/// The sentence of the refusal, empty for a file that passes.
std::string Refusal(const fs::path& file) {
  try {
    RequireWholeLibrary(file);
  } catch (const Failure& failure) {
    EXPECT_EQ(failure.Number(), platform::failure::kComponent);
    return failure.Description();
  }
  return {};
}

/// Whether a process that loads the file lives through it.
bool IsSurvived(const fs::path& file) {
  const pid_t child = fork();
  if (child == 0) {
    dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
    _exit(0);
  }
  int nStatus = 0;
  waitpid(child, &nStatus, 0);
  return WIFEXITED(nStatus);
}

class LibraryFileTest : public testing::Test {
 protected:
  LibraryFileTest() : m_sWhole(ReadText(Fixture("good"))) {}

  fs::path Written(const std::string& sContent) {
    fs::path file = m_folder / ("lib" + std::to_string(++m_nFiles) + ".so");
    WriteText(file, sContent);
    return file;
  }
  std::vector<ElfW(Phdr)> Segments() const {
    ElfW(Ehdr) header{};
    std::memcpy(&header, m_sWhole.data(), sizeof header);
    std::vector<ElfW(Phdr)> segments(header.e_phnum);
    std::memcpy(segments.data(), m_sWhole.data() + header.e_phoff,
                segments.size() * sizeof segments[0]);
    return segments;
  }

  TemporaryFolder m_folder;
  std::string m_sWhole;
  int m_nFiles = 0;
};

TEST_F(LibraryFileTest, a_whole_library_passes) {
  EXPECT_EQ(Refusal(Fixture("good")), "");
  EXPECT_EQ(Refusal(Fixture("unresolved")), "");
}

TEST_F(LibraryFileTest, one_that_is_cut_off_is_refused_in_a_sentence) {
  const auto file = Written(m_sWhole.substr(0, m_sWhole.size() / 3));
  EXPECT_EQ(Refusal(file), "The library \"" + file.string() +
                               "\" is cut off or damaged; install its component again.");
  try {
    const Library library(file);
    ADD_FAILURE() << "it was loaded";
  } catch (const Failure& failure) {
    EXPECT_THAT(failure.Description(), HasSubstr("is cut off or damaged"));
  }
}

TEST_F(LibraryFileTest, whatever_is_cut_off_it_is_refused_or_can_be_loaded) {
  std::vector<std::size_t> lengths{0, 1, 4, 16, 63, 64, 65, 4096, m_sWhole.size() - 1};
  for (const auto& segment : Segments()) {
    for (const std::size_t n : {segment.p_offset, segment.p_offset + segment.p_filesz}) {
      for (const std::size_t nLength : {n, n - 1, n + 1}) {
        if (nLength < m_sWhole.size()) lengths.push_back(nLength);
      }
    }
  }
  int nRefused = 0;
  for (const std::size_t nLength : lengths) {
    const auto file = Written(m_sWhole.substr(0, nLength));
    if (!Refusal(file).empty()) {
      ++nRefused;
    } else {
      EXPECT_TRUE(IsSurvived(file)) << "cut off at " << nLength << " of " << m_sWhole.size();
    }
  }
  EXPECT_GT(nRefused, 5);
}

TEST_F(LibraryFileTest, one_that_lost_its_second_half_to_zeros_is_refused) {
  std::string sContent = m_sWhole;
  for (const auto& segment : Segments()) {
    if (segment.p_type == PT_DYNAMIC) {
      std::memset(sContent.data() + segment.p_offset, 0, sContent.size() - segment.p_offset);
    }
  }
  EXPECT_THAT(Refusal(Written(sContent)), HasSubstr("is cut off or damaged"));
}

TEST_F(LibraryFileTest, one_whose_headers_point_anywhere_is_refused) {
  ElfW(Ehdr) header{};
  std::memcpy(&header, m_sWhole.data(), sizeof header);
  const auto with = [&](auto member, auto value) {
    std::string sContent = m_sWhole;
    for (std::size_t n = 0; n < header.e_phnum; ++n) {
      ElfW(Phdr) segment{};
      char* const place = sContent.data() + header.e_phoff + n * sizeof segment;
      std::memcpy(&segment, place, sizeof segment);
      if (segment.p_type != PT_LOAD && segment.p_type != PT_DYNAMIC) continue;
      segment.*member = static_cast<ElfW(Off)>(value);
      std::memcpy(place, &segment, sizeof segment);
    }
    return Refusal(Written(sContent));
  };
  EXPECT_NE(with(&ElfW(Phdr)::p_offset, ~std::uint64_t{0}), "");
  EXPECT_NE(with(&ElfW(Phdr)::p_offset, m_sWhole.size()), "");
  EXPECT_NE(with(&ElfW(Phdr)::p_filesz, ~std::uint64_t{0}), "");
  EXPECT_NE(with(&ElfW(Phdr)::p_vaddr, std::uint64_t{1} << 40U), "");
  header.e_phoff = m_sWhole.size();
  std::string sContent = m_sWhole;
  std::memcpy(sContent.data(), &header, sizeof header);
  EXPECT_NE(Refusal(Written(sContent)), "");
}

TEST_F(LibraryFileTest, what_is_no_file_is_refused_without_waiting_for_it) {
  const fs::path pipe = m_folder / "pipe.so";
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  const std::string sSentence = "\" is no file; name the component's library.";
  EXPECT_EQ(Refusal(pipe), "The library \"" + pipe.string() + sSentence);
  EXPECT_THAT(Refusal(m_folder.Path()), HasSubstr(sSentence));
  EXPECT_THAT(Refusal("/dev/null"), HasSubstr(sSentence));
}

TEST_F(LibraryFileTest, what_is_no_library_at_all_is_left_to_the_loader) {
  EXPECT_EQ(Refusal(Written("#!/bin/sh\n")), "");
  EXPECT_EQ(Refusal(m_folder / "absent.so"), "");
}

}  // namespace
}  // namespace orvane::component
