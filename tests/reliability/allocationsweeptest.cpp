// Every allocation of the module's own code fails once, in every operation. What it then leaks, the address sanitizer
// tells at the end.
#include <algorithm>
#include <cstdio>
#include <set>
#include <thread>

#include <QTest>

#include <gtest/gtest.h>

#include "pluginobject/statuscode.h"
#include "tests/reliability/moduleallocations.h"
#include "tests/reliability/modulerig.h"
#include "tests/reliability/scale.h"

using ffc::pluginobject::MakePluginMsg;
using namespace ffc::test;

namespace {

// No memory, as such or as a feature that could not be read.
const std::set<std::string> ANSWERS = {"Out of memory", "Failure to operation device feature",
                                       "The pixelformat not implement!", "The pixelformat should be changed to bayer!"};
const std::set<int32_t> STATUSES = {PLUGIN_STATUS_SUCCESS, PLUGIN_STATUS_OUT_OF_MEMORY, PLUGIN_STATUS_FEATURE_ERROR};

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
      EXPECT_EQ(ANSWERS.count(strBox), 1U) << stFailed.Describe();
    }
    EXPECT_EQ(STATUSES.count(stFailed.nStatus), 1U) << stFailed.Describe();
    EXPECT_EQ(byteBefore, ReadFile()); // whole, before or after
    for (const auto &[strName, strValue] : m_rig.TakeSettings()) {
      EXPECT_TRUE(strValue == mapBefore.at(strName) || strValue == m_mapReference.at(strName))
        << strName << ": " << mapBefore.at(strName) << " -> " << strValue;
    }
    EXPECT_EQ(m_rig.FindTrouble(), "");
    if (stFailed.nStatus != 0) {
      EXPECT_EQ(m_rig.Do(EOperation::Reopen).nStatus, PLUGIN_STATUS_SUCCESS);
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
  ASSERT_EQ(m_rig.Correct(), "");
  ASSERT_EQ(CModuleAllocations::Watch(PLUGIN_MODULE), "");
  for (const EOperation eOperation : ListOperations(GetParam())) {
    Sweep(eOperation);
    if (eOperation == EOperation::Reopen) {
      ASSERT_EQ(m_rig.Correct(), "");
    }
  }
  EXPECT_GT(m_nFailures, 0U);
}

INSTANTIATE_TEST_SUITE_P(Modes, AllocationSweep, testing::Values(EMode::Host, EMode::FlatField, EMode::Vignetting),
                         [](const auto &stInfo) { return std::string(GetName(stInfo.param)); });

TEST(AllocationOfThePlugin, ThatFailsGivesNoObject)
{
  CModuleRig rig(EMode::Host);
  ASSERT_EQ(CModuleAllocations::Watch(PLUGIN_MODULE), "");
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
  ASSERT_EQ(CModuleAllocations::Watch(PLUGIN_MODULE), "");
  {
    const CModuleAllocations allocations(1);
    EXPECT_EQ(rig.Open(), PLUGIN_STATUS_OUT_OF_MEMORY);
    EXPECT_TRUE(allocations.HasFailed());
  }
  rig.Close();
  EXPECT_EQ(rig.Open(), PLUGIN_STATUS_SUCCESS);
}

namespace {

// Operations of the interface that have no status for it: they throw nothing either.
class AllocationAtTheInterface : public testing::Test {
protected:
  using EWhose = CModuleAllocations::EWhose;

  AllocationAtTheInterface() : m_rig(EMode::Host)
  {
    EXPECT_EQ(m_rig.Correct(), "");
    EXPECT_EQ(CModuleAllocations::Watch(PLUGIN_MODULE), "");
    m_rig.SetStreaming(false);
    m_listFrame = m_rig.Camera().MakeFrame(120);
  }

  // Calls it with each of its allocations failing in turn, on this thread. \return how many failed
  template <typename TCall>
  static uint64_t FailEach(EWhose eWhose, TCall fnCall)
  {
    uint64_t nFailures = 0;
    for (bool bFailed = true; bFailed && !HasFailure();) {
      const CModuleAllocations allocations(nFailures + 1, eWhose);
      EXPECT_NO_THROW(fnCall()) << "allocation " << nFailures + 1;
      bFailed = allocations.HasFailed();
      nFailures += bFailed ? 1 : 0;
    }
    return nFailures;
  }

  // Delivers one frame, some of its columns left out, on a thread of its own with each allocation failing in turn until
  // none does. \return how many failed
  uint64_t FailEachOfAFrame(int32_t nColumnsLess, bool bCorrected)
  {
    PLUGIN_IMAGE_INFO stInput;
    stInput.nPixelFormat = static_cast<int32_t>(m_rig.Camera().GetPixelFormat());
    stInput.nWidth = static_cast<int32_t>(m_rig.Camera().Integer("Width").Peek()) - nColumnsLess;
    stInput.nHeight = static_cast<int32_t>(m_rig.Camera().Integer("Height").Peek());
    stInput.nPayloadSize = static_cast<int32_t>(m_listFrame.size());
    stInput.pBuffer = m_listFrame.data();
    std::vector<uint8_t> listOutput(m_listFrame.size());
    uint64_t nFailures = 0;
    std::thread frameThread([&] {
      nFailures = FailEach(EWhose::Everybody, [&] {
        std::fill(listOutput.begin(), listOutput.end(), uint8_t{0});
        PLUGIN_IMAGE_INFO stOutput = stInput;
        stOutput.pBuffer = listOutput.data();
        PLUGIN_PROCESS_RESULT stResult;
        const int32_t nStatus = m_rig.Plugin().ProcessImage(&stInput, &stOutput, PLUGIN_PROCESS_MODE_FRAME, &stResult);
        EXPECT_EQ(nStatus, PLUGIN_STATUS_SUCCESS);
        EXPECT_EQ(bCorrected, stResult.bCorrected == 1);
        EXPECT_EQ(bCorrected, listOutput.front() != 0);
      });
    });
    frameThread.join();
    return nFailures;
  }

  CModuleRig m_rig;
  std::vector<uint8_t> m_listFrame;
};

} // namespace

TEST_F(AllocationAtTheInterface, OfAStatusTextThatFailsLeavesTheEnglishOne)
{
  const char *pText = nullptr;
  EXPECT_GT(FailEach(EWhose::Module, [&] { pText = m_rig.Plugin().GetStatusText(PLUGIN_STATUS_FEATURE_ERROR); }), 0U);
  EXPECT_STREQ("Failure to operation device feature", pText);
  const CModuleAllocations allocations(1);
  EXPECT_STREQ(m_rig.Plugin().GetStatusText(PLUGIN_STATUS_FEATURE_ERROR), "Failure to operation device feature");
  EXPECT_TRUE(allocations.HasFailed());
}

TEST_F(AllocationAtTheInterface, OfAMessageThatFailsLeavesTheDialogAsItIs)
{
  PLUGIN_MSG stPluginMsg = MakePluginMsg(PLUGIN_MSG_DEVICE_NAME);
  stPluginMsg.pText = "Another camera";
  EXPECT_GT(FailEach(EWhose::Everybody, [&] { m_rig.Plugin().SlotProcessDemoMsg(stPluginMsg); }), 0U);
  EXPECT_EQ(m_rig.Find<QLabel>("TitleContent")->text().toStdString(), "Flat Field Correction Plugin  Another camera");
}

TEST_F(AllocationAtTheInterface, OfASuccessMessageThatFailsLeavesTheFrameCorrectedAndIsMadeUpForLater)
{
  auto *pPreview = m_rig.Find<QCheckBox>("PreviewcheckBox");
  pPreview->click();
  pPreview->click(); // tells the success again
  auto *pPrompt = m_rig.Find<QLabel>("PromptInformation_label");
  pPrompt->clear();
  EXPECT_GT(FailEachOfAFrame(0, true), 0U);
  EXPECT_TRUE(QTest::qWaitFor([&] { return pPrompt->text() == QLatin1String("FFC executed successfully"); }));
}

TEST_F(AllocationAtTheInterface, OfAFailureMessageThatFailsIsMadeUpForLater)
{
  auto *pPreview = m_rig.Find<QCheckBox>("PreviewcheckBox");
  ASSERT_TRUE(pPreview->isChecked());
  EXPECT_GT(FailEachOfAFrame(1, false), 0U);
  EXPECT_TRUE(QTest::qWaitFor([&] { return !pPreview->isChecked(); }));
}
