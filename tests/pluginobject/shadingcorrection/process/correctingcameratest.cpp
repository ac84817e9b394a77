#include "tests/support/correctingcamera.h"

#include <gtest/gtest.h>

using namespace ffc::test;
using ffc::genapi::CSoftwareCommand;
using ffc::genapi::CSoftwareRegister;

namespace {

class CorrectingCamera : public testing::Test {
protected:
  void Execute(const char *pCommand) { m_camera.Device().Find<CSoftwareCommand>(pCommand)->Execute(); }
  void Select(const char *pName, const char *pEntry) { m_camera.Enumeration(pName).Select(pEntry); }

  CCorrectingCamera m_camera{"BayerGB8"};
};

} // namespace

TEST_F(CorrectingCamera, AUserSetHoldsEverythingThatCanBeSet)
{
  Select("UserSetSelector", "UserSet0");
  Select("UserSetDefault", "UserSet0");
  m_camera.Integer("Width").Poke(32);
  m_camera.Float("Gain").Poke(5.0);
  Select("DeadPixelCorrect", "On");
  Select("PixelFormat", "BayerGB12");
  m_camera.Enumeration("BalanceWhiteAuto").SetIntValue(2);
  m_camera.m_adBalanceRatio = {4.0, 5.0, 6.0};
  Execute("UserSetSave");
  m_camera.UserSets().Load("Default");
  EXPECT_EQ(m_camera.Integer("Width").Peek(), 64);
  EXPECT_EQ(m_camera.Float("Gain").Peek(), 0.0);
  EXPECT_EQ(m_camera.Enumeration("DeadPixelCorrect").PeekSymbolic(), "Off");
  EXPECT_EQ(m_camera.Enumeration("PixelFormat").PeekSymbolic(), "BayerGB8");
  EXPECT_EQ(m_camera.Enumeration("BalanceWhiteAuto").PeekSymbolic(), "Off");
  EXPECT_EQ((std::array<double, 3>{1.5, 1.0, 1.75}), m_camera.m_adBalanceRatio);
  EXPECT_EQ(m_camera.Enumeration("UserSetSelector").PeekSymbolic(), "UserSet0");
  EXPECT_EQ(m_camera.Enumeration("UserSetDefault").PeekSymbolic(), "UserSet0");
  Execute("UserSetLoad");
  EXPECT_EQ(m_camera.Integer("Width").Peek(), 32);
  EXPECT_EQ(m_camera.Float("Gain").Peek(), 5.0);
  EXPECT_EQ(m_camera.Enumeration("DeadPixelCorrect").PeekSymbolic(), "On");
  EXPECT_EQ(m_camera.Enumeration("PixelFormat").PeekSymbolic(), "BayerGB12");
  EXPECT_EQ(m_camera.Enumeration("BalanceWhiteAuto").PeekSymbolic(), "Continuous");
  EXPECT_EQ((std::array<double, 3>{4.0, 5.0, 6.0}), m_camera.m_adBalanceRatio);
}

TEST_F(CorrectingCamera, UserSetsAreLockedWhileItStreams)
{
  Select("UserSetSelector", "UserSet0");
  m_camera.Integer("TLParamsLocked").Poke(1);
  EXPECT_THROW(Execute("UserSetSave"), GenICam::AccessException);
  EXPECT_THROW(Execute("UserSetLoad"), GenICam::AccessException);
  m_camera.UserSets().SetSaveLocked(false);
  EXPECT_NO_THROW(Execute("UserSetSave"));
  EXPECT_THROW(Execute("UserSetLoad"), GenICam::AccessException);
}

TEST_F(CorrectingCamera, TheFactorySetIsNotOverwritten)
{
  EXPECT_THROW(Execute("UserSetSave"), GenICam::AccessException);
}

TEST_F(CorrectingCamera, AChangeOfTheFactorySetLeavesThePresentState)
{
  m_camera.Float("Gain").Poke(5.0);
  m_camera.ChangeDefault([this] { m_camera.Float("BlackLevel").Poke(2.0); });
  EXPECT_EQ(m_camera.Float("Gain").Peek(), 5.0);
  EXPECT_EQ(m_camera.Float("BlackLevel").Peek(), 0.4);
  Execute("UserSetLoad");
  EXPECT_EQ(m_camera.Float("Gain").Peek(), 0.0);
  EXPECT_EQ(m_camera.Float("BlackLevel").Peek(), 2.0);
}

TEST_F(CorrectingCamera, WithTheTriggerOnSendsOneFrameForEachTrigger)
{
  EXPECT_TRUE(m_camera.TakeFrame());
  Select("TriggerMode", "On");
  m_camera.Integer("TLParamsLocked").Poke(1);
  Execute("TriggerSoftware");
  EXPECT_FALSE(m_camera.TakeFrame()); // it listens to its line
  Select("TriggerSource", "Software");
  Execute("TriggerSoftware");
  EXPECT_TRUE(m_camera.TakeFrame());
  EXPECT_FALSE(m_camera.TakeFrame());
  m_camera.Integer("TLParamsLocked").Poke(0);
  Execute("TriggerSoftware");
  EXPECT_FALSE(m_camera.TakeFrame()); // lost: it does not stream
}

TEST_F(CorrectingCamera, HandsTheRecordOutWithItsBytePairsExchanged)
{
  std::vector<uint8_t> listBytes(30);
  for (std::size_t i = 0; i < listBytes.size(); ++i) {
    listBytes[i] = static_cast<uint8_t>(i);
  }
  m_camera.Correction().SetWritten(listBytes);
  const std::vector<uint8_t> listRead = m_camera.Correction().GetReadBack();
  EXPECT_EQ(listRead[5], 5);
  EXPECT_EQ(listRead[6], 7);
  EXPECT_EQ(listRead[7], 6);
  EXPECT_EQ(listRead[29], 28);
}

TEST_F(CorrectingCamera, ItsRegisterIsAsLongAsTheCoefficientsOfItsFrames)
{
  CSoftwareRegister &coefficients = *m_camera.Device().Find<CSoftwareRegister>("FFCValueAll");
  EXPECT_EQ(coefficients.GetLength(), 4 * 3 * 8 + 24); // 64 x 48: 2 x 1 blocks, for half a block is none
  m_camera.Integer("Height").Poke(50);
  EXPECT_EQ(coefficients.GetLength(), 4 * 4 * 8 + 24);
  Select("FFCBlockSize", "BlockSize_256");
  m_camera.Integer("Height").Poke(48);
  EXPECT_EQ(coefficients.GetLength(), 6 * 5 * 8 + 24);
  EXPECT_EQ(coefficients.GetLength(), m_camera.Integer("FFCCoefficientsSize").Peek());
}
