#include "host/window/windowtour.h"

#include <QCoreApplication>
#include <QDialog>
#include <QDir>
#include <QElapsedTimer>
#include <QPainter>
#include <QTabWidget>
#include <QThread>

#include "frames/wholefile.h"
#include "host/headless/steps.h"

namespace ffc::host {
namespace {

constexpr QSize WINDOW_SIZE(1280, 800);
constexpr QPoint DIALOG_PLACE(270, 90); ///< in the window, over the image
constexpr int BRIGHT_FRAMES = 16;
constexpr int SETTLE_MS = 1500; ///< status and plots follow the frames some times a second
constexpr int POLL_MS = 10;

} // namespace

CWindowTour::CWindowTour(CMainWindow &window, const QString &strFolder) : m_window(window), m_strFolder(strFolder) {}

QString CWindowTour::Run()
{
  return RunUntilFailure({
    [this] { return Prepare(); },
    [this] { return SavePicture("1-raw"); },
    [this] { return AcquireDark(); },
    [this] { return SavePicture("2-dark"); },
    [this] { return AcquireBright(); },
    [this] { return SavePicture("3-bright"); },
    [this] { return Execute(); },
    [this] { return SavePicture("4-corrected"); },
    [this] { return Measure(); },
    [this] { return SavePicture("5-quality"); },
  });
}

void CWindowTour::Settle()
{
  QElapsedTimer timer;
  timer.start();
  while (timer.elapsed() < SETTLE_MS) {
    QThread::msleep(POLL_MS);
    QCoreApplication::processEvents();
  }
}

QString CWindowTour::Prepare()
{
  if (!QDir().mkpath(m_strFolder)) {
    return QStringLiteral("cannot make the folder %1").arg(m_strFolder);
  }
  if (m_window.GetViewer()->GetCamera().GetSceneControl() == nullptr) {
    return QStringLiteral("the scene of this camera cannot be set by software");
  }
  m_window.resize(WINDOW_SIZE);
  m_window.findChild<QTabWidget *>(QStringLiteral("Tabs"))->setCurrentIndex(0);
  Settle();
  return {};
}

QString CWindowTour::AcquireDark()
{
  m_window.SlotShowDialog();
  QCoreApplication::processEvents();
  QDialog *pDialog = CDialogDriver::FindDialog();
  if (pDialog == nullptr) {
    return QStringLiteral("the plug-in shows no dialog");
  }
  m_driver.emplace(*pDialog);
  m_window.GetViewer()->GetCamera().GetSceneControl()->SetLensCap(true);
  Settle();
  return m_driver->AcquireDark().strBox;
}

QString CWindowTour::AcquireBright()
{
  m_window.GetViewer()->GetCamera().GetSceneControl()->SetLensCap(false);
  Settle();
  const QString strError = m_driver->SetFrameCount(BRIGHT_FRAMES).strBox;
  return strError.isEmpty() ? m_driver->AcquireBright().strBox : strError;
}

QString CWindowTour::Execute()
{
  const QString strError = m_driver->Execute().strBox;
  m_window.GetViewer()->HideDialog(); // the image is behind it
  return strError;
}

QString CWindowTour::Measure()
{
  m_window.SlotMeasure();
  return {};
}

QString CWindowTour::SavePicture(const char *pName)
{
  Settle();
  QImage imgPicture = m_window.grab().toImage();
  if (QDialog *pDialog = CDialogDriver::FindDialog()) {
    const QImage imgDialog = pDialog->grab().toImage();
    QPainter painter(&imgPicture);
    painter.setPen(Qt::darkGray);
    painter.drawImage(DIALOG_PLACE, imgDialog);
    painter.drawRect(QRect(DIALOG_PLACE, imgDialog.size()).adjusted(-1, -1, 0, 0));
  }
  const QString strPath = QDir(m_strFolder).filePath(QLatin1String(pName) + QStringLiteral(".png"));
  return QString::fromStdString(frames::SaveWholePicture(strPath, imgPicture).GetError());
}

} // namespace ffc::host
