#include "tests/support/correctingcamera.h"

#include <gtest/gtest.h>

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
  EXPECT_EQ(64, m_camera.Integer("Width").Peek());
  EXPECT_EQ(0.0, m_camera.Float("Gain").Peek());
  EXPECT_EQ("Off", m_camera.Enumeration("DeadPixelCorrect").PeekSymbolic());
  EXPECT_EQ("BayerGB8", m_camera.Enumeration("PixelFormat").PeekSymbolic());
  EXPECT_EQ("Off", m_camera.Enumeration("BalanceWhiteAuto").PeekSymbolic());
  EXPECT_EQ((std::array<double, 3>{1.5, 1.0, 1.75}), m_camera.m_adBalanceRatio);
  EXPECT_EQ("UserSet0", m_camera.Enumeration("UserSetSelector").PeekSymbolic());
  EXPECT_EQ("UserSet0", m_camera.Enumeration("UserSetDefault").PeekSymbolic());
  Execute("UserSetLoad");
  EXPECT_EQ(32, m_camera.Integer("Width").Peek());
  EXPECT_EQ(5.0, m_camera.Float("Gain").Peek());
  EXPECT_EQ("On", m_camera.Enumeration("DeadPixelCorrect").PeekSymbolic());
  EXPECT_EQ("BayerGB12", m_camera.Enumeration("PixelFormat").PeekSymbolic());
  EXPECT_EQ("Continuous", m_camera.Enumeration("BalanceWhiteAuto").PeekSymbolic());
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
  EXPECT_EQ(5.0, m_camera.Float("Gain").Peek());
  EXPECT_EQ(0.4, m_camera.Float("BlackLevel").Peek());
  Execute("UserSetLoad");
  EXPECT_EQ(0.0, m_camera.Float("Gain").Peek());
  EXPECT_EQ(2.0, m_camera.Float("BlackLevel").Peek());
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
  EXPECT_EQ(5, listRead[5]);
  EXPECT_EQ(7, listRead[6]);
  EXPECT_EQ(6, listRead[7]);
  EXPECT_EQ(28, listRead[29]);
}

TEST_F(CorrectingCamera, ItsRegisterIsAsLongAsTheCoefficientsOfItsFrames)
{
  CSoftwareRegister &coefficients = *m_camera.Device().Find<CSoftwareRegister>("FFCValueAll");
  EXPECT_EQ(4 * 3 * 8 + 24, coefficients.GetLength()); // 64 x 48: 2 x 1 blocks, for half a block is none
  m_camera.Integer("Height").Poke(50);
  EXPECT_EQ(4 * 4 * 8 + 24, coefficients.GetLength());
  Select("FFCBlockSize", "BlockSize_256");
  m_camera.Integer("Height").Poke(48);
  EXPECT_EQ(6 * 5 * 8 + 24, coefficients.GetLength());
  EXPECT_EQ(coefficients.GetLength(), m_camera.Integer("FFCCoefficientsSize").Peek());
}
