#include "console/look/image_list.h"

#include <gtest/gtest.h>

#include <array>

#include "tests/console/look/picture_fixture.h"
#include "tests/fakes/file_version.h"

namespace orvane::console {
namespace {

TEST(ImageListTest, each_button_image_is_the_drawing_of_its_button) {
  const ImageList images;
  constexpr std::array kDrawings = {
      "move-first", "move-last", "sort-ascending", "sort-descending", "cell-query",
      "delete",     "sql"};
  for (platform::Long l = 1; l <= 14; ++l) {
    const auto* sName = kDrawings[static_cast<std::size_t>((l - 1) / 2)];
    const auto expected = Drawing(sName);
    ASSERT_FALSE(expected.isNull()) << sName;
    EXPECT_EQ(Picture(images.Button(l)), expected) << l << " " << sName;
  }
  EXPECT_TRUE(images.Button(0).isNull());
  EXPECT_TRUE(images.Button(15).isNull());
  EXPECT_TRUE(images.Button(-1).isNull());
}

TEST(ImageListTest, each_number_of_a_later_console_is_a_button_of_its_own) {
  orvane::fakes::FakeFileVersion functions;
  functions.info = orvane::fakes::FakeFileVersion::Product(5, 1, 2600, 0);
  ASSERT_EQ(ImageList::ImagesAButton(&functions), 1);
  const ImageList older(2);
  const ImageList images(1);
  for (platform::Long l = 1; l <= 7; ++l) {
    EXPECT_EQ(Picture(images.Button(l)), Picture(older.Button(2 * l))) << l;
  }
  EXPECT_TRUE(images.Button(0).isNull());
  EXPECT_TRUE(images.Button(8).isNull());
}

TEST(ImageListTest, an_older_console_has_two_numbers_a_button_as_one_of_no_version_has) {
  orvane::fakes::FakeFileVersion functions;
  functions.info = orvane::fakes::FakeFileVersion::Product(1, 0, 0, 1);
  EXPECT_EQ(ImageList::ImagesAButton(&functions), 2);
  EXPECT_EQ(ImageList::ImagesAButton(nullptr), 2);
}

TEST(ImageListTest, each_folder_image_is_the_drawing_of_its_kind_and_a_failed_one_differs) {
  const ImageList images;
  constexpr std::array kDrawings = {"servers", "server",     "folder",  "table",
                                    "column",  "column-key", "catalog", "query"};
  for (platform::Long l = 1; l <= 8; ++l) {
    const auto expected = Drawing(kDrawings[static_cast<std::size_t>(l - 1)]);
    ASSERT_FALSE(expected.isNull());
    EXPECT_EQ(Picture(images.Folder(l)), expected) << l;
    EXPECT_GT(Differences(Picture(images.FailedFolder(l)), expected), 20) << l;
  }
  EXPECT_TRUE(images.Folder(0).isNull());
  EXPECT_TRUE(images.Folder(9).isNull());
  EXPECT_TRUE(images.FailedFolder(0).isNull());
  EXPECT_TRUE(images.FailedFolder(9).isNull());
}

TEST(ImageListTest, no_two_drawings_look_alike) {
  const ImageList images;
  for (platform::Long l = 1; l <= 14; l += 2) {
    for (platform::Long lOther = l + 2; lOther <= 14; lOther += 2) {
      EXPECT_NE(Picture(images.Button(l)), Picture(images.Button(lOther))) << l << " " << lOther;
    }
  }
  for (platform::Long l = 1; l <= 8; ++l) {
    for (platform::Long lOther = l + 1; lOther <= 8; ++lOther) {
      EXPECT_NE(Picture(images.Folder(l)), Picture(images.Folder(lOther))) << l << " " << lOther;
    }
  }
}

}  // namespace
}  // namespace orvane::console
