// Lays aside the mouse pointer shapes that were set for the whole program, and lays them back: over
// a dialog the hourglass would say "wait" where the user is asked to act. User-interface thread.
#pragma once

#include <QCursor>
#include <vector>

namespace orvane::console {

class PointerRest {
 public:
  PointerRest();
  PointerRest(const PointerRest&) = delete;
  PointerRest& operator=(const PointerRest&) = delete;
  ~PointerRest();

 private:
  std::vector<QCursor> m_shapes;
};

}  // namespace orvane::console
