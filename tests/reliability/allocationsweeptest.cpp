// Every allocation of the module's own code fails once, in every operation. What it then leaks, the address sanitizer
// tells at the end.
#include <cstdio>
#include <set>

#include <gtest/gtest.h>

#include "tests/reliability/moduleallocations.h"
#include "tests/reliability/modulerig.h"
#include "tests/reliability/scale.h"

namespace {

// No memory, as such or as a feature that could not be read.
const std::set<std::string> ANSWERS = {"Out of memory", "Failure to operation device feature",
                                       "The pixelformat not implement!", "The pixelformat should be changed to bayer!"};
const std::set<int32_t> STATUSES = {0, -2, -1002};

class AllocationSweep : public testing::TestWithParam<EMode> {
protected:
  AllocationSweep() : m_rig(GetParam(), GetParam() == EMode::Host ? "BayerRG8" : "Mono8") {}

  QByteArray ReadFile() const
  {
    QFile file(m_rig.Path("table.ffc"));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
  }

  SOutcome DoFailing(EOperation eOperation, uint64_t nFailing, uint64_t &nCount)
  {
    m_rig.Prepare(eOperation);
    const CModuleAllocations allocations(nFailing);
    SOutcome stOutcome = m_rig.Do(eOperation);
    nCount = allocations.GetCount();
    m_nFailures += allocations.HasFailed() ? 1 : 0;
    return stOutcome;
  }

  void FailOnce(EOperation eOperation, uint64_t nFailing)
  {
    SCOPED_TRACE("allocation " + std::to_string(nFailing));
    m_rig.Prepare(eOperation);
    const Settings mapBefore = m_rig.TakeSettings();
    const QByteArray byteBefore = ReadFile();
    uint64_t nCount = 0;
    const SOutcome stFailed = DoFailing(eOperation, nFailing, nCount);
    EXPECT_LE(stFailed.listBoxes.size(), 1U) << stFailed.Describe();
    for (const std::string &strBox : stFailed.listBoxes) {
      EXPECT_EQ(1U, ANSWERS.count(strBox)) << stFailed.Describe();
    }
    EXPECT_EQ(1U, STATUSES.count(stFailed.nStatus)) << stFailed.Describe();
    EXPECT_EQ(byteBefore, ReadFile()); // whole, before or after
    for (const auto &[strName, strValue] : m_rig.TakeSettings()) {
      EXPECT_TRUE(strValue == mapBefore.at(strName) || strValue == m_mapReference.at(strName))
        << strName << ": " << mapBefore.at(strName) << " -> " << strValue;
    }
    EXPECT_EQ("", m_rig.FindTrouble());
    if (stFailed.nStatus != 0) {
      EXPECT_EQ(0, m_rig.Do(EOperation::Reopen).nStatus);
    }
    m_rig.Prepare(eOperation);
    const SOutcome stAgain = m_rig.Do(eOperation);
    EXPECT_TRUE(stAgain.listBoxes.empty()) << stAgain.Describe();
  }

  void Sweep(EOperation eOperation)
  {
    SCOPED_TRACE(GetName(eOperation));
    uint64_t nCount = 0;
    (void)DoFailing(eOperation, 0, nCount); // what is made once
    const SOutcome stOutcome = DoFailing(eOperation, 0, nCount);
    ASSERT_TRUE(stOutcome.listBoxes.empty()) << stOutcome.Describe();
    m_mapReference = m_rig.TakeSettings();
    const uint64_t nStep = GetStride();
    for (uint64_t nFailing = 1; nFailing <= nCount && !HasFailure(); nFailing += nStep) {
      FailOnce(eOperation, nFailing);
    }
    std::printf("%s, %s: %llu allocations, %llu failures so far\n", GetName(GetParam()), GetName(eOperation),
                static_cast<unsigned long long>(nCount), static_cast<unsigned long long>(m_nFailures));
  }

  CModuleRig m_rig;
  Settings m_mapReference;
  uint64_t m_nFailures = 0;
};

} // namespace

TEST_P(AllocationSweep, EveryFailureIsToldAndLeavesNothingHalfDone)
{
  ASSERT_EQ("", m_rig.Correct());
  ASSERT_EQ("", CModuleAllocations::Watch(PLUGIN_MODULE));
  for (const EOperation eOperation : ListOperations(GetParam())) {
    Sweep(eOperation);
    if (eOperation == EOperation::Reopen) {
      ASSERT_EQ("", m_rig.Correct());
    }
  }
  EXPECT_GT(m_nFailures, 0U);
}

INSTANTIATE_TEST_SUITE_P(Modes, AllocationSweep, testing::Values(EMode::Host, EMode::FlatField, EMode::Vignetting),
                         [](const auto &stInfo) { return std::string(GetName(stInfo.param)); });

TEST(AllocationOfThePlugin, ThatFailsGivesNoObject)
{
  CModuleRig rig(EMode::Host);
  ASSERT_EQ("", CModuleAllocations::Watch(PLUGIN_MODULE));
  const auto fnCreate = reinterpret_cast<FnCreatePluginObject>(rig.Library().resolve(CREATE_PLUGIN_OBJECT));
  const auto fnDestory = reinterpret_cast<FnDestoryPluginObject>(rig.Library().resolve(DESTORY_PLUGIN_OBJECT));
  uint64_t nCount = 0;
  {
    const CModuleAllocations allocations(0);
    fnDestory(fnCreate());
    nCount = allocations.GetCount();
  }
  EXPECT_GE(nCount, 2U);
  for (uint64_t nFailing = 1; nFailing <= nCount; ++nFailing) {
    IPlugin *pPlugin = nullptr;
    bool bFailed = false;
    {
      const CModuleAllocations allocations(nFailing);
      pPlugin = fnCreate();
      bFailed = allocations.HasFailed();
    }
    EXPECT_EQ(bFailed, pPlugin == nullptr) << nFailing;
    fnDestory(pPlugin);
  }
}

TEST(AllocationOfTheDialog, ThatFailsIsOutOfMemoryAndTheNextInitialisationSucceeds)
{
  CModuleRig rig(EMode::FlatField);
  ASSERT_EQ("", CModuleAllocations::Watch(PLUGIN_MODULE));
  {
    const CModuleAllocations allocations(1);
    EXPECT_EQ(-2, rig.Open());
    EXPECT_TRUE(allocations.HasFailed());
  }
  rig.Close();
  EXPECT_EQ(0, rig.Open());
}
