// What came of sending rows of a grid. Between the editing, which shows it, and the grid's core,
// which has the connection.
#pragma once

#include <QString>
#include <optional>

#include "controls/statements/row_changes.h"

namespace orvane::controls {

/// What the server said; without an answer what stood against it.
template <class Answer>
struct Reply {
  std::optional<Answer> answer = {};
  QString sWhyNot = {};     ///< one sentence with what failed
  bool bBusy = false;       ///< nothing was sent, as the grid was at work: send it again after that
  bool bCancelled = false;  ///< the user waits no more
  bool bLost = false;       ///< the server cannot be reached any more
};

using Sent = Reply<SentRow>;
using SentDeletion = Reply<DeletedRows>;

}  // namespace orvane::controls
