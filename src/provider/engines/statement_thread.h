// Runs a statement so that whoever waits for it gets an answer although the engine does not hear
// that it is to end, as in one function over a very long text, or on a disk that does not answer.
// Used by engines that are such, on the thread of the call; the statement has a thread of its own.
#pragma once

#include <chrono>
#include <memory>
#include <optional>

#include "provider/engines/file_engine.h"

namespace orvane::provider::engines {

/// What the statement gives or fails with. None when its stop was requested and it did not end
/// within the patience from then: it is left to end by itself and changes nothing, and the session
/// is its own, not to be used again, and the receiver of its rows gets no more. A change that is
/// being made for good is waited for, since only its end tells what happened.
std::optional<EngineResult> RunPatiently(std::shared_ptr<FileSession> session,
                                         EngineStatement statement, std::stop_token stop,
                                         std::chrono::milliseconds patience);

}  // namespace orvane::provider::engines
