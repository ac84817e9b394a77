/// \file
/// The terminal that the tool was started from.
#pragma once

#include <string>
#include <vector>

namespace ffc::tool {

bool IsErrorStreamTerminal();

/// The arguments behind the program's name, UTF-8.
std::vector<std::string> GetArguments(int nArguments, char **pArguments);

} // namespace ffc::tool
