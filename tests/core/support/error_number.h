#pragma once
// The number of the runtime error a call raises, so that tables of bad inputs
// can state the expected error beside each input.

#include "support/runtime_error.h"

namespace cw::test {

// 0 when the call returns normally.
template <typename Call>
int ErrorNumberOf(Call&& call) {
  try {
    call();
  } catch (const RuntimeError& error) {
    return error.Number();
  }
  return 0;
}

}  // namespace cw::test
