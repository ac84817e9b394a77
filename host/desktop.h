/// \file
/// What the program stands on: a terminal, a display, or neither.
#pragma once

/// Whether the standard error stream is read by a person at a terminal.
bool IsErrorStreamTerminal();

/// Whether windows can be shown.
bool HasDisplay();
