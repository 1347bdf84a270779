#include "tools/orvane_historian/ending.h"

#include <gtest/gtest.h>

#include <new>
#include <sstream>
#include <stdexcept>

#include "tools/orvane_historian/generate.h"

namespace orvane::tools {
namespace {

// The status and the sentence.
template <class Work>
std::string EndOf(Work work) {
  std::ostringstream errors;
  const int nStatus = EndingTold(errors, work);
  return std::to_string(nStatus) + " " + errors.str();
}

TEST(ending, has_the_status_of_work_that_is_done) {
  EXPECT_EQ(EndOf([] { return 0; }), "0 ");
  EXPECT_EQ(EndOf([] { return 7; }), "7 ");
}

TEST(ending, tells_every_failure_in_a_sentence) {
  EXPECT_EQ(EndOf([]() -> int { throw platform::Failure(5, "Name another one."); }),
            "1 Name another one.\n");
  EXPECT_EQ(EndOf([]() -> int { throw NotGenerated(5, "It is another's."); }),
            "2 It is another's.\n");
  EXPECT_EQ(EndOf([]() -> int { throw std::runtime_error("no luck"); }),
            "1 orvane-historian broke off: no luck\n");
}

TEST(ending, tells_that_memory_ran_out) {
  const std::string sTold =
      "1 There is not enough memory for this; close other programs and try again.\n";
  EXPECT_EQ(EndOf([]() -> int { throw std::bad_alloc(); }), sTold);
  EXPECT_EQ(EndOf([]() -> int { throw std::length_error("vector"); }), sTold);
}

}  // namespace
}  // namespace orvane::tools
