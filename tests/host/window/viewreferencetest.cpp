/// \file
/// A weighted table out of the frames that the plug-in has acquired.

#include <functional>

#include <QAction>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLineEdit>
#include <QMessageBox>
#include <QProgressDialog>

#include "frames/sidefile.h"
#include "tests/flat/toolflat.h"
#include "tests/host/window/windowfixture.h"

using namespace ffc::flat;
using namespace ffc::host;

namespace {

/// Answers the host's own boxes as a user would, and leaves those of the plug-in alone.
class CReferenceUser : public QObject {
public:
  enum class EAnswer { NotWanted, NoFile, File };

  CReferenceUser(QWidget &window, EAnswer eAnswer, const QString &strFile = {})
    : m_window(window), m_eAnswer(eAnswer), m_strFile(strFile)
  {
    startTimer(10);
  }
  QString m_strTexts;  ///< that the dialog showed
  QString m_strFolder; ///< in which the box for the file began
  QString m_strError;
  std::function<void()> m_fnMeanwhile;                       ///< done while the dialog is there
  std::function<bool()> m_fnMayAnswer = [] { return true; }; ///< asked until it is so

protected:
  void timerEvent(QTimerEvent *) override
  {
    QWidget *pBox = QApplication::activeModalWidget();
    if (pBox == nullptr || pBox->parentWidget() != &m_window) {
      return;
    }
    if (auto *pFileBox = qobject_cast<QFileDialog *>(pBox)) {
      AnswerFileBox(*pFileBox);
    } else if (pBox->objectName() == QLatin1String("ReferenceDialog")) {
      AnswerDialog(*pBox);
    } else if (auto *pMessage = qobject_cast<QMessageBox *>(pBox)) {
      m_strError = pMessage->text();
      pMessage->reject();
    }
  }

private:
  void AnswerFileBox(QFileDialog &box)
  {
    m_strFolder = box.directory().absolutePath();
    if (m_eAnswer == EAnswer::NoFile) {
      box.reject();
      return;
    }
    box.findChild<QLineEdit *>(QStringLiteral("fileNameEdit"))->setText(m_strFile);
    QMetaObject::invokeMethod(&box, "accept");
  }
  void AnswerDialog(QWidget &dialog)
  {
    if (m_strTexts.isEmpty()) {
      for (const QLabel *pLabel : dialog.findChildren<QLabel *>()) {
        m_strTexts += pLabel->text() + QLatin1Char('\n');
      }
      if (m_fnMeanwhile) {
        m_fnMeanwhile();
      }
    }
    if (m_fnMayAnswer()) {
      QTest::keyClick(&dialog, m_eAnswer == EAnswer::NotWanted ? Qt::Key_Escape : Qt::Key_Return);
    }
  }

  QWidget &m_window;
  EAnswer m_eAnswer;
  QString m_strFile;
};

using EAnswer = CReferenceUser::EAnswer;

/// Cancels each box with a progress as soon as it is shown.
class CHastyUser : public QObject {
public:
  CHastyUser() { qApp->installEventFilter(this); }

protected:
  bool eventFilter(QObject *pObject, QEvent *pEvent) override
  {
    if (auto *pBox = qobject_cast<QProgressDialog *>(pObject); pBox != nullptr && pEvent->type() == QEvent::Show) {
      pBox->cancel();
    }
    return false;
  }
};

class ViewReference : public WindowFixture {
protected:
  QAction *FindAction(const char *pBegin = "Ma&ke from") const
  {
    for (QAction *pAction : m_pWindow->findChildren<QAction *>()) {
      if (pAction->text().startsWith(QLatin1String(pBegin))) {
        return pAction;
      }
    }
    ADD_FAILURE() << "there is no such entry";
    return nullptr;
  }
  bool WaitEnabled(bool bEnabled) const
  {
    return QTest::qWaitFor([=] { return FindAction()->isEnabled() == bEnabled; });
  }
  static QByteArray ReadFile(const QString &strPath)
  {
    QFile file(strPath);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
  }
};

} // namespace

TEST_F(ViewReference, TheAcquiredFramesBecomeAWeightedTableThatThePlugInLoads)
{
  ShowWindow();
  EXPECT_FALSE(FindAction()->isEnabled());
  EXPECT_EQ(FindAction()->toolTip().toStdString(), "Acquire a bright field in the plug-in's dialog first.");
  Correct();
  ASSERT_TRUE(WaitEnabled(true)) << FindAction()->toolTip().toStdString();
  const SFlatFrames stFrames{m_pWindow->GetAcquiredFrames().GetBright(), m_pWindow->GetAcquiredFrames().GetDark(),
                             static_cast<uint32_t>(GetDriver().GetExpectGray()), 1};
  ASSERT_NE(stFrames.pDark, nullptr);
  EXPECT_EQ(stFrames.pBright->listFrames.size(), 16U);
  const QString strFile = m_folder.filePath("made.ffc");
  {
    const CReferenceUser user(*m_pWindow, EAnswer::NotWanted);
    FindAction()->trigger();
    EXPECT_TRUE(user.m_strTexts.contains("From 16 bright and 1 dark frames")) << user.m_strTexts.toStdString();
  }
  EXPECT_FALSE(QFile::exists(strFile));
  {
    const CReferenceUser user(*m_pWindow, EAnswer::NoFile);
    FindAction()->trigger();
    EXPECT_EQ(user.m_strFolder, QDir::homePath()) << "no coefficients were used before";
  }
  {
    const CReferenceUser user(*m_pWindow, EAnswer::File, m_folder.filePath("none/made.ffc"));
    FindAction()->trigger();
    EXPECT_TRUE(user.m_strError.contains("made.ffc")) << user.m_strError.toStdString();
  }
  {
    const CReferenceUser user(*m_pWindow, EAnswer::File, strFile);
    Key(Qt::Key_F, Qt::ControlModifier | Qt::ShiftModifier);
  }
  const QByteArray byteTable = ReadFile(strFile);
  EXPECT_TRUE(byteTable == MakeWithTool(stFrames, m_folder)) << byteTable.size();
  ASSERT_TRUE(WaitText("Correction", "corrected"));
  const QString strLoaded = m_folder.filePath("loaded.ffc");
  ASSERT_EQ(GetDriver().SaveFile(strLoaded).strBox.toStdString(), "");
  EXPECT_TRUE(ReadFile(strLoaded) == byteTable) << "of the plug-in";
  EXPECT_TRUE(FindAction("L&oad the last")->text().contains("loaded.ffc")) << "saved last";
  const auto side = ffc::frames::ReadSideFile(strFile);
  ASSERT_EQ(side.GetError(), "");
  ASSERT_TRUE(side.GetValue());
  EXPECT_EQ(side.GetValue()->strMethod, "weighted");
  EXPECT_EQ(side.GetValue()->nBrightFrames, 16U);
  EXPECT_TRUE(side.GetValue()->bDarkUsed);
  EXPECT_EQ(side.GetValue()->strPixelFormat, "Mono12");
  EXPECT_EQ(side.GetValue()->strSha256, ffc::frames::HashCoefficientFile(strFile).GetValue());

  Press("Measure");
  const QString strReport = m_folder.filePath("weighted.html");
  const CReferenceUser reporter(*m_pWindow, EAnswer::File, m_folder.filePath("weighted"));
  Press("SaveReport");
  EXPECT_TRUE(ReadFile(strReport).contains("from 16 bright frames, weighted, and 1 dark frame"));
  const QJsonObject json = QJsonDocument::fromJson(ReadFile(m_folder.filePath("weighted.json"))).object();
  EXPECT_EQ(json["reference"].toString().toStdString(), "weighted");
  EXPECT_EQ(json["frame_count"].toInt(), 16);
  EXPECT_EQ(json["expect_gray"].toInt(), static_cast<int>(stFrames.nExpectGray));

  {
    const CReferenceUser user(*m_pWindow, EAnswer::NotWanted);
    const CHastyUser hasty;
    FindAction()->trigger();
    EXPECT_EQ(user.m_strTexts.toStdString(), "") << "cancelled";
  }
}

TEST_F(ViewReference, FramesOfAnotherSizeEndItAlsoWhileTheUserLooksAtTheFigures)
{
  ShowWindow();
  ASSERT_TRUE(WaitText("Correction", "raw"));
  Press("ShowDialog");
  GetDriver().SetFrameCount(1);
  ASSERT_EQ(GetDriver().AcquireBright().strBox.toStdString(), "");
  ASSERT_TRUE(WaitEnabled(true)) << FindAction()->toolTip().toStdString();
  const QString strFile = m_folder.filePath("made.ffc");
  CReferenceUser user(*m_pWindow, EAnswer::File, strFile);
  user.m_fnMeanwhile = [this] { // the camera's doing: the user has a box before the window
    m_pWindow->SlotStartStop();
    dynamic_cast<GenApi::IValue *>(GetCamera().GetDeviceNodeMap()->GetNode("Width"))->FromString("128");
    m_pWindow->SlotStartStop();
  };
  user.m_fnMayAnswer = [this] { return !FindAction()->isEnabled(); };
  FindAction()->trigger();
  EXPECT_TRUE(user.m_strTexts.contains("From 1 bright and 0 dark frames")) << user.m_strTexts.toStdString();
  EXPECT_TRUE(user.m_strError.startsWith("The frames have another size or format")) << user.m_strError.toStdString();
  EXPECT_FALSE(QFile::exists(strFile));
  ASSERT_TRUE(WaitEnabled(false));
  EXPECT_NE(FindAction()->toolTip().indexOf("another size or format"), -1) << FindAction()->toolTip().toStdString();
  EXPECT_EQ(m_pWindow->GetAcquiredFrames().GetBright(), nullptr) << "dropped";
  ASSERT_EQ(GetDriver().AcquireBright().strBox.toStdString(), "");
  EXPECT_TRUE(WaitEnabled(true)) << FindAction()->toolTip().toStdString();
}

TEST_F(ViewReference, ACameraThatCorrectsItselfTakesNone)
{
  m_stCamera.eMode = ffc::camera::ECorrectionMode::FlatField;
  ShowWindow();
  EXPECT_TRUE(QTest::qWaitFor([this] { return FindAction()->toolTip().startsWith("This camera corrects"); }));
  EXPECT_FALSE(FindAction()->isEnabled());
}
