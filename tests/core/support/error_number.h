#pragma once
// The runtime error a call raises, so that tables of bad inputs can state the
// expected error beside each input.

#include <string>

#include "support/runtime_error.h"

namespace cw::test {

// The number (0 when the call returns normally), the description and the
// record being processed of the error a call raises.
struct RaisedError {
  int number = 0;
  std::string description;
  std::string processing;
};

template <typename Call>
RaisedError ErrorOf(Call&& call) {
  try {
    call();
  } catch (const RuntimeError& error) {
    return {error.Number(), std::string(error.Description()), std::string(error.Processing())};
  }
  return {};
}

// 0 when the call returns normally.
template <typename Call>
int ErrorNumberOf(Call&& call) {
  return ErrorOf(call).number;
}

// What a call gives, as text, or "error N" for the runtime error it raises.
template <typename Call>
std::string OutcomeText(Call&& call) {
  try {
    return call();
  } catch (const RuntimeError& error) {
    return "error " + std::to_string(error.Number());
  }
}

}  // namespace cw::test
