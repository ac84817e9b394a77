/// \file
/// What the window saves and remembers: images, sequences, presets, the coefficients used last.

#include <algorithm>
#include <sstream>
#include <vector>

#include <QAction>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLineEdit>
#include <QMenu>
#include <QTreeWidget>

#include "frames/ifilekind.h"
#include "frames/sidefile.h"
#include "host/dialogdriver/modalanswerer.h"
#include "host/window/cameramemory.h"
#include "host/window/camerapresets.h"
#include "host/window/framesaving.h"
#include "host/window/imageview.h"
#include "tests/host/window/boxpresser.h"
#include "tests/host/window/windowfixture.h"
#include "tools/ffc/commands.h"
#include "tools/ffc/correctionmarks.h"

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
  /// Gains of 4112 / 4096.
  static void WriteFlat(const QString &strPath)
  {
    QFile file(strPath);
    const QByteArray byteGains(2 * 256 * 192, '\x10');
    ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.write(byteGains) == byteGains.size());
  }
  void SaveAs(const char *pAction, const char *pName)
  {
    const CModalAnswerer answerer(m_folder.filePath(pName)); // takes the number of frames as it is
    FindAction(pAction)->trigger();
  }
  /// \return what the tool says against correcting a file; empty when it corrects it
  std::string Apply(const QString &strFlat, const char *pName) const
  {
    std::ostringstream output;
    std::ostringstream errors;
    const int nExitCode =
      ffc::tool::RunTool({"apply", strFlat.toStdString(), m_folder.filePath(pName).toStdString(), "-o",
                          m_folder.filePath("applied").toStdString(), "--pixel-format", "Mono12", "--quiet"},
                         false, output, errors);
    return nExitCode == ffc::tool::EXIT_DONE ? std::string() : errors.str();
  }
  ffc::frames::SFrameInfo GetInfo(const char *pName) const
  {
    const QString strPath = m_folder.filePath(pName);
    const auto reader = ffc::frames::FindFileKind(strPath)->Open(strPath);
    EXPECT_EQ(reader.GetError(), "");
    return reader ? reader.GetValue()->GetInfo() : ffc::frames::SFrameInfo();
  }
  /// \return the hash of the coefficients
  QString FindMark(const char *pName) const
  {
    const ffc::Result<QString> correction = ffc::tool::FindCorrection(m_folder.filePath(pName), GetInfo(pName));
    EXPECT_EQ(correction.GetError(), "");
    return correction ? correction.GetValue() : QString();
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

QByteArray ReadAll(const QString &strPath)
{
  QFile file(strPath);
  return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

TEST_F(ViewFiles, AFileIsNotReplacedWithoutAQuestionHoweverItsNameWasTyped)
{
  ShowPicture();
  QSettings().setValue(QStringLiteral("frames/kind"), QStringLiteral("PNG (*.png)"));
  for (const char *pName : {"image.png", "sequence-0001.png"}) {
    const QString strPath = m_folder.filePath(pName);
    QFile file(strPath);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.write("mine") == 4);
    file.close();
    const bool bImage = strPath.contains("image");
    const QString strTyped = m_folder.filePath(bImage ? "image" : "sequence");
    for (const char *pAnswer : {"&Cancel", "&Replace"}) {
      const CReplacingUser user(strTyped, pAnswer);
      FindAction(bImage ? "Save image" : "Save sequence")->trigger();
      EXPECT_EQ(user.GetQuestions(), 1) << pName;
      EXPECT_EQ(ReadAll(strPath) == "mine", pAnswer[1] == 'C') << pName << pAnswer;
    }
  }
}

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
  const QJsonObject settings = QJsonDocument::fromJson(strSettings.toUtf8()).object();
  EXPECT_EQ(settings["exposureTime"].toDouble(), 10000) << strSettings.toStdString();
  EXPECT_EQ(settings["corrected"], QJsonValue(false)) << strSettings.toStdString();
  std::vector<uint16_t> listSamples(256 * 192);
  ASSERT_EQ(reader.GetValue()->Read(listSamples.data()).GetError(), "");
  const auto [itLeast, itMost] = std::minmax_element(listSamples.begin(), listSamples.end());
  EXPECT_GT(*itLeast, 1000) << "not what the stretched display shows";
  EXPECT_LT(*itMost, 4096);
}

TEST_F(ViewFiles, CorrectedFramesBearTheMarkOfTheirCorrectionAndAreNotCorrectedTwice)
{
  ShowPicture();
  const QString strFlat = m_folder.filePath("flat.ffc");
  WriteFlat(strFlat);
  SaveAs("Save image", "raw.ser");
  Press("ShowDialog");
  ASSERT_EQ(GetDriver().LoadFile(strFlat).strBox.toStdString(), "");
  ASSERT_TRUE(WaitText("Correction", "corrected"));
  SaveAs("Save image", "image.png");
  SaveAs("Save sequence", "sequence.ser");
  EXPECT_EQ(GetInfo("sequence.ser").nFrames, 16U);
  EXPECT_EQ(GetInfo("sequence.ser").nBitDepth, 12U);
  QFile::remove(strFlat); // what was applied is known all the same
  SaveAs("Save image", "image.ser");
  WriteFlat(strFlat);
  EXPECT_EQ(Apply(strFlat, "raw.ser"), "");
  for (const char *pName : {"image.png", "image.ser", "sequence.ser"}) {
    EXPECT_NE(Apply(strFlat, pName).find("is corrected already"), std::string::npos) << pName;
  }
  const QString strHash = ffc::frames::HashCoefficientFile(strFlat).GetValue();
  EXPECT_EQ(FindMark("image.png"), strHash);
  EXPECT_EQ(FindMark("image.ser"), strHash);
  EXPECT_EQ(FindMark("sequence.ser"), strHash);
  GetDriver().SetPreview(false);
  ASSERT_TRUE(WaitText("Correction", "raw"));
  SaveAs("Save image", "image.ser");
  EXPECT_EQ(FindMark("image.ser"), "") << "this one is another, as it came";
}

TEST(CorrectionOfAFrame, IsMarkedAlsoWithCoefficientsThatStandInNoFile)
{
  SCoefficientOrigin stOrigin;
  ffc::frames::SFrameInfo stInfo;
  stInfo.mapTexts[ffc::frames::TEXT_CORRECTION] = DescribeCorrection(stOrigin);
  EXPECT_FALSE(ffc::tool::FindCorrection("frame.png", stInfo).GetValue().isEmpty()) << "not known what";
  stOrigin.eKind = SCoefficientOrigin::EKind::Acquired;
  stOrigin.nFrames = 4;
  stOrigin.eDarkField = ffc::quality::EDarkField::Used;
  stInfo.mapTexts[ffc::frames::TEXT_CORRECTION] = DescribeCorrection(stOrigin);
  EXPECT_FALSE(ffc::tool::FindCorrection("frame.png", stInfo).GetValue().isEmpty()) << "acquired here";
  EXPECT_TRUE(DescribeCorrection(stOrigin).contains("\"brightFrames\":4,\"darkUsed\":true"));
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
  CCameraPresets(GetCamera()).Save("left / half & dark");
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
  CCameraPresets(GetCamera()).Remove("left / half & dark");
  EXPECT_TRUE(CCameraPresets(GetCamera()).ListNames().isEmpty());
}

TEST_F(ViewFiles, WhatFormerVersionsRememberedOfACameraIsTakenOverOnce)
{
  auto opened = OpenSimulated(m_stCamera);
  ASSERT_EQ(opened.GetError(), "");
  ffc::camera::ICamera &camera = *opened.GetValue();
  const QString strFormer = "cameras/" + ToSettingsKey(QString::fromStdString(camera.GetDisplayName()));
  QSettings settings;
  settings.setValue(strFormer + "/file", "kept.ffc");
  settings.setValue(strFormer + "/limits/prnu", 2.5);
  settings.setValue("presets/SIM1/a%20name/Gain", "3");
  const QString strGroup = FindCameraGroup(camera);
  SCameraMemory stMemory = LoadCameraMemory(strGroup);
  EXPECT_EQ(stMemory.strFile, "kept.ffc");
  ASSERT_TRUE(stMemory.stLimits);
  EXPECT_EQ(stMemory.stLimits->dPrnu, 2.5);
  CCameraPresets presets(camera);
  EXPECT_EQ(presets.ListNames(), QStringList{"a name"});
  EXPECT_EQ(presets.Apply("a name"), QStringList());
  settings.setValue(strFormer + "/file", "older.ffc");
  EXPECT_EQ(FindCameraGroup(camera), strGroup);
  EXPECT_EQ(LoadCameraMemory(strGroup).strFile, "kept.ffc") << "what is there stays";
  EXPECT_FALSE(settings.contains(strFormer + "/file"));
  SaveCameraMemory("cameras/another", {});
  EXPECT_FALSE(LoadCameraMemory("cameras/another").stLimits) << "it has none of its own";
  stMemory.strFile = "newer.ffc";
  SaveCameraMemory(strGroup, stMemory);
  presets.Remove("a name");
  EXPECT_EQ(FindCameraGroup(camera), strGroup);
  EXPECT_EQ(LoadCameraMemory(strGroup).strFile, "newer.ffc");
  EXPECT_TRUE(CCameraPresets(camera).ListNames().isEmpty()) << "removed is removed";
  presets.Save("another");
  EXPECT_FALSE(QSettings().contains("presets/SIM1/another/Gain"));
  EXPECT_TRUE(QSettings().contains(strGroup + "/presets/another/Gain")) << "with all else of this camera";
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
  const QString strFile = m_folder.filePath("kept.ffc");
  WriteFlat(strFile);
  Press("ShowDialog");
  ASSERT_EQ(GetDriver().LoadFile(strFile).strBox.toStdString(), "");
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
