#include <unistd.h>

#include "tools/ffc/terminal.h"

namespace ffc::tool {

bool IsErrorStreamTerminal()
{
  return isatty(STDERR_FILENO) != 0;
}

std::vector<std::string> GetArguments(int nArguments, char **pArguments)
{
  return {pArguments + (nArguments > 0 ? 1 : 0), pArguments + nArguments};
}

} // namespace ffc::tool
