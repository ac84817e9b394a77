#include <new>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "genapi/softwarenodemap/softwarenodemap.h"
#include "pluginobject/shadingcorrection/process/steps.h"
#include "pluginobject/statuscode.h"

using ffc::genapi::CSoftwareNodeMap;
using ffc::pluginobject::CFeatureAccess;

namespace {

using ffc::process::CScopeGuard;
using ffc::process::CSteps;

class StepsTest : public testing::Test {
protected:
  StepsTest()
  {
    m_map.AddFloat("ExposureTime", 2500.0).Range(0.0, 10000.0);
    m_map.AddInteger("Width", 640).Range(0, 4096);
    m_map.AddEnumeration("TriggerMode").Entry("Off", 0).Entry("On", 1);
    m_map.AddCommand("UserSetSave").OnExecute([this] { ++m_nExecuted; });
  }

  CSoftwareNodeMap m_map;
  CFeatureAccess m_features{&m_map};
  int m_nExecuted = 0;
};

class CCounter {
public:
  int32_t Count(int32_t nResult)
  {
    ++m_nCounted;
    return nResult;
  }
  int GetCounted() const { return m_nCounted; }

private:
  int m_nCounted = 0;
};

int32_t AddTo(int &nSum, int nValue)
{
  nSum += nValue;
  return 0;
}

int32_t LeaveEarly(bool bEarly, int &nRuns)
{
  const CScopeGuard guard([&nRuns] { ++nRuns; });
  if (bEarly) {
    return -1;
  }
  EXPECT_EQ(nRuns, 0);
  return 0;
}

} // namespace

TEST_F(StepsTest, WithoutStepsSucceed)
{
  EXPECT_EQ(CSteps(m_features).Status(), PLUGIN_STATUS_SUCCESS);
}

TEST_F(StepsTest, ReadWriteAndExecuteFeaturesByTheTypeOfTheValue)
{
  float fExposureTime = 0.0F;
  int64_t nWidth = 0;
  std::string strTriggerMode;
  std::vector<std::string> listModes;
  EXPECT_EQ(CSteps(m_features)
              .Set("ExposureTime", 125.0F)
              .Get("ExposureTime", fExposureTime)
              .Set("Width", int64_t{320})
              .Get("Width", nWidth)
              .Set("TriggerMode", "On")
              .Get("TriggerMode", strTriggerMode)
              .GetEntries("TriggerMode", listModes)
              .Execute("UserSetSave")
              .Status(),
            PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(fExposureTime, 125.0F);
  EXPECT_EQ(nWidth, 320);
  EXPECT_EQ(strTriggerMode, "On");
  EXPECT_EQ(listModes, (std::vector<std::string>{"Off", "On"}));
  EXPECT_EQ(m_nExecuted, 1);
}

TEST_F(StepsTest, StopAtTheFirstFailingAccessAndKeepItsStatus)
{
  int64_t nWidth = 7;
  EXPECT_EQ(CSteps(m_features).Set("ExposureTime", 99999.0F).Get("Width", nWidth).Execute("UserSetSave").Status(),
            PLUGIN_STATUS_FEATURE_ERROR);
  EXPECT_EQ(CSteps(m_features).Execute("NoSuchCommand").Get("Width", nWidth).Status(), PLUGIN_STATUS_INVALID_PARAM);
  EXPECT_EQ(nWidth, 7);
  EXPECT_EQ(m_nExecuted, 0);
}

TEST_F(StepsTest, StopAtTheFirstFailingCallableOfAnySign)
{
  CCounter counter;
  EXPECT_EQ(CSteps(m_features)
              .Then(&CCounter::Count, &counter, 0)
              .Then(&CCounter::Count, &counter, 5)
              .Then(&CCounter::Count, &counter, 0)
              .Status(),
            5);
  EXPECT_EQ(counter.GetCounted(), 2);
}

TEST_F(StepsTest, TakeFunctionsMembersAndCallablesThatCannotFail)
{
  int nSum = 0;
  EXPECT_EQ(CSteps(m_features).Then(AddTo, nSum, 3).Then([&] { nSum *= 2; }).Then(AddTo, nSum, 1).Status(),
            PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(nSum, 7);
}

TEST_F(StepsTest, ReadTheArgumentsOfAStepWhenItsTurnComes)
{
  int nSum = 0;
  EXPECT_EQ(CSteps(m_features).Then(AddTo, nSum, 3).Then(AddTo, nSum, nSum).Status(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(nSum, 6);
}

TEST_F(StepsTest, AStepWithoutMemoryIsOutOfMemory)
{
  int nRuns = 0;
  const auto step = [&nRuns](bool bMemory) {
    ++nRuns;
    return bMemory ? PLUGIN_STATUS_SUCCESS : throw std::bad_alloc();
  };
  EXPECT_EQ(CSteps(m_features).Then(step, true).Then(step, false).Then(step, true).Status(),
            PLUGIN_STATUS_OUT_OF_MEMORY);
  EXPECT_EQ(nRuns, 2);
}

TEST(ScopeGuard, RunsOnceOnEveryPathOutOfTheScope)
{
  int nRuns = 0;
  EXPECT_EQ(LeaveEarly(true, nRuns), -1);
  EXPECT_EQ(nRuns, 1);
  nRuns = 0;
  EXPECT_EQ(LeaveEarly(false, nRuns), 0);
  EXPECT_EQ(nRuns, 1);
}

TEST(ScopeGuard, RunsInTheReverseOrderOfDeclaration)
{
  std::vector<int> listRan;
  {
    const CScopeGuard first([&listRan] { listRan.push_back(1); });
    const CScopeGuard second([&listRan] { listRan.push_back(2); });
  }
  EXPECT_EQ(listRan, (std::vector<int>{2, 1}));
}

TEST(ScopeGuard, EndsWhatItsActionThrowsAlsoWhileAnotherExceptionPasses)
{
  int nRuns = 0;
  try {
    const CScopeGuard guard([&nRuns] {
      ++nRuns;
      throw 1;
    });
    throw 42;
  } catch (int nThrown) {
    EXPECT_EQ(nThrown, 42);
  }
  EXPECT_EQ(nRuns, 1);
}

TEST(CalcStatusMapping, EveryStatusOfTheComputationsHasAPluginCode)
{
  EXPECT_EQ(ffc::process::MapCalcStatus(0), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(ffc::process::MapCalcStatus(-101), PLUGIN_STATUS_INVALID_PARAM);
  EXPECT_EQ(ffc::process::MapCalcStatus(-102), PLUGIN_STATUS_INVALID_PARAM);
  EXPECT_EQ(ffc::process::MapCalcStatus(-103), PLUGIN_STATUS_OUT_OF_MEMORY);
  EXPECT_EQ(ffc::process::MapCalcStatus(-105), PLUGIN_STATUS_CAMERA_NOT_SUPPORTED);
  EXPECT_EQ(ffc::process::MapCalcStatus(-106), PLUGIN_STATUS_INVALID_PARAM);
}

TEST(CalcStatusMapping, AnyOtherStatusIsAnUnknownError)
{
  for (const int32_t nStatus : {-100, -104, -107, -108, -1, -3, 1, 101, INT32_MIN, INT32_MAX}) {
    EXPECT_EQ(ffc::process::MapCalcStatus(nStatus), PLUGIN_STATUS_UNKNOWN_ERROR) << nStatus;
  }
}
