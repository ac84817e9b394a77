/// \file
/// What the window saves and remembers: images, sequences, presets, the coefficients used last.

#include <algorithm>
#include <vector>

#include <QAction>
#include <QFile>
#include <QFileInfo>
#include <QLineEdit>
#include <QMenu>
#include <QTreeWidget>

#include "frames/ifilekind.h"
#include "host/dialogdriver/modalanswerer.h"
#include "host/window/camerapresets.h"
#include "host/window/framequeue.h"
#include "host/window/imageview.h"
#include "tests/host/window/windowfixture.h"

using namespace ffc::host;

namespace {

class ViewFiles : public WindowFixture {
protected:
  QAction *FindAction(const QString &strBegin) const
  {
    for (QAction *pAction : m_pWindow->findChildren<QAction *>()) {
      if (pAction->text().remove(QLatin1Char('&')).startsWith(strBegin)) {
        return pAction;
      }
    }
    ADD_FAILURE() << strBegin.toStdString();
    return nullptr;
  }
  void ShowPicture()
  {
    ShowWindow();
    ASSERT_TRUE(QTest::qWaitFor([this] { return !m_pWindow->findChild<CImageView *>()->GetPicture().isNull(); }));
  }
  double GetNumber(const char *pFeature) const
  {
    GenApi::INode *pNode = GetCamera().GetDeviceNodeMap()->GetNode(pFeature);
    if (auto *pFloat = dynamic_cast<GenApi::IFloat *>(pNode)) {
      return pFloat->GetValue();
    }
    return static_cast<double>(dynamic_cast<GenApi::IInteger *>(pNode)->GetValue());
  }
};

} // namespace

TEST_F(ViewFiles, AnImageIsSavedWithItsSamplesAndTheCamerasSettings)
{
  ShowPicture();
  FindAction("Auto")->trigger(); // the display's business alone
  const QString strPath = m_folder.filePath("image.png");
  {
    const CModalAnswerer answerer(strPath);
    FindAction("Save image")->trigger();
  }
  auto reader = ffc::frames::FindFileKind(strPath)->Open(strPath);
  ASSERT_EQ(reader.GetError(), "");
  const ffc::frames::SFrameInfo stInfo = reader.GetValue()->GetInfo();
  EXPECT_EQ(stInfo.stLayout, (ffc::frames::SLayout{256, 192, 2}));
  const QString strSettings = stInfo.mapTexts.value(ffc::frames::TEXT_DESCRIPTION);
  EXPECT_TRUE(strSettings.contains("ExposureTime=10000") && strSettings.contains("Corrected=no"))
    << strSettings.toStdString();
  std::vector<uint16_t> listSamples(256 * 192);
  ASSERT_EQ(reader.GetValue()->Read(listSamples.data()).GetError(), "");
  const auto [itLeast, itMost] = std::minmax_element(listSamples.begin(), listSamples.end());
  EXPECT_GT(*itLeast, 1000) << "not what the stretched display shows";
  EXPECT_LT(*itMost, 4096);
}

TEST_F(ViewFiles, ASequenceIsSavedFrameByFrame)
{
  ShowPicture();
  const QString strPath = m_folder.filePath("sequence.ser");
  {
    const CModalAnswerer answerer(strPath); // takes the number of frames as it is
    FindAction("Save sequence")->trigger();
    EXPECT_EQ(answerer.GetMessages().size(), 1) << answerer.GetMessages().join('\n').toStdString();
  }
  auto reader = ffc::frames::FindFileKind(strPath)->Open(strPath);
  ASSERT_EQ(reader.GetError(), "");
  EXPECT_EQ(reader.GetValue()->GetInfo().nFrames, 16U);
  EXPECT_EQ(reader.GetValue()->GetInfo().nBitDepth, 12U);
}

TEST_F(ViewFiles, APresetBringsTheSettingsOfThisCameraBack)
{
  ShowPicture();
  Press("StartStop");
  const auto Write = [this](const char *pFeature, const char *pValue) {
    dynamic_cast<GenApi::IValue *>(GetCamera().GetDeviceNodeMap()->GetNode(pFeature))->FromString(pValue);
  };
  Write("Width", "128");
  Write("OffsetX", "128");
  Write("ExposureTime", "2500");
  CCameraPresets(*GetCamera().GetDeviceNodeMap()).Save("left / half & dark");
  Write("OffsetX", "0");
  Write("Width", "256");
  Write("ExposureTime", "9000");
  Press("StartStop");
  QMenu *pPresets = Find<QMenu>("Presets");
  emit pPresets->aboutToShow();
  FindAction("left / half  dark")->trigger();
  EXPECT_EQ(GetNumber("Width"), 128);
  EXPECT_EQ(GetNumber("OffsetX"), 128);
  EXPECT_EQ(GetNumber("ExposureTime"), 2500);
  EXPECT_TRUE(GetCamera().IsStreaming()) << "as before";
  EXPECT_FALSE(Find<QLabel>("CameraError")->isVisible()) << GetText("CameraError");
  CCameraPresets(*GetCamera().GetDeviceNodeMap()).Remove("left / half & dark");
  EXPECT_TRUE(CCameraPresets(*GetCamera().GetDeviceNodeMap()).ListNames().isEmpty());
}

TEST_F(ViewFiles, AllFeaturesAreFoundAndSetInATree)
{
  ShowPicture();
  FindAction("Features")->trigger();
  auto *pTree = Find<QTreeWidget>("FeatureTree");
  const auto FindItem = [pTree](const char *pName) {
    return pTree->findItems(QLatin1String(pName), Qt::MatchExactly | Qt::MatchRecursive).value(0);
  };
  Find<QLineEdit>("FeatureSearch")->setText("exposuret");
  ASSERT_NE(FindItem("ExposureTime"), nullptr);
  EXPECT_EQ(FindItem("ExposureTime")->parent()->text(0).toStdString(), "Exposure");
  EXPECT_FALSE(FindItem("ExposureTime")->isHidden());
  EXPECT_GE(pTree->visualItemRect(FindItem("ExposureTime")).width(),
            pTree->fontMetrics().horizontalAdvance("ExposureTime"))
    << "the name is not cut";
  EXPECT_TRUE(FindItem("Gain")->isHidden());
  FindItem("ExposureTime")->setText(1, "4321");
  EXPECT_EQ(GetNumber("ExposureTime"), 4321);
  FindItem("ExposureTime")->setText(1, "-5");
  EXPECT_EQ(GetNumber("ExposureTime"), 4321);
  EXPECT_TRUE(GetText("FeatureError").find("ExposureTime: the camera refuses the value") == 0)
    << GetText("FeatureError");
  EXPECT_EQ(FindItem("ExposureTime")->text(1).toStdString(), "4321") << "what the camera has";
  EXPECT_FALSE((FindItem("Width")->flags() & Qt::ItemIsEditable) != 0) << "locked while it streams";
  ASSERT_EQ(m_pWindow->OpenCamera(m_stCamera).GetError(), "");
  EXPECT_EQ(m_pWindow->findChild<QTreeWidget *>("FeatureTree"), nullptr) << "they were another camera's";
}

TEST_F(ViewFiles, TheLastCoefficientsAreOfferedAtTheNextStart)
{
  ShowWindow();
  EXPECT_FALSE(FindAction("Load the last coefficients")->isEnabled());
  Correct();
  const QString strFile = m_folder.filePath("kept.ffc");
  ASSERT_EQ(GetDriver().SaveFile(strFile).strBox.toStdString(), "");
  m_pWindow.reset();
  ShowWindow();
  QAction *pLoad = FindAction("Load the last coefficients");
  EXPECT_TRUE(pLoad->isEnabled());
  EXPECT_TRUE(pLoad->text().contains("kept.ffc")) << pLoad->text().toStdString();
  pLoad->trigger();
  EXPECT_TRUE(GetDriver().IsPreviewOffered());
  m_pWindow.reset();
  QFile::remove(strFile);
  ShowWindow();
  EXPECT_FALSE(FindAction("Load the last coefficients")->isEnabled()) << "the file is gone";
}

TEST(FrameQueue, CountsWhatTheDiskIsTooSlowForAndEndsWithTheFirstFailure)
{
  int nWrites = 0;
  CFrameQueue queue([&nWrites](const SFrameCopy &stFrame) -> ffc::Result<> {
    ++nWrites;
    return stFrame.listBytes[0] < 2 ? ffc::Result<>() : ffc::Failure("the disk is full");
  });
  uint8_t nByte = 0;
  ffc::camera::SCameraFrame stFrame;
  stFrame.pBuffer = &nByte;
  stFrame.nSize = 1;
  for (; nByte < 5; ++nByte) {
    queue.Push({&stFrame, nullptr});
  }
  EXPECT_TRUE(QTest::qWaitFor([&] { return queue.HasFailed(); }));
  stFrame.nSize = UINT32_MAX; // more than may wait
  queue.Push({&stFrame, nullptr});
  EXPECT_EQ(queue.GetWritten(), 2U);
  EXPECT_EQ(queue.GetMissed(), 1U);
  EXPECT_EQ(queue.Finish().GetError(), "the disk is full");
  EXPECT_EQ(nWrites, 3);
}
