#include "host/desktop.h"

#include <cstdlib>
#include <string>

#include <QByteArray>

#include <unistd.h>

namespace ffc::host {
namespace {

std::string GetVariable(const char *pName)
{
  const char *pValue = std::getenv(pName);
  return pValue == nullptr ? std::string() : std::string(pValue);
}

} // namespace

bool IsErrorStreamTerminal()
{
  return isatty(STDERR_FILENO) != 0;
}

bool HasDisplay()
{
  const std::string strPlatform = GetVariable("QT_QPA_PLATFORM");
  if (!strPlatform.empty()) {
    return strPlatform != "offscreen" && strPlatform != "minimal";
  }
  return !GetVariable("DISPLAY").empty() || !GetVariable("WAYLAND_DISPLAY").empty();
}

void PrepareOffScreen()
{
  qputenv("QT_QPA_PLATFORM", "offscreen");
}

} // namespace ffc::host
