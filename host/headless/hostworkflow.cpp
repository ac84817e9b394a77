#include "host/headless/hostworkflow.h"

#include <functional>
#include <string_view>
#include <unordered_set>

#include "host/headless/coefficientfile.h"
#include "host/headless/steps.h"
#include "host/viewer/framecopy.h"

namespace ffc::host {

using camera::ISceneControl;
using camera::SCameraFrame;

namespace {

SCameraFrame MakeFrame(const std::vector<uint8_t> &listRaw, const SStreamFormat &stFormat)
{
  SCameraFrame stFrame;
  stFrame.pBuffer = listRaw.data();
  stFrame.nSize = static_cast<uint32_t>(listRaw.size());
  stFrame.nWidth = stFormat.nWidth;
  stFrame.nHeight = stFormat.nHeight;
  stFrame.nPixelFormat = stFormat.pFormat->nCode;
  return stFrame;
}

} // namespace

Result<> CHostWorkflow::Run()
{
  return RunSteps(
    {
      {"open", [this] { return m_session.Open(); }},
      {"dialog", [this] { return m_session.OpenDialog(); }},
      {"dark acquisition", [this] { return AcquireDark(); }},
      {"bright acquisition", [this] { return AcquireBright(); }},
      {"execute", [this] { return Execute(); }},
      {"measurement", [this] { return Measure(); }},
      {"saving frames", [this] { return SaveFrames(); }},
      {"coefficient file", [this] { return CheckFile(); }},
      {"report", [this] { return WriteResults(); }},
    },
    m_session.GetProgress());
}

QString CHostWorkflow::GetSummary() const
{
  return m_session.MakeSummary();
}

Result<> CHostWorkflow::AcquireDark()
{
  return RunUntilFailure([this] { return m_session.SetScene(true, ISceneControl::EPurpose::Acquisition); },
                         [this] { return m_session.AcquireDark(); });
}

Result<> CHostWorkflow::AcquireBright()
{
  return RunUntilFailure([this] { return m_session.SetScene(false, ISceneControl::EPurpose::Acquisition); },
                         [this] { return m_session.ReadFormat(); }, [this] { return m_session.SelectFrameCount(); },
                         [this] { return m_session.AcquireBright(); }, [this] { return m_session.SelectExpectGray(); });
}

Result<> CHostWorkflow::Execute()
{
  CDialogDriver &driver = m_session.GetDriver();
  const QString strOldPrompt = driver.ReadPrompt().strPrompt;
  Result<> result = m_session.Judge(driver.Execute());
  if (!result) {
    return result;
  }
  // The dialog reports success after the first corrected frame, through the event loop.
  const bool bAnswered = m_session.GetCollector().WaitUntil(
    [&] { return !driver.IsPreviewOn() || driver.ReadPrompt().strPrompt != strOldPrompt; });
  const SDialogAnswer stAnswer = driver.ReadPrompt();
  if (!driver.IsPreviewOn() || stAnswer.bWarning) {
    return Failure(stAnswer.strPrompt);
  }
  return bAnswered ? Result<>() : Failure("no corrected frame came");
}

Result<> CHostWorkflow::MeasureScene(bool bLensCap, quality::CPairedStacks &stStacks)
{
  Result<> result =
    RunUntilFailure([&] { return m_session.PrepareMeasurement(bLensCap); },
                    [&] { return TakePairs(m_session.GetCollector(), m_session.GetFormat(), stStacks); });
  if (result && stStacks.GetRaw().GetFrameCount() == 1) {
    m_session.GetReport().listNotes << QStringLiteral(
                                         "only one %1 frame was measured: its temporal noise cannot be told "
                                         "apart and is in the figures")
                                         .arg(QLatin1String(bLensCap ? "dark" : "bright"));
  } else if (result && stStacks.GetRepeatedCount() > 0) {
    m_session.GetReport().listNotes << QStringLiteral(
                                         "the camera repeats itself: only %1 different %2 frames were measured")
                                         .arg(stStacks.GetRaw().GetFrameCount())
                                         .arg(QLatin1String(bLensCap ? "dark" : "bright"));
  }
  return result;
}

Result<> CHostWorkflow::Measure()
{
  CFramePipeline &pipeline = m_session.GetViewer().GetPipeline();
  pipeline.ResetThroughput();
  const Result<> result =
    RunUntilFailure([this] { return m_session.CanCover() ? MeasureScene(true, m_stDark) : Result<>(); },
                    [this] { return MeasureScene(false, m_stBright); });
  if (!result) {
    const SDialogAnswer stAnswer = m_session.GetDriver().ReadPrompt();
    return stAnswer.bWarning ? Failure(stAnswer.strPrompt) : result;
  }
  quality::SReport &stReport = m_session.GetReport();
  const SThroughput stThroughput = pipeline.GetThroughput();
  stReport.dFramesPerSecond = stThroughput.GetFramesPerSecond();
  stReport.dMegapixelsPerSecond = stThroughput.GetMegapixelsPerSecond();
  quality::MeasureFigures({m_stDark.GetRaw(), m_stDark.GetCorrected(), m_stBright.GetRaw(), m_stBright.GetCorrected(),
                           m_session.GetFormat().pFormat->eLayout},
                          stReport);
  m_session.Advise(m_stBright.GetRaw());
  stReport.dNewlyClippedPercent = m_stBright.GetNewlyClippedPercent();
  return {};
}

Result<> CHostWorkflow::CollectPair(SFramePair &stPair)
{
  return m_session.GetCollector().Collect(1, CFramePipeline::EWanted::Corrected,
                                          [&stPair](const SProcessedFrame &stFrame) {
                                            const SCameraFrame &stRaw = *stFrame.pRaw;
                                            return CopyFrame(stRaw.pBuffer, stRaw.nSize, stPair.listRaw) &&
                                                   CopyFrame(stFrame.pCorrected, stRaw.nSize, stPair.listCorrected);
                                          });
}

Result<> CHostWorkflow::SaveFrames()
{
  const CResultFolder &folder = m_session.GetFolder();
  const SStreamFormat &stFormat = m_session.GetFormat();
  const uint32_t nAsked = static_cast<uint32_t>(m_session.GetOptions().stWorkflow.nSaveFrames);
  std::unordered_set<std::size_t> setSaved;
  Result<> result;
  for (uint32_t nFrame = 0; nFrame < nAsked && result; ++nFrame) {
    SFramePair stPair;
    result = CollectPair(stPair);
    const std::string_view strRaw(reinterpret_cast<const char *>(stPair.listRaw.data()), stPair.listRaw.size());
    const uint32_t nSaved = static_cast<uint32_t>(setSaved.size());
    if (result && setSaved.insert(std::hash<std::string_view>()(strRaw)).second) {
      result = RunUntilFailure([&] { return folder.WriteFrame("raw", nSaved, stPair.listRaw, stFormat); },
                               [&] { return folder.WriteFrame("corrected", nSaved, stPair.listCorrected, stFormat); });
    }
  }
  if (result && setSaved.size() < nAsked) {
    m_session.GetReport().listNotes
      << QStringLiteral("only %1 of %2 frames were saved: the others repeat them").arg(setSaved.size()).arg(nAsked);
  }
  return result ? folder.WriteDialog(m_session.GetDriver().GrabPicture()) : result;
}

Result<> CHostWorkflow::CheckFile()
{
  SFramePair stReference;
  const QString strPath = GetCoefficientPath(m_session);
  return RunUntilFailure(
    [&] { return CollectPair(stReference); }, [&] { return SaveCoefficients(m_session); },
    // Another binding of the plug-in loads the file, so that nothing but the file can carry the result.
    [&] { return m_session.ReopenDialog(); }, [&] { return m_session.Judge(m_session.GetDriver().LoadFile(strPath)); },
    [&] { return CheckReloaded(stReference); });
}

Result<> CHostWorkflow::CheckReloaded(const SFramePair &stReference)
{
  if (!m_session.GetDriver().IsPreviewOn()) {
    return Failure("the dialog does not preview the loaded coefficients");
  }
  // The stream is stopped: no frame thread calls ProcessImage meanwhile.
  CFramePipeline &pipeline = m_session.GetViewer().GetPipeline();
  pipeline.Receive(MakeFrame(stReference.listRaw, m_session.GetFormat()));
  SFrameCopy stCopy;
  if (!pipeline.TakeLatest(stCopy) || !stCopy.bCorrected || stCopy.listBytes != stReference.listCorrected) {
    return Failure("the loaded coefficients correct a frame differently");
  }
  return CheckSavedAgain(m_session);
}

Result<> CHostWorkflow::WriteResults()
{
  m_session.NoteCamera();
  m_session.GetReport().strCoefficientFile = GetCoefficientPath(m_session);
  const quality::SReport &stReport = m_session.GetReport();
  const CResultFolder &folder = m_session.GetFolder();
  const QString strTitle = QStringLiteral("%1, %2").arg(stReport.strCamera, stReport.strPixelFormat);
  return RunUntilFailure(
    [&] {
      return folder.WritePictures(m_stBright.GetRaw(), m_stBright.GetCorrected(),
                                  m_session.GetFormat().pFormat->eLayout, strTitle);
    },
    [&] { return folder.WriteDefects(stReport); }, [&] { return folder.WriteReport(m_session.MakeJson()); });
}

} // namespace ffc::host
