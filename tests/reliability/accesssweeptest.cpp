// Every access to a feature fails once, through the dialog's buttons.
#include <cstdio>
#include <iterator>
#include <set>
#include <tuple>

#include <gtest/gtest.h>

#include "pluginobject/statuscode.h"
#include "tests/reliability/modulerig.h"
#include "tests/reliability/scale.h"

using namespace ffc::test;

namespace {

using Kind = std::optional<EAccessFailure>; // none: there is no such node

const std::string FEATURE_TEXT = "Failure to operation device feature";
const std::string INVALID_TEXT = "Invalid input param";

// What an operation may say when one of its accesses fails: the access's own code, or the one that its Part of the
// work has for it.
const std::set<std::string> FAILURE_TEXTS = {FEATURE_TEXT, INVALID_TEXT, "The pixelformat not implement!",
                                             "The pixelformat should be changed to bayer!"};

std::vector<Kind> ListKinds(uint64_t nAccess)
{
  constexpr std::size_t COUNT = std::size(ALL_ACCESS_FAILURES);
  if (IsSoak()) {
    std::vector<Kind> listKinds(std::begin(ALL_ACCESS_FAILURES), std::end(ALL_ACCESS_FAILURES));
    listKinds.emplace_back(std::nullopt);
    return listKinds;
  }
  // One exception for each access, so that neighbours have different ones, and the missing node for every other.
  std::vector<Kind> listKinds = {ALL_ACCESS_FAILURES[nAccess * 5 % COUNT]};
  if (nAccess % 2 == 1) {
    listKinds.emplace_back(std::nullopt);
  }
  return listKinds;
}

std::string Describe(uint64_t nAccess, const Kind &kind)
{
  return "access " + std::to_string(nAccess) +
         (kind.has_value() ? ", kind " + std::to_string(static_cast<int>(*kind)) : std::string(", no node"));
}

using Sweep = std::tuple<EMode, const char *>; // and the pixel format

class AccessSweep : public testing::TestWithParam<Sweep> {
protected:
  AccessSweep() : m_rig(std::get<0>(GetParam()), std::get<1>(GetParam())) {}

  // The operation as it goes when nothing fails.
  void TakeReference()
  {
    m_rig.Prepare(m_eOperation);
    m_rig.Fault().Disarm();
    m_stReference = m_rig.Do(m_eOperation);
    m_nAccesses = m_rig.Fault().GetCount();
    ASSERT_TRUE(m_stReference.listBoxes.empty()) << m_stReference.Describe();
    ASSERT_EQ(m_stReference.nStatus, PLUGIN_STATUS_SUCCESS);
    m_mapReference = m_rig.TakeSettings();
  }

  // A feature is as before, or as the operation leaves it when all goes well.
  void ExpectSettings(const Settings &mapBefore)
  {
    for (const auto &[strName, strValue] : m_rig.TakeSettings()) {
      EXPECT_TRUE(strValue == mapBefore.at(strName) || strValue == m_mapReference.at(strName))
        << strName << ": " << mapBefore.at(strName) << " -> " << strValue;
    }
  }

  void ExpectFailure(const SOutcome &stOutcome, const Kind &kind)
  {
    EXPECT_LE(stOutcome.listBoxes.size(), 1U) << stOutcome.Describe();
    for (const std::string &strBox : stOutcome.listBoxes) {
      EXPECT_EQ(FAILURE_TEXTS.count(strBox), 1U) << stOutcome.Describe();
      EXPECT_FALSE(kind.has_value() && strBox == INVALID_TEXT) << stOutcome.Describe();
      EXPECT_TRUE(stOutcome.strPrompt.empty() || stOutcome.strPrompt == "Failed to execute FFC")
        << stOutcome.Describe();
    }
    const std::set<int32_t> setStatuses = {PLUGIN_STATUS_SUCCESS, kind.has_value() ? PLUGIN_STATUS_FEATURE_ERROR
                                                                                   : PLUGIN_STATUS_INVALID_PARAM};
    EXPECT_EQ(setStatuses.count(stOutcome.nStatus), 1U) << stOutcome.Describe();
  }

  void FailOnce(uint64_t nAccess, const Kind &kind)
  {
    SCOPED_TRACE(Describe(nAccess, kind));
    m_rig.Prepare(m_eOperation);
    const Settings mapBefore = m_rig.TakeSettings();
    m_rig.Fault().Arm(nAccess, nAccess, kind);
    const SOutcome stFailed = m_rig.Do(m_eOperation);
    const bool bFailed = m_rig.Fault().HasFailed();
    m_rig.Fault().Disarm();
    EXPECT_TRUE(bFailed || !kind.has_value());
    m_nTrials += bFailed ? 1 : 0;
    ExpectFailure(stFailed, kind);
    ExpectSettings(mapBefore);
    EXPECT_EQ(m_rig.FindTrouble(), "");
    m_rig.Prepare(m_eOperation);
    const SOutcome stAgain = m_rig.Do(m_eOperation);
    EXPECT_EQ(m_stReference.Describe(), stAgain.Describe());
    EXPECT_EQ(DescribeChanges(m_mapReference, m_rig.TakeSettings()), "");
  }

  // One that failed while the dialog was made leaves none with buttons.
  void Recover()
  {
    if (m_eOperation == EOperation::Reopen) {
      EXPECT_EQ(m_rig.Correct(), "");
    }
  }

  void SweepOperation(EOperation eOperation)
  {
    SCOPED_TRACE(GetName(eOperation));
    m_eOperation = eOperation;
    ASSERT_NO_FATAL_FAILURE(TakeReference());
    for (uint64_t nAccess = 1; nAccess <= m_nAccesses && !HasFailure(); nAccess += GetStride()) {
      for (const Kind &kind : ListKinds(nAccess)) {
        FailOnce(nAccess, kind);
      }
    }
    std::printf("%s %s, %s: %llu accesses, %llu failures\n", GetName(std::get<0>(GetParam())), std::get<1>(GetParam()),
                GetName(eOperation), static_cast<unsigned long long>(m_nAccesses),
                static_cast<unsigned long long>(m_nTrials));
    m_nTotal += m_nTrials;
    m_nTrials = 0;
    Recover();
  }

  CModuleRig m_rig;
  EOperation m_eOperation = EOperation::Dark;
  SOutcome m_stReference;
  Settings m_mapReference;
  uint64_t m_nAccesses = 0;
  uint64_t m_nTrials = 0;
  uint64_t m_nTotal = 0;
};

} // namespace

TEST_P(AccessSweep, EveryFailingAccessIsToldAndLeavesTheCameraAsItWasAndTheDialogUsable)
{
  ASSERT_EQ(m_rig.Correct(), "");
  for (const EOperation eOperation : ListOperations(m_rig.GetMode())) {
    SweepOperation(eOperation);
  }
  std::printf("in all: %llu failures\n", static_cast<unsigned long long>(m_nTotal));
}

INSTANTIATE_TEST_SUITE_P(Cameras, AccessSweep,
                         testing::Combine(testing::Values(EMode::Host, EMode::FlatField, EMode::Vignetting),
                                          testing::Values("Mono8", "BayerRG8")),
                         [](const auto &stInfo) {
                           return std::string(GetName(std::get<0>(stInfo.param))) + std::get<1>(stInfo.param);
                         });
