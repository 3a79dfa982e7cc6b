#pragma once
// What the desktop program's own arguments ask for before any window opens:
// the usage or the version on standard output, a refusal of a history
// "number" that holds no digit (a mistyped option would otherwise become a
// report for it), or the run itself.
//
//   const DesktopCommand command = ReadDesktopCommand(QCoreApplication::arguments());
//   if (command.action == DesktopAction::kHelp) ...

#include <QString>
#include <QStringList>

namespace cw {

enum class DesktopAction { kRun, kHelp, kVersion, kRefuse };

struct DesktopCommand {
  DesktopAction action = DesktopAction::kRun;
  QString message;  // the refusal's reason
};

// arguments: the program's, its name first.
DesktopCommand ReadDesktopCommand(const QStringList& arguments);

// The text --help prints.
QString DesktopUsage(const QString& program);

}  // namespace cw
