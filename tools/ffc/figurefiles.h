/// \file
/// Histograms and spectrograms of a check, as files for other programs.
#pragma once

#include "tools/ffc/framestacks.h"

namespace ffc::tool {

/// Writes "histograms.csv" and "spectrograms.csv" into a folder, which is made where it is missing: by state (before
/// or after), figure (DSNU or PRNU) and channel, with and without the high-pass.
Result<> WriteFigureFiles(const QString &strFolder, const SStacks &stBright, const SStacks &stDark,
                          genapi::EColorLayout eColors);

} // namespace ffc::tool
