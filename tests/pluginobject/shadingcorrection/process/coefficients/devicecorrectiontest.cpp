#include "pluginobject/shadingcorrection/process/coefficients/devicecorrection.h"

#include <gtest/gtest.h>

#include "pluginobject/statuscode.h"
#include "tests/pluginobject/shadingcorrection/imagecalc/failingnew.h"
#include "tests/support/correctingcamera.h"

using ffc::pluginobject::CFeatureAccess;
using namespace ffc::process;
using namespace ffc::test;

namespace {

class DeviceCorrection : public testing::Test {
protected:
  static constexpr uint64_t SIZE = 152;

  DeviceCorrection()
  {
    EXPECT_TRUE(m_image.Allocate(SIZE));
    m_camera.Correction().SetRecordExchanged(false);
  }

  CFeatureAccess Features() { return CFeatureAccess(&m_camera.Device()); }
  std::vector<uint8_t> GetImage() const { return {m_image.GetData(), m_image.GetData() + m_image.GetSize()}; }
  std::string GetEntry(const char *pName) { return m_camera.Enumeration(pName).PeekSymbolic(); }

  CCorrectingCamera m_camera{"Mono8", 64, 64};
  CFrameBuffer m_image;
  FFCInfo m_stInfo = {9, 9, 9, 9, 9, 99};
};

} // namespace

TEST_F(DeviceCorrection, ItsSizeIsTheCameras)
{
  uint64_t nSize = 7;
  EXPECT_EQ(ReadCoefficientsSize(CFeatureAccess(nullptr), nSize), PLUGIN_STATUS_INVALID_PARAM);
  EXPECT_EQ(nSize, 7U);
  EXPECT_EQ(ReadCoefficientsSize(Features(), nSize), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(nSize, SIZE);
  m_camera.Integer("FFCCoefficientsSize").OnRead([] { return -1; });
  EXPECT_EQ(ReadCoefficientsSize(Features(), nSize), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(nSize, UINT64_MAX);
}

TEST_F(DeviceCorrection, MemoryIsZeroedAndBoundedByTheRecord)
{
  EXPECT_EQ(AllocateCoefficients(3, m_image), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(GetImage(), (std::vector<uint8_t>{0, 0, 0}));
  EXPECT_EQ(AllocateCoefficients(0, m_image), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(AllocateCoefficients(uint64_t{1} << 32, m_image), PLUGIN_STATUS_OUT_OF_MEMORY);
  EXPECT_EQ(AllocateCoefficients(UINT64_MAX, m_image), PLUGIN_STATUS_OUT_OF_MEMORY);
  const CFailingNew failing;
  EXPECT_EQ(AllocateCoefficients(3, m_image), PLUGIN_STATUS_OUT_OF_MEMORY);
}

TEST_F(DeviceCorrection, MemoryOfTheCamerasSizeIsTakenAtTheInitialisation)
{
  m_image.Release();
  EXPECT_EQ(InitCoefficients(CFeatureAccess(nullptr), m_stInfo, m_image), PLUGIN_STATUS_INVALID_PARAM);
  EXPECT_FALSE(m_image.IsAllocated());
  EXPECT_EQ(InitCoefficients(Features(), m_stInfo, m_image), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(m_image.GetSize(), SIZE);
  EXPECT_EQ(m_stInfo.nCoefficientsSize, SIZE);
  m_camera.Integer("FFCCoefficientsSize").OnRead([] { return -1; });
  EXPECT_EQ(InitCoefficients(Features(), m_stInfo, m_image), PLUGIN_STATUS_OUT_OF_MEMORY);
  EXPECT_FALSE(m_image.IsAllocated());
}

TEST_F(DeviceCorrection, ASizeThatCannotBeHadLeavesNoMemoryOfTheFormerSize)
{
  for (const uint64_t nSize : {uint64_t{1} << 32, UINT64_MAX}) {
    EXPECT_EQ(AllocateCoefficients(SIZE, m_image), PLUGIN_STATUS_SUCCESS);
    EXPECT_EQ(AllocateCoefficients(nSize, m_image), PLUGIN_STATUS_OUT_OF_MEMORY);
    EXPECT_FALSE(m_image.IsAllocated()) << nSize;
  }
  EXPECT_EQ(AllocateCoefficients(SIZE, m_image), PLUGIN_STATUS_SUCCESS);
  const CFailingNew failing;
  EXPECT_EQ(AllocateCoefficients(SIZE, m_image), PLUGIN_STATUS_OUT_OF_MEMORY);
  EXPECT_FALSE(m_image.IsAllocated());
}

TEST_F(DeviceCorrection, IsSwitchedOnAndOff)
{
  EXPECT_EQ(SwitchCorrectionOn(Features()), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(GetEntry("FlatFieldCorrection"), "On");
  EXPECT_EQ(SwitchCorrectionOff(Features()), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(GetEntry("FlatFieldCorrection"), "Off");
  EXPECT_EQ(SwitchCorrectionOn(CFeatureAccess(nullptr)), PLUGIN_STATUS_INVALID_PARAM);
  EXPECT_EQ(SwitchCorrectionOff(CFeatureAccess(nullptr)), PLUGIN_STATUS_INVALID_PARAM);
}

TEST_F(DeviceCorrection, IsReadAsTheCameraHandsItOut)
{
  m_camera.Correction().SetWritten(std::vector<uint8_t>(SIZE, 7));
  EXPECT_EQ(ReadCoefficients(Features(), m_image), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(GetImage(), std::vector<uint8_t>(SIZE, 7));
  ASSERT_TRUE(m_image.Allocate(SIZE + 1));
  EXPECT_EQ(ReadCoefficients(Features(), m_image), PLUGIN_STATUS_ROI_MISMATCH);
}

TEST_F(DeviceCorrection, ComesIntoForceWithItsRecord)
{
  m_image.GetData()[0] = 5;
  m_image.GetData()[SIZE - 4] = 6; // the expected grey
  EXPECT_EQ(PutIntoForce(Features(), m_image, m_stInfo), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(GetImage(), m_camera.Correction().GetWritten());
  EXPECT_EQ(m_stInfo.nExpectGray, 6U);
  EXPECT_EQ(GetEntry("FlatFieldCorrection"), "On");
}

TEST_F(DeviceCorrection, OfAnotherLengthThanTheRegisterDoesNotComeIntoForce)
{
  for (const uint64_t nSize : {SIZE - 1, SIZE + 1}) {
    ASSERT_TRUE(m_image.Allocate(nSize));
    EXPECT_EQ(PutIntoForce(Features(), m_image, m_stInfo), PLUGIN_STATUS_ROI_MISMATCH) << nSize;
    EXPECT_EQ(m_stInfo.nExpectGray, 99U) << nSize;
    EXPECT_EQ(GetEntry("FlatFieldCorrection"), "Off") << nSize;
  }
}

TEST_F(DeviceCorrection, TheRecordIsTakenAlsoWhenTheCorrectionCannotBeSwitchedOn)
{
  m_camera.Enumeration("FlatFieldCorrection").Access(GenApi::RO);
  EXPECT_EQ(PutIntoForce(Features(), m_image, m_stInfo), PLUGIN_STATUS_FEATURE_ERROR);
  EXPECT_EQ(m_stInfo.nExpectGray, 0U);
}

TEST_F(DeviceCorrection, OfTheFlashComesThroughTheRegister)
{
  m_camera.Correction().SetFlash(std::vector<uint8_t>(SIZE, 9));
  EXPECT_EQ(LoadFlashCoefficients(Features(), m_image), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(GetImage(), std::vector<uint8_t>(SIZE, 9));
  m_camera.Correction().SetWritten(std::vector<uint8_t>(SIZE, 8));
  EXPECT_EQ(SaveFlashCoefficients(Features()), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(m_camera.Correction().GetFlash(), std::vector<uint8_t>(SIZE, 8));
  EXPECT_EQ(GetEntry("FlatFieldCorrection"), "On");
  EXPECT_EQ(GetEntry("UserSetDefault"), "UserSet0");
}
