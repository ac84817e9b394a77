#include "host/headless/hoststory.h"

#include "host/headless/coefficientfile.h"
#include "host/headless/steps.h"
#include "host/viewer/framecopy.h"

namespace ffc::host {
namespace {

SCameraFrame MakeFrame(const std::vector<uint8_t> &listRaw, const quality::SReport &stReport,
                       const SSensorFormat &stFormat)
{
  SCameraFrame stFrame;
  stFrame.pBuffer = listRaw.data();
  stFrame.nSize = uint32_t(listRaw.size());
  stFrame.nWidth = stReport.nWidth;
  stFrame.nHeight = stReport.nHeight;
  stFrame.nPixelFormat = stFormat.nCode;
  return stFrame;
}

} // namespace

QString CHostStory::Run()
{
  return RunSteps(
    {
      {"open", [this] { return m_bench.Open(); }},
      {"dialog", [this] { return m_bench.OpenDialog(); }},
      {"dark acquisition", [this] { return AcquireDark(); }},
      {"bright acquisition", [this] { return AcquireBright(); }},
      {"execute", [this] { return Execute(); }},
      {"measurement", [this] { return Measure(); }},
      {"saving frames", [this] { return SaveFrames(); }},
      {"coefficient file", [this] { return CheckFile(); }},
      {"report", [this] { return WriteResults(); }},
    },
    m_bench.GetProgress());
}

QString CHostStory::GetSummary() const
{
  return quality::MakeReportTable(m_bench.GetReport());
}

QString CHostStory::AcquireDark()
{
  const QString strError = m_bench.SetScene(true, ISceneControl::EPurpose::Acquisition);
  return strError.isEmpty() ? m_bench.AcquireDark() : strError;
}

QString CHostStory::AcquireBright()
{
  return RunUntilFailure({
    [this] { return m_bench.SetScene(false, ISceneControl::EPurpose::Acquisition); },
    [this] { return m_bench.ReadFormat(); },
    [this] { return m_bench.SelectFrameCount(); },
    [this] { return m_bench.AcquireBright(); },
    [this] { return m_bench.SelectExpectGray(); },
  });
}

QString CHostStory::Execute()
{
  CDialogDriver &driver = m_bench.GetDriver();
  const QString strOldPrompt = driver.ReadPrompt().strPrompt;
  QString strError = m_bench.Judge(driver.Execute());
  if (!strError.isEmpty()) {
    return strError;
  }
  // Success is told with the first corrected frame, through the event loop.
  const bool bAnswered = m_bench.GetCollector().WaitUntil(
    [&] { return !driver.IsPreviewOn() || driver.ReadPrompt().strPrompt != strOldPrompt; });
  const SDialogAnswer stAnswer = driver.ReadPrompt();
  if (!driver.IsPreviewOn() || stAnswer.bWarning) {
    return stAnswer.strPrompt;
  }
  return bAnswered ? QString() : QStringLiteral("no corrected frame came");
}

QString CHostStory::MeasureScene(bool bLensCap, quality::CPairedStacks &stStacks)
{
  const quality::SReport &stReport = m_bench.GetReport();
  QString strError = m_bench.SetScene(bLensCap, ISceneControl::EPurpose::Measurement);
  if (strError.isEmpty() && !stStacks.Prepare(stReport.nWidth, stReport.nHeight, *m_bench.GetFormat())) {
    strError = QStringLiteral("out of memory");
  }
  if (!strError.isEmpty()) {
    return strError;
  }
  m_bench.GetProgress().BeginStep(bLensCap ? "measuring dark frames" : "measuring bright frames", MEASURED_FRAMES);
  strError = m_bench.GetCollector().Collect(MEASURED_FRAMES, CFramePipeline::EWanted::Corrected,
                                            [&stStacks](const SProcessedFrame &stFrame) {
                                              const SCameraFrame &stRaw = *stFrame.pRaw;
                                              return stStacks.Add(stRaw.pBuffer, stFrame.pCorrected, stRaw.nSize);
                                            });
  if (strError.isEmpty() && stStacks.GetRepeatedCount() > 0) {
    m_bench.GetReport().listNotes << QStringLiteral(
                                       "the camera repeats itself: only %1 different %2 frames were measured")
                                       .arg(stStacks.GetRaw().GetFrameCount())
                                       .arg(QLatin1String(bLensCap ? "dark" : "bright"));
  }
  return strError;
}

QString CHostStory::Measure()
{
  CFramePipeline &pipeline = m_bench.GetViewer().GetPipeline();
  pipeline.ResetThroughput();
  QString strError = MeasureScene(true, m_stDark);
  strError = strError.isEmpty() ? MeasureScene(false, m_stBright) : strError;
  if (!strError.isEmpty()) {
    const SDialogAnswer stAnswer = m_bench.GetDriver().ReadPrompt();
    return stAnswer.bWarning ? stAnswer.strPrompt : strError;
  }
  quality::SReport &stReport = m_bench.GetReport();
  const EColorLayout eLayout = m_bench.GetFormat()->eLayout;
  stReport.stThroughput = pipeline.GetThroughput();
  stReport.nBrightFrames = m_stBright.GetRaw().GetFrameCount();
  stReport.nDarkFrames = m_stDark.GetRaw().GetFrameCount();
  stReport.stBefore = quality::MeasureUniformity(m_stBright.GetRaw(), m_stDark.GetRaw(), eLayout);
  stReport.stAfter = quality::MeasureUniformity(m_stBright.GetCorrected(), m_stDark.GetCorrected(), eLayout);
  const double dSamples = double(stReport.nWidth) * stReport.nHeight * stReport.nBrightFrames;
  stReport.dNewlyClippedPercent = 100.0 * double(m_stBright.GetNewlyClippedCount()) / dSamples;
  return {};
}

QString CHostStory::CollectPair(SFramePair &stPair)
{
  return m_bench.GetCollector().Collect(1, CFramePipeline::EWanted::Corrected,
                                        [&stPair](const SProcessedFrame &stFrame) {
                                          const SCameraFrame &stRaw = *stFrame.pRaw;
                                          return CopyFrame(stRaw.pBuffer, stRaw.nSize, stPair.listRaw) &&
                                                 CopyFrame(stFrame.pCorrected, stRaw.nSize, stPair.listCorrected);
                                        });
}

QString CHostStory::SaveFrames()
{
  const CResultFolder &folder = m_bench.GetFolder();
  const quality::SReport &stReport = m_bench.GetReport();
  const SSensorFormat &stFormat = *m_bench.GetFormat();
  const uint32_t nFrames = uint32_t(m_bench.GetOptions().nSaveFrames);
  QString strError;
  for (uint32_t nFrame = 0; nFrame < nFrames && strError.isEmpty(); ++nFrame) {
    SFramePair stPair;
    strError = RunUntilFailure({
      [&] { return CollectPair(stPair); },
      [&] { return folder.WriteFrame("raw", nFrame, stPair.listRaw, stReport, stFormat); },
      [&] { return folder.WriteFrame("corrected", nFrame, stPair.listCorrected, stReport, stFormat); },
    });
  }
  return strError.isEmpty() ? folder.WriteDialog(m_bench.GetDriver().GrabPicture()) : strError;
}

QString CHostStory::CheckFile()
{
  SFramePair stReference;
  const QString strPath = GetCoefficientPath(m_bench);
  return RunUntilFailure({
    [&] { return CollectPair(stReference); },
    [&] { return SaveCoefficients(m_bench); },
    // Another binding of the plug-in loads the file, so that nothing but the file can carry the result.
    [&] { return m_bench.ReopenDialog(); },
    [&] { return m_bench.Judge(m_bench.GetDriver().LoadFile(strPath)); },
    [&] { return CheckReloaded(stReference); },
  });
}

QString CHostStory::CheckReloaded(const SFramePair &stReference)
{
  if (!m_bench.GetDriver().IsPreviewOn()) {
    return QStringLiteral("the dialog does not preview the loaded coefficients");
  }
  // The stream is stopped: the frame thread's part is played here.
  CFramePipeline &pipeline = m_bench.GetViewer().GetPipeline();
  pipeline.Receive(MakeFrame(stReference.listRaw, m_bench.GetReport(), *m_bench.GetFormat()));
  SFrameCopy stCopy;
  if (!pipeline.TakeLatest(stCopy) || !stCopy.bCorrected || stCopy.listBytes != stReference.listCorrected) {
    return QStringLiteral("the loaded coefficients correct a frame differently");
  }
  return CheckSavedAgain(m_bench);
}

QString CHostStory::WriteResults()
{
  const quality::SReport &stReport = m_bench.GetReport();
  const CResultFolder &folder = m_bench.GetFolder();
  const QString strTitle = QStringLiteral("%1, %2").arg(stReport.strCamera, stReport.strPixelFormat);
  const QString strError =
    folder.WritePictures(m_stBright.GetRaw(), m_stBright.GetCorrected(), m_bench.GetFormat()->eLayout, strTitle);
  return strError.isEmpty() ? folder.WriteReport(quality::MakeReportJson(stReport)) : strError;
}

} // namespace ffc::host
