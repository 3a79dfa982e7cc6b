#pragma once
// The mouse pointer over every window of the program. Whoever wants a pointer
// for a while (the hourglass while a report or a page is drawn, the arrow
// while a box or the preview waits for the user) holds a CursorScope; the
// pointer shown is the one wanted last by a scope still alive. A scope may end
// out of order (a report request that ends while its preview still waits): it
// only takes its own wish away, never another's, so the pointer is the arrow
// again once nothing is working.
//
//   {
//     CursorScope busy(Qt::WaitCursor);
//     DrawPage();
//   }  // the pointer is back to what it was

#include <Qt>
#include <cstdint>

namespace cw {

class CursorScope {
 public:
  explicit CursorScope(Qt::CursorShape shape);
  ~CursorScope();
  CursorScope(const CursorScope&) = delete;
  CursorScope& operator=(const CursorScope&) = delete;

  // How many scopes are alive (for tests: 0 when nothing holds the pointer).
  static int Depth();

 private:
  std::uint64_t id_;
};

}  // namespace cw
