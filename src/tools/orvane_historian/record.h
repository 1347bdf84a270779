// orvane-historian record: this machine's counters into a catalog, once a second.
// Run by the program alone, until it is told to stop.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>

#include "tools/orvane_historian/opened_catalog.h"

namespace orvane::tools {

struct RecordOrder {
  platform::Text sCatalog;
  std::int64_t llCount = 0;     ///< so many samples; 0 goes on until a signal
  std::chrono::seconds keep{};  ///< older rows of the counters go away; 0 keeps all
  std::filesystem::path proc = "/proc";
  std::function<void()> waits;  ///< called once when another recorder is waited for
};

/// Records until the count is reached or SIGTERM or SIGINT comes; gives the number of samples. No
/// sample is lost while another program holds a lock: it waits in memory for the next second. While
/// another recorder is at work on the catalog, one without a count waits until that ends and takes
/// over; one with a count fails. When the catalog's file is removed or replaced it says so and goes
/// on in the one that the catalog has then; it fails when there is none.
std::int64_t Record(const ServerPlace& place, const RecordOrder& order);

}  // namespace orvane::tools
