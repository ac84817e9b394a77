/// \file
/// What goes wrong below the host, in the language of the program.
#pragma once

#include <string>

#include <QString>

namespace ffc::host {

/// The folders below the host have English texts only. Those that are known are translated, with the names and numbers
/// in them; any other is shown as it is. Begins with a capital.
QString TranslateError(const std::string &strError);
QString TranslateError(const QString &strError);

} // namespace ffc::host
