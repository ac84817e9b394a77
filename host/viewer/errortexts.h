/// \file
/// What goes wrong below the host, in the language of the program.
#pragma once

#include <string>

#include <QString>

namespace ffc::host {

/// The rooms below know no language but English: a text that they are known to give is translated, with what it says of
/// files and numbers; any other is shown as it is. Begins with a capital.
QString TranslateError(const std::string &strError);
QString TranslateError(const QString &strError);

} // namespace ffc::host
