// How long an operation may keep the user-interface thread, and what comes at the wrong moment.
#include <cstdio>
#include <memory>

#include <gtest/gtest.h>

#include "pluginobject/statuscode.h"
#include "tests/pluginobject/shadingcorrection/process/devicerig.h"
#include "tests/pluginobject/shadingcorrection/process/hostrig.h"
#include "tests/pluginobject/shadingcorrection/process/scriptedchooser.h"
#include "tests/pluginobject/shadingcorrection/process/vignettingrig.h"
#include "tests/reliability/scriptedevent.h"

using namespace ffc::test;
using ffc::genapi::SNodeAccess;

namespace {

constexpr uint64_t TIMEOUT = 1010; // milliseconds, at an exposure of 10000 microseconds
constexpr uint64_t BALANCE_WAITS = 5;
constexpr uint64_t SETTLING_FRAMES = 7;
constexpr uint64_t FRAMES = 4;

enum class EKind { Host, Device, Vignetting };

struct SCamera {
  EKind eKind;
  const char *pPixelFormat;

  std::string Describe() const
  {
    return std::string(eKind == EKind::Host ? "Host" : eKind == EKind::Device ? "Device" : "Vignetting") + pPixelFormat;
  }
  bool IsColour() const { return std::string(pPixelFormat) != "Mono8"; }
};

class Waits : public testing::TestWithParam<SCamera> {
protected:
  Waits()
  {
    switch (GetParam().eKind) {
    case EKind::Host: m_pHost = std::make_unique<CHostRig>(GetParam().pPixelFormat, 64, 64); break;
    case EKind::Device: m_pDevice = std::make_unique<CDeviceRig>(GetParam().pPixelFormat); break;
    default: m_pVignetting = std::make_unique<CVignettingRig>(GetParam().pPixelFormat); break;
    }
    Rig().Show(nullptr); // no frame but those of the script
    EXPECT_EQ(Process().SetFrameCount("FFCFrameCount_4"), PLUGIN_STATUS_SUCCESS);
    if (GetParam().IsColour()) {
      Rig().Camera().SetWhiteBalanceReads(-1); // never done, so that all frames of the balance are taken
    }
    DeliverInTime();
  }
  ~Waits() override { CScriptedTime::SetWait(nullptr); }

  CProcessRig &Rig()
  {
    return m_pHost != nullptr     ? static_cast<CProcessRig &>(*m_pHost)
           : m_pDevice != nullptr ? static_cast<CProcessRig &>(*m_pDevice)
                                  : static_cast<CProcessRig &>(*m_pVignetting);
  }
  IShadingCorrectionProcess &Process() { return Rig().Process(); }

  // One frame, asked for or not.
  void HandFrame(uint32_t nGray = 120)
  {
    const std::vector<uint8_t> listFrame = Rig().Camera().MakeFrame(nGray);
    Process().ReceiveImage(listFrame.data(), static_cast<uint32_t>(listFrame.size()));
    Process().SetImageReady();
  }

  // Every frame comes in the last millisecond.
  void DeliverInTime()
  {
    CScriptedTime::SetWait([this](uint32_t nMilliseconds) {
      if (Process().WaitImageRequest() == 0) {
        HandFrame();
      }
      return nMilliseconds;
    });
  }
  static void DeliverNothing()
  {
    CScriptedTime::SetWait([](uint32_t nMilliseconds) { return nMilliseconds; });
  }

  bool HasDark() const { return GetParam().eKind != EKind::Vignetting; }
  uint64_t GetBrightWaits() const
  {
    const uint64_t nBalance = GetParam().IsColour() && HasDark() ? BALANCE_WAITS : 0;
    return nBalance + (nBalance > 0 && GetParam().eKind == EKind::Host ? SETTLING_FRAMES : 0) + FRAMES;
  }

  std::vector<std::function<int32_t()>> ListAcquisitions()
  {
    std::vector<std::function<int32_t()>> listAcquisitions = {[this] { return Process().AcquireBrightImage(); }};
    if (HasDark()) {
      listAcquisitions.emplace_back([this] { return Process().AcquireDarkImage(); });
    }
    return listAcquisitions;
  }

  // Does something at the n-th access of an acquisition, for every n. \return accesses
  uint64_t AtEveryAccess(const std::function<int32_t()> &fnAcquire, const std::function<void()> &fnDo,
                         const std::function<void(int32_t)> &fnCheck)
  {
    uint64_t nCount = 0;
    uint64_t nWanted = 1;
    do {
      nCount = 0;
      Rig().SetHook([&](const SNodeAccess &) {
        if (++nCount == nWanted) {
          fnDo();
        }
      });
      const Settings mapBefore = Rig().TakeSnapshot();
      const int32_t nStatus = fnAcquire();
      Rig().SetHook(nullptr);
      fnCheck(nStatus);
      EXPECT_EQ(DescribeChanges(Without(mapBefore), Without(Rig().TakeSnapshot())), "") << "access " << nWanted;
      EXPECT_EQ(Process().WaitImageRequest(), 258U);
      Process().SetStopFlag(false);
      EXPECT_EQ(fnAcquire(), PLUGIN_STATUS_SUCCESS) << "after access " << nWanted;
      ++nWanted;
    } while (nWanted <= nCount && !HasFailure());
    return nCount;
  }

  static Settings Without(Settings mapSettings)
  {
    mapSettings.erase("FlatFieldCorrection"); // switched off by an acquisition for vignetting
    return mapSettings;
  }

  std::unique_ptr<CHostRig> m_pHost;
  std::unique_ptr<CDeviceRig> m_pDevice;
  std::unique_ptr<CVignettingRig> m_pVignetting;
};

} // namespace

TEST_P(Waits, ForFramesThatComeInTheLastMomentAddUpToOneForEachFrame)
{
  CScriptedTime::TakeElapsed();
  EXPECT_EQ(Process().AcquireBrightImage(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(GetBrightWaits() * TIMEOUT, CScriptedTime::TakeElapsed());
  EXPECT_EQ(Process().AcquireDarkImage(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(HasDark() ? TIMEOUT : 0, CScriptedTime::TakeElapsed());
}

TEST_P(Waits, ForFramesThatDoNotComeEndWithTheFirst)
{
  DeliverNothing();
  CScriptedTime::TakeElapsed();
  EXPECT_EQ(Process().AcquireBrightImage(), PLUGIN_STATUS_BUFFER_TIMEOUT);
  // The white balance gives up without an error, the first frame then with one.
  EXPECT_EQ((GetParam().IsColour() && HasDark() ? 2 : 1) * TIMEOUT, CScriptedTime::TakeElapsed());
  EXPECT_EQ(Process().AcquireDarkImage(), HasDark() ? PLUGIN_STATUS_BUFFER_TIMEOUT : PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(HasDark() ? TIMEOUT : 0, CScriptedTime::TakeElapsed());
}

TEST_P(Waits, AreNoneInAllOtherOperations)
{
  EXPECT_EQ(Process().AcquireBrightImage(), PLUGIN_STATUS_SUCCESS);
  CScriptedTime::TakeWaits();
  EXPECT_EQ(Process().ExecuteCorrection(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(Process().SetFrameCount("FFCFrameCount_2"), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(Process().SetExpectGray(100), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(Process().SaveToFlash(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(Process().LoadFromFlash(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(Process().InitProcess(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(CScriptedTime::TakeWaits(), 0);
}

TEST_P(Waits, EndWithTheStopFlagInWhateverPhaseItIsSet)
{
  for (const auto &fnAcquire : ListAcquisitions()) {
    const uint64_t nAccesses = AtEveryAccess(
      fnAcquire, [this] { Process().SetStopFlag(true); },
      [](int32_t nStatus) {
        EXPECT_TRUE(nStatus == PLUGIN_STATUS_SUCCESS || nStatus == PLUGIN_STATUS_NEED_BAYER_FORMAT) << nStatus;
      });
    EXPECT_GT(nAccesses, 20U);
  }
}

TEST_P(Waits, AreNotDisturbedByFramesThatComeUnaskedInWhateverPhase)
{
  for (const auto &fnAcquire : ListAcquisitions()) {
    AtEveryAccess(
      fnAcquire, [this] { HandFrame(); }, [](int32_t nStatus) { EXPECT_EQ(nStatus, PLUGIN_STATUS_SUCCESS); });
  }
}

TEST_P(Waits, AFrameThatComesAfterTheTimeoutIsNobodys)
{
  for (const auto &fnAcquire : ListAcquisitions()) {
    DeliverNothing();
    // Between the timeout and the release of the buffer lie the accesses that put the camera back.
    bool bTimedOut = false;
    CScriptedTime::SetWait([&](uint32_t nMilliseconds) {
      bTimedOut = true;
      return nMilliseconds;
    });
    Rig().SetHook([&](const SNodeAccess &) {
      if (bTimedOut) {
        HandFrame(250);
      }
    });
    EXPECT_EQ(fnAcquire(), PLUGIN_STATUS_BUFFER_TIMEOUT);
    Rig().SetHook(nullptr);
    HandFrame(250);
    EXPECT_EQ(Process().WaitImageRequest(), 258U);
    DeliverInTime();
    EXPECT_EQ(fnAcquire(), PLUGIN_STATUS_SUCCESS);
    EXPECT_EQ(Process().GetImageMaxGray(), 120.0); // of a frame that was asked for
  }
}

INSTANTIATE_TEST_SUITE_P(Cameras, Waits,
                         testing::Values(SCamera{EKind::Host, "Mono8"}, SCamera{EKind::Host, "BayerRG8"},
                                         SCamera{EKind::Device, "Mono8"}, SCamera{EKind::Device, "BayerRG8"},
                                         SCamera{EKind::Vignetting, "Mono8"}, SCamera{EKind::Vignetting, "BayerRG8"}),
                         [](const auto &stInfo) { return stInfo.param.Describe(); });
