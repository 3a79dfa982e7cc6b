#include "forms/cursor_scope.h"

#include <QApplication>
#include <QCursor>
#include <algorithm>
#include <utility>
#include <vector>

namespace cw {

namespace {

// The wishes of the scopes alive, oldest first. The program holds at most one
// entry of Qt's own override stack and changes it to the newest wish, so that
// scopes ending out of order cannot pop another's pointer.
struct Wishes {
  std::vector<std::pair<std::uint64_t, Qt::CursorShape>> entries;
  std::uint64_t nextId = 1;
  bool overriding = false;

  void Apply() {
    if (entries.empty()) {
      if (overriding) QApplication::restoreOverrideCursor();
      overriding = false;
      return;
    }
    const Qt::CursorShape shape = entries.back().second;
    if (overriding) {
      QApplication::changeOverrideCursor(QCursor(shape));
    } else {
      QApplication::setOverrideCursor(QCursor(shape));
      overriding = true;
    }
  }
};

Wishes& TheWishes() {
  static Wishes wishes;
  return wishes;
}

}  // namespace

CursorScope::CursorScope(Qt::CursorShape shape) {
  Wishes& wishes = TheWishes();
  id_ = wishes.nextId++;
  wishes.entries.emplace_back(id_, shape);
  wishes.Apply();
}

CursorScope::~CursorScope() {
  Wishes& wishes = TheWishes();
  std::erase_if(wishes.entries, [this](const auto& entry) { return entry.first == id_; });
  wishes.Apply();
}

int CursorScope::Depth() { return static_cast<int>(TheWishes().entries.size()); }

}  // namespace cw
