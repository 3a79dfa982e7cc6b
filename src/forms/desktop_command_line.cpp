#include "forms/desktop_command_line.h"

#include <algorithm>
#include <string>

#include "settings/command_line.h"
#include "support/ansi_text.h"
#include "support/runtime_error.h"

namespace cw {

namespace {

bool HasDigit(const std::string& text) {
  return std::any_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

}  // namespace

DesktopCommand ReadDesktopCommand(const QStringList& arguments) {
  const QStringList given = arguments.mid(1);
  if (given.size() == 1 && (given[0] == QLatin1String("--help") || given[0] == QLatin1String("-h"))) {
    return {DesktopAction::kHelp, {}};
  }
  if (given.size() == 1 && given[0] == QLatin1String("--version")) return {DesktopAction::kVersion, {}};
  for (const QString& argument : given) {
    if (argument.startsWith(QLatin1String("--"))) {
      return {DesktopAction::kRefuse, QStringLiteral("unknown option %1 (--help lists what is understood)").arg(argument)};
    }
  }
  CommandLineChoice choice;
  try {
    choice = ResolveCommandLine(Utf8ToWin1252(given.join(QLatin1Char(' ')).toStdString()));
  } catch (const RuntimeError&) {
    // A bad window handle is the form's to report, in its error box.
    return {};
  }
  if (choice.historyMode && !HasDigit(choice.historyNumber)) {
    return {DesktopAction::kRefuse,
            QStringLiteral("\"%1\" is not a telephone number: it has no digit")
                .arg(QString::fromStdString(Win1252ToUtf8(choice.historyNumber)))};
  }
  return {};
}

QString DesktopUsage(const QString& program) {
  return QStringLiteral(
             "Usage: %1 [NUMBER | h=WINDOW[,NUMBER]]\n"
             "The call log reports of the office.\n"
             "\n"
             "  (nothing)          the report form\n"
             "  NUMBER             the history of that telephone number, then end\n"
             "  h=WINDOW[,NUMBER]  the form inside the logging program's window (an X11 window id)\n"
             "  --help             this text\n"
             "  --version          the program's version\n"
             "\n"
             "Settings are read from $CW_SETTINGS, else $XDG_CONFIG_HOME/callwarden-reports.\n")
      .arg(program);
}

}  // namespace cw
