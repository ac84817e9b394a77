// Sizes from a camera that may be anything.
#include <algorithm>
#include <cstdio>
#include <set>

#include <gtest/gtest.h>

#include "tests/reliability/modulerig.h"
#include "tests/reliability/scale.h"

using ffc::genapi::CSoftwareNodeMap;

namespace {

constexpr int64_t ONE = 1;

const std::vector<int64_t> NUMBERS = {INT64_MIN,
                                      -(ONE << 32),
                                      -(ONE << 31),
                                      -64,
                                      -1,
                                      0,
                                      1,
                                      63,
                                      65535,
                                      65536,
                                      (ONE << 31) - 1,
                                      ONE << 31,
                                      (ONE << 31) + 64,
                                      (ONE << 32) - 1,
                                      ONE << 32,
                                      (ONE << 32) + 64,
                                      ONE << 48,
                                      ONE << 62,
                                      INT64_MAX};

// Buffers from this size on are refused: the file's format ends here, or what the thread sanitizer may give at once.
#if defined(__SANITIZE_THREAD__)
constexpr int64_t TOO_LARGE = ONE << 30;
#else
constexpr int64_t TOO_LARGE = ONE << 32;
#endif

// What a size that cannot be may be answered with; a box tells each of them.
const std::set<std::string> ANSWERS = {
  "Out of memory",
  "Invalid input param",
  "Failure to operation device feature",
  "Read file error",
  "Get buffer time out",
  "Buffer size is error  ",
  "Current ROI is not matching with the coefficient  ",
  "The current device parameters have been modified. Please restore the default parameters and try again!"};

class HostileNumbers : public testing::TestWithParam<EMode> {
protected:
  HostileNumbers() : m_rig(GetParam()) {}

  // Every operation while some sizes are another number.
  void Try(const std::vector<const char *> &listNames, int64_t nNumber)
  {
    SCOPED_TRACE(std::string(listNames.front()) + " " + std::to_string(nNumber));
    CSoftwareNodeMap map;
    for (const char *pName : listNames) {
      map.AddInteger(pName, nNumber);
    }
    m_rig.ReplaceFeatures(&map);
    for (const EOperation eOperation : ListOperations(GetParam())) {
      if (IsTried(eOperation)) {
        TryOperation(eOperation);
      }
    }
    m_rig.ReplaceFeatures(nullptr);
  }

  bool IsTried(EOperation eOperation)
  {
    switch (eOperation) {
    case EOperation::Reopen:
    case EOperation::SaveFile: return false;
    case EOperation::Preview: return m_rig.Find<QCheckBox>("PreviewcheckBox")->isEnabled();
    case EOperation::LoadFile: return IsSoak() || m_nTrials % 4 == 0; // its dialog takes long
    default: return true;
    }
  }

  void TryOperation(EOperation eOperation)
  {
    const SOutcome stOutcome = m_rig.Do(eOperation);
    for (const std::string &strBox : stOutcome.listBoxes) {
      EXPECT_EQ(ANSWERS.count(strBox), 1U) << GetName(eOperation) << ": " << stOutcome.Describe();
    }
    EXPECT_EQ(m_rig.FindTrouble(), "") << GetName(eOperation);
    ++m_nTrials;
  }

  void TryAll(const std::vector<const char *> &listNames)
  {
    for (std::size_t n = 0; n < NUMBERS.size(); n += IsSoak() ? 1 : 2 + GetStride()) {
      Try(listNames, NUMBERS[n]);
    }
    // The camera tells its real sizes again, and all is well.
    EXPECT_TRUE(m_rig.Do(EOperation::Bright).listBoxes.empty());
    const SOutcome stOutcome = m_rig.Do(EOperation::Execute);
    EXPECT_TRUE(stOutcome.listBoxes.empty()) << stOutcome.Describe();
  }

  CModuleRig m_rig;
  int m_nTrials = 0;
};

} // namespace

TEST_P(HostileNumbers, AreRefusedInEveryOperationAndForgottenAfterwards)
{
  ASSERT_EQ(m_rig.Correct(), "");
  TryAll({"Width", "OutputWidth"});
  TryAll({"Height", "OutputHeight"});
  TryAll({"Width", "OutputWidth", "Height", "OutputHeight"});
  TryAll({"PayloadSize", "OutputPayloadSize"});
  TryAll({"OutputPayloadSize"});
  if (GetParam() != EMode::Host) {
    TryAll({"FFCCoefficientsSize"});
  }
  std::printf("%s: %d operations\n", GetName(GetParam()), m_nTrials);
}

TEST_P(HostileNumbers, OfCoefficientsAtTheInitialisationLeaveADialogThatCanBeOpenedAgain)
{
  if (GetParam() == EMode::Host) {
    ASSERT_EQ(m_rig.Correct(), "");
    return;
  }
  for (const int64_t nNumber : NUMBERS) {
    CSoftwareNodeMap map;
    map.AddInteger("FFCCoefficientsSize", nNumber);
    m_rig.ReplaceFeatures(&map);
    const int32_t nStatus = m_rig.Open();
    EXPECT_TRUE(nStatus == 0 || nStatus == -2) << nNumber << ": " << nStatus;
    EXPECT_EQ(nNumber < 0 || nNumber >= TOO_LARGE, nStatus == -2) << nNumber;
    // A dialog that has room for other coefficients than the camera's computes none.
    m_rig.ReplaceFeatures(nullptr);
    m_rig.Close();
  }
  EXPECT_EQ(m_rig.Correct(), "");
}

INSTANTIATE_TEST_SUITE_P(Modes, HostileNumbers, testing::Values(EMode::Host, EMode::FlatField, EMode::Vignetting),
                         [](const auto &stInfo) { return std::string(GetName(stInfo.param)); });

TEST(HostileFrames, OfAnySizeTheHostMayTellAreSurvived)
{
  CModuleRig rig(EMode::Host);
  ASSERT_EQ(rig.Correct(), "");
  for (const int64_t nNumber : NUMBERS) {
    rig.SetImageInfo([nNumber](PLUGIN_IMAGE_INFO &stInfo) {
      stInfo.nWidth = static_cast<int32_t>(nNumber);
      stInfo.nHeight = static_cast<int32_t>(nNumber >> 16);
      stInfo.nPayloadSize = std::min(stInfo.nPayloadSize, static_cast<int32_t>(nNumber));
    });
    (void)rig.Do(EOperation::Bright);
    (void)rig.Do(EOperation::Dark);
    rig.SetImageInfo(nullptr);
    EXPECT_EQ(rig.FindTrouble(), "") << nNumber;
  }
  EXPECT_TRUE(rig.Do(EOperation::Bright).listBoxes.empty());
  EXPECT_TRUE(rig.Do(EOperation::Execute).listBoxes.empty());
}
