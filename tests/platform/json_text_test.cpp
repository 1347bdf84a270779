#include "platform/json_text.h"

#include <gtest/gtest.h>

namespace orvane::platform {
namespace {

Text Json(std::string_view sText) {
  Text sJson = "x";
  AppendJsonString(sJson, sText);
  return sJson;
}

TEST(json_text, keeps_plain_texts_as_they_are) {
  EXPECT_EQ(Json(""), "x\"\"");
  EXPECT_EQ(Json("Kessel 1/2 'heiß' \x7F"), "x\"Kessel 1/2 'heiß' \x7F\"");
}

TEST(json_text, escapes_what_json_has_escaped_and_nothing_else) {
  EXPECT_EQ(Json("\"a\\b\""), R"(x"\"a\\b\"")");
  EXPECT_EQ(Json("\b\f\n\r\t"), R"(x"\b\f\n\r\t")");
  EXPECT_EQ(Json(std::string_view("\0\x01\x0B\x1F ", 5)), R"(x"\u0000\u0001\u000b\u001f ")");
}

}  // namespace
}  // namespace orvane::platform
