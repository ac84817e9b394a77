/// \file
/// The command line of the reference host.
#pragma once

#include <string>

#include "host/options/hostoptions.h"

namespace ffc::host {

struct SCommandLine {
  bool bRun = false; ///< false: print the text and leave with the code
  int nExitCode = 0;
  std::string strText;        ///< help or version with exit code 0, else one line that says what is wrong
  SHeadlessOptions stOptions; ///< camera and plug-in count in the window too
  STaskOptions stTask;
  SDialogPreset stPreset;
  std::string strNotInWindow; ///< the first of the options that belong to a run without a window; empty: none
};

SCommandLine ParseCommandLine(int nArguments, const char *const *pArguments);

} // namespace ffc::host
