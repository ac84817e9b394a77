/// \file
/// The command line of ffc.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "frames/alignment.h"
#include "frames/rawfile.h"
#include "quality/defects.h"

namespace ffc::tool {

enum class ECommand { Make, Apply, Check, Inspect, Convert, Defects, Library };

/// What is known of the camera and stands in no file; kept in the side file.
struct SOrigin {
  std::string strCamera;
  std::string strSerial;
  std::optional<double> dExposureTime; ///< microseconds
  std::optional<double> dGain;
  std::optional<double> dBlackLevel;
  std::optional<double> dTemperature; ///< degrees Celsius
};

struct SOptions {
  ECommand eCommand = ECommand::Apply;
  std::string strFlat;
  std::vector<std::string> listFrames; ///< files, folders, patterns
  std::vector<std::string> listDark;
  std::vector<std::string> listBright;
  std::string strFilesFrom;
  std::string strOut; ///< file or folder
  std::string strTo;  ///< ending of converted files
  std::string strPlot;
  std::string strPixelFormat;
  std::optional<frames::EAlignment> eAlignment;
  std::optional<frames::CRawFile> raw;
  std::optional<uint32_t> nExpectGray;
  bool bWeighted = true;             ///< how bright frames become a reference; else they are averaged as in the dialog
  std::optional<double> dSystemGain; ///< of the camera, DN per electron
  std::optional<double> dDarkNoise;  ///< of the camera, DN
  SOrigin stOrigin;
  std::string strDefects; ///< list of pixels to replace
  std::string strMap;     ///< map of defect pixels to write
  quality::SDefectLimits stDefectLimits;
  std::string strLibrary; ///< folder of flats
  std::string strLimits;
  std::string strHighPass = "release4";
  std::string strDetails; ///< folder for histograms and spectrograms
  uint32_t nThreads = 1;
  uint32_t nShard = 1; ///< of nShards, from 1
  uint32_t nShards = 1;
  bool bLevels = false; ///< whether the frames of a check are of several exposures
  bool bInPlace = false;
  bool bForce = false;
  bool bResume = false;
  bool bDryRun = false;
  bool bJson = false;
  bool bQuiet = false;
};

struct SCommandLine {
  bool bRun = false; ///< whether there is something to do; else strText is to be printed
  int nExitCode = 0;
  std::string strText;
  SOptions stOptions;
};

/// \param listArguments without the program's name
SCommandLine ParseCommandLine(const std::vector<std::string> &listArguments);

} // namespace ffc::tool
