/// \file
/// Whether the program has a terminal or a display.
#pragma once

namespace ffc::host {

/// Whether the standard error stream is read by a person at a terminal.
bool IsErrorStreamTerminal();

/// Whether windows can be shown.
bool HasDisplay();

/// Makes the toolkit draw off screen, with the system's fonts. Called before the application is made.
void PrepareOffScreen();

} // namespace ffc::host
