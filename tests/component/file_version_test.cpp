#include "component/file_version.h"

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <cstring>
#include <string>

#include "tests/component/temporary_folder.h"

namespace orvane::component {
namespace {

using platform::FixedFileInfo;
using test::Fixture;

class FileVersionTest : public testing::Test {
 protected:
  std::string ModulePath(platform::ModuleHandle module) {
    std::array<char, 4096> buffer{};
    const auto nLength = m_version.GetModuleFileNameA(module, buffer.data(), buffer.size());
    EXPECT_EQ(nLength, std::strlen(buffer.data()));
    return buffer.data();
  }

  FixedFileInfo InfoOf(const std::string& sPath) {
    FixedFileInfo info{};
    EXPECT_EQ(m_version.GetFileVersionInfoSizeA(sPath.c_str()), sizeof info) << sPath;
    std::array<std::byte, sizeof info> block{};
    EXPECT_TRUE(m_version.GetFileVersionInfoA(sPath.c_str(), block.size(), block.data()));
    const void* value = nullptr;
    std::uint32_t dwLength = 0;
    EXPECT_TRUE(m_version.VerQueryValueA(block.data(), block.size(), "\\", &value, &dwLength));
    EXPECT_EQ(dwLength, sizeof info);
    if (value != nullptr) m_version.RtlMoveMemory(&info, value, sizeof info);
    return info;
  }

  FileVersion m_version;
};

TEST_F(FileVersionTest, no_name_is_the_main_executable) {
  const auto module = m_version.GetModuleHandleA(nullptr);
  ASSERT_NE(module, nullptr);
  EXPECT_EQ(ModulePath(module), std::filesystem::canonical("/proc/self/exe"));
  EXPECT_EQ(ModulePath(nullptr), ModulePath(module));
  EXPECT_EQ(m_version.GetModuleHandleA("component_tests"), module);
}

TEST_F(FileVersionTest, a_loaded_library_is_found_by_path_file_name_and_bare_name) {
  const auto library = Fixture("good");
  EXPECT_EQ(m_version.GetModuleHandleA("fixture_good"), nullptr);
  void* const handle = dlopen(library.c_str(), RTLD_NOW | RTLD_LOCAL);
  ASSERT_NE(handle, nullptr);
  const auto module = m_version.GetModuleHandleA("fixture_good");
  EXPECT_NE(module, nullptr);
  EXPECT_NE(module, m_version.GetModuleHandleA(nullptr));
  EXPECT_EQ(m_version.GetModuleHandleA("libfixture_good.so"), module);
  EXPECT_EQ(m_version.GetModuleHandleA(library.c_str()), module);
  EXPECT_EQ(ModulePath(module), library);
  dlclose(handle);
  std::array<char, 16> buffer{'x'};
  EXPECT_EQ(m_version.GetModuleFileNameA(module, buffer.data(), buffer.size()), 0U);
  EXPECT_EQ(buffer[0], '\0');
}

TEST_F(FileVersionTest, what_is_not_loaded_has_no_handle) {
  EXPECT_EQ(m_version.GetModuleHandleA("nothing of that name"), nullptr);
  EXPECT_EQ(m_version.GetModuleHandleA(""), nullptr);
}

TEST_F(FileVersionTest, a_path_is_cut_to_the_buffer) {
  const std::string sPath = ModulePath(nullptr);
  std::array<char, 9> buffer{};
  buffer.back() = '#';
  EXPECT_EQ(m_version.GetModuleFileNameA(nullptr, buffer.data(), 8), 7U);
  EXPECT_EQ(std::string(buffer.data()), sPath.substr(0, 7));
  EXPECT_EQ(buffer.back(), '#');
  EXPECT_EQ(m_version.GetModuleFileNameA(nullptr, buffer.data(), 0), 0U);
  EXPECT_EQ(m_version.GetModuleFileNameA(nullptr, nullptr, 8), 0U);
}

TEST_F(FileVersionTest, the_running_executable_tells_its_product_version) {
  const auto info = InfoOf(ModulePath(m_version.GetModuleHandleA(nullptr)));
  EXPECT_EQ(info.dwProductVersionMS, (5U << 16U) | 1U);
  EXPECT_EQ(info.dwProductVersionLS, (2600U << 16U) | 7U);
  EXPECT_EQ(info.dwFileVersionMS, info.dwProductVersionMS);
  EXPECT_EQ(info.dwFileVersionLS, info.dwProductVersionLS);
}

TEST_F(FileVersionTest, a_component_version_of_three_numbers_ends_in_the_revision) {
  const auto info = InfoOf(Fixture("good"));
  EXPECT_EQ(info.dwProductVersionMS, (1U << 16U) | 0U);
  EXPECT_EQ(info.dwProductVersionLS, (0U << 16U) | 1U);
}

TEST_F(FileVersionTest, a_stripped_library_keeps_its_version) {
  const test::TemporaryFolder folder;
  const auto stripped = folder / "stripped.so";
  const std::string sCommand =
      "strip --strip-all -o '" + stripped.string() + "' '" + Fixture("good").string() + "'";
  ASSERT_EQ(std::system(sCommand.c_str()), 0);
  EXPECT_EQ(InfoOf(stripped).dwProductVersionLS, 1U);
}

TEST_F(FileVersionTest, a_file_without_a_version_has_no_block) {
  std::array<std::byte, 52> block{};
  for (const char* const sPath : {"/bin/sh", "/nowhere", "/", "", "/proc/self/mem"}) {
    EXPECT_EQ(m_version.GetFileVersionInfoSizeA(sPath), 0U) << sPath;
    EXPECT_FALSE(m_version.GetFileVersionInfoA(sPath, block.size(), block.data())) << sPath;
  }
  EXPECT_EQ(m_version.GetFileVersionInfoSizeA(nullptr), 0U);
  EXPECT_FALSE(m_version.GetFileVersionInfoA(nullptr, block.size(), block.data()));
  EXPECT_FALSE(m_version.GetFileVersionInfoA(Fixture("good").c_str(), block.size(), nullptr));
}

TEST_F(FileVersionTest, at_most_the_asked_bytes_of_a_block_are_copied) {
  std::array<unsigned char, 52> block{};
  EXPECT_TRUE(m_version.GetFileVersionInfoA(Fixture("good").c_str(), 4, block.data()));
  EXPECT_EQ(block[0], 0xBD);
  EXPECT_EQ(block[3], 0xFE);
  EXPECT_EQ(block[6], 0);
}

TEST_F(FileVersionTest, only_a_whole_signed_block_has_a_root_value) {
  FixedFileInfo info{};
  info.dwSignature = platform::kFixedFileInfoSignature;
  const void* value = nullptr;
  std::uint32_t dwLength = 0;
  const auto query = [&](const void* block, std::uint32_t dwSize, const char* sSubBlock) {
    return m_version.VerQueryValueA(block, dwSize, sSubBlock, &value, &dwLength);
  };
  EXPECT_FALSE(query(&info, 51, "\\"));
  EXPECT_FALSE(query(nullptr, 52, "\\"));
  EXPECT_FALSE(query(&info, 52, nullptr));
  EXPECT_FALSE(query(&info, 52, "\\StringFileInfo"));
  EXPECT_FALSE(query(&info, 52, ""));
  EXPECT_FALSE(m_version.VerQueryValueA(&info, 52, "\\", nullptr, &dwLength));
  EXPECT_FALSE(m_version.VerQueryValueA(&info, 52, "\\", &value, nullptr));
  EXPECT_EQ(value, nullptr);
  EXPECT_TRUE(query(&info, 52, "\\"));
  EXPECT_EQ(value, &info);
  EXPECT_EQ(dwLength, 52U);
  info.dwSignature = 1;
  EXPECT_FALSE(query(&info, 52, "\\"));
}

TEST_F(FileVersionTest, moved_ranges_may_overlap) {
  char text[] = "abcdef";
  m_version.RtlMoveMemory(text + 1, text, 4);
  EXPECT_STREQ(text, "aabcdf");
  m_version.RtlMoveMemory(nullptr, nullptr, 0);
}

}  // namespace
}  // namespace orvane::component
