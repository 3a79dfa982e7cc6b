#pragma once
// The error for an output file that could not be written: 76 when its
// folder does not exist, else 75 with the system's reason.

#include <QString>
#include <string>

#include "support/runtime_error.h"

namespace cw {

RuntimeError OutputFileError(const QString& path, const std::string& what, const QString& reason);

}  // namespace cw
