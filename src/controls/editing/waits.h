// How work with many rows goes on while the window does: beside it on another thread, or on its own
// thread in slices. Lent by a grid's core, which has the host's way to wait; user-interface thread.
#pragma once

#include <functional>
#include <stop_token>

#include "platform/types.h"

namespace orvane::controls {

/// Has work done on another thread while the window tells of it, and returns when it is done;
/// passes on what it throws.
using Beside = std::function<void(const std::function<void(std::stop_token)>& work)>;

/// Calls the slice until it gives true, and lets the window go on between two calls, with a way to
/// cancel. False where it was cancelled before; passes on what the slice throws. The grid may be
/// gone afterwards.
using Slices = std::function<bool(const platform::Text& sWhat, const std::function<bool()>& slice)>;

/// As many rows or cells are worked at in one slice; fewer are not sliced at all.
inline constexpr std::size_t kInSlice = 2'000;

/// Where rows are carried from one recordset to another; without them it is done at once.
struct Waits {
  Beside beside;
  Slices slices;
};

}  // namespace orvane::controls
