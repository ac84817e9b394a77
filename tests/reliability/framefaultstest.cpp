// Frames as a host should not deliver them.
#include <algorithm>
#include <set>

#include <gtest/gtest.h>

#include "pluginobject/statuscode.h"
#include "tests/reliability/modulerig.h"
#include "tests/reliability/scale.h"

using namespace ffc::test;

namespace {

constexpr double SHORT_EXPOSURE = -970000.0; // the process waits 30 ms for each frame
const std::string TIMEOUT_TEXT = "Get buffer time out";
const std::string BAYER_TEXT = "The pixelformat should be changed to bayer!";

struct SFault {
  const char *pName;
  std::function<void(CModuleRig &)> fnArrange;
  std::string strBox; ///< what an acquisition says; empty when it succeeds
};

// Resized frames: longer ones are cut, shorter ones fill what they can.
CModuleRig::FnFrame Resized(std::ptrdiff_t nMore)
{
  return [nMore](const CTestCamera &camera, uint32_t nGray) {
    std::vector<uint8_t> listFrame = camera.MakeFrame(nGray);
    listFrame.resize(static_cast<std::size_t>(static_cast<std::ptrdiff_t>(listFrame.size()) + nMore),
                     static_cast<uint8_t>(nGray));
    return listFrame;
  };
}

const SFault FAULTS[] = {
  {"None", [](CModuleRig &rig) { rig.SetFrame([](const CTestCamera &, uint32_t) { return std::vector<uint8_t>(); }); },
   TIMEOUT_TEXT},
  {"Null", [](CModuleRig &rig) { rig.SetImageInfo([](PLUGIN_IMAGE_INFO &stInfo) { stInfo.pBuffer = nullptr; }); },
   TIMEOUT_TEXT},
  {"Longer", [](CModuleRig &rig) { rig.SetFrame(Resized(100000)); }, ""},
  {"OneByteLonger", [](CModuleRig &rig) { rig.SetFrame(Resized(1)); }, ""},
  {"OneByteShorter", [](CModuleRig &rig) { rig.SetFrame(Resized(-1)); }, ""},
  {"OfNoBytes", [](CModuleRig &rig) { rig.SetImageInfo([](PLUGIN_IMAGE_INFO &stInfo) { stInfo.nPayloadSize = 0; }); },
   ""},
  {"OfANegativeSize",
   [](CModuleRig &rig) { rig.SetImageInfo([](PLUGIN_IMAGE_INFO &stInfo) { stInfo.nPayloadSize = INT32_MIN; }); }, ""},
  {"OfAnotherWidth", [](CModuleRig &rig) { rig.SetImageInfo([](PLUGIN_IMAGE_INFO &stInfo) { stInfo.nWidth = 32; }); },
   ""},
  {"OfAnotherFormat",
   [](CModuleRig &rig) { rig.SetImageInfo([](PLUGIN_IMAGE_INFO &stInfo) { stInfo.nPixelFormat = 0x02180014; }); },
   BAYER_TEXT},
};

using Case = std::tuple<EMode, const char *, SFault>;

class FrameFaults : public testing::TestWithParam<Case> {
protected:
  FrameFaults() : m_rig(std::get<0>(GetParam()), std::get<1>(GetParam())) {}

  // A monochrome camera's format is not looked at.
  std::string GetBox() const
  {
    const SFault &stFault = std::get<2>(GetParam());
    const bool bMono = std::string(std::get<1>(GetParam())) == "Mono8";
    return bMono && stFault.strBox == BAYER_TEXT ? std::string() : stFault.strBox;
  }

  CModuleRig m_rig;
};

} // namespace

TEST_P(FrameFaults, AreToldOrSurvivedAndTheNextFramesAreGood)
{
  ASSERT_EQ(m_rig.Correct(), "");
  for (const EOperation eOperation : {EOperation::Bright, EOperation::Dark}) {
    if (m_rig.GetMode() == EMode::Vignetting && eOperation == EOperation::Dark) {
      continue;
    }
    if (GetBox() == TIMEOUT_TEXT) {
      // Only where nothing comes in time anyway: a busy machine may need longer for a frame.
      m_rig.Camera().Float("ExposureTime").Poke(SHORT_EXPOSURE);
    }
    const Settings mapBefore = m_rig.TakeSettings();
    std::get<2>(GetParam()).fnArrange(m_rig);
    const SOutcome stOutcome = m_rig.Do(eOperation);
    EXPECT_EQ(GetBox(), stOutcome.listBoxes.empty() ? std::string() : stOutcome.listBoxes.front());
    EXPECT_EQ(DescribeChanges(mapBefore, m_rig.TakeSettings()), "");
    EXPECT_EQ(m_rig.FindTrouble(), "");
    m_rig.SetFrame(nullptr);
    m_rig.SetImageInfo(nullptr);
    m_rig.Camera().Float("ExposureTime").Poke(10000.0);
    EXPECT_TRUE(m_rig.Do(eOperation).listBoxes.empty());
  }
  EXPECT_TRUE(m_rig.Do(EOperation::Bright).listBoxes.empty());
  EXPECT_TRUE(m_rig.Do(EOperation::Execute).listBoxes.empty());
}

INSTANTIATE_TEST_SUITE_P(Cameras, FrameFaults,
                         testing::Combine(testing::Values(EMode::Host, EMode::FlatField, EMode::Vignetting),
                                          testing::Values("Mono8", "BayerRG8"), testing::ValuesIn(FAULTS)),
                         [](const auto &stInfo) {
                           return std::string(GetName(std::get<0>(stInfo.param))) + std::get<1>(stInfo.param) +
                                  std::get<2>(stInfo.param).pName;
                         });

TEST(FrameStorm, AtTheMachinesLimitHindersNoOperation)
{
  for (const EMode eMode : {EMode::Host, EMode::FlatField, EMode::Vignetting}) {
    CModuleRig rig(eMode);
    rig.SetRate(0);
    ASSERT_EQ(rig.Correct(), "") << GetName(eMode);
    for (const EOperation eOperation : ListOperations(eMode)) {
      if (eOperation != EOperation::Preview) {
        const SOutcome stOutcome = rig.Do(eOperation);
        EXPECT_TRUE(stOutcome.listBoxes.empty()) << GetName(eOperation) << ": " << stOutcome.Describe();
      }
      if (eOperation == EOperation::Reopen) {
        break;
      }
    }
  }
}

TEST(FrameGeometry, ThatChangesBetweenAcquisitionsIsFollowed)
{
  for (const EMode eMode : {EMode::Host, EMode::FlatField, EMode::Vignetting}) {
    CModuleRig rig(eMode);
    ASSERT_EQ(rig.Correct(), "") << GetName(eMode);
    for (const int64_t nWidth : {128, 256, 64}) {
      const int64_t nReal = eMode == EMode::Vignetting ? nWidth * 2 : nWidth;
      rig.Camera().Integer("Width").Poke(nReal);
      if (eMode == EMode::FlatField) {
        auto &camera = dynamic_cast<CCorrectingCamera &>(rig.Camera());
        camera.ChangeDefault([&] { rig.Camera().Integer("Width").Poke(nReal); });
        // Coefficients of another size are another table.
        EXPECT_EQ(rig.Do(EOperation::Reopen).nStatus, PLUGIN_STATUS_SUCCESS);
        (void)rig.Do(EOperation::Bright); // the payload is that of the acquisition before, once
      }
      const SOutcome stBright = rig.Do(EOperation::Bright);
      EXPECT_TRUE(stBright.listBoxes.empty()) << GetName(eMode) << nReal << stBright.Describe();
      const SOutcome stOutcome = rig.Do(EOperation::Execute);
      EXPECT_TRUE(stOutcome.listBoxes.empty()) << GetName(eMode) << nReal << stOutcome.Describe();
    }
  }
}
