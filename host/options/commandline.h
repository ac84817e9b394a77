/// \file
/// The command line of the reference host.
#pragma once

#include <cstdint>
#include <string>

#include "camera/selfcorrection/correctionmode.h"

namespace ffc::host {

/// What the user asked for.
struct SHostOptions {
  bool bHeadless = false;
  bool bRestoreSettings = false; ///< load "UserSet0", say what changed and leave
  bool bListCameras = false;     ///< print the real cameras that answer, and leave
  std::string strPlugin;         ///< path of the module; empty: the one beside the executable
  std::string strReplayFolder;   ///< of recorded frames; empty: none
  std::string strCameraId;       ///< of a real camera: id, IP address or serial number; empty: none
  std::string strPixelFormat;    ///< PFNC name; empty: the camera's own choice
  uint32_t nWidth = 2048;        ///< pixels, simulated camera only
  uint32_t nHeight = 1536;
  int nFrames = 16;                              ///< bright frames averaged: 1, 2, 4, 8 or 16
  int nExpectGray = -1;                          ///< 0 to 255; -1: what the bright frames suggest
  uint64_t nSeed = 1;                            ///< of the simulated camera
  ECorrectionMode eMode = ECorrectionMode::None; ///< the simulated camera's own correction
  std::string strFlashFile;                      ///< that camera's flash; empty: one that nobody keeps
  uint32_t nBlockSize = 0;                       ///< of its coefficients, pixels; 0: the camera's own choice
  bool bChinese = false;
  std::string strOutFolder = "out";
  std::string strTourFolder; ///< pictures of the window's story go there; empty: no tour
  int nSaveFrames = 1;       ///< pairs of fresh raw and corrected frames
};

struct SCommandLine {
  bool bRun = false; ///< false: print the text and leave with the code
  int nExitCode = 0;
  std::string strText; ///< help or version with exit code 0, else one line that says what is wrong
  SHostOptions stOptions;
};

SCommandLine ParseCommandLine(int nArguments, const char *const *pArguments);

} // namespace ffc::host
