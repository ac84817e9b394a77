#include "host/headless/bench.h"

#include <utility>

#include <QCoreApplication>
#include <QFile>

#include "host/headless/steps.h"

namespace ffc::host {
namespace {

/// A colour camera's bright acquisition discards so many frames while its white balance settles.
constexpr uint32_t SETTLING_FRAMES = 7;
const QString FLASH_FILE = QStringLiteral("camera.flash");

} // namespace

CBench::CBench(const SHostOptions &stOptions, CameraFactory fnOpenCamera, CProgressLine &progress)
  : m_stOptions(stOptions), m_fnOpenCamera(std::move(fnOpenCamera)), m_progress(progress),
    m_folder(QString::fromStdString(stOptions.strOutFolder))
{
  m_stReport.eMode = stOptions.eMode;
  m_stReport.nFrameCount = stOptions.nFrames;
}

CBench::~CBench()
{
  StopStream();
}

void CBench::StopStream()
{
  if (m_pViewer != nullptr) {
    m_pViewer->StopStream();
  }
}

QString CBench::Open()
{
  return RunUntilFailure({
    [this] { return m_folder.Prepare(); },
    [this] { return PrepareFlash(); },
    [this] { return OpenCameraInViewer(); },
    [this] { return SelectBlockSize(m_pViewer->GetCamera(), m_stOptions.nBlockSize); },
    [this] { return m_pViewer->Open(m_stOptions); },
  });
}

QString CBench::PrepareFlash()
{
  if (m_stOptions.eMode == ECorrectionMode::None || !m_stOptions.strFlashFile.empty()) {
    return {};
  }
  const QString strFlash = m_folder.GetPath(FLASH_FILE);
  m_stOptions.strFlashFile = strFlash.toStdString();
  QFile file(strFlash);
  return !file.exists() || file.remove() ? QString()
                                         : QStringLiteral("cannot replace %1: %2").arg(strFlash, file.errorString());
}

QString CBench::OpenCameraInViewer()
{
  SOpenedCamera stOpened = m_fnOpenCamera(m_stOptions);
  if (stOpened.pCamera == nullptr) {
    return stOpened.strError;
  }
  m_pViewer = std::make_unique<CViewer>(std::move(stOpened.pCamera));
  m_pViewer->GetPipeline().SetObserver([this] { m_progress.CountFrame(); });
  m_collector.emplace(m_pViewer->GetPipeline());
  m_collector->SetTroubleCheck([this] { return m_pViewer->GetStreamError(); });
  m_stReport.strCamera = QString::fromStdString(m_pViewer->GetCamera().GetDisplayName());
  return m_pViewer->GetCamera().GetSceneControl() != nullptr
           ? QString()
           : QStringLiteral("the scene of this camera cannot be set by software");
}

QString CBench::OpenDialog()
{
  m_pViewer->ShowDialog();
  QCoreApplication::processEvents();
  QDialog *pDialog = CDialogDriver::FindDialog();
  if (pDialog == nullptr) {
    return QStringLiteral("the plug-in shows no dialog");
  }
  m_driver.emplace(*pDialog);
  return {};
}

QString CBench::ReopenDialog()
{
  m_driver.reset();
  const QString strError = m_pViewer->Reopen();
  return strError.isEmpty() ? OpenDialog() : strError;
}

QString CBench::PowerCycle()
{
  m_driver.reset();
  m_collector.reset();
  m_pViewer.reset();
  const QString strError = OpenCameraInViewer();
  return strError.isEmpty() ? m_pViewer->Open(m_stOptions) : strError;
}

QString CBench::SetScene(bool bLensCap, ISceneControl::EPurpose ePurpose)
{
  m_pViewer->StopStream();
  ISceneControl *pScene = m_pViewer->GetCamera().GetSceneControl();
  pScene->SetLensCap(bLensCap);
  pScene->SetPurpose(ePurpose);
  return m_pViewer->StartStream();
}

QString CBench::ReadFormat()
{
  // A new frame: the latest may be of a format that an acquisition selected for itself.
  SCameraFrame stFrame;
  QString strError =
    m_collector->Collect(1, CFramePipeline::EWanted::Any, [&stFrame](const SProcessedFrame &stProcessed) {
      stFrame = *stProcessed.pRaw;
      return true;
    });
  if (!strError.isEmpty()) {
    return strError;
  }
  m_pFormat = FindSensorFormat(stFrame.nPixelFormat);
  if (m_pFormat == nullptr) {
    return QStringLiteral("unknown pixel format 0x%1").arg(stFrame.nPixelFormat, 8, 16, QLatin1Char('0'));
  }
  m_stReport.strPixelFormat = QString::fromStdString(m_pFormat->strName);
  m_stReport.nWidth = stFrame.nWidth;
  m_stReport.nHeight = stFrame.nHeight;
  return {};
}

QString CBench::AcquireDark()
{
  m_progress.BeginStep("dark field", 1);
  const SDialogAnswer stAnswer = m_driver->AcquireDark();
  const QString strError = Judge(stAnswer);
  return strError.isEmpty() && stAnswer.strPrompt.isEmpty() ? QStringLiteral("the dialog reports no result") : strError;
}

QString CBench::SelectFrameCount()
{
  return Judge(m_driver->SetFrameCount(m_stOptions.nFrames));
}

QString CBench::AcquireBright()
{
  const uint32_t nSettling = m_pFormat->eLayout == EColorLayout::Mono ? 0 : SETTLING_FRAMES;
  m_progress.BeginStep("bright field", uint32_t(m_stOptions.nFrames) + nSettling);
  const QString strError = Judge(m_driver->AcquireBright());
  return strError.isEmpty() && !m_driver->IsExecuteEnabled()
           ? QStringLiteral("the dialog does not accept the bright field")
           : strError;
}

QString CBench::SelectExpectGray()
{
  QString strError = m_stOptions.nExpectGray >= 0 ? Judge(m_driver->SetExpectGray(m_stOptions.nExpectGray)) : QString();
  m_stReport.nExpectGray = m_driver->GetExpectGray();
  m_stReport.nExpectGrayDn = m_stReport.nExpectGray << (m_pFormat->nBitDepth - 8);
  return strError;
}

QString CBench::Judge(const SDialogAnswer &stAnswer)
{
  if (!stAnswer.strBox.isEmpty()) {
    const QString strStream = m_pViewer->GetStreamError();
    return strStream.isEmpty() ? stAnswer.strBox : QStringLiteral("%1 (%2)").arg(stAnswer.strBox, strStream);
  }
  if (stAnswer.bWarning && !m_stReport.listNotes.contains(stAnswer.strPrompt)) {
    m_stReport.listNotes << stAnswer.strPrompt;
  }
  return {};
}

} // namespace ffc::host
