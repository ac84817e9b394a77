#include "host/headlessrun.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

namespace {

constexpr uint32_t MEASURED_FRAMES = 16;
/// A colour camera's bright acquisition discards so many frames while its white balance settles.
constexpr uint32_t SETTLING_FRAMES = 7;
const QString COEFFICIENT_FILE = QStringLiteral("coefficients.ffc");

QString ReadWholeFile(const QString &strPath, QByteArray &byteContent)
{
  QFile file(strPath);
  if (!file.open(QIODevice::ReadOnly)) {
    return QStringLiteral("cannot read %1: %2").arg(strPath, file.errorString());
  }
  byteContent = file.readAll();
  return byteContent.isEmpty() ? QStringLiteral("%1 is empty").arg(strPath) : QString();
}

SCameraFrame MakeFrame(const SFramePair &stPair, const SReport &stReport, const SSensorFormat &stFormat)
{
  SCameraFrame stFrame;
  stFrame.pBuffer = stPair.listRaw.data();
  stFrame.nSize = uint32_t(stPair.listRaw.size());
  stFrame.nWidth = stReport.nWidth;
  stFrame.nHeight = stReport.nHeight;
  stFrame.nPixelFormat = stFormat.nCode;
  return stFrame;
}

} // namespace

CHeadlessRun::CHeadlessRun(const SHostOptions &stOptions, std::unique_ptr<ICamera> pCamera, CProgressLine &progress)
  : m_stOptions(stOptions), m_progress(progress), m_viewer(std::move(pCamera)), m_collector(m_viewer.GetPipeline()),
    m_folder(QString::fromStdString(stOptions.strOutFolder))
{
  m_viewer.GetPipeline().SetObserver([this] { m_progress.CountFrame(); });
  m_collector.SetTroubleCheck([this] { return m_viewer.GetStreamError(); });
}

CHeadlessRun::~CHeadlessRun()
{
  m_viewer.StopStream();
}

QString CHeadlessRun::Run()
{
  struct SStep {
    const char *pName;
    QString (CHeadlessRun::*pRun)();
  };
  const SStep STEPS[] = {
    {"open", &CHeadlessRun::Open},
    {"dialog", &CHeadlessRun::OpenDialog},
    {"dark acquisition", &CHeadlessRun::AcquireDark},
    {"bright acquisition", &CHeadlessRun::AcquireBright},
    {"execute", &CHeadlessRun::Execute},
    {"measurement", &CHeadlessRun::Measure},
    {"saving frames", &CHeadlessRun::SaveFrames},
    {"coefficient file", &CHeadlessRun::CheckFile},
    {"report", &CHeadlessRun::WriteResults},
  };
  QString strError;
  for (const SStep &stStep : STEPS) {
    m_progress.BeginStep(stStep.pName);
    strError = (this->*stStep.pRun)();
    if (!strError.isEmpty()) {
      strError = QStringLiteral("%1: %2").arg(QLatin1String(stStep.pName), strError.simplified());
      break;
    }
  }
  m_viewer.StopStream();
  m_progress.Clear();
  return strError;
}

QString CHeadlessRun::Open()
{
  if (m_viewer.GetCamera().GetSceneControl() == nullptr) {
    return QStringLiteral("the scene of this camera cannot be set by software");
  }
  QString strError = m_folder.Prepare();
  if (strError.isEmpty()) {
    strError = m_viewer.Open(m_stOptions);
  }
  m_stReport.strCamera = QString::fromStdString(m_viewer.GetCamera().GetDisplayName());
  m_stReport.nFrameCount = m_stOptions.nFrames;
  return strError;
}

QString CHeadlessRun::OpenDialog()
{
  m_viewer.ShowDialog();
  QCoreApplication::processEvents();
  QDialog *pDialog = CDialogDriver::FindDialog();
  if (pDialog == nullptr) {
    return QStringLiteral("the plug-in shows no dialog");
  }
  m_driver.emplace(*pDialog);
  return {};
}

QString CHeadlessRun::Judge(const SDialogAnswer &stAnswer)
{
  if (!stAnswer.strBox.isEmpty()) {
    const QString strStream = m_viewer.GetStreamError();
    return strStream.isEmpty() ? stAnswer.strBox : QStringLiteral("%1 (%2)").arg(stAnswer.strBox, strStream);
  }
  if (stAnswer.bWarning && !m_stReport.listNotes.contains(stAnswer.strPrompt)) {
    m_stReport.listNotes << stAnswer.strPrompt;
  }
  return {};
}

QString CHeadlessRun::SetScene(bool bLensCap, ISceneControl::EPurpose ePurpose)
{
  // Stopped meanwhile, so that no frame of the old scene is under way.
  m_viewer.StopStream();
  ISceneControl *pScene = m_viewer.GetCamera().GetSceneControl();
  pScene->SetLensCap(bLensCap);
  pScene->SetPurpose(ePurpose);
  return m_viewer.StartStream();
}

QString CHeadlessRun::AcquireDark()
{
  QString strError = SetScene(true, ISceneControl::EPurpose::Acquisition);
  if (strError.isEmpty()) {
    m_progress.BeginStep("dark field", 1);
    const SDialogAnswer stAnswer = m_driver->AcquireDark();
    strError = Judge(stAnswer);
    if (strError.isEmpty() && stAnswer.strPrompt.isEmpty()) {
      strError = QStringLiteral("the dialog reports no result");
    }
  }
  return strError;
}

QString CHeadlessRun::ReadFormat()
{
  SFrameCopy stFrame;
  const bool bCame = m_collector.WaitUntil([&] { return m_viewer.GetPipeline().TakeLatest(stFrame); });
  if (!bCame) {
    return QStringLiteral("the camera delivers no frames");
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

QString CHeadlessRun::AcquireBright()
{
  QString strError = SetScene(false, ISceneControl::EPurpose::Acquisition);
  strError = strError.isEmpty() ? ReadFormat() : strError;
  strError = strError.isEmpty() ? Judge(m_driver->SetFrameCount(m_stOptions.nFrames)) : strError;
  if (!strError.isEmpty()) {
    return strError;
  }
  const uint32_t nSettling = m_pFormat->eLayout == EColorLayout::Mono ? 0 : SETTLING_FRAMES;
  m_progress.BeginStep("bright field", uint32_t(m_stOptions.nFrames) + nSettling);
  const SDialogAnswer stAnswer = m_driver->AcquireBright();
  strError = Judge(stAnswer);
  if (strError.isEmpty() && !m_driver->IsExecuteEnabled()) {
    strError = QStringLiteral("the dialog does not accept the bright field");
  }
  if (strError.isEmpty() && m_stOptions.nExpectGray >= 0) {
    strError = Judge(m_driver->SetExpectGray(m_stOptions.nExpectGray));
  }
  m_stReport.nExpectGray = m_driver->GetExpectGray();
  m_stReport.nExpectGrayDn = m_stReport.nExpectGray << (m_pFormat->nBitDepth - 8);
  return strError;
}

QString CHeadlessRun::Execute()
{
  const QString strOldPrompt = m_driver->ReadPrompt().strPrompt;
  QString strError = Judge(m_driver->Execute());
  if (!strError.isEmpty()) {
    return strError;
  }
  // Success is told with the first corrected frame, through the event loop.
  const bool bAnswered =
    m_collector.WaitUntil([&] { return !m_driver->IsPreviewOn() || m_driver->ReadPrompt().strPrompt != strOldPrompt; });
  const SDialogAnswer stAnswer = m_driver->ReadPrompt();
  if (!m_driver->IsPreviewOn() || stAnswer.bWarning) {
    return stAnswer.strPrompt;
  }
  return bAnswered ? QString() : QStringLiteral("no corrected frame came");
}

QString CHeadlessRun::MeasureScene(bool bLensCap, CPairedStacks &stStacks)
{
  QString strError = SetScene(bLensCap, ISceneControl::EPurpose::Measurement);
  if (strError.isEmpty() && !stStacks.Prepare(m_stReport.nWidth, m_stReport.nHeight, *m_pFormat)) {
    strError = QStringLiteral("out of memory");
  }
  if (!strError.isEmpty()) {
    return strError;
  }
  const char *pScene = bLensCap ? "dark" : "bright";
  m_progress.BeginStep(std::string("measuring ") + pScene + " frames", MEASURED_FRAMES);
  strError = m_collector.Collect(MEASURED_FRAMES, CFramePipeline::EWanted::Corrected,
                                 [&stStacks](const SProcessedFrame &stFrame) {
                                   const SCameraFrame &stRaw = *stFrame.pRaw;
                                   return stStacks.Add(stRaw.pBuffer, stFrame.pCorrected, stRaw.nSize);
                                 });
  if (strError.isEmpty() && stStacks.GetRepeatedCount() > 0) {
    m_stReport.listNotes << QStringLiteral("the camera repeats itself: only %1 different %2 frames were measured")
                              .arg(stStacks.GetRaw().GetFrameCount())
                              .arg(QLatin1String(pScene));
  }
  return strError;
}

QString CHeadlessRun::Measure()
{
  m_viewer.GetPipeline().ResetThroughput();
  QString strError = MeasureScene(true, m_stDark);
  strError = strError.isEmpty() ? MeasureScene(false, m_stBright) : strError;
  if (!strError.isEmpty()) {
    const SDialogAnswer stAnswer = m_driver->ReadPrompt();
    return stAnswer.bWarning ? stAnswer.strPrompt : strError;
  }
  m_stReport.stThroughput = m_viewer.GetPipeline().GetThroughput();
  m_stReport.nBrightFrames = m_stBright.GetRaw().GetFrameCount();
  m_stReport.nDarkFrames = m_stDark.GetRaw().GetFrameCount();
  m_stReport.stBefore = MeasureUniformity(m_stBright.GetRaw(), m_stDark.GetRaw(), m_pFormat->eLayout);
  m_stReport.stAfter = MeasureUniformity(m_stBright.GetCorrected(), m_stDark.GetCorrected(), m_pFormat->eLayout);
  const double dSamples = double(m_stReport.nWidth) * m_stReport.nHeight * m_stReport.nBrightFrames;
  m_stReport.dNewlyClippedPercent = 100.0 * double(m_stBright.GetNewlyClippedCount()) / dSamples;
  return {};
}

QString CHeadlessRun::CollectPair(SFramePair &stPair)
{
  return m_collector.Collect(1, CFramePipeline::EWanted::Corrected, [&stPair](const SProcessedFrame &stFrame) {
    return stPair.Take(stFrame.pRaw->pBuffer, stFrame.pCorrected, stFrame.pRaw->nSize);
  });
}

QString CHeadlessRun::SaveFrames()
{
  const uint32_t nFrames = uint32_t(m_stOptions.nSaveFrames);
  QString strError;
  for (uint32_t nFrame = 0; nFrame < nFrames && strError.isEmpty(); ++nFrame) {
    SFramePair stPair;
    strError = CollectPair(stPair);
    if (strError.isEmpty()) {
      strError = m_folder.WriteFrames(stPair, nFrame, m_stReport.nWidth, m_stReport.nHeight, *m_pFormat);
    }
  }
  return strError.isEmpty() ? m_folder.WriteDialog(m_driver->GrabPicture()) : strError;
}

QString CHeadlessRun::CheckFile()
{
  SFramePair stReference;
  QString strError = CollectPair(stReference);
  const QString strPath = m_folder.GetPath(COEFFICIENT_FILE);
  QFile::remove(strPath);
  strError = strError.isEmpty() ? Judge(m_driver->SaveFile(strPath)) : strError;
  if (!strError.isEmpty()) {
    return strError;
  }
  // Another binding of the plug-in loads the file, so that nothing but the file can carry the result.
  m_driver.reset();
  strError = m_viewer.Reopen();
  strError = strError.isEmpty() ? OpenDialog() : strError;
  strError = strError.isEmpty() ? Judge(m_driver->LoadFile(strPath)) : strError;
  return strError.isEmpty() ? CheckReloaded(strPath, stReference) : strError;
}

QString CHeadlessRun::CheckReloaded(const QString &strPath, const SFramePair &stReference)
{
  if (!m_driver->IsPreviewOn()) {
    return QStringLiteral("the dialog does not preview the loaded coefficients");
  }
  // The stream is stopped: the frame thread's part is played here.
  m_viewer.GetPipeline().Receive(MakeFrame(stReference, m_stReport, *m_pFormat));
  SFrameCopy stCopy;
  if (!m_viewer.GetPipeline().TakeLatest(stCopy) || !stCopy.bCorrected ||
      stCopy.listBytes != stReference.listCorrected) {
    return QStringLiteral("the loaded coefficients correct a frame differently");
  }
  const QTemporaryDir dir;
  const QString strAgain = dir.filePath(COEFFICIENT_FILE);
  QByteArray byteFirst;
  QByteArray byteAgain;
  QString strError = Judge(m_driver->SaveFile(strAgain));
  strError = strError.isEmpty() ? ReadWholeFile(strPath, byteFirst) : strError;
  strError = strError.isEmpty() ? ReadWholeFile(strAgain, byteAgain) : strError;
  if (strError.isEmpty() && byteFirst != byteAgain) {
    strError = QStringLiteral("the coefficients change when they are loaded and saved again");
  }
  return strError;
}

QString CHeadlessRun::WriteResults()
{
  const QString strTitle = QStringLiteral("%1, %2").arg(m_stReport.strCamera, m_stReport.strPixelFormat);
  const QString strError = m_folder.WritePictures(m_stBright, m_pFormat->eLayout, strTitle);
  return strError.isEmpty() ? m_folder.WriteReport(m_stReport) : strError;
}
