#include "host/options/commandline.h"

#include <tuple>
#include <vector>

#include <QFile>
#include <QRegularExpression>

#include <gtest/gtest.h>

#include "camera/realcameras.h"

using namespace ffc::host;
using ffc::camera::AreRealCamerasSupported;
using ffc::camera::ECorrectionMode;

namespace {

SCommandLine Parse(std::vector<const char *> listArguments)
{
  listArguments.insert(listArguments.begin(), "ffchost");
  return ParseCommandLine(static_cast<int>(listArguments.size()), listArguments.data());
}

} // namespace

TEST(CommandLine, HasSensibleDefaults)
{
  const SCommandLine stResult = Parse({});
  ASSERT_TRUE(stResult.bRun);
  EXPECT_FALSE(stResult.stTask.bHeadless);
  EXPECT_EQ(stResult.stOptions.stPlugin.strModule, "");
  EXPECT_EQ(stResult.stOptions.stCamera.strReplayFolder, "");
  EXPECT_EQ(stResult.stOptions.stCamera.nWidth, 2048U);
  EXPECT_EQ(stResult.stOptions.stCamera.nHeight, 1536U);
  EXPECT_EQ(stResult.stOptions.stWorkflow.nFrames, 16);
  EXPECT_EQ(stResult.stOptions.stWorkflow.nExpectGray, -1);
  EXPECT_EQ(stResult.stOptions.stCamera.nSeed, 1U);
  EXPECT_FALSE(stResult.stOptions.stPlugin.bChinese);
  EXPECT_EQ(stResult.stOptions.stWorkflow.strOutFolder, "out");
  EXPECT_EQ(stResult.stOptions.stWorkflow.nSaveFrames, 1);
  EXPECT_EQ(stResult.stOptions.stCamera.eMode, ECorrectionMode::None);
  EXPECT_EQ(stResult.stOptions.stCamera.strFlashFile, "");
  EXPECT_EQ(stResult.stOptions.stCamera.nBlockSize, 0U);
}

TEST(CommandLine, TellsWhatTheWindowPresetsAndWhatItCannotHonour)
{
  const SCommandLine stPlain = Parse({"--camera", "simulated"});
  EXPECT_EQ(stPlain.stPreset.nFrames, 0) << "the dialog's own count";
  EXPECT_EQ(stPlain.stPreset.nExpectGray, -1);
  EXPECT_EQ(stPlain.strNotInWindow, "");
  const SCommandLine stPreset = Parse({"--frames", "16", "--expect-gray", "90"});
  EXPECT_EQ(stPreset.stPreset.nFrames, 16);
  EXPECT_EQ(stPreset.stPreset.nExpectGray, 90);
  EXPECT_EQ(stPreset.strNotInWindow, "");
  EXPECT_EQ(Parse({"--out", "dir"}).strNotInWindow, "--out");
  EXPECT_EQ(Parse({"--save-frames", "2"}).strNotInWindow, "--save-frames");
  const SCommandLine stLimit = Parse({"--headless", "--shading-limit", "0.5"});
  EXPECT_EQ(stLimit.strNotInWindow, "--shading-limit");
  EXPECT_EQ(stLimit.stOptions.stWorkflow.stLimits.dShading, 0.5);
  EXPECT_EQ(Parse({"--shading-limit", "0"}).nExitCode, 2);
  EXPECT_EQ(Parse({"--shading-limit", "few"}).nExitCode, 2);
}

TEST(CommandLine, TakesLimitsTogetherAndOneByOne)
{
  const SCommandLine stResult =
    Parse({"--headless", "--dsnu-limit", "3", "--limit", "shading=1.5,prnu-high-pass=0.2", "--prnu-limit", "0.5"});
  ASSERT_TRUE(stResult.bRun) << stResult.strText;
  const ffc::quality::SLimits &stLimits = stResult.stOptions.stWorkflow.stLimits;
  EXPECT_EQ(stLimits.dShading, 1.5);
  EXPECT_EQ(stLimits.dPrnu, 0.5);
  EXPECT_EQ(stLimits.dDsnu, 3);
  EXPECT_EQ(stLimits.dPrnuHighPass, 0.2);
  EXPECT_EQ(stLimits.dDsnuHighPass, -1);
  EXPECT_EQ(stResult.strNotInWindow, "--limit");
  EXPECT_EQ(Parse({"--limit", "evenness=1"}).nExitCode, 2);
  EXPECT_NE(Parse({"--limit", "evenness=1"}).strText.find("--limit takes shading, prnu"), std::string::npos);
}

TEST(CommandLine, TakesEveryOption)
{
  const SCommandLine stResult = Parse(
    {"--headless", "--plugin",     "x.plx", "--camera",      "simulated", "--pixel-format", "BayerGB10", "--size",
     "640x480",    "--frames",     "4",     "--expect-gray", "0",         "--seed",         "77",        "--language",
     "zh",         "--out",        "dir",   "--save-frames", "0",         "--mode",         "flatfield", "--flash",
     "a.flash",    "--block-size", "16"});
  ASSERT_TRUE(stResult.bRun) << stResult.strText;
  EXPECT_TRUE(stResult.stTask.bHeadless);
  EXPECT_EQ(stResult.stOptions.stPlugin.strModule, "x.plx");
  EXPECT_EQ(stResult.stOptions.stCamera.strPixelFormat, "BayerGB10");
  EXPECT_EQ(stResult.stOptions.stCamera.nWidth, 640U);
  EXPECT_EQ(stResult.stOptions.stCamera.nHeight, 480U);
  EXPECT_EQ(stResult.stOptions.stWorkflow.nFrames, 4);
  EXPECT_EQ(stResult.stOptions.stWorkflow.nExpectGray, 0);
  EXPECT_EQ(stResult.stOptions.stCamera.nSeed, 77U);
  EXPECT_TRUE(stResult.stOptions.stPlugin.bChinese);
  EXPECT_EQ(stResult.stOptions.stWorkflow.strOutFolder, "dir");
  EXPECT_EQ(stResult.stOptions.stWorkflow.nSaveFrames, 0);
  EXPECT_EQ(stResult.stOptions.stCamera.eMode, ECorrectionMode::FlatField);
  EXPECT_EQ(stResult.stOptions.stCamera.strFlashFile, "a.flash");
  EXPECT_EQ(stResult.stOptions.stCamera.nBlockSize, 16U);
}

TEST(CommandLine, AReplayNamesItsFolder)
{
  EXPECT_EQ(Parse({"--camera", "replay:a/b c"}).stOptions.stCamera.strReplayFolder, "a/b c");
}

TEST(CommandLine, AnyOtherCameraIsARealOneWhereTheProgramKnowsThem)
{
  const SCommandLine stResult = Parse({"--camera", "192.168.1.20"});
  EXPECT_EQ(stResult.bRun, AreRealCamerasSupported()) << stResult.strText;
  EXPECT_EQ(stResult.stOptions.stCamera.strCameraId, AreRealCamerasSupported() ? "192.168.1.20" : "");
  EXPECT_EQ(Parse({"--camera", "simulated"}).stOptions.stCamera.strCameraId, "");
  EXPECT_EQ(Parse({"--camera", "replay:dir"}).stOptions.stCamera.strCameraId, "");
}

TEST(CommandLine, ARealCameraTakesNoneOfTheSimulatedOnesOptions)
{
  if (!AreRealCamerasSupported()) {
    GTEST_SKIP() << "built without support for real cameras";
  }
  EXPECT_TRUE(Parse({"--camera", "CAM1", "--pixel-format", "Mono12"}).bRun);
  EXPECT_TRUE(Parse({"--pixel-format", "YUV422_8", "--camera", "CAM1"}).bRun) << "whatever the camera lists";
  EXPECT_FALSE(Parse({"--pixel-format", "YUV422_8", "--camera", "replay:dir"}).bRun);
  for (const auto &listMore : {std::vector<const char *>{"--size", "64x64"}, {"--seed", "1"}, {"--mode", "none"}}) {
    std::vector<const char *> listArguments = {"--camera", "CAM1"};
    listArguments.insert(listArguments.end(), listMore.begin(), listMore.end());
    const SCommandLine stResult = Parse(listArguments);
    EXPECT_FALSE(stResult.bRun) << listMore[0];
    EXPECT_NE(stResult.nExitCode, 0) << listMore[0];
    EXPECT_NE(stResult.strText.find(listMore[0]), std::string::npos) << stResult.strText;
  }
}

TEST(CommandLine, WhoeverCoversALensIsWaitedForUnlessToldOtherwise)
{
  if (!AreRealCamerasSupported()) {
    GTEST_SKIP() << "built without support for real cameras";
  }
  EXPECT_TRUE(Parse({"--headless", "--camera", "CAM1"}).stOptions.stWorkflow.bWait);
  const SCommandLine stRig = Parse({"--headless", "--camera", "CAM1", "--no-wait", "--dark-delay", "2.5"});
  EXPECT_TRUE(stRig.bRun) << stRig.strText;
  EXPECT_FALSE(stRig.stOptions.stWorkflow.bWait);
  EXPECT_EQ(stRig.stOptions.stWorkflow.dDarkDelay, 2.5);
  EXPECT_FALSE(Parse({"--headless", "--camera", "CAM1", "--dark-delay", "2.5"}).bRun) << "nothing is timed";
  EXPECT_FALSE(Parse({"--headless", "--no-wait"}).bRun) << "the simulated camera's lens is covered by software";
  EXPECT_FALSE(Parse({"--camera", "CAM1", "--no-wait"}).bRun) << "the window asks in its own way";
}

TEST(CommandLine, RecordingIsATaskOfItsOwn)
{
  const SCommandLine stResult = Parse({"--record", "5", "--format", "ser", "--corrected", "x.ffc", "--stop-on-loss"});
  ASSERT_TRUE(stResult.bRun) << stResult.strText;
  const SRecordingOptions &stRecording = stResult.stOptions.stRecording;
  EXPECT_EQ(stRecording.nFrames, 5U);
  EXPECT_EQ(stRecording.strFormat, "ser");
  EXPECT_EQ(stRecording.strCoefficients, "x.ffc");
  EXPECT_TRUE(stRecording.bStopOnLoss);
  EXPECT_EQ(Parse({}).stOptions.stRecording.nFrames, 0U);
  for (const auto &listWrong : {std::vector<const char *>{"--record", "0"},
                                {"--record", "5", "--format", "jpeg"},
                                {"--record", "5", "--headless"},
                                {"--record", "5", "--screenshots", "pictures"},
                                {"--record", "5", "--restore-settings"},
                                {"--format", "ser"},
                                {"--stop-on-loss"}}) {
    EXPECT_EQ(Parse(listWrong).nExitCode, 2) << listWrong[0];
  }
}

TEST(CommandLine, ListingCamerasIsAsked)
{
  EXPECT_TRUE(Parse({"--list-cameras"}).stTask.bListCameras);
  EXPECT_FALSE(Parse({}).stTask.bListCameras);
  EXPECT_FALSE(Parse({"--list-cameras"}).stTask.bVerbose);
  EXPECT_TRUE(Parse({"--list-cameras", "--verbose"}).stTask.bVerbose);
  EXPECT_EQ(Parse({"--verbose"}).nExitCode, 2) << "it says what the list is to have";
}

TEST(CommandLine, ARefusalIsOneLineThatNamesTheOption)
{
  const std::vector<std::vector<const char *>> WRONG = {
    {"--frames", "3"},
    {"--frames", "many"},
    {"--size", "640"},
    {"--size", "640x"},
    {"--size", "x480"},
    {"--size", "641x480"},
    {"--size", "62x64"},
    {"--size", "16386x64"},
    {"--size", "64x64x64"},
    {"--size", "-64x64"},
    {"--camera", "replay:"},
    {"--camera", ""},
    {"--pixel-format", "RGB8"},
    {"--expect-gray", "256"},
    {"--expect-gray", "-1"},
    {"--seed", "-1"},
    {"--seed", "x"},
    {"--language", "fr"},
    {"--save-frames", "1000"},
    {"--out"},
    {"--unknown"},
    {"--size", "99999999999999999999x64"},
    {"--mode", "parallax"},
    {"--mode"},
    {"--flash", "a.flash"},
    {"--flash", "a.flash", "--mode", "none"},
    {"--block-size", "8", "--mode", "flatfield"},
    {"--block-size", "32"},
    {"--block-size", "32", "--mode", "vignetting"},
    {"--block-size", "64", "--mode", "flatfield"},
    {"--block-size", "32", "--mode", "unknown"},
    {"--expect-gray", "100", "--mode", "vignetting"},
    {"--expect-gray", "100", "--mode", "unknown"},
  };
  for (const auto &listArguments : WRONG) {
    const SCommandLine stResult = Parse(listArguments);
    SCOPED_TRACE(stResult.strText);
    EXPECT_FALSE(stResult.bRun);
    EXPECT_NE(stResult.nExitCode, 0);
    EXPECT_NE(stResult.strText.find(listArguments[0]), std::string::npos);
    EXPECT_EQ(stResult.strText.find('\n'), std::string::npos);
  }
}

TEST(CommandLine, SizeSeedAndModeBelongToTheSimulatedCamera)
{
  for (const auto &[pOption, pValue] :
       {std::pair("--size", "640x480"), {"--seed", "1"}, {"--mode", "flatfield"}, {"--mode", "none"}}) {
    const SCommandLine stResult = Parse({"--camera", "replay:dir", pOption, pValue});
    EXPECT_FALSE(stResult.bRun);
    EXPECT_NE(stResult.nExitCode, 0);
    EXPECT_NE(stResult.strText.find("simulated"), std::string::npos);
  }
}

TEST(CommandLine, RecordedFramesAreAlignedAsStatedAndNoOthersAre)
{
  using ffc::frames::EAlignment;
  EXPECT_FALSE(Parse({"--camera", "replay:dir"}).stOptions.stCamera.eAlignment.has_value());
  EXPECT_EQ(Parse({"--camera", "replay:dir", "--align", "left"}).stOptions.stCamera.eAlignment, EAlignment::Left);
  EXPECT_EQ(Parse({"--camera", "replay:dir", "--align", "right"}).stOptions.stCamera.eAlignment, EAlignment::Right);
  EXPECT_EQ(Parse({"--align", "left"}).strText, "--align belongs to recorded frames");
}

TEST(CommandLine, FramesAreAnyPowerOfTwoUpToSixteenAndLanguagesTwo)
{
  for (const char *pFrames : {"1", "2", "4", "8", "16"}) {
    EXPECT_EQ(std::to_string(Parse({"--frames", pFrames}).stOptions.stWorkflow.nFrames), pFrames);
  }
  EXPECT_FALSE(Parse({"--language", "en"}).stOptions.stPlugin.bChinese);
  EXPECT_TRUE(Parse({"--language", "zh"}).stOptions.stPlugin.bChinese);
}

TEST(CommandLine, EachModeHasItsBlockSizes)
{
  const std::tuple<const char *, ECorrectionMode, const char *> SIZES[] = {
    {"flatfield", ECorrectionMode::FlatField, "32"},
    {"flatfield", ECorrectionMode::FlatField, "16"},
    {"vignetting", ECorrectionMode::Vignetting, "128"},
    {"vignetting", ECorrectionMode::Vignetting, "64"},
  };
  for (const auto &[pMode, eMode, pSize] : SIZES) {
    const SCommandLine stResult = Parse({"--block-size", pSize, "--mode", pMode});
    ASSERT_TRUE(stResult.bRun) << stResult.strText;
    EXPECT_EQ(stResult.stOptions.stCamera.eMode, eMode);
    EXPECT_EQ(std::to_string(stResult.stOptions.stCamera.nBlockSize), pSize);
  }
}

TEST(CommandLine, AnUnknownCorrectionHasAFlashAllTheSame)
{
  const SCommandLine stResult = Parse({"--mode", "unknown", "--flash", "a.flash"});
  ASSERT_TRUE(stResult.bRun) << stResult.strText;
  EXPECT_EQ(stResult.stOptions.stCamera.eMode, ECorrectionMode::Unknown);
}

TEST(CommandLine, TheManPageAndTheCompletionHaveEveryOptionOfTheHelp)
{
  QFile file(QStringLiteral(FFC_SOURCE_DIR "/packaging/ffchost.1"));
  ASSERT_TRUE(file.open(QIODevice::ReadOnly));
  const QString strPage = QString::fromUtf8(file.readAll()).remove('\\');
  QFile completionFile(QStringLiteral(FFC_SOURCE_DIR "/packaging/ffchost.bash"));
  ASSERT_TRUE(completionFile.open(QIODevice::ReadOnly));
  const QString strCompletion = QString::fromUtf8(completionFile.readAll());
  const QString strHelp = QString::fromStdString(Parse({"--help"}).strText);
  const QRegularExpression option(QStringLiteral("--[a-z][a-z-]+"));
  int nOptions = 0;
  for (auto it = option.globalMatch(strHelp); it.hasNext(); ++nOptions) {
    const QString strOption = it.next().captured();
    const QRegularExpression word(strOption + QStringLiteral("(?![a-z-])"));
    EXPECT_TRUE(strPage.contains(word)) << strOption.toStdString();
    EXPECT_TRUE(strCompletion.contains(word)) << strOption.toStdString();
  }
  EXPECT_GT(nOptions, 15);
}

TEST(CommandLine, HelpNamesEveryOptionAndVersionTheVersion)
{
  const SCommandLine stHelp = Parse({"--help"});
  EXPECT_FALSE(stHelp.bRun);
  EXPECT_EQ(stHelp.nExitCode, 0);
  for (const char *pOption :
       {"--headless", "--plugin", "--camera", "--list-cameras", "--pixel-format", "--size", "--frames", "--expect-gray",
        "--seed", "--language", "--out", "--save-frames", "--mode", "--flash", "--block-size"}) {
    EXPECT_NE(stHelp.strText.find(pOption), std::string::npos) << pOption;
  }
  const SCommandLine stVersion = Parse({"--version"});
  EXPECT_EQ(stVersion.nExitCode, 0);
  EXPECT_EQ(stVersion.strText.rfind("ffchost ", 0), 0U);
}
