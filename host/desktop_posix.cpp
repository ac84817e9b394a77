#include "host/desktop.h"

#include <QByteArray>

#include <unistd.h>

namespace ffc::host {
namespace {

bool IsSet(const char *pName)
{
  return !qEnvironmentVariableIsEmpty(pName);
}

} // namespace

bool IsErrorStreamTerminal()
{
  return isatty(STDERR_FILENO) != 0;
}

bool HasDisplay()
{
  if (IsSet("QT_QPA_PLATFORM")) {
    const QByteArray bytePlatform = qgetenv("QT_QPA_PLATFORM");
    return bytePlatform != "offscreen" && bytePlatform != "minimal";
  }
  return IsSet("DISPLAY") || IsSet("WAYLAND_DISPLAY");
}

void PrepareOffScreen()
{
  qputenv("QT_QPA_PLATFORM", "offscreen");
}

} // namespace ffc::host
