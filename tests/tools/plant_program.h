// The program orvane on an embedded historian with the tables of a plant, and rows of a day that is
// over.
#pragma once

#include "tests/tools/orvane_program.h"

namespace orvane::tools {

class PlantProgram : public OrvaneProgram {
 protected:
  PlantProgram() {
    component::RegisterLibrary(ORVANE_PROVIDER, m_folder / "data/orvane/components");
    WriteSample("Plant.orvc");
    Write("rows.csv",
          "Tag,Timestamp,Value,Status\n"
          "T1,2024-05-31 10:00:00,1.5,Good\n"
          "T1,2024-05-31 10:00:01,,\"Bad, \"\"really\"\"\"\n"
          "T2,2024-05-31 10:00:02,-7,\"two\nlines\"\n");
    const auto made = Shell(
        Text("orvane_historian() { '" ORVANE_HISTORIAN "' \"$@\"; }; orvane_historian generate "
             "--hours 1 --step 3600 && orvane_historian import rows.csv --catalog Plant1 --table "
             "Data --time-zone UTC"));
    EXPECT_EQ(made.nStatus, 0) << made.sErrors;
  }

  static constexpr const char* kThatDay = " --from '2024-05-31' --to '2024-06-01'";

  Ended Rows(const Text& sArguments) const {
    return Orvane("rows Plant.orvc localhost/Plant1/Data" + Text(kThatDay) + sArguments);
  }
};

}  // namespace orvane::tools
