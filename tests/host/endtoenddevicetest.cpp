/// \file
/// The built host with the built module on cameras that correct themselves, run as a user runs them.

#include <string>
#include <tuple>

#include <QFile>
#include <QJsonArray>

#include <gtest/gtest.h>

#include "tests/host/hostrun.h"

namespace {

std::string GetOutput(const CHostRun &run)
{
  return (run.m_strOutput + run.m_strError).toStdString();
}

} // namespace

// The other tests show the thread sanitizer all of it in small frames; here it would look for minutes.
#ifndef __SANITIZE_THREAD__
class EndToEndFullSize : public testing::TestWithParam<std::tuple<const char *, int>> {};

TEST_P(EndToEndFullSize, ACameraMakesItselfFlatAndStaysSo)
{
  const auto [pPixelFormat, nBlockSize] = GetParam();
  const CHostRun run(
    {"--mode", "flatfield", "--pixel-format", pPixelFormat, "--block-size", QString::number(nBlockSize)});
  ASSERT_TRUE(run.Succeeded()) << GetOutput(run);
  EXPECT_EQ(run.m_strError.toStdString(), "");
  EXPECT_EQ(run.m_json["mode"].toString(), "flatfield");
  EXPECT_EQ(Number(run.m_json, "width"), 2048);
  EXPECT_EQ(Number(run.m_json, "block_size"), nBlockSize);
  EXPECT_GT(Number(run.Before(), "shading_percent"), 30);
  EXPECT_LE(Number(run.After(), "shading_percent"), 1.0);
  EXPECT_LE(Number(run.m_json["after_reload"].toObject(), "shading_percent"), 1.0);
  EXPECT_NEAR(Number(run.Before(), "corner_to_centre"), 0.6, 0.05);
  EXPECT_NEAR(Number(run.After(), "corner_to_centre"), 1, 0.005);
  EXPECT_EQ(Number(run.m_json, "measured_bright_frames"), 16);
  EXPECT_EQ(Number(run.m_json, "measured_dark_frames"), 16);
  EXPECT_TRUE(run.m_json["notes"].toArray().isEmpty()) << GetOutput(run);
}

std::string GetCameraName(const testing::TestParamInfo<std::tuple<const char *, int>> &stInfo)
{
  return std::get<0>(stInfo.param) + ("Block" + std::to_string(std::get<1>(stInfo.param)));
}

#if defined(__SANITIZE_ADDRESS__) || defined(__MINGW32__)
// One is enough where each takes a minute.
INSTANTIATE_TEST_SUITE_P(Cameras, EndToEndFullSize, testing::Values(std::tuple{"BayerRG8", 32}), GetCameraName);
#else
INSTANTIATE_TEST_SUITE_P(Cameras, EndToEndFullSize,
                         testing::Combine(testing::Values("Mono8", "BayerRG8"), testing::Values(32, 16)),
                         GetCameraName);
#endif
#endif

TEST(EndToEndDevice, TheFlashOfTheCommandLineOutlivesTheRun)
{
  const QTemporaryDir dir;
  const QStringList listArguments{"--mode", "flatfield",     "--size", "256x192", "--block-size",
                                  "16",     "--expect-gray", "140",    "--flash", dir.filePath("my.flash")};
  for (int nRun = 0; nRun < 2; ++nRun) {
    const CHostRun run(listArguments);
    ASSERT_TRUE(run.Succeeded()) << GetOutput(run);
    EXPECT_EQ(run.m_json["pixel_format"].toString(), "Mono12");
    EXPECT_LE(Number(run.After(), "shading_percent"), 1.6);
    EXPECT_NEAR(Number(run.After(), "mean_gray"), 140 * 16, 0.01 * 140 * 16);
    EXPECT_FALSE(QFile::exists(run.GetPath("out/camera.flash")));
  }
  EXPECT_TRUE(QFile::exists(dir.filePath("my.flash")));
}

TEST(EndToEndDevice, RunsWithoutAFlashOfTheirOwnDoNotInfluenceEachOther)
{
  const QTemporaryDir dir;
  for (const char *pFormat : {"Mono8", "Mono12"}) {
    const CHostRun run(
      {"--mode", "flatfield", "--size", "256x192", "--pixel-format", pFormat, "--out", dir.filePath("shared")});
    ASSERT_TRUE(run.Succeeded()) << GetOutput(run);
    EXPECT_TRUE(run.m_strOutput.contains(QLatin1String(pFormat) + ", 256 x 192")) << GetOutput(run);
  }
}

TEST(EndToEndDevice, AVignettingCameraNeedsNoDarkField)
{
  const CHostRun run({"--mode", "vignetting", "--size", "640x480", "--block-size", "64", "--pixel-format", "BayerRG8"});
  ASSERT_TRUE(run.Succeeded()) << GetOutput(run);
  EXPECT_EQ(run.m_json["mode"].toString(), "vignetting");
  EXPECT_EQ(Number(run.m_json, "block_size"), 64);
  EXPECT_GT(Number(run.Before(), "shading_percent"), 30);
  EXPECT_LE(Number(run.After(), "shading_percent"), 2.7);
  EXPECT_FALSE(run.m_json.contains("expect_gray"));
}

TEST(EndToEndDevice, TheChineseDialogIsDrivenAsWell)
{
  const CHostRun run({"--mode", "flatfield", "--size", "256x192", "--language", "zh"});
  EXPECT_TRUE(run.Succeeded()) << GetOutput(run);
}

TEST(EndToEndDevice, AnUnknownCorrectionIsToldInOneLineAndIsNoFailure)
{
  const CHostRun run({"--mode", "unknown", "--size", "256x192"});
  ASSERT_TRUE(run.Succeeded()) << GetOutput(run);
  EXPECT_EQ(run.m_strError.toStdString(), "");
  EXPECT_TRUE(run.m_strOutput.section('\n', 0, 0).contains("every control of its dialog is disabled"));
  EXPECT_EQ(run.m_json["mode"].toString(), "unknown");
  EXPECT_TRUE(run.m_json["every_control_disabled"].toBool());
}
