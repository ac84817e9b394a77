#include <gtest/gtest.h>

#include "pluginobject/statuscode.h"
#include "tests/pluginobject/shadingcorrection/process/vignettingrig.h"

using namespace ffc::test;
using ffc::genapi::CSoftwareRegister;

namespace {

using Bytes = std::vector<uint8_t>;
using Words = std::vector<uint32_t>;

const Words FRESH = {0, 2, 1, 2, 72, 0};
const Words LOADED = {1, 2, 4, 2, 72, 7};

// A camera with coefficients in its flash.
class VignettingFlash : public testing::Test {
protected:
  VignettingFlash() { Keep(MakeCoefficients(72, 72)); }

  void Keep(const Bytes &listFlash) { m_rig.Camera().Correction().SetFlash(listFlash); }
  int32_t Load() { return m_rig.Process().LoadFromFlash(); }
  int32_t Save() { return m_rig.Process().SaveToFlash(); }
  std::string GetDefaultSet() { return m_rig.Camera().Enumeration("UserSetDefault").PeekSymbolic(); }

  CVignettingRig m_rig;
};

} // namespace

TEST_F(VignettingFlash, IsLoadedWithItsRecordAsItIs)
{
  EXPECT_EQ(Load(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(m_rig.GetInfo(), LOADED);
  EXPECT_EQ(MakeCoefficients(72, 72), m_rig.GetWritten());
  EXPECT_EQ(m_rig.GetCorrection(), "On");
  EXPECT_EQ(Load(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(m_rig.GetInfo(), LOADED);
}

TEST_F(VignettingFlash, AnAcquisitionAfterALoadTakesAsManyFramesAsTheRecordSays)
{
  EXPECT_EQ(Load(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(m_rig.Correct(100), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(m_rig.GetFrameCount(), 4);
  EXPECT_EQ(m_rig.GetInfo(), (Words{1, 2, 4, 2, 72, 7}));
}

TEST_F(VignettingFlash, ARecordOfAnotherSizeIsRefused)
{
  for (const uint32_t nSize : {0U, 24U, 71U, 73U, 72U << 8, 0xFFFFFFFFU}) { // the fifth one has its bytes exchanged
    Keep(MakeCoefficients(72, nSize));
    EXPECT_EQ(Load(), PLUGIN_STATUS_ROI_MISMATCH) << nSize;
    EXPECT_EQ(m_rig.GetInfo(), FRESH) << nSize;
    EXPECT_EQ(m_rig.GetCorrection(), "Off") << nSize;
  }
}

TEST_F(VignettingFlash, IsLoadedInTheSizeThatTheCameraHasNow)
{
  m_rig.Camera().Integer("Width").Poke(320);
  EXPECT_EQ(Load(), PLUGIN_STATUS_ROI_MISMATCH); // its record is of the former size
  Keep(MakeCoefficients(88, 88));
  EXPECT_EQ(Load(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(m_rig.GetInfo(), (Words{1, 2, 4, 2, 88, 7}));
}

TEST_F(VignettingFlash, ARegisterOfAnotherLengthIsRefused)
{
  for (const int64_t nLength : {71, 73, 0}) {
    m_rig.Camera().Device().Find<CSoftwareRegister>("FFCValueAll")->Length(nLength);
    EXPECT_EQ(Load(), PLUGIN_STATUS_ROI_MISMATCH) << nLength;
    EXPECT_EQ(m_rig.GetInfo(), FRESH) << nLength;
    EXPECT_EQ(m_rig.GetCorrection(), "Off") << nLength;
  }
}

TEST_F(VignettingFlash, CoefficientsWithoutRoomForARecordAreRefused)
{
  for (const int64_t nSize : {0, 1, 23}) {
    m_rig.Camera().Integer("FFCCoefficientsSize").OnRead([nSize] { return nSize; });
    EXPECT_EQ(Load(), PLUGIN_STATUS_ROI_MISMATCH) << nSize;
    EXPECT_EQ(m_rig.GetInfo(), FRESH) << nSize;
  }
  m_rig.Camera().Integer("FFCCoefficientsSize").OnRead([] { return 24; });
  Keep(MakeCoefficients(24, 24));
  EXPECT_EQ(Load(), PLUGIN_STATUS_SUCCESS); // nothing but a record
  EXPECT_EQ(m_rig.GetInfo(), (Words{1, 2, 4, 2, 24, 7}));
}

TEST_F(VignettingFlash, ALoadThatTheCameraRefusesKeepsTheRecord)
{
  for (const char *pName : {"FFCCoefficientsSize", "FFCFlashLoad", "FFCValueAll", "FlatFieldCorrection"}) {
    m_rig.Refuse(pName);
    EXPECT_EQ(Load(), PLUGIN_STATUS_FEATURE_ERROR) << pName;
    EXPECT_EQ(m_rig.GetInfo(), FRESH) << pName;
    EXPECT_EQ(m_rig.GetCorrection(), "Off") << pName;
  }
}

TEST_F(VignettingFlash, ALoadWithoutASizeLeavesTheCoefficientsInForce)
{
  EXPECT_EQ(m_rig.Correct(100), PLUGIN_STATUS_SUCCESS);
  const Bytes listWritten = m_rig.GetWritten();
  m_rig.Refuse("FFCCoefficientsSize");
  EXPECT_EQ(Load(), PLUGIN_STATUS_FEATURE_ERROR);
  m_rig.Camera().Integer("FFCCoefficientsSize").OnRead([] { return -1; });
  m_rig.SetHook(nullptr);
  EXPECT_EQ(Load(), PLUGIN_STATUS_OUT_OF_MEMORY);
  EXPECT_EQ(m_rig.GetWritten(), listWritten);
  EXPECT_EQ(m_rig.GetCorrection(), "On");
}

TEST_F(VignettingFlash, KeepsTheCoefficientsAndTheCameraStartsWithThem)
{
  EXPECT_EQ(m_rig.Correct(100), PLUGIN_STATUS_SUCCESS);
  m_rig.Camera().Enumeration("FlatFieldCorrection").Select("Off");
  EXPECT_EQ(Save(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(m_rig.GetWritten(), m_rig.Camera().Correction().GetFlash());
  EXPECT_EQ(GetDefaultSet(), "UserSet0");
  EXPECT_EQ(m_rig.GetCorrection(), "On");
  m_rig.Camera().UserSets().Load("Default");
  EXPECT_EQ(m_rig.GetCorrection(), "Off");
  m_rig.Camera().UserSets().Load("UserSet0");
  EXPECT_EQ(m_rig.GetCorrection(), "On");
}

TEST_F(VignettingFlash, ASaveThatTheCameraRefusesIsReportedAndChangesNoStart)
{
  for (const char *pName :
       {"FFCFlashSave", "FlatFieldCorrection", "UserSetSelector", "UserSetSave", "UserSetDefault"}) {
    m_rig.Refuse(pName);
    EXPECT_EQ(Save(), PLUGIN_STATUS_FEATURE_ERROR) << pName;
    EXPECT_EQ(GetDefaultSet(), "Default") << pName;
  }
}

TEST_F(VignettingFlash, WhileTheStreamRunsTheUserSetIsNotSaved)
{
  m_rig.SetStreaming(true);
  EXPECT_EQ(Load(), PLUGIN_STATUS_SUCCESS); // which needs no user set
  EXPECT_EQ(Save(), PLUGIN_STATUS_FEATURE_ERROR);
  EXPECT_EQ(GetDefaultSet(), "Default");
  EXPECT_TRUE(m_rig.TakeSignals().empty());
}
