#include "tools/ffc/options.h"

#include <algorithm>

#include <CLI/CLI.hpp>
#include <QThread>

#include "frames/ifilekind.h"
#include "tools/ffc/report.h"

namespace ffc::tool {

using genapi::FindSensorFormat;

namespace {

constexpr uint32_t MAX_THREADS = 256;
constexpr uint32_t MAX_SHARDS = 1000000;

const char *const DESCRIPTION =
  "Flat-field correction of recorded frames, exactly as the plug-in does it\n"
  "(coefficients with make --method average).\n\n"
  "  ffc make --dark darks/ --bright brights/ -o FLAT.ffc\n"
  "  ffc apply FLAT.ffc frames/ -o corrected/\n"
  "  ffc check FLAT.ffc flats/ --dark darks/ --limit shading=1.0,prnu=0.5\n"
  "  ffc inspect FLAT.ffc frames/\n"
  "  ffc defects --dark darks/ --bright brights/ -o DEFECTS.csv\n"
  "  ffc library FLATS/ FLAT.ffc\n"
  "  ffc convert frames/ --to tif -o converted/\n\n"
  "Frames are PNG, TIFF, FITS (both also with many frames) or SER files, or raw ones with --raw.";

const char *const EXIT_CODES = "\nExit codes: 0 all done; 1 some files failed, the others are done; 2 usage;\n"
                               "3 frames or coefficients do not fit; 4 not flat enough.";

/// Words that are not stored as they are typed.
struct SWords {
  std::string strAlignment;
  std::string strRaw;
  std::string strShard;
  std::string strMethod = "weighted";
};

CLI::Validator MakeCheck(const char *pName, std::function<std::string(std::string &)> fnCheck)
{
  return CLI::Validator(std::move(fnCheck), pName);
}

std::string ParseRaw(const std::string &strRaw, SOptions &stOptions)
{
  Result<frames::CRawFile> raw = frames::CRawFile::Parse(strRaw);
  if (raw) {
    stOptions.raw = raw.GetValue();
  }
  return raw.GetError();
}

std::string ParseShard(const std::string &strShard, SOptions &stOptions)
{
  const std::size_t nSlash = strShard.find('/');
  unsigned nShard = 0;
  unsigned nShards = 0;
  const bool bNumbers = nSlash != std::string::npos && CLI::detail::lexical_cast(strShard.substr(0, nSlash), nShard) &&
                        CLI::detail::lexical_cast(strShard.substr(nSlash + 1), nShards);
  if (!bNumbers || nShard < 1 || nShard > nShards || nShards > MAX_SHARDS) {
    return "write it as I/N with 1 <= I <= N";
  }
  stOptions.nShard = nShard;
  stOptions.nShards = nShards;
  return {};
}

std::string CheckFormat(const std::string &strFormat)
{
  return FindSensorFormat(strFormat) != nullptr ? std::string()
                                                : "there is no unpacked pixel format \"" + strFormat + "\"";
}

void AddFrameOptions(CLI::App &command, SOptions &stOptions, SWords &stWords)
{
  command.add_option("--pixel-format", stOptions.strPixelFormat, "PFNC name, such as Mono12 or BayerRG12")
    ->check(MakeCheck("FORMAT", [](std::string &strWord) { return CheckFormat(strWord); }));
  command.add_option("--align", stWords.strAlignment, "alignment of samples in 16 bits: right or left")
    ->check(CLI::IsMember({"right", "left"}));
  command.add_option("--raw", stWords.strRaw, "frames without a header, WIDTHxHEIGHT:FORMAT")
    ->check(MakeCheck("WxH:FORMAT", [&stOptions](std::string &strWord) { return ParseRaw(strWord, stOptions); }));
}

void AddReportOptions(CLI::App &command, SOptions &stOptions)
{
  command.add_flag("--json", stOptions.bJson, "print one JSON object per line");
  command.add_flag("--quiet", stOptions.bQuiet, "print errors only");
}

void AddWritingOptions(CLI::App &command, SOptions &stOptions)
{
  command.add_flag("--force", stOptions.bForce,
                   "replace existing files, and correct frames that are corrected already");
  command.add_flag("--dry-run", stOptions.bDryRun, "check files, sizes and formats; write nothing");
}

void AddBatchOptions(CLI::App &command, SOptions &stOptions, SWords &stWords)
{
  command.add_option("frames", stOptions.listFrames, "files, folders or patterns");
  command.add_option("--files-from", stOptions.strFilesFrom,
                     "file with one name per line, or names that end with NUL; - for standard input");
  command.add_option("--shard", stWords.strShard, "process only part I of N parts of the files, I/N")
    ->check(MakeCheck("I/N", [&stOptions](std::string &strWord) { return ParseShard(strWord, stOptions); }));
  command
    .add_option("--threads", stOptions.nThreads,
                "files, or frames of one file, processed at a time (default: number of processors)")
    ->check(CLI::Range(1U, MAX_THREADS));
}

void AddOriginOptions(CLI::App &command, SOrigin &stOrigin)
{
  command.add_option("--camera", stOrigin.strCamera, "model of the camera, for the side file");
  command.add_option("--serial", stOrigin.strSerial, "serial number of the camera, for the side file");
  command.add_option("--exposure", stOrigin.dExposureTime, "exposure time in microseconds");
  command.add_option("--gain", stOrigin.dGain, "gain in dB");
}

void AddMake(CLI::App &app, SOptions &stOptions, SWords &stWords)
{
  CLI::App &command = *app.add_subcommand("make", "compute coefficients from dark and bright frames");
  command.add_option("--dark", stOptions.listDark, "frames without light: files, folders or patterns");
  command.add_option("--bright", stOptions.listBright, "evenly lit frames")->required();
  command.add_option("-o,--out", stOptions.strOut, "the .ffc file to write")->required();
  command
    .add_option("--expect-gray", stOptions.nExpectGray, "target grey, 0 to 255 (default: that of the brightest block)")
    ->check(CLI::Range(0U, 255U));
  command
    .add_option("--method", stWords.strMethod,
                "weighted (default): parts of the average are weighted by their signal-to-noise ratio; average: the "
                "plain average, as in the dialog")
    ->check(CLI::IsMember({"weighted", "average"}));
  CLI::Option *pSystemGain =
    command
      .add_option("--system-gain", stOptions.dSystemGain,
                  "DN per electron, from the camera's EMVA 1288 data sheet; gives the noise of a single bright frame")
      ->check(CLI::PositiveNumber);
  command
    .add_option("--dark-noise", stOptions.dDarkNoise,
                "temporal dark noise from that data sheet, DN; without it, that of the dark frames")
    ->check(CLI::NonNegativeNumber)
    ->needs(pSystemGain);
  AddOriginOptions(command, stOptions.stOrigin);
  command.add_option("--black-level", stOptions.stOrigin.dBlackLevel, "black level, in the camera's unit");
  command.add_option("--temperature", stOptions.stOrigin.dTemperature, "temperature in degrees Celsius");
  AddFrameOptions(command, stOptions, stWords);
  AddWritingOptions(command, stOptions);
  AddReportOptions(command, stOptions);
}

void AddApply(CLI::App &app, SOptions &stOptions, SWords &stWords)
{
  CLI::App &command = *app.add_subcommand("apply", "correct frames");
  command.add_option("flat", stOptions.strFlat, "the .ffc file; leave out with --library");
  AddBatchOptions(command, stOptions, stWords);
  command.add_option("--library", stOptions.strLibrary, "folder of .ffc files; the one that fits the frames is used");
  AddOriginOptions(command, stOptions.stOrigin);
  command.add_option("--defects", stOptions.strDefects, "list of pixels to replace, CSV or XML");
  CLI::Option *pOut = command.add_option("-o,--out", stOptions.strOut, "folder for the corrected files");
  command.add_flag("--in-place", stOptions.bInPlace, "replace the frames themselves")->excludes(pOut);
  command.add_flag("--resume", stOptions.bResume, "skip files that an earlier run has finished");
  AddFrameOptions(command, stOptions, stWords);
  AddWritingOptions(command, stOptions);
  AddReportOptions(command, stOptions);
}

void AddCheck(CLI::App &app, SOptions &stOptions, SWords &stWords)
{
  CLI::App &command = *app.add_subcommand("check", "measure evenly lit frames before and after the correction");
  command.add_option("flat", stOptions.strFlat, "the .ffc file")->required();
  command.add_option("frames", stOptions.listFrames, "evenly lit frames")->required();
  command.add_option("--dark", stOptions.listDark, "frames without light, for PRNU and DSNU");
  command.add_option("--limit", stOptions.strLimits,
                     "highest figures, such as shading=1.0,prnu=0.5,dsnu=2; also prnu-high-pass and dsnu-high-pass");
  command.add_flag("--levels", stOptions.bLevels, "frames of several exposures, one folder or file for each");
  command
    .add_option("--high-pass", stOptions.strHighPass,
                "high-pass filter of EMVA 1288: release4, release4-inner or release3")
    ->check(CLI::IsMember({"release4", "release4-inner", "release3"}));
  command.add_option("--defects", stOptions.strDefects, "list of pixels to replace, CSV or XML");
  command.add_option("--details", stOptions.strDetails, "folder for histograms and spectrograms (CSV)");
  AddFrameOptions(command, stOptions, stWords);
  AddReportOptions(command, stOptions);
}

void AddDefects(CLI::App &app, SOptions &stOptions, SWords &stWords)
{
  CLI::App &command = *app.add_subcommand("defects", "find defect pixels");
  command.add_option("--dark", stOptions.listDark, "frames without light")->required();
  command.add_option("--bright", stOptions.listBright, "evenly lit frames")->required();
  command.add_option("-o,--out", stOptions.strOut, "the list of pixels to write, CSV")->required();
  command.add_option("--map", stOptions.strMap, "the same list as a defect map, XML");
  command
    .add_option("--bright-percent", stOptions.stDefectLimits.dBrightPercent,
                "limit of the deviation in bright frames, percent")
    ->check(CLI::PositiveNumber)
    ->capture_default_str();
  command
    .add_option("--dark-deviations", stOptions.stDefectLimits.dDarkDeviations,
                "limit of the deviation in dark frames, standard deviations")
    ->check(CLI::PositiveNumber)
    ->capture_default_str();
  command
    .add_option("--noise-times", stOptions.stDefectLimits.dNoiseTimes,
                "limit of the temporal noise, multiples of the median")
    ->check(CLI::PositiveNumber)
    ->capture_default_str();
  AddFrameOptions(command, stOptions, stWords);
  AddWritingOptions(command, stOptions);
  AddReportOptions(command, stOptions);
}

void AddLibrary(CLI::App &app, SOptions &stOptions)
{
  CLI::App &command = *app.add_subcommand("library", "store .ffc files in a folder, and list them");
  command.add_option("folder", stOptions.strLibrary, "the folder")->required();
  command.add_option("flats", stOptions.listFrames, ".ffc files to add, with their side files");
  command.add_flag("--force", stOptions.bForce, "replace files of the same conditions");
  AddReportOptions(command, stOptions);
}

void AddInspect(CLI::App &app, SOptions &stOptions, SWords &stWords)
{
  CLI::App &command = *app.add_subcommand("inspect", "describe coefficient files and frames");
  command.add_option("files", stOptions.listFrames, ".ffc files, frames, folders or patterns")->required();
  command.add_option("--plot", stOptions.strPlot, "picture of the gains to write, PNG");
  AddFrameOptions(command, stOptions, stWords);
  AddReportOptions(command, stOptions);
}

void AddConvert(CLI::App &app, SOptions &stOptions, SWords &stWords)
{
  CLI::App &command = *app.add_subcommand("convert", "convert frames to another file format, with the same values");
  AddBatchOptions(command, stOptions, stWords);
  command.add_option("--to", stOptions.strTo, "file format: png, tif, fits, ser or raw")
    ->required()
    ->check(CLI::IsMember({"png", "tif", "tiff", "fits", "fit", "fts", "ser", "raw"}));
  command.add_option("-o,--out", stOptions.strOut, "folder for the files")->required();
  AddFrameOptions(command, stOptions, stWords);
  AddWritingOptions(command, stOptions);
  AddReportOptions(command, stOptions);
}

/// With the kinds of files that this program was built with.
std::string GetVersion()
{
  QStringList listKinds;
  for (const frames::IFileKind *pKind : frames::ListFileKinds()) {
    listKinds << pKind->GetName();
  }
  return "ffc " FFC_VERSION " (" + listKinds.join(QStringLiteral(", ")).toStdString() + ")";
}

ECommand GetCommand(const CLI::App &app)
{
  const std::string strName = app.get_subcommands().front()->get_name();
  return strName == "make"      ? ECommand::Make
         : strName == "apply"   ? ECommand::Apply
         : strName == "check"   ? ECommand::Check
         : strName == "inspect" ? ECommand::Inspect
         : strName == "defects" ? ECommand::Defects
         : strName == "library" ? ECommand::Library
                                : ECommand::Convert;
}

/// What no single option can check. \return what is wrong; empty when nothing
std::string CheckTogether(const SOptions &stOptions)
{
  if (stOptions.eCommand == ECommand::Apply && stOptions.strFlat.empty() && stOptions.strLibrary.empty()) {
    return "name the .ffc file, or a folder of them with --library";
  }
  const bool bBatch = stOptions.eCommand == ECommand::Apply || stOptions.eCommand == ECommand::Convert;
  if (bBatch && stOptions.listFrames.empty() && stOptions.strFilesFrom.empty()) {
    return "there are no frames: name files, folders or patterns, or use --files-from";
  }
  if (stOptions.eCommand == ECommand::Apply && !stOptions.bInPlace && stOptions.strOut.empty()) {
    return "state where the corrected frames are written: -o FOLDER, or --in-place";
  }
  return {};
}

SCommandLine MakeError(const std::string &strText)
{
  return {false, EXIT_USAGE, strText, {}};
}

} // namespace

SCommandLine ParseCommandLine(const std::vector<std::string> &listArguments)
{
  SCommandLine stCommandLine;
  SOptions &stOptions = stCommandLine.stOptions;
  stOptions.nThreads = static_cast<uint32_t>(std::max(1, QThread::idealThreadCount()));
  SWords stWords;
  CLI::App app(DESCRIPTION, "ffc");
  // The same words mean the same on every system: a path may begin with a slash.
  app.allow_windows_style_options(false);
  app.footer(EXIT_CODES);
  app.require_subcommand(1);
  app.set_version_flag("--version", GetVersion());
  AddMake(app, stOptions, stWords);
  AddApply(app, stOptions, stWords);
  AddCheck(app, stOptions, stWords);
  AddInspect(app, stOptions, stWords);
  AddConvert(app, stOptions, stWords);
  AddDefects(app, stOptions, stWords);
  AddLibrary(app, stOptions);
  try {
    std::vector<std::string> listReversed(listArguments.rbegin(), listArguments.rend());
    app.parse(std::move(listReversed));
  } catch (const CLI::CallForVersion &version) {
    return {false, EXIT_DONE, version.what(), {}};
  } catch (const CLI::CallForHelp &) {
    return {false, EXIT_DONE, app.help(), {}};
  } catch (const CLI::ParseError &error) {
    return MakeError(std::string(error.what()) + " (see ffc --help)");
  }
  stOptions.eCommand = GetCommand(app);
  stOptions.bWeighted = stWords.strMethod == "weighted";
  if (!stWords.strAlignment.empty()) {
    stOptions.eAlignment = stWords.strAlignment == "left" ? frames::EAlignment::Left : frames::EAlignment::Right;
  }
  if (stOptions.eCommand == ECommand::Apply && !stOptions.strLibrary.empty() && !stOptions.strFlat.empty()) {
    // There is no flat on the line, so the first name is one of frames.
    stOptions.listFrames.insert(stOptions.listFrames.begin(), stOptions.strFlat);
    stOptions.strFlat.clear();
  }
  const std::string strError = CheckTogether(stOptions);
  if (!strError.empty()) {
    return MakeError(strError);
  }
  stCommandLine.bRun = true;
  return stCommandLine;
}

} // namespace ffc::tool
