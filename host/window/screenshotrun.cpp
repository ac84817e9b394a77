#include "host/window/screenshotrun.h"

#include <QAction>
#include <QCoreApplication>
#include <QDialog>
#include <QDir>
#include <QElapsedTimer>
#include <QPainter>
#include <QTabWidget>
#include <QThread>

#include "camera/iscenecontrol.h"
#include "frames/wholefile.h"
#include "host/window/dialogplace.h"
#include "host/window/imageview.h"

namespace ffc::host {

using camera::FindSceneControl;

namespace {

constexpr QSize WINDOW_SIZE(1280, 800);
constexpr int BRIGHT_FRAMES = 16;
constexpr int POLL_MS = 10;

Result<> Judge(const SDialogAnswer &stAnswer)
{
  return stAnswer.strBox.isEmpty() ? Result<>() : Failure(stAnswer.strBox);
}

} // namespace

CScreenshotRun::CScreenshotRun(CMainWindow &window, const QString &strFolder, int nSettleMs)
  : m_window(window), m_strFolder(strFolder), m_nSettleMs(nSettleMs)
{
}

Result<> CScreenshotRun::Run()
{
  return RunUntilFailure([this] { return Prepare(); }, [this] { return SavePicture("1-raw"); },
                         [this] { return AcquireDark(); }, [this] { return SavePicture("2-dark"); },
                         [this] { return AcquireBright(); }, [this] { return SavePicture("3-bright"); },
                         [this] { return Execute(); }, [this] { return SavePicture("4-executed"); },
                         [this] { return HideDialog(); }, [this] { return SavePicture("5-corrected"); },
                         [this] { return SplitView(); }, [this] { return SavePicture("6-split"); },
                         [this] { return Measure(); }, [this] { return SavePicture("7-quality"); });
}

void CScreenshotRun::Settle()
{
  QElapsedTimer timer;
  timer.start();
  while (timer.elapsed() < m_nSettleMs) {
    QThread::msleep(POLL_MS);
    QCoreApplication::processEvents();
  }
}

Result<> CScreenshotRun::Prepare()
{
  if (!QDir().mkpath(m_strFolder)) {
    return Failure(QStringLiteral("cannot make the folder %1").arg(m_strFolder));
  }
  if (FindSceneControl(m_window.GetViewer()->GetCamera()) == nullptr) {
    return Failure("the scene of this camera cannot be set by software");
  }
  m_window.resize(WINDOW_SIZE);
  m_window.findChild<QTabWidget *>(QStringLiteral("Tabs"))->setCurrentIndex(0);
  Settle();
  return {};
}

Result<> CScreenshotRun::AcquireDark()
{
  m_window.SlotShowDialog();
  QCoreApplication::processEvents();
  QDialog *pDialog = CDialogDriver::FindDialog();
  if (pDialog == nullptr) {
    return Failure("the plug-in shows no dialog");
  }
  m_driver.emplace(*pDialog);
  FindSceneControl(m_window.GetViewer()->GetCamera())->SetLensCap(true);
  Settle();
  return Judge(m_driver->AcquireDark());
}

Result<> CScreenshotRun::AcquireBright()
{
  FindSceneControl(m_window.GetViewer()->GetCamera())->SetLensCap(false);
  Settle();
  return RunUntilFailure([this] { return Judge(m_driver->SetFrameCount(BRIGHT_FRAMES)); },
                         [this] { return Judge(m_driver->AcquireBright()); });
}

Result<> CScreenshotRun::Execute()
{
  return Judge(m_driver->Execute());
}

Result<> CScreenshotRun::HideDialog()
{
  m_window.GetViewer()->HideDialog(); // the plots are behind it
  return {};
}

/// By its key, which is the same in all languages.
Result<> CScreenshotRun::SplitView()
{
  for (QAction *pAction : m_window.findChildren<QAction *>()) {
    if (pAction->shortcut() == QKeySequence(Qt::CTRL + Qt::Key_B)) {
      pAction->trigger();
      return {};
    }
  }
  return Failure("the window has no split view");
}

Result<> CScreenshotRun::Measure()
{
  m_window.SlotMeasure();
  return {};
}

/// In the window, where it would stand on a screen of the window's size.
QPoint CScreenshotRun::FindPlace(const QDialog &dialog) const
{
  const CImageView &view = *m_window.findChild<CImageView *>();
  const QRect rcImage(view.mapTo(&m_window, QPoint(0, 0)), view.size());
  return FindDialogPlace(m_window.rect(), m_window.rect(), rcImage, dialog.size());
}

Result<> CScreenshotRun::SavePicture(const char *pName)
{
  Settle();
  QImage imgPicture = m_window.grab().toImage();
  if (QDialog *pDialog = CDialogDriver::FindDialog()) {
    const QImage imgDialog = pDialog->grab().toImage();
    QPainter painter(&imgPicture);
    painter.setPen(Qt::darkGray);
    const QRect rcPlace(FindPlace(*pDialog), pDialog->size());
    painter.drawImage(rcPlace.topLeft(), imgDialog);
    painter.drawRect(rcPlace.adjusted(-1, -1, 0, 0));
  }
  const QString strPath = QDir(m_strFolder).filePath(QLatin1String(pName) + QStringLiteral(".png"));
  return frames::SaveWholePicture(strPath, imgPicture);
}

} // namespace ffc::host
