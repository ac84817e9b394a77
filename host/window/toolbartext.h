/// \file
/// Texts of menu entries where no key belongs to them.
#pragma once

#include <QString>

namespace ffc::host {

/// A menu entry's text for a tool bar: without the letter of its key, which some languages have behind the text in
/// brackets, and without the dots of a question.
QString GetToolBarText(const QString &strMenuText);

} // namespace ffc::host
