#include "data/get_record.h"

#include "support/runtime_error.h"

namespace cw::detail {

// Out of line: the check is made on every call and almost never fails.
void ThrowLogTooLong() { throw RuntimeError(err::kOverflow); }

}  // namespace cw::detail
