// A camera whose image changes its shape or depth between the steps of a correction on the host.
#include <initializer_list>

#include <QTest>

#include <gtest/gtest.h>

#include "pluginobject/statuscode.h"
#include "tests/reliability/modulerig.h"

using namespace ffc::test;

namespace {

constexpr double SHORT_EXPOSURE = -970000.0; // the process waits 30 ms for each frame

// With the stream at rest, as a viewer does it.
void Turn(CModuleRig &rig)
{
  rig.SetStreaming(false);
  rig.Camera().Integer("Width").Poke(32);
  rig.Camera().Integer("Height").Poke(128); // as many pixels as 64 x 64
  rig.SetStreaming(true);
}

std::vector<std::string> DoAll(CModuleRig &rig, std::initializer_list<EOperation> listOperations)
{
  std::vector<std::string> listBoxes;
  for (const EOperation eOperation : listOperations) {
    for (const std::string &strBox : rig.Do(eOperation).listBoxes) {
      listBoxes.push_back(std::string(GetName(eOperation)) + ": " + strBox);
    }
  }
  return listBoxes;
}

bool DeliverMore(CModuleRig &rig)
{
  const uint64_t nBefore = rig.GetDelivered();
  return QTest::qWaitFor([&] { return rig.GetDelivered() > nBefore + 20; });
}

} // namespace

TEST(FormatChange, FramesOfAnotherShapeAreNotCorrectedWithTheTableOfTheFormerOne)
{
  CModuleRig rig(EMode::Host);
  ASSERT_EQ(rig.Correct(), "");
  rig.SetFrame([](const CTestCamera &, uint32_t) { return std::vector<uint8_t>(); });
  Turn(rig);
  rig.Camera().Float("ExposureTime").Poke(SHORT_EXPOSURE);
  EXPECT_EQ(std::vector<std::string>{"Get buffer time out"}, rig.Do(EOperation::Bright).listBoxes);
  auto *pPreview = rig.Find<QCheckBox>("PreviewcheckBox");
  if (pPreview->isChecked()) {
    pPreview->click();
  }
  const uint64_t nCorrected = rig.GetCorrected();
  ASSERT_TRUE(pPreview->isEnabled());
  pPreview->click();
  rig.SetFrame(nullptr);
  ASSERT_TRUE(DeliverMore(rig));
  EXPECT_EQ(nCorrected, rig.GetCorrected());
  EXPECT_TRUE(QTest::qWaitFor([&] { return !pPreview->isChecked(); }));
  // And afterwards, frames of the new shape with a table of their own.
  EXPECT_TRUE(DoAll(rig, {EOperation::Bright, EOperation::Execute}).empty());
  ASSERT_TRUE(DeliverMore(rig));
  EXPECT_GT(rig.GetCorrected(), nCorrected);
}

TEST(FormatChange, ADarkFrameOfAnotherDepthTakesTheBrightOneAlong)
{
  CModuleRig rig(EMode::Host, "Mono10");
  ASSERT_EQ(rig.Open(), PLUGIN_STATUS_SUCCESS);
  EXPECT_TRUE(DoAll(rig, {EOperation::Bright}).empty());
  rig.SetStreaming(false);
  rig.Camera().Enumeration("PixelFormat").Select("Mono12");
  rig.SetStreaming(true);
  EXPECT_EQ(std::vector<std::string>{"Execute: Buffer size is error  "},
            DoAll(rig, {EOperation::Dark, EOperation::Execute}));
  EXPECT_TRUE(DoAll(rig, {EOperation::Bright, EOperation::Execute}).empty());
}
