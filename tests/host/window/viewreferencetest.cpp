/// \file
/// A weighted table out of the frames that the plug-in has acquired.

#include <QAction>
#include <QFile>
#include <QFileDialog>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLineEdit>
#include <QPushButton>

#include "frames/sidefile.h"
#include "tests/flat/toolflat.h"
#include "tests/host/window/windowfixture.h"

using namespace ffc::flat;
using namespace ffc::host;

namespace {

/// Answers the host's own boxes as a user would, and leaves those of the plug-in alone.
class CReferenceUser : public QObject {
public:
  /// \param strFile empty: the user does not want the table after all
  CReferenceUser(QWidget &window, const QString &strFile) : m_window(window), m_strFile(strFile) { startTimer(10); }
  QString m_strTexts; ///< that the dialog showed

protected:
  void timerEvent(QTimerEvent *) override
  {
    QWidget *pBox = QApplication::activeModalWidget();
    if (pBox == nullptr || pBox->parentWidget() != &m_window) {
      return;
    }
    if (auto *pFileBox = qobject_cast<QFileDialog *>(pBox)) {
      pFileBox->findChild<QLineEdit *>(QStringLiteral("fileNameEdit"))->setText(m_strFile);
      QMetaObject::invokeMethod(pFileBox, "accept");
    } else if (pBox->objectName() == QLatin1String("ReferenceDialog") && m_strTexts.isEmpty()) {
      for (const QLabel *pLabel : pBox->findChildren<QLabel *>()) {
        m_strTexts += pLabel->text() + QLatin1Char('\n');
      }
      QTest::keyClick(pBox, m_strFile.isEmpty() ? Qt::Key_Escape : Qt::Key_Return);
    }
  }

private:
  QWidget &m_window;
  QString m_strFile;
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
    const CReferenceUser user(*m_pWindow, QString());
    FindAction()->trigger();
    EXPECT_TRUE(user.m_strTexts.contains("From 16 bright and 1 dark frames")) << user.m_strTexts.toStdString();
  }
  EXPECT_FALSE(QFile::exists(strFile));
  {
    const CReferenceUser user(*m_pWindow, strFile);
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
  const CReferenceUser user(*m_pWindow, m_folder.filePath("weighted"));
  Press("SaveReport");
  EXPECT_TRUE(ReadFile(strReport).contains("from 16 bright frames, weighted, and 1 dark frame"));
  const QJsonObject json = QJsonDocument::fromJson(ReadFile(m_folder.filePath("weighted.json"))).object();
  EXPECT_EQ(json["reference"].toString().toStdString(), "weighted");
  EXPECT_EQ(json["frame_count"].toInt(), 16);
  EXPECT_EQ(json["expect_gray"].toInt(), static_cast<int>(stFrames.nExpectGray));

  Press("StartStop");
  dynamic_cast<GenApi::IValue *>(GetCamera().GetDeviceNodeMap()->GetNode("Width"))->FromString("128");
  Press("StartStop");
  ASSERT_TRUE(WaitEnabled(false));
  EXPECT_NE(FindAction()->toolTip().indexOf("another size or format"), -1) << FindAction()->toolTip().toStdString();
  EXPECT_EQ(m_pWindow->GetAcquiredFrames().GetBright(), nullptr) << "dropped";
}

TEST_F(ViewReference, ACameraThatCorrectsItselfTakesNone)
{
  m_stCamera.eMode = ffc::camera::ECorrectionMode::FlatField;
  ShowWindow();
  EXPECT_TRUE(QTest::qWaitFor([this] { return FindAction()->toolTip().startsWith("This camera corrects"); }));
  EXPECT_FALSE(FindAction()->isEnabled());
}
