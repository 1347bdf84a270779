#include "exports/aligned_text.h"

#include <gtest/gtest.h>

#include "ado/recordset_builder.h"
#include "exports/aligned_lines.h"

namespace orvane::exports {
namespace {

using platform::Text;
using platform::Value;

TEST(AlignedText, has_names_a_line_beneath_them_and_numbers_at_the_right) {
  ado::RecordsetBuilder builder(
      {{"name", platform::DataType::WChar}, {"n", platform::DataType::Integer}});
  builder.AppendRow({"K\xC3\xB6ln", platform::Long{7}});
  builder.AppendRow({"a\nb", platform::Null{}});
  const auto rs = builder.Finish();
  const auto writer = MakeAlignedText(zones::TimeZone::Utc());
  Text sOut;
  writer->Begin(*rs, AllColumns(*rs), sOut);
  for (platform::RowIndex row = 0; row < rs->RecordCount(); ++row) writer->Row(*rs, row, sOut);
  writer->End(sOut);
  EXPECT_EQ(sOut,
            "name     n\n"
            "----     -\n"
            "K\xC3\xB6ln     7\n"
            "a\\nb  NULL\n");
}

TEST(AlignedLines, keep_back_no_more_than_tells_the_widths) {
  AlignedLines lines({false, true});
  Text sOut;
  int nLines = 0;
  while (sOut.empty() && nLines < 100'000) {
    lines.Add({"x", "1"}, sOut);
    ++nLines;
  }
  EXPECT_EQ(nLines, 1000);
  sOut.clear();
  lines.Add({"wider than all before", "12"}, sOut);
  lines.End(sOut);
  EXPECT_EQ(sOut, "wider than all before  12\n");
}

}  // namespace
}  // namespace orvane::exports
