/// \file
/// The commands of ffc. Each answers with the exit code of the program.
#pragma once

#include "tools/ffc/options.h"
#include "tools/ffc/report.h"

namespace ffc::tool {

EExitCode RunMake(const SOptions &stOptions, CReport &report);
EExitCode RunApply(const SOptions &stOptions, CReport &report);
EExitCode RunCheck(const SOptions &stOptions, CReport &report);
EExitCode RunInspect(const SOptions &stOptions, CReport &report);
EExitCode RunDefects(const SOptions &stOptions, CReport &report);
EExitCode RunLibrary(const SOptions &stOptions, CReport &report);
EExitCode RunConvert(const SOptions &stOptions, CReport &report);

/// Runs a command line.
/// \param listArguments without the program's name
/// \param bTerminal whether somebody looks at the error stream
int RunTool(const std::vector<std::string> &listArguments, bool bTerminal, std::ostream &output, std::ostream &errors);

} // namespace ffc::tool
