/// \file
/// What a user asked for, by who needs it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "camera/correctionmode.h"
#include "frames/alignment.h"
#include "quality/limits.h"

namespace ffc::host {

/// Which camera, and how it is set up.
struct SCameraOptions {
  std::string strReplayFolder;                  ///< of recorded frames; empty: none
  std::string strCameraId;                      ///< of a real camera: id, IP address or serial number; empty: none
  std::string strPixelFormat;                   ///< PFNC name; empty: the camera's own choice
  std::optional<frames::EAlignment> eAlignment; ///< of recorded samples of 16 bits; none: as their values are
  uint32_t nWidth = 2048;                       ///< pixels, simulated camera only, as all that follows
  uint32_t nHeight = 1536;
  uint64_t nSeed = 1;
  camera::ECorrectionMode eMode = camera::ECorrectionMode::None; ///< its own correction
  std::string strFlashFile;                                      ///< empty: a flash that nobody keeps
  uint32_t nBlockSize = 0; ///< of its coefficients, pixels; 0: the camera's own choice
};

/// Which plug-in.
struct SPluginOptions {
  std::string strModule; ///< path; empty: the one beside the executable
  bool bChinese = false; ///< language of the dialog
};

/// How the workflow runs without a person.
struct SWorkflowOptions {
  int nFrames = 16;     ///< bright frames averaged: 1, 2, 4, 8 or 16
  int nExpectGray = -1; ///< 0 to 255; -1: what the bright frames suggest
  int nSaveFrames = 1;  ///< pairs of fresh raw and corrected frames
  std::string strOutFolder = "out";
  quality::SLimits stLimits; ///< figures that pass
  bool bWait = true;         ///< for somebody who covers a real camera's lens; else dDarkDelay long for a shutter
  double dDarkDelay = 0;     ///< seconds
};

/// Which frames are kept, and how.
struct SRecordingOptions {
  uint32_t nFrames = 0;          ///< 0: nothing is recorded
  std::string strFormat = "tif"; ///< tif, png, fits or ser
  std::string strCoefficients;   ///< .ffc file that the frames are corrected with; empty: as they come
  bool bStopOnLoss = false;      ///< stop at the first frame that is lost
};

/// What the window sets in the plug-in's dialog, because the user has asked for it.
struct SDialogPreset {
  int nFrames = 0;      ///< bright frames averaged; 0: as the dialog comes
  int nExpectGray = -1; ///< 0 to 255; -1: as the dialog comes
};

/// All that a run without a person needs.
struct SHeadlessOptions {
  SCameraOptions stCamera;
  SPluginOptions stPlugin;
  SWorkflowOptions stWorkflow;
  SRecordingOptions stRecording;
};

/// What the program is to do, instead of showing its window.
struct STaskOptions {
  bool bHeadless = false;        ///< the workflow without a person
  bool bRestoreSettings = false; ///< load "UserSet0", print what changed and exit
  bool bListCameras = false;     ///< print the real cameras that answer, and exit
  bool bVerbose = false;         ///< with what is special about the features of each
  std::string strScreenshots;    ///< folder for pictures of the workflow in the window; empty: none
};

} // namespace ffc::host
