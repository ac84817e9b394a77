#include "pluginobject/shadingcorrection/process/coefficients/devicecorrection.h"

#include <gtest/gtest.h>

#include "tests/pluginobject/shadingcorrection/imagecalc/failingnew.h"
#include "tests/support/correctingcamera.h"

using namespace ffc::process;

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
  EXPECT_EQ(-3, ReadCoefficientsSize(CFeatureAccess(nullptr), nSize));
  EXPECT_EQ(7U, nSize);
  EXPECT_EQ(0, ReadCoefficientsSize(Features(), nSize));
  EXPECT_EQ(SIZE, nSize);
  m_camera.Integer("FFCCoefficientsSize").OnRead([] { return -1; });
  EXPECT_EQ(0, ReadCoefficientsSize(Features(), nSize));
  EXPECT_EQ(UINT64_MAX, nSize);
}

TEST_F(DeviceCorrection, MemoryIsZeroedAndBoundedByTheRecord)
{
  EXPECT_EQ(0, AllocateCoefficients(3, m_image));
  EXPECT_EQ((std::vector<uint8_t>{0, 0, 0}), GetImage());
  EXPECT_EQ(0, AllocateCoefficients(0, m_image));
  EXPECT_EQ(-2, AllocateCoefficients(uint64_t{1} << 32, m_image));
  EXPECT_EQ(-2, AllocateCoefficients(UINT64_MAX, m_image));
  const CFailingNew failing;
  EXPECT_EQ(-2, AllocateCoefficients(3, m_image));
}

TEST_F(DeviceCorrection, MemoryOfTheCamerasSizeIsTakenAtTheInitialisation)
{
  m_image.Release();
  EXPECT_EQ(-3, InitCoefficients(CFeatureAccess(nullptr), m_stInfo, m_image));
  EXPECT_FALSE(m_image.IsAllocated());
  EXPECT_EQ(0, InitCoefficients(Features(), m_stInfo, m_image));
  EXPECT_EQ(SIZE, m_image.GetSize());
  EXPECT_EQ(SIZE, m_stInfo.nCoefficientsSize);
  m_camera.Integer("FFCCoefficientsSize").OnRead([] { return -1; });
  EXPECT_EQ(-2, InitCoefficients(Features(), m_stInfo, m_image));
  EXPECT_FALSE(m_image.IsAllocated());
}

TEST_F(DeviceCorrection, ASizeThatCannotBeHadLeavesNoMemoryOfTheFormerSize)
{
  for (const uint64_t nSize : {uint64_t{1} << 32, UINT64_MAX}) {
    EXPECT_EQ(0, AllocateCoefficients(SIZE, m_image));
    EXPECT_EQ(-2, AllocateCoefficients(nSize, m_image));
    EXPECT_FALSE(m_image.IsAllocated()) << nSize;
  }
  EXPECT_EQ(0, AllocateCoefficients(SIZE, m_image));
  const CFailingNew failing;
  EXPECT_EQ(-2, AllocateCoefficients(SIZE, m_image));
  EXPECT_FALSE(m_image.IsAllocated());
}

TEST_F(DeviceCorrection, IsSwitchedOnAndOff)
{
  EXPECT_EQ(0, SwitchCorrectionOn(Features()));
  EXPECT_EQ("On", GetEntry("FlatFieldCorrection"));
  EXPECT_EQ(0, SwitchCorrectionOff(Features()));
  EXPECT_EQ("Off", GetEntry("FlatFieldCorrection"));
  EXPECT_EQ(-3, SwitchCorrectionOn(CFeatureAccess(nullptr)));
  EXPECT_EQ(-3, SwitchCorrectionOff(CFeatureAccess(nullptr)));
}

TEST_F(DeviceCorrection, IsReadAsTheCameraHandsItOut)
{
  m_camera.Correction().SetWritten(std::vector<uint8_t>(SIZE, 7));
  EXPECT_EQ(0, ReadCoefficients(Features(), m_image));
  EXPECT_EQ(std::vector<uint8_t>(SIZE, 7), GetImage());
  ASSERT_TRUE(m_image.Allocate(SIZE + 1));
  EXPECT_EQ(-1015, ReadCoefficients(Features(), m_image));
}

TEST_F(DeviceCorrection, ComesIntoForceWithItsRecord)
{
  m_image.GetData()[0] = 5;
  m_image.GetData()[SIZE - 4] = 6; // the expected grey
  EXPECT_EQ(0, PutIntoForce(Features(), m_image, m_stInfo));
  EXPECT_EQ(GetImage(), m_camera.Correction().GetWritten());
  EXPECT_EQ(6U, m_stInfo.nExpectGray);
  EXPECT_EQ("On", GetEntry("FlatFieldCorrection"));
}

TEST_F(DeviceCorrection, OfAnotherLengthThanTheRegisterDoesNotComeIntoForce)
{
  for (const uint64_t nSize : {SIZE - 1, SIZE + 1}) {
    ASSERT_TRUE(m_image.Allocate(nSize));
    EXPECT_EQ(-1015, PutIntoForce(Features(), m_image, m_stInfo)) << nSize;
    EXPECT_EQ(99U, m_stInfo.nExpectGray) << nSize;
    EXPECT_EQ("Off", GetEntry("FlatFieldCorrection")) << nSize;
  }
}

TEST_F(DeviceCorrection, TheRecordIsTakenAlsoWhenTheCorrectionCannotBeSwitchedOn)
{
  m_camera.Enumeration("FlatFieldCorrection").Access(GenApi::RO);
  EXPECT_EQ(-1002, PutIntoForce(Features(), m_image, m_stInfo));
  EXPECT_EQ(0U, m_stInfo.nExpectGray);
}

TEST_F(DeviceCorrection, OfTheFlashComesThroughTheRegister)
{
  m_camera.Correction().SetFlash(std::vector<uint8_t>(SIZE, 9));
  EXPECT_EQ(0, LoadFlashCoefficients(Features(), m_image));
  EXPECT_EQ(std::vector<uint8_t>(SIZE, 9), GetImage());
  m_camera.Correction().SetWritten(std::vector<uint8_t>(SIZE, 8));
  EXPECT_EQ(0, SaveFlashCoefficients(Features()));
  EXPECT_EQ(std::vector<uint8_t>(SIZE, 8), m_camera.Correction().GetFlash());
  EXPECT_EQ("On", GetEntry("FlatFieldCorrection"));
  EXPECT_EQ("UserSet0", GetEntry("UserSetDefault"));
}
