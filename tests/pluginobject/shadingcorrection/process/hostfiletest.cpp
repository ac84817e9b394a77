#include <cstring>

#include <gtest/gtest.h>

#include "pluginobject/statuscode.h"
#include "tests/pluginobject/shadingcorrection/process/hostrig.h"
#include "tests/pluginobject/shadingcorrection/process/scriptedchooser.h"
#include "tests/support/fullvolume.h"

using ffc::genapi::SNodeAccess;
using ffc::pluginobject::CFeatureAccess;
using namespace ffc::test;

namespace {

class HostFile : public CFileTest<CHostRig> {
protected:
  HostFile() { m_rig.Process().SetExpectGray(200); }

  // Coefficients of a bright frame of 120, with a dark one of 10 or without one.
  void MakeCoefficients(bool bDark)
  {
    if (bDark) {
      EXPECT_EQ(m_rig.AcquireDark(10), PLUGIN_STATUS_SUCCESS);
    }
    EXPECT_EQ(m_rig.AcquireBright(120), PLUGIN_STATUS_SUCCESS);
    EXPECT_EQ(m_rig.Process().ExecuteCorrection(), PLUGIN_STATUS_SUCCESS);
  }

  std::vector<uint8_t> Correct(uint32_t nGray)
  {
    std::vector<uint8_t> listCorrected;
    EXPECT_EQ(m_rig.Correct(m_rig.Camera().MakeFrame(nGray), listCorrected), PLUGIN_STATUS_SUCCESS);
    return listCorrected;
  }
};

constexpr int PIXELS = 64 * 48;

} // namespace

TEST_F(HostFile, HasTheBytesOfTheTableAndNothingElse)
{
  MakeCoefficients(false);
  EXPECT_EQ(Save("a.ffc"), PLUGIN_STATUS_SUCCESS);
  const QByteArray bytes = ReadAll(Path("a.ffc"));
  ASSERT_EQ(bytes.size(), 2 * PIXELS);
  // A gain of 200 / 120 for every pixel.
  for (int i = 0; i < PIXELS; ++i) {
    uint16_t nGain = 0;
    std::memcpy(&nGain, bytes.constData() + 2 * i, sizeof nGain);
    ASSERT_EQ((200 * 4096 + 60) / 120, nGain);
  }
}

TEST_F(HostFile, OfAnotherSizeIsRefusedAndTheCoefficientsStayInForce)
{
  MakeCoefficients(true);
  const std::vector<uint8_t> listBefore = Correct(60);
  for (const int nSize : {0, 1, PIXELS, 2 * PIXELS - 1, 2 * PIXELS + 1, 3 * PIXELS, 4 * PIXELS - 1, 4 * PIXELS + 1}) {
    WriteAll(Path("wrong.ffc"), QByteArray(nSize, '\x10'));
    EXPECT_EQ(Load("wrong.ffc"), PLUGIN_STATUS_READ_FILE_ERROR) << nSize;
    EXPECT_EQ(Correct(60), listBefore) << nSize;
    EXPECT_EQ(m_rig.GetTableBytesPerPixel(), 4U) << nSize;
  }
  EXPECT_EQ(m_rig.Process().ExecuteCorrection(), PLUGIN_STATUS_SUCCESS);
}

TEST_F(HostFile, OfTheWrongSizeForANewFormatLeavesFramesOfTheFormerOneCorrected)
{
  MakeCoefficients(true);
  const std::vector<uint8_t> listBefore = Correct(60);
  m_rig.Camera().Integer("Width").Poke(96);
  WriteAll(Path("wrong.ffc"), QByteArray(2 * PIXELS, '\x10'));
  EXPECT_EQ(Load("wrong.ffc"), PLUGIN_STATUS_READ_FILE_ERROR);
  m_rig.Camera().Integer("Width").Poke(64);
  EXPECT_EQ(Correct(60), listBefore);
}

TEST_F(HostFile, IsNotLoadedWhenTheCameraDoesNotTellItsFormat)
{
  MakeCoefficients(true);
  EXPECT_EQ(Save("a.ffc"), PLUGIN_STATUS_SUCCESS);
  const std::vector<uint8_t> listBefore = Correct(60);
  for (const char *pFeature : {"Width", "Height", "PixelFormat"}) {
    m_rig.SetHook([pFeature](const SNodeAccess &stAccess) {
      if (stAccess.strNode == pFeature) {
        throw GenICam::AccessException("refused", __FILE__, __LINE__);
      }
    });
    EXPECT_EQ(Load("a.ffc"), PLUGIN_STATUS_FEATURE_ERROR) << pFeature;
    EXPECT_EQ(Load("missing.ffc"), PLUGIN_STATUS_OPEN_FILE_ERROR) << pFeature; // opened before the camera is asked
    m_rig.SetHook(nullptr);
    EXPECT_EQ(Correct(60), listBefore) << pFeature;
  }
}

TEST_F(HostFile, IsLoadedForTheCamerasCurrentFormatAndWritesNothingToIt)
{
  WriteAll(Path("a.ffc"), QByteArray(2 * 96 * 64, '\x10')); // gains of 0x1010
  m_rig.Camera().Integer("Width").Poke(96);
  m_rig.Camera().Integer("Height").Poke(64);
  const auto mapBefore = m_rig.TakeSnapshot();
  EXPECT_EQ(Load("a.ffc"), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(m_rig.TakeSnapshot(), mapBefore);
  EXPECT_TRUE(m_rig.TakeSignals().empty());
  EXPECT_EQ(m_rig.Process().GetCorrectionInfo().nCoefficientsSize, 2U * 96U * 64U);
  EXPECT_EQ(m_rig.Camera().MakeFrame(201), Correct(200)); // 200 x 4112 / 4096
}

TEST_F(HostFile, ALoadedTableReplacesOneOfAnotherSize)
{
  MakeCoefficients(true);
  WriteAll(Path("a.ffc"), QByteArray(2 * PIXELS, '\x10'));
  EXPECT_EQ(Load("a.ffc"), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(m_rig.Camera().MakeFrame(201), Correct(200));
  EXPECT_EQ(Save("b.ffc"), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(ReadAll(Path("a.ffc")), ReadAll(Path("b.ffc")));
  EXPECT_EQ(m_rig.Process().ExecuteCorrection(), PLUGIN_STATUS_SUCCESS); // the frames are still there
  EXPECT_EQ(m_rig.GetTableBytesPerPixel(), 4U);
}

TEST_F(HostFile, WithoutCoefficientsNothingIsSavedAndNoFileTouched)
{
  WriteAll(Path("a.ffc"), "former");
  EXPECT_EQ(Save("a.ffc"), PLUGIN_STATUS_INVALID_PARAM);
  EXPECT_EQ(Save("b.ffc"), PLUGIN_STATUS_INVALID_PARAM);
  EXPECT_EQ(ReadAll(Path("a.ffc")), "former");
  EXPECT_FALSE(QFile::exists(Path("b.ffc")));
  EXPECT_TRUE(m_chooser.GetQuestions().empty());
}

TEST_F(HostFile, ThatCannotBeWrittenIsReportedAndTheFormerOneStays)
{
  MakeCoefficients(false);
  WriteAll(Path("a.ffc"), "former");
  for (const char *pName : {"a.ffc", "new.ffc"}) {
    const CFullVolume fullVolume(1000);
    EXPECT_EQ(Save(pName), PLUGIN_STATUS_WRITE_FILE_ERROR) << pName;
  }
  EXPECT_EQ(ReadAll(Path("a.ffc")), "former");
  EXPECT_FALSE(QFile::exists(Path("new.ffc")));
}

TEST_F(HostFile, WithoutACameraIsNotLoaded)
{
  WriteAll(Path("a.ffc"), QByteArray(2 * PIXELS, '\x10'));
  CShadingCorrectionPro_PC process{CFeatureAccess(nullptr), CFeatureAccess(nullptr)};
  InstallChooser(process, Path("a.ffc"));
  EXPECT_EQ(process.LoadFromFile(), PLUGIN_STATUS_INVALID_PARAM);
}
