#include "host/options/commandline.h"

#include <algorithm>
#include <cctype>
#include <utility>

#include <CLI/CLI.hpp>

#include "camera/correctionmode.h"
#include "camera/realcameras.h"
#include "genapi/sensorformat.h"
#include "host/viewer/viewer.h"
#include "platform/result.h"

namespace ffc::host {

using camera::AreRealCamerasSupported;
using camera::ECorrectionMode;
using genapi::FindSensorFormat;

namespace {

constexpr int EXIT_USAGE = 2;
constexpr uint32_t MIN_SIDE = 64;
constexpr uint32_t MAX_SIDE = 16384;
constexpr uint32_t MAX_RECORDED = 1000000000;
constexpr uint64_t MAX_SEED = 999999999999999999;
const std::string REPLAY_PREFIX = "replay:";

/// Whether a text is a whole number, without sign, that surely fits 64 bits.
bool IsWholeNumber(const std::string &strNumber)
{
  return !strNumber.empty() && strNumber.size() <= 18 &&
         std::all_of(strNumber.begin(), strNumber.end(), [](unsigned char c) { return std::isdigit(c) != 0; });
}

std::string ParseSide(const std::string &strSide, uint32_t &nSide)
{
  if (!IsWholeNumber(strSide)) {
    return "write it as WIDTHxHEIGHT, such as 2048x1536";
  }
  nSide = static_cast<uint32_t>(std::min<uint64_t>(std::stoull(strSide), MAX_SIDE + 1));
  if (nSide < MIN_SIDE || nSide > MAX_SIDE || nSide % 2 != 0) {
    return "width and height are even numbers from 64 to 16384";
  }
  return {};
}

std::string ParseSize(const std::string &strSize, SCameraOptions &stCamera)
{
  const std::size_t nCross = strSize.find('x');
  if (nCross == std::string::npos) {
    return "write it as WIDTHxHEIGHT, such as 2048x1536";
  }
  const std::string strError = ParseSide(strSize.substr(0, nCross), stCamera.nWidth);
  return strError.empty() ? ParseSide(strSize.substr(nCross + 1), stCamera.nHeight) : strError;
}

std::string ParseCamera(const std::string &strCamera, SCameraOptions &stCamera)
{
  stCamera.strReplayFolder.clear();
  stCamera.strCameraId.clear();
  if (strCamera == "simulated") {
    return {};
  }
  const bool bReplay = strCamera.compare(0, REPLAY_PREFIX.size(), REPLAY_PREFIX) == 0;
  if (bReplay && strCamera.size() > REPLAY_PREFIX.size()) {
    stCamera.strReplayFolder = strCamera.substr(REPLAY_PREFIX.size());
    return {};
  }
  if (bReplay || strCamera.empty() || !AreRealCamerasSupported()) {
    return "'" + strCamera + "' is neither simulated nor replay:DIR";
  }
  stCamera.strCameraId = strCamera;
  return {};
}

/// A real camera has formats of its own.
Result<> CheckPixelFormat(const SCameraOptions &stCamera)
{
  const bool bKnown = stCamera.strPixelFormat.empty() || FindSensorFormat(stCamera.strPixelFormat) != nullptr;
  return bKnown || !stCamera.strCameraId.empty()
           ? Result<>()
           : Failure("--pixel-format: '" + stCamera.strPixelFormat +
                     "' is none of Mono8, 10, 12, 14, 16 and BayerRG, GB, GR, BG with 8, 10, 12, 16");
}

std::string CheckFrames(const std::string &strFrames)
{
  const bool bKnown = strFrames == "1" || strFrames == "2" || strFrames == "4" || strFrames == "8" || strFrames == "16";
  return bKnown ? std::string() : "'" + strFrames + "' is none of 1, 2, 4, 8 and 16";
}

std::string CheckLanguage(const std::string &strLanguage)
{
  return strLanguage == "en" || strLanguage == "zh" ? std::string() : "'" + strLanguage + "' is neither en nor zh";
}

std::string ParseMode(const std::string &strMode, SCameraOptions &stCamera)
{
  const std::optional<ECorrectionMode> eMode = camera::FindMode(strMode);
  stCamera.eMode = eMode.value_or(stCamera.eMode);
  return eMode ? std::string() : "'" + strMode + "' is none of none, flatfield, vignetting and unknown";
}

std::string ParseBlockSize(const std::string &strSize, SCameraOptions &stCamera)
{
  for (const uint32_t nSize : {16U, 32U, 64U, 128U}) {
    if (strSize == std::to_string(nSize)) {
      stCamera.nBlockSize = nSize;
      return {};
    }
  }
  return "'" + strSize + "' is none of 16, 32, 64 and 128";
}

bool IsBlockSizeOf(ECorrectionMode eMode, uint32_t nBlockSize)
{
  return nBlockSize > 32 ? eMode == ECorrectionMode::Vignetting : eMode == ECorrectionMode::FlatField;
}

std::string CheckNumber(const std::string &strNumber, uint64_t nMax)
{
  return IsWholeNumber(strNumber) && std::stoull(strNumber) <= nMax
           ? std::string()
           : "'" + strNumber + "' is no whole number from 0 to " + std::to_string(nMax);
}

/// The words behind the options that are not stored as they are typed.
struct SWords {
  std::string strCamera;
  std::string strSize;
  std::string strLanguage;
  std::string strMode;
  std::string strBlockSize;
  std::string strLimits;
  std::string strAlignment;
};

void AddCameraOptions(CLI::App &app, SCameraOptions &stCamera, SWords &stWords)
{
  app
    .add_option("--camera", stWords.strCamera,
                "simulated (default), replay:DIR for a folder of recorded frames, or the id, IP address or "
                "serial number of a real camera")
    ->type_name("CAMERA")
    ->check([&](const std::string &str) { return ParseCamera(str, stCamera); });
  app
    .add_option("--pixel-format", stCamera.strPixelFormat,
                "such as Mono12 (default) or BayerRG8; with a real camera, any format that it lists")
    ->type_name("NAME");
  app
    .add_option("--align", stWords.strAlignment,
                "alignment of recorded samples in 16 bits: right (low bits) or left (high bits); default: found from "
                "the values")
    ->check(CLI::IsMember({"right", "left"}));
  app.add_option("--size", stWords.strSize, "size of the simulated sensor (default 2048x1536)")
    ->type_name("WxH")
    ->check([&](const std::string &str) { return ParseSize(str, stCamera); });
  app.add_option("--seed", stCamera.nSeed, "seed of the simulated sensor (default 1)")
    ->type_name("N")
    ->check([](const std::string &str) { return CheckNumber(str, MAX_SEED); });
}

void AddCorrectionOptions(CLI::App &app, SCameraOptions &stCamera, SWords &stWords)
{
  app
    .add_option("--mode", stWords.strMode,
                "correction built into the simulated camera: none (default), flatfield, vignetting, or unknown "
                "for one that the plug-in does not support")
    ->type_name("MODE")
    ->check([&](const std::string &str) { return ParseMode(str, stCamera); });
  app
    .add_option("--flash", stCamera.strFlashFile,
                "file that holds the flash memory of a camera with a --mode (default: a new one)")
    ->type_name("FILE");
  app
    .add_option("--block-size", stWords.strBlockSize,
                "side of a coefficient block in pixels: 32 or 16 with flatfield, 128 or 64 with vignetting")
    ->type_name("N")
    ->check([&](const std::string &str) { return ParseBlockSize(str, stCamera); });
}

void AddTaskOptions(CLI::App &app, STaskOptions &stTask)
{
  app.add_flag("--headless", stTask.bHeadless, "run the whole workflow without a window and write a report");
  app.add_flag("--restore-settings", stTask.bRestoreSettings,
               "load the settings that an interrupted acquisition left in the camera's UserSet0, and exit");
  auto *pList = app.add_flag("--list-cameras", stTask.bListCameras, "print the real cameras that answer, and exit");
  app
    .add_flag("--verbose", stTask.bVerbose,
              "with --list-cameras: open each camera and print which of its features differ from the standard")
    ->needs(pList);
  app
    .add_option("--screenshots", stTask.strScreenshots,
                "run the workflow in the window and save a picture of each step")
    ->type_name("DIR");
}

void AddWorkflowOptions(CLI::App &app, SHeadlessOptions &stOptions, SWords &stWords)
{
  SWorkflowOptions &stWorkflow = stOptions.stWorkflow;
  app
    .add_option("--plugin", stOptions.stPlugin.strModule,
                "plug-in module to load (default: FlatFieldCorrection.plx beside this program)")
    ->type_name("FILE");
  app.add_option("--frames", stWorkflow.nFrames, "bright frames to average: 1, 2, 4, 8 or 16 (default)")
    ->type_name("N")
    ->check(CheckFrames);
  app
    .add_option("--expect-gray", stWorkflow.nExpectGray,
                "expected grey, 0 to 255 (default: that of the bright frames, or with --mode flatfield that of the "
                "camera)")
    ->type_name("N")
    ->check([](const std::string &str) { return CheckNumber(str, 255); });
  app.add_option("--language", stWords.strLanguage, "language of the dialog: en (default) or zh")
    ->type_name("LANG")
    ->check(CheckLanguage);
  app.add_option("--out", stWorkflow.strOutFolder, "folder for pictures, frames and report.json (default: out)")
    ->type_name("DIR");
  app
    .add_option("--save-frames", stWorkflow.nSaveFrames, "number of fresh raw and corrected frames to save (default 1)")
    ->type_name("N")
    ->check([](const std::string &str) { return CheckNumber(str, 999); });
  app
    .add_option(
      "--limit", stWords.strLimits,
      "with --headless: highest figures after the correction, such as shading=1.0,prnu=0.5,dsnu=2 (percent, "
      "percent, DN); the exit code is 4 when one is higher, or higher than before the correction, and whenever "
      "the bright field is dark")
    ->type_name("LIMITS");
  for (const auto &[pOption, pLimit] : {std::pair("--shading-limit", &quality::SLimits::dShading),
                                        {"--prnu-limit", &quality::SLimits::dPrnu},
                                        {"--dsnu-limit", &quality::SLimits::dDsnu}}) {
    app.add_option(pOption, stWorkflow.stLimits.*pLimit, "limit of this figure alone")
      ->type_name("NUMBER")
      ->check(CLI::Range(0.01, 1e6));
  }
}

void AddAttendantOptions(CLI::App &app, SWorkflowOptions &stWorkflow)
{
  auto *pNoWait = app.add_flag_callback(
    "--no-wait", [&stWorkflow] { stWorkflow.bWait = false; },
    "with --headless and a real camera: do not wait for Enter when the lens is to be covered or uncovered");
  app
    .add_option("--dark-delay", stWorkflow.dDarkDelay,
                "with --no-wait: time for a shutter to open or close after each request to do so (default 0)")
    ->type_name("SECONDS")
    ->needs(pNoWait)
    ->check(CLI::Range(0.0, 3600.0));
}

void AddRecordingOptions(CLI::App &app, SRecordingOptions &stRecording)
{
  auto *pRecord =
    app.add_option("--record", stRecording.nFrames, "record N frames into the folder of --out, without a window")
      ->type_name("N")
      ->check(CLI::Range(1U, MAX_RECORDED));
  app
    .add_option("--format", stRecording.strFormat,
                "with --record: tif (default), png or fits, one file per frame, or ser, one file for all")
    ->type_name("KIND")
    ->needs(pRecord)
    ->check(CLI::IsMember({"tif", "tiff", "png", "fits", "ser"}));
  app
    .add_option("--corrected", stRecording.strCoefficients,
                "with --record: correct the frames with this .ffc file (default: save them uncorrected)")
    ->type_name("FILE")
    ->needs(pRecord);
  app
    .add_flag("--stop-on-loss", stRecording.bStopOnLoss,
              "with --record: stop at the first lost frame; the exit code is 5 whenever frames are lost")
    ->needs(pRecord);
}

/// The first option that a window cannot honour.
std::string FindNotInWindow(const CLI::App &app)
{
  for (const char *pOption : {"--out", "--save-frames", "--limit", "--shading-limit", "--prnu-limit", "--dsnu-limit"}) {
    if (app.count(pOption) > 0) {
      return pOption;
    }
  }
  return {};
}

/// Options that do not go together.
Result<> CheckTogether(const CLI::App &app, const SCameraOptions &stCamera, const STaskOptions &stTask)
{
  const bool bSimulated = stCamera.strReplayFolder.empty() && stCamera.strCameraId.empty();
  if (!bSimulated && app.count("--size") + app.count("--seed") + app.count("--mode") > 0) {
    return Failure("--size, --seed and --mode belong to the simulated camera");
  }
  if (app.count("--no-wait") > 0 && (stCamera.strCameraId.empty() || !stTask.bHeadless)) {
    return Failure("--no-wait belongs to --headless with a real camera: others have their lenses covered by software");
  }
  if (stCamera.strReplayFolder.empty() && app.count("--align") > 0) {
    return Failure("--align belongs to recorded frames");
  }
  if (app.count("--record") > 0 && (stTask.bHeadless || !stTask.strScreenshots.empty() || stTask.bRestoreSettings)) {
    return Failure(
      "--record is a task of its own: it goes with neither --headless, --screenshots nor --restore-settings");
  }
  if (app.count("--flash") > 0 && stCamera.eMode == ECorrectionMode::None) {
    return Failure("--flash belongs to a simulated camera with a --mode");
  }
  if (stCamera.nBlockSize > 0 && !IsBlockSizeOf(stCamera.eMode, stCamera.nBlockSize)) {
    return Failure(
      "--block-size is 32 or 16 with --mode flatfield, 128 or 64 with --mode vignetting, and nothing without");
  }
  const bool bExpectGray = stCamera.eMode == ECorrectionMode::None || stCamera.eMode == ECorrectionMode::FlatField;
  if (app.count("--expect-gray") > 0 && !bExpectGray) {
    return Failure("--expect-gray has no meaning with --mode vignetting and unknown");
  }
  return CheckPixelFormat(stCamera);
}

/// \param stLimits has those of the options for one figure
Result<> TakeLimits(const std::string &strLimits, quality::SLimits &stLimits)
{
  const Result<quality::SLimits> limits = quality::ParseLimits(QString::fromStdString(strLimits));
  if (!limits) {
    return Failure("--limit " + limits.GetError());
  }
  for (const quality::SLimitedFigure &stFigure : quality::GetLimitedFigures()) {
    const double dLimit = limits.GetValue().*stFigure.pLimit;
    stLimits.*stFigure.pLimit = dLimit >= 0 ? dLimit : stLimits.*stFigure.pLimit;
  }
  return {};
}

SCommandLine Leave(int nExitCode, const std::string &strText)
{
  return {false, nExitCode, strText.substr(0, strText.find_last_not_of('\n') + 1), {}, {}, {}, {}};
}

} // namespace

SCommandLine ParseCommandLine(int nArguments, const char *const *pArguments)
{
  SCommandLine stResult;
  SWords stWords;
  CLI::App app("Reference host of the flat-field correction plug-in", "ffchost");
  app.set_version_flag("--version", GetToolName().toStdString());
  AddTaskOptions(app, stResult.stTask);
  AddWorkflowOptions(app, stResult.stOptions, stWords);
  AddAttendantOptions(app, stResult.stOptions.stWorkflow);
  AddRecordingOptions(app, stResult.stOptions.stRecording);
  AddCameraOptions(app, stResult.stOptions.stCamera, stWords);
  AddCorrectionOptions(app, stResult.stOptions.stCamera, stWords);
  try {
    app.parse(nArguments, pArguments);
  } catch (const CLI::CallForHelp &) {
    return Leave(0, app.help());
  } catch (const CLI::CallForVersion &) {
    return Leave(0, app.version());
  } catch (const CLI::ParseError &error) {
    return Leave(EXIT_USAGE, error.what());
  }
  const Result<> together = CheckTogether(app, stResult.stOptions.stCamera, stResult.stTask);
  if (!together) {
    return Leave(EXIT_USAGE, together.GetError());
  }
  const Result<> limits = TakeLimits(stWords.strLimits, stResult.stOptions.stWorkflow.stLimits);
  if (!limits) {
    return Leave(EXIT_USAGE, limits.GetError());
  }
  if (!stWords.strAlignment.empty()) {
    stResult.stOptions.stCamera.eAlignment =
      stWords.strAlignment == "left" ? frames::EAlignment::Left : frames::EAlignment::Right;
  }
  stResult.stOptions.stPlugin.bChinese = stWords.strLanguage == "zh";
  const SWorkflowOptions &stWorkflow = stResult.stOptions.stWorkflow;
  stResult.stPreset = {app.count("--frames") > 0 ? stWorkflow.nFrames : 0, stWorkflow.nExpectGray};
  stResult.strNotInWindow = FindNotInWindow(app);
  stResult.bRun = true;
  return stResult;
}

} // namespace ffc::host
