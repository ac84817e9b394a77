#include "host/desktop.h"

#include <cstdio>

#include <QFont>

#include <io.h>

namespace ffc::host {

bool IsErrorStreamTerminal()
{
  return _isatty(_fileno(stderr)) != 0;
}

bool HasDisplay()
{
  return true;
}

void PrepareOffScreen()
{
  qputenv("QT_QPA_PLATFORM", "offscreen");
  // That platform looks for font files in a folder of the toolkit's, and asks for a font that this system has not.
  if (!qEnvironmentVariableIsSet("QT_QPA_FONTDIR")) {
    qputenv("QT_QPA_FONTDIR", qgetenv("WINDIR") + "/Fonts");
  }
  QFont::insertSubstitutions(QStringLiteral("Helvetica"),
                             {QStringLiteral("Segoe UI"), QStringLiteral("Tahoma"), QStringLiteral("DejaVu Sans")});
}

} // namespace ffc::host
