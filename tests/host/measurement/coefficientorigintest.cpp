#include "host/measurement/coefficientorigin.h"

#include <QFile>
#include <QLabel>
#include <QSlider>
#include <QSpinBox>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include "frames/sidefile.h"
#include "frames/wholefile.h"
#include "host/dialogdriver/dialogdriver.h"
#include "host/measurement/tablefile.h"

using namespace ffc::host;
using namespace ffc::frames;
using ffc::quality::EDarkField;
using EKind = SCoefficientOrigin::EKind;

namespace {

constexpr uint32_t SENSOR_FORMAT = 0x01080001;

/// A dialog that shows 8 frames and grey 100, and the frames of a pipeline.
class CoefficientOrigin : public testing::Test {
protected:
  CoefficientOrigin()
  {
    QSlider *pSlider = new QSlider(&m_dialog);
    pSlider->setObjectName("AcquisitionFrame_Slider");
    pSlider->setRange(0, 16);
    pSlider->setValue(12);
    QSpinBox *pSpinBox = new QSpinBox(&m_dialog);
    pSpinBox->setObjectName("ExpectGrayspinBox");
    pSpinBox->setMaximum(255);
    pSpinBox->setValue(100);
  }

  void Note(EDialogAction eAction, const QString &strFile = QString(), bool bByCamera = false)
  {
    m_watch.Note({eAction, QString(), strFile}, m_driver, bByCamera);
  }

  /// Of 4 x 2 pixels.
  void Deliver(uint8_t nValue, uint32_t nPixelFormat = SENSOR_FORMAT, uint32_t nWidth = 4)
  {
    const std::vector<uint8_t> listBytes(8, nValue);
    ffc::camera::SCameraFrame stFrame;
    stFrame.pBuffer = listBytes.data();
    stFrame.nSize = 8;
    stFrame.nWidth = nWidth;
    stFrame.nHeight = 2;
    stFrame.nPixelFormat = nPixelFormat;
    m_pipeline.Receive(stFrame);
  }

  /// A file of coefficients with what stands beside it.
  QString WriteFile(const char *pName, const std::function<void(SSideFile &)> &fnChange = {}) const
  {
    const QString strPath = m_dir.filePath(QLatin1String(pName));
    EXPECT_TRUE(SaveWholeFile(strPath, QByteArray(16, '\1')).IsOk());
    SSideFile stSide;
    stSide.nWidth = 4;
    stSide.nHeight = 2;
    stSide.strPixelFormat = QStringLiteral("Mono8");
    stSide.nBrightFrames = 5;
    stSide.nDarkFrames = 3;
    stSide.strMethod = QStringLiteral("weighted");
    stSide.nExpectGray = 90;
    stSide.strSha256 = HashCoefficientFile(strPath).GetValue();
    if (fnChange) {
      fnChange(stSide);
    }
    EXPECT_TRUE(SaveWholeFile(GetSideFilePath(strPath), MakeSideFile(stSide)).IsOk());
    return strPath;
  }

  QTemporaryDir m_dir;
  QDialog m_dialog;
  CDialogDriver m_driver{m_dialog};
  CFramePipeline m_pipeline;
  CCoefficientWatch m_watch;
};

} // namespace

TEST_F(CoefficientOrigin, OfTheFlashIsWhatTheDialogShowsAfterwardsAndSaysSo)
{
  Note(EDialogAction::LoadFlash, QString(), true);
  const SCoefficientOrigin &stOrigin = m_watch.GetOrigin();
  EXPECT_EQ(stOrigin.eKind, EKind::Flash);
  EXPECT_EQ(stOrigin.nFrames, 8);
  EXPECT_EQ(stOrigin.nExpectGray, 100);
  EXPECT_EQ(stOrigin.GetNotes(), QStringList("The coefficients come from the camera's flash"));
  Note(EDialogAction::LoadFlash);
  EXPECT_EQ(m_watch.GetOrigin().nFrames, 0) << "only a camera keeps them together";
  EXPECT_EQ(m_watch.GetOrigin().nExpectGray, -1);
}

TEST_F(CoefficientOrigin, OfAFileIsWhatStandsBesideItWhereThatBelongsToIt)
{
  Note(EDialogAction::LoadFile, WriteFile("own.ffc"));
  EXPECT_EQ(m_watch.GetOrigin().eKind, EKind::File);
  EXPECT_EQ(m_watch.GetOrigin().nFrames, 5);
  EXPECT_EQ(m_watch.GetOrigin().nDarkFrames, 3);
  EXPECT_EQ(m_watch.GetOrigin().nExpectGray, 90);
  EXPECT_EQ(m_watch.GetOrigin().eDarkField, EDarkField::None);
  EXPECT_TRUE(m_watch.GetOrigin().IsWeighted());
  Note(EDialogAction::LoadFile);
  EXPECT_EQ(m_watch.GetOrigin().nFrames, 5) << "nothing was chosen";

  Note(EDialogAction::LoadFile, WriteFile("dark.ffc", [](SSideFile &stSide) {
         stSide.bDarkUsed = true;
         stSide.strMethod.clear();
       }));
  EXPECT_EQ(m_watch.GetOrigin().eDarkField, EDarkField::Used);
  EXPECT_FALSE(m_watch.GetOrigin().IsWeighted());

  Note(EDialogAction::LoadFile, WriteFile("other.ffc", [](SSideFile &stSide) { stSide.strSha256.fill('0'); }));
  EXPECT_EQ(m_watch.GetOrigin().nFrames, 0) << "another file's";
  const QString strBroken = WriteFile("broken.ffc");
  EXPECT_TRUE(SaveWholeFile(GetSideFilePath(strBroken), "no record").IsOk());
  Note(EDialogAction::LoadFile, strBroken);
  EXPECT_EQ(m_watch.GetOrigin().nFrames, 0);
  EXPECT_EQ(m_watch.GetOrigin().eDarkField, EDarkField::Unknown);

  const QString strGone = WriteFile("gone.ffc");
  EXPECT_TRUE(QFile::remove(strGone));
  Note(EDialogAction::LoadFile, strGone);
  EXPECT_EQ(m_watch.GetOrigin().nFrames, 0) << "nobody knows which file that was";
  EXPECT_EQ(m_watch.GetOrigin().strSha256, "");
  EXPECT_EQ(m_watch.GetOrigin().strFile, strGone);
}

TEST_F(CoefficientOrigin, AFileThatIsSavedIsTheOneInUseOnlyWhereTheCoefficientsWereMadeHere)
{
  const QString strLoaded = WriteFile("loaded.ffc");
  Note(EDialogAction::LoadFile, strLoaded);
  Note(EDialogAction::SaveFile, WriteFile("copy.ffc"));
  EXPECT_EQ(m_watch.GetOrigin().strFile, strLoaded);
  m_watch.BeginAcquisition(m_pipeline);
  Deliver(1);
  Deliver(2);
  Note(EDialogAction::AcquireBright);
  Note(EDialogAction::Execute);
  Note(EDialogAction::SaveFile);
  EXPECT_EQ(m_watch.GetOrigin().strFile, "") << "nothing was chosen";
  Note(EDialogAction::SaveFlash);
  const QString strSaved = WriteFile("saved.ffc");
  Note(EDialogAction::SaveFile, strSaved);
  EXPECT_EQ(m_watch.GetOrigin().strFile, strSaved);
  EXPECT_EQ(m_watch.GetOrigin().eKind, EKind::Acquired);
  EXPECT_EQ(m_watch.GetOrigin().nFrames, 2);
  EXPECT_EQ(m_watch.GetOrigin().nAskedFrames, 8);
}

TEST_F(CoefficientOrigin, RemarksOnTheBrightFieldStayWithItsCoefficients)
{
  m_watch.BeginAcquisition(m_pipeline);
  Deliver(255);
  Deliver(254);
  Note(EDialogAction::AcquireBright);
  Note(EDialogAction::Execute);
  ASSERT_FALSE(m_watch.GetOrigin().listBrightRemarks.isEmpty()) << "it is clipped";
  EXPECT_EQ(m_watch.GetOrigin().GetNotes().last(),
            "As the coefficients were acquired: " + m_watch.GetOrigin().listBrightRemarks.last());
}

TEST_F(CoefficientOrigin, FramesThatCannotBeJudgedAreCountedAllTheSame)
{
  CDifferentFrames frames(m_pipeline);
  Deliver(1, 0);
  Deliver(2, 0);
  Deliver(1, SENSOR_FORMAT, 0);
  EXPECT_EQ(frames.GetJudgedCount(), 0U);
  EXPECT_EQ(frames.GetBrightness(), 0.0);
  EXPECT_TRUE(frames.JudgeLight().isEmpty());
  EXPECT_EQ(frames.Stop().size(), 2U);
}

TEST_F(CoefficientOrigin, BlackFramesHaveNoBrightness)
{
  CDifferentFrames frames(m_pipeline);
  Deliver(0);
  EXPECT_EQ(frames.GetJudgedCount(), 1U);
  EXPECT_EQ(frames.GetBrightness(), 0.0);
  Deliver(255);
  EXPECT_DOUBLE_EQ(frames.GetBrightness(), 0.5);
  (void)frames.Stop();
}

TEST_F(CoefficientOrigin, GainsAreReadOfAFileOfThatShapeAlone)
{
  const QString strPath = m_dir.filePath("gains.ffc");
  for (const int nBytes : {16, 32}) {
    ASSERT_TRUE(SaveWholeFile(strPath, QByteArray(nBytes, '\1')).IsOk());
    EXPECT_EQ(ReadGains(strPath, 4, 2), std::vector<uint16_t>(8, 0x0101)) << nBytes;
  }
  EXPECT_TRUE(ReadGains(strPath, 4, 3).empty());
  EXPECT_TRUE(ReadGains(strPath, 0, 2).empty());
  EXPECT_TRUE(ReadGains(m_dir.filePath("none.ffc"), 4, 2).empty());
}
