// Frames at full speed while the user does everything, in an order that nobody has thought of.
#include <algorithm>
#include <cstdio>
#include <random>
#include <set>

#include <gtest/gtest.h>

#include "pluginobject/statuscode.h"
#include "tests/reliability/modulerig.h"
#include "tests/reliability/scale.h"

namespace {

struct SLength {
  uint64_t nOperations;
  uint64_t nFrames;
};

// Of each mode.
SLength GetLength()
{
  const auto read = [](const char *pName, uint64_t nUsual) {
    const qulonglong nNumber = qEnvironmentVariable(pName).toULongLong();
    return nNumber > 0 ? uint64_t{nNumber} : nUsual;
  };
  return IsSoak() ? SLength{read("FFC_SOAK_OPERATIONS", 10000), read("FFC_SOAK_FRAMES", 1000000)} : SLength{80, 1000};
}

// What a user may be told in a camera's ordinary life: a preview or an execution without what it needs.
const std::set<std::string> ANSWERS = {"Invalid input param", "Buffer size is error  "};

class LongRun : public testing::TestWithParam<EMode> {
protected:
  LongRun() : m_rig(GetParam()), m_random(GetSeed()) {}

  EOperation Choose()
  {
    const std::vector<EOperation> listOperations = ListOperations(GetParam());
    const EOperation eOperation = listOperations[m_random() % listOperations.size()];
    const bool bFile = eOperation == EOperation::LoadFile || eOperation == EOperation::SaveFile;
    const bool bSeldom = bFile || eOperation == EOperation::Reopen;
    return bSeldom && m_random() % 8 != 0 ? EOperation::Bright : eOperation;
  }

  bool IsOffered(EOperation eOperation) const
  {
    const char *pName = eOperation == EOperation::Execute   ? "ExecuteShadingCorrection_Button"
                        : eOperation == EOperation::Preview ? "PreviewcheckBox"
                                                            : "SavePC_Button";
    return m_rig.Find<QWidget>(pName)->isEnabled();
  }

  void DoOne()
  {
    const EOperation eOperation = Choose();
    if (!IsOffered(eOperation)) {
      return;
    }
    if (m_random() % 4 == 0) {
      m_rig.Prepare(m_random() % 2 == 0 ? EOperation::FrameCount : EOperation::ExpectGray);
    }
    const SOutcome stOutcome = m_rig.Do(eOperation);
    for (const std::string &strBox : stOutcome.listBoxes) {
      EXPECT_EQ(ANSWERS.count(strBox), 1U) << GetName(eOperation) << ": " << stOutcome.Describe();
    }
    EXPECT_EQ(stOutcome.nStatus, PLUGIN_STATUS_SUCCESS);
    EXPECT_EQ(m_rig.FindTrouble(), "") << GetName(eOperation);
    ++m_nOperations;
  }

  CModuleRig m_rig;
  std::mt19937 m_random;
  uint64_t m_nOperations = 0;
};

} // namespace

TEST_P(LongRun, EndsWithADialogThatStillCorrects)
{
  const SLength stLength = GetLength();
  ASSERT_EQ(m_rig.Correct(), "");
  m_rig.SetRate(0);
  while ((m_nOperations < stLength.nOperations || m_rig.GetDelivered() < stLength.nFrames) && !HasFailure()) {
    DoOne();
  }
  EXPECT_TRUE(m_rig.Do(EOperation::Bright).listBoxes.empty());
  EXPECT_TRUE(m_rig.Do(EOperation::Execute).listBoxes.empty());
  std::printf("%s: %llu operations, %llu frames, %llu of them corrected\n", GetName(GetParam()),
              static_cast<unsigned long long>(m_nOperations), static_cast<unsigned long long>(m_rig.GetDelivered()),
              static_cast<unsigned long long>(m_rig.GetCorrected()));
  EXPECT_EQ(GetParam() == EMode::Host, m_rig.GetCorrected() > 0);
}

INSTANTIATE_TEST_SUITE_P(Modes, LongRun, testing::Values(EMode::Host, EMode::FlatField, EMode::Vignetting),
                         [](const auto &stInfo) { return std::string(GetName(stInfo.param)); });
