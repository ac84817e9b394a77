#include "tools/ffc/library.h"

#include <gtest/gtest.h>

#include "tests/tools/ffc/toolrun.h"

using namespace ffc::test;
using namespace ffc::tool;

namespace {

SLibraryFlat MakeFlat(const char *pName, double dExposure, double dGain, const char *pCamera = "A")
{
  SLibraryFlat stFlat;
  stFlat.strPath = QString::fromLatin1(pName);
  stFlat.stSide.nWidth = 64;
  stFlat.stSide.nHeight = 48;
  stFlat.stSide.strPixelFormat = QStringLiteral("Mono12");
  stFlat.stSide.strCamera = QString::fromLatin1(pCamera);
  stFlat.stSide.dExposureTime = dExposure;
  stFlat.stSide.dGain = dGain;
  return stFlat;
}

/// The chosen flat's name, or why there is none.
std::string Choose(const std::vector<SLibraryFlat> &listFlats, const SOrigin &stOrigin)
{
  ffc::frames::SFrameInfo stInfo;
  stInfo.stLayout = {64, 48, 2};
  const auto flat = ChooseFlat(listFlats, stInfo, {}, stOrigin);
  return flat ? flat.GetValue().strPath.toStdString() : flat.GetError();
}

SOrigin MakeOrigin(const char *pCamera, std::optional<double> dExposure, std::optional<double> dGain)
{
  SOrigin stOrigin;
  stOrigin.strCamera = pCamera;
  stOrigin.dExposureTime = dExposure;
  stOrigin.dGain = dGain;
  return stOrigin;
}

bool Contains(const std::string &strText, const char *pPart)
{
  return strText.find(pPart) != std::string::npos;
}

} // namespace

TEST(Library, ASerialNumberNamesTheCameraAndItsModelNeedNotBeStated)
{
  std::vector<SLibraryFlat> listFlats = {MakeFlat("one", 1000, 0, "A"), MakeFlat("other", 1000, 0, "B")};
  listFlats[0].stSide.strSerial = QStringLiteral("17");
  listFlats[1].stSide.strSerial = QStringLiteral("18");
  SOrigin stOrigin = MakeOrigin("", 1000, 0);
  EXPECT_TRUE(Contains(Choose(listFlats, stOrigin), "state --camera"));
  stOrigin.strSerial = "18";
  EXPECT_EQ(Choose(listFlats, stOrigin), "other");
  stOrigin.strSerial = "19";
  EXPECT_TRUE(Contains(Choose(listFlats, stOrigin), "serial number \"19\""));
  stOrigin.strSerial = "18";
  stOrigin.strCamera = "A";
  EXPECT_TRUE(Contains(Choose(listFlats, stOrigin), "camera \"A\""));
  // Two makers may count alike.
  listFlats[0].stSide.strSerial = QStringLiteral("18");
  stOrigin.strCamera.clear();
  EXPECT_TRUE(Contains(Choose(listFlats, stOrigin), "state --camera"));
}

TEST(Library, TheNearestFlatWithinTheLimitsIsChosen)
{
  const std::vector<SLibraryFlat> listFlats = {MakeFlat("short", 1000, 0), MakeFlat("long", 10000, 0),
                                               MakeFlat("longer", 12000, 0), MakeFlat("amplified", 10000, 6)};
  EXPECT_EQ(Choose(listFlats, MakeOrigin("A", 900, 0)), "short");
  EXPECT_EQ(Choose(listFlats, MakeOrigin("A", 10500, 0.5)), "long");
  EXPECT_EQ(Choose(listFlats, MakeOrigin("", 16000, 0)), "longer");
  EXPECT_EQ(Choose(listFlats, MakeOrigin("A", 9000, 5.5)), "amplified");
  EXPECT_TRUE(Contains(Choose(listFlats, MakeOrigin("A", 4000, 0)), "factor of 1.5 of 4000"));
  EXPECT_TRUE(Contains(Choose(listFlats, MakeOrigin("A", 10000, 3)), "within 1 dB of 3"));
  EXPECT_TRUE(Contains(Choose(listFlats, MakeOrigin("B", 10000, 0)), "camera \"B\""));
}

TEST(Library, WhatIsNotStatedMustNotMakeADifference)
{
  const std::vector<SLibraryFlat> listFlats = {MakeFlat("one", 1000, 0), MakeFlat("two", 1000, 3),
                                               MakeFlat("other", 1000, 0, "B")};
  EXPECT_TRUE(Contains(Choose(listFlats, MakeOrigin("", 1000, 0)), "state --camera"));
  EXPECT_TRUE(Contains(Choose(listFlats, MakeOrigin("A", 1000, {})), "state --gain"));
  EXPECT_EQ(Choose(listFlats, MakeOrigin("B", {}, {})), "other");
  EXPECT_TRUE(Contains(Choose({MakeFlat("one", 1000, 0), MakeFlat("two", 2000, 0)}, {}), "state --exposure"));
}

TEST(Library, OfEqualFlatsTheNewestIsChosenAndAnotherSizeNever)
{
  std::vector<SLibraryFlat> listFlats = {MakeFlat("old", 1000, 0), MakeFlat("new", 1000, 0), MakeFlat("wide", 1000, 0)};
  listFlats[0].stSide.strCreated = QStringLiteral("2026-01-01T00:00:00Z");
  listFlats[1].stSide.strCreated = QStringLiteral("2026-02-01T00:00:00Z");
  listFlats[2].stSide.strCreated = QStringLiteral("2026-03-01T00:00:00Z");
  listFlats[2].stSide.nWidth = 128;
  EXPECT_EQ(Choose(listFlats, {}), "new");
  EXPECT_TRUE(Contains(Choose({listFlats[2]}, {}), "no flat for frames of 64 x 48"));
}

TEST(Library, AppliesTheFlatOfTheExposureAndSaysWhich)
{
  const CRecording recording;
  recording.Write(2, 3);
  const QString strLibrary = recording.Path("library");
  for (const char *pExposure : {"1000", "8000"}) {
    const QString strFlat = recording.Path(pExposure) + ".ffc";
    ASSERT_EQ(RunTool({"make", "--dark", recording.Path("dark"), "--bright", recording.Path("bright"), "--pixel-format",
                       "Mono12", "--camera", "Model / 7", "--exposure", pExposure, "-o", strFlat})
                .nExitCode,
              0);
    ASSERT_EQ(RunTool({"library", strLibrary, strFlat}).nExitCode, 0);
  }
  const SToolResult stListed = RunTool({"library", strLibrary, "--json"});
  ASSERT_EQ(stListed.GetObjects().size(), 3U);
  EXPECT_TRUE(stListed.GetObjects()[0]["conditions"].toString().contains("1000 us"));

  const QStringList listApply = {"apply",   recording.Path("bright"), "-o", recording.Path("out"), "--library",
                                 strLibrary};
  const SToolResult stApplied = RunTool(listApply + QStringList{"--exposure", "7000"});
  ASSERT_EQ(stApplied.nExitCode, 0) << stApplied.byteErrors.constData();
  EXPECT_TRUE(stApplied.byteErrors.contains("8000us.ffc")) << stApplied.byteErrors.constData();
  const SToolResult stRefused = RunTool(listApply + QStringList{"--exposure", "3000"});
  EXPECT_EQ(stRefused.nExitCode, 3);
  EXPECT_TRUE(stRefused.byteErrors.contains("3000 us")) << stRefused.byteErrors.constData();
}
