#include <gtest/gtest.h>

#include "tests/pluginobject/shadingcorrection/process/vignettingrig.h"

using namespace ffc::test;

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
  EXPECT_EQ(0, Load());
  EXPECT_EQ(LOADED, m_rig.GetInfo());
  EXPECT_EQ(MakeCoefficients(72, 72), m_rig.GetWritten());
  EXPECT_EQ("On", m_rig.GetCorrection());
  EXPECT_EQ(0, Load());
  EXPECT_EQ(LOADED, m_rig.GetInfo());
}

TEST_F(VignettingFlash, AnAcquisitionAfterALoadTakesAsManyFramesAsTheRecordSays)
{
  EXPECT_EQ(0, Load());
  EXPECT_EQ(0, m_rig.Correct(100));
  EXPECT_EQ(4, m_rig.GetFrameCount());
  EXPECT_EQ((Words{1, 2, 4, 2, 72, 7}), m_rig.GetInfo());
}

TEST_F(VignettingFlash, ARecordOfAnotherSizeIsRefused)
{
  for (const uint32_t nSize : {0U, 24U, 71U, 73U, 72U << 8, 0xFFFFFFFFU}) { // the fifth one has its bytes exchanged
    Keep(MakeCoefficients(72, nSize));
    EXPECT_EQ(-1015, Load()) << nSize;
    EXPECT_EQ(FRESH, m_rig.GetInfo()) << nSize;
    EXPECT_EQ("Off", m_rig.GetCorrection()) << nSize;
  }
}

TEST_F(VignettingFlash, IsLoadedInTheSizeThatTheCameraHasNow)
{
  m_rig.Camera().Integer("Width").Poke(320);
  EXPECT_EQ(-1015, Load()); // its record is of the former size
  Keep(MakeCoefficients(88, 88));
  EXPECT_EQ(0, Load());
  EXPECT_EQ((Words{1, 2, 4, 2, 88, 7}), m_rig.GetInfo());
}

TEST_F(VignettingFlash, ARegisterOfAnotherLengthIsRefused)
{
  for (const int64_t nLength : {71, 73, 0}) {
    m_rig.Camera().Device().Find<CSoftwareRegister>("FFCValueAll")->Length(nLength);
    EXPECT_EQ(-1015, Load()) << nLength;
    EXPECT_EQ(FRESH, m_rig.GetInfo()) << nLength;
    EXPECT_EQ("Off", m_rig.GetCorrection()) << nLength;
  }
}

TEST_F(VignettingFlash, CoefficientsWithoutRoomForARecordAreRefused)
{
  for (const int64_t nSize : {0, 1, 23}) {
    m_rig.Camera().Integer("FFCCoefficientsSize").OnRead([nSize] { return nSize; });
    EXPECT_EQ(-1015, Load()) << nSize;
    EXPECT_EQ(FRESH, m_rig.GetInfo()) << nSize;
  }
  m_rig.Camera().Integer("FFCCoefficientsSize").OnRead([] { return 24; });
  Keep(MakeCoefficients(24, 24));
  EXPECT_EQ(0, Load()); // nothing but a record
  EXPECT_EQ((Words{1, 2, 4, 2, 24, 7}), m_rig.GetInfo());
}

TEST_F(VignettingFlash, ALoadThatTheCameraRefusesKeepsTheRecord)
{
  for (const char *pName : {"FFCCoefficientsSize", "FFCFlashLoad", "FFCValueAll", "FlatFieldCorrection"}) {
    m_rig.Refuse(pName);
    EXPECT_EQ(-1002, Load()) << pName;
    EXPECT_EQ(FRESH, m_rig.GetInfo()) << pName;
    EXPECT_EQ("Off", m_rig.GetCorrection()) << pName;
  }
}

TEST_F(VignettingFlash, ALoadWithoutASizeLeavesTheCoefficientsInForce)
{
  EXPECT_EQ(0, m_rig.Correct(100));
  const Bytes listWritten = m_rig.GetWritten();
  m_rig.Refuse("FFCCoefficientsSize");
  EXPECT_EQ(-1002, Load());
  m_rig.Camera().Integer("FFCCoefficientsSize").OnRead([] { return -1; });
  m_rig.SetHook(nullptr);
  EXPECT_EQ(-2, Load());
  EXPECT_EQ(listWritten, m_rig.GetWritten());
  EXPECT_EQ("On", m_rig.GetCorrection());
}

TEST_F(VignettingFlash, KeepsTheCoefficientsAndTheCameraStartsWithThem)
{
  EXPECT_EQ(0, m_rig.Correct(100));
  m_rig.Camera().Enumeration("FlatFieldCorrection").Select("Off");
  EXPECT_EQ(0, Save());
  EXPECT_EQ(m_rig.GetWritten(), m_rig.Camera().Correction().GetFlash());
  EXPECT_EQ("UserSet0", GetDefaultSet());
  EXPECT_EQ("On", m_rig.GetCorrection());
  m_rig.Camera().UserSets().Load("Default");
  EXPECT_EQ("Off", m_rig.GetCorrection());
  m_rig.Camera().UserSets().Load("UserSet0");
  EXPECT_EQ("On", m_rig.GetCorrection());
}

TEST_F(VignettingFlash, WhatWasSavedIsLoadedWithTheSameRecord)
{
  EXPECT_EQ(0, m_rig.Process().SetFrameCount("FFCFrameCount_2"));
  EXPECT_EQ(0, m_rig.Correct(100));
  const Bytes listWritten = m_rig.GetWritten();
  EXPECT_EQ(0, Save());
  EXPECT_EQ(0, m_rig.Process().SetFrameCount("FFCFrameCount_16"));
  m_rig.Camera().Correction().SetWritten({});
  EXPECT_EQ(0, Load());
  EXPECT_EQ((Words{1, 2, 2, 2, 72, 0}), m_rig.GetInfo());
  EXPECT_EQ(listWritten, m_rig.GetWritten());
}

TEST_F(VignettingFlash, ASaveThatTheCameraRefusesIsReportedAndChangesNoStart)
{
  for (const char *pName :
       {"FFCFlashSave", "FlatFieldCorrection", "UserSetSelector", "UserSetSave", "UserSetDefault"}) {
    m_rig.Refuse(pName);
    EXPECT_EQ(-1002, Save()) << pName;
    EXPECT_EQ("Default", GetDefaultSet()) << pName;
  }
}

TEST_F(VignettingFlash, WhileTheStreamRunsTheUserSetIsNotSaved)
{
  m_rig.SetStreaming(true);
  EXPECT_EQ(0, Load()); // which needs no user set
  EXPECT_EQ(-1002, Save());
  EXPECT_EQ("Default", GetDefaultSet());
  EXPECT_TRUE(m_rig.TakeSignals().empty());
}
