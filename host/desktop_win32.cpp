#include "host/desktop.h"

#include <cstdio>

#include <io.h>

bool IsErrorStreamTerminal()
{
  return _isatty(_fileno(stderr)) != 0;
}

bool HasDisplay()
{
  return true;
}
