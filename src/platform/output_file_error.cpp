#include "platform/output_file_error.h"

#include <QDir>
#include <QFileInfo>

namespace cw {

RuntimeError OutputFileError(const QString& path, const std::string& what, const QString& reason) {
  const std::string text = what + " \"" + path.toStdString() + "\": " + reason.toStdString();
  if (!QFileInfo(path).absoluteDir().exists()) return RuntimeError(err::kPathNotFound, text);
  return RuntimeError(err::kPathFileAccess, text);
}

}  // namespace cw
