#include <iostream>

#include "tools/ffc/commands.h"

namespace ffc::tool {
namespace {

int Run(const std::vector<std::string> &listArguments, bool bTerminal, std::ostream &output, std::ostream &errors)
{
  const SCommandLine stCommandLine = ParseCommandLine(listArguments);
  if (!stCommandLine.bRun) {
    (stCommandLine.nExitCode == EXIT_DONE ? output : errors << "ffc: ") << stCommandLine.strText << std::endl;
    return stCommandLine.nExitCode;
  }
  const SOptions &stOptions = stCommandLine.stOptions;
  CReport report({stOptions.bJson, stOptions.bQuiet, bTerminal}, output, errors);
  switch (stOptions.eCommand) {
  case ECommand::Make: return RunMake(stOptions, report);
  case ECommand::Apply: return RunApply(stOptions, report);
  case ECommand::Check: return RunCheck(stOptions, report);
  case ECommand::Inspect: return RunInspect(stOptions, report);
  case ECommand::Defects: return RunDefects(stOptions, report);
  case ECommand::Library: return RunLibrary(stOptions, report);
  default: return RunConvert(stOptions, report);
  }
}

} // namespace

int RunTool(const std::vector<std::string> &listArguments, bool bTerminal, std::ostream &output, std::ostream &errors)
{
  const int nExitCode = Run(listArguments, bTerminal, output, errors);
  output.flush();
  if (output.fail()) {
    errors << "ffc: the standard output cannot be written" << std::endl;
    return nExitCode == EXIT_DONE ? EXIT_SOME_FAILED : nExitCode;
  }
  return nExitCode;
}

} // namespace ffc::tool
