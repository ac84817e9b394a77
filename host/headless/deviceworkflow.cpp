#include "host/headless/deviceworkflow.h"

#include <cmath>

#include "host/headless/coefficientfile.h"
#include "host/viewer/blocksize.h"
#include "host/viewer/featuretext.h"
#include "host/viewer/framecopy.h"

namespace ffc::host {

using camera::ECorrectionMode;
using camera::ISceneControl;

namespace {

const char *const COEFFICIENTS = "FFCValueAll";

Result<> DescribeDifferences(const char *pWhat, const QStringList &listNames)
{
  if (listNames.isEmpty()) {
    return {};
  }
  return Failure(QStringLiteral("%1: %2").arg(QLatin1String(pWhat), listNames.join(QStringLiteral(", "))));
}

} // namespace

CDeviceWorkflow::CDeviceWorkflow(CWorkflowSession &session)
  : m_session(session), m_bFlatField(session.GetOptions().stCamera.eMode == ECorrectionMode::FlatField)
{
}

Result<> CDeviceWorkflow::Run()
{
  return RunSteps(ListSteps(), m_session.GetProgress());
}

std::vector<SStep> CDeviceWorkflow::ListSteps()
{
  std::vector<SStep> listSteps = {
    {"open", [this] { return m_session.Open(); }},
    {"dialog", [this] { return RunUnchanged([this] { return m_session.OpenDialog(); }); }},
  };
  if (m_bFlatField) {
    listSteps.push_back({"dark acquisition", [this] { return AcquireDark(); }});
  }
  const std::vector<SStep> listRest = {
    {"bright acquisition", [this] { return AcquireBright(); }},
    {"execute", [this] { return Execute(); }},
    {"measurement before", [this] { return MeasureWithPreview(false, "raw", m_stBefore); }},
    {"measurement after", [this] { return MeasureWithPreview(true, "corrected", m_stAfter); }},
    {"saving to flash", [this] { return SaveToFlash(); }},
    {"saving to file", [this] { return SaveCoefficients(m_session); }},
    {"power cycle", [this] { return CyclePower(); }},
    {"loading from flash", [this] { return LoadFromFlash(); }},
    {"loading from file", [this] { return LoadFromFile(); }},
    {"report", [this] { return WriteResults(); }},
  };
  listSteps.insert(listSteps.end(), listRest.begin(), listRest.end());
  return listSteps;
}

QString CDeviceWorkflow::GetSummary() const
{
  return m_session.MakeSummary();
}

/// Runs an action that must leave every feature of the camera as it is. The stream runs before and after it,
/// or at neither time.
Result<> CDeviceWorkflow::RunUnchanged(const std::function<Result<>()> &fnAction)
{
  const CFeatureSnapshot stBefore(GetNodeMap());
  Result<> result = fnAction();
  if (!result) {
    return result;
  }
  QStringList listDifferences = CFeatureSnapshot(GetNodeMap()).GetDifferences(stBefore);
  if (!m_bFlatField && CheckCorrection(false)) {
    // This process leaves the camera uncorrected.
    listDifferences.removeAll(CORRECTION_FEATURE);
  }
  return DescribeDifferences("the camera is not as it was before", listDifferences);
}

Result<> CDeviceWorkflow::AcquireDark()
{
  return RunUntilFailure([this] { return m_session.SetScene(true, ISceneControl::EPurpose::Acquisition); },
                         [this] { return RunUnchanged([this] { return m_session.AcquireDark(); }); });
}

Result<> CDeviceWorkflow::AcquireBright()
{
  return RunUntilFailure([this] { return m_session.SetScene(false, ISceneControl::EPurpose::Acquisition); },
                         [this] { return m_session.ReadFormat(); }, [this] { return m_session.SelectFrameCount(); },
                         [this] { return RunUnchanged([this] { return m_session.AcquireBright(); }); },
                         [this] { return m_bFlatField ? m_session.SelectExpectGray() : Result<>(); });
}

Result<> CDeviceWorkflow::Execute()
{
  const SDialogAnswer stAnswer = m_session.GetDriver().Execute();
  Result<> result = m_session.Judge(stAnswer);
  if (!result) {
    return result;
  }
  return m_session.GetDriver().IsPreviewOn() ? CheckCorrection(true) : Failure(stAnswer.strPrompt);
}

Result<> CDeviceWorkflow::CheckCorrection(bool bOn)
{
  const std::string strCorrection = ReadFeature(GetNodeMap(), CORRECTION_FEATURE);
  if (strCorrection != (bOn ? "On" : "Off")) {
    return Failure("the camera's correction is \"" + strCorrection + "\"");
  }
  return {};
}

Result<> CDeviceWorkflow::MeasureWithPreview(bool bPreview, const char *pKind, SMeasurement &stMeasurement)
{
  quality::SReport &stReport = m_session.GetReport();
  return RunUntilFailure([&] { return m_session.Judge(m_session.GetDriver().SetPreview(bPreview)); },
                         [&] { return CheckCorrection(bPreview); },
                         [&] { return MeasureState(stMeasurement, bPreview ? stReport.stAfter : stReport.stBefore); },
                         [&] { return SaveFrames(pKind); });
}

Result<> CDeviceWorkflow::MeasureState(SMeasurement &stMeasurement, quality::SUniformity &stUniformity)
{
  Result<> result = RunUntilFailure([&] { return MeasureScene(true, stMeasurement.stDark); },
                                    [&] { return MeasureScene(false, stMeasurement.stBright); });
  if (result) {
    stUniformity =
      quality::MeasureUniformity(stMeasurement.stBright, stMeasurement.stDark, m_session.GetFormat().pFormat->eLayout);
  }
  return result;
}

Result<> CDeviceWorkflow::MeasureScene(bool bLensCap, quality::CFrameStack &stStack)
{
  return RunUntilFailure(
    [&] { return m_session.PrepareMeasurement(bLensCap); },
    [&] { return TakeFrames(m_session.GetCollector(), m_session.GetFormat(), CFramePipeline::EWanted::Any, stStack); });
}

Result<> CDeviceWorkflow::SaveFrames(const char *pKind)
{
  const uint32_t nFrames = static_cast<uint32_t>(m_session.GetOptions().stWorkflow.nSaveFrames);
  Result<> result;
  for (uint32_t nFrame = 0; nFrame < nFrames && result; ++nFrame) {
    std::vector<uint8_t> listFrame;
    const auto Keep = [&listFrame](const SProcessedFrame &stFrame) {
      return CopyFrame(stFrame.pRaw->pBuffer, stFrame.pRaw->nSize, listFrame);
    };
    result = RunUntilFailure(
      [&] { return m_session.GetCollector().Collect(1, CFramePipeline::EWanted::Any, Keep); },
      [&] { return m_session.GetFolder().WriteFrame(pKind, nFrame, listFrame, m_session.GetFormat()); });
  }
  return result;
}

Result<> CDeviceWorkflow::SaveToFlash()
{
  // A camera may refuse its user sets as long as it streams.
  m_session.StopStream();
  return RunUntilFailure([this] { return m_session.GetFolder().WriteDialog(m_session.GetDriver().GrabPicture()); },
                         [this] { return m_session.Judge(m_session.GetDriver().SaveFlash()); });
}

Result<> CDeviceWorkflow::CyclePower()
{
  m_session.StopStream();
  const CFeatureSnapshot stSaved(GetNodeMap());
  return RunUntilFailure([this] { return m_session.PowerCycle(); }, [&] { return CheckStartsAsSaved(stSaved); },
                         [this] { return CheckCorrection(true); }, [this] { return m_session.OpenDialog(); });
}

Result<> CDeviceWorkflow::CheckStartsAsSaved(const CFeatureSnapshot &stSaved)
{
  const std::string strStartSet = ReadFeature(GetNodeMap(), "UserSetDefault");
  if (strStartSet != "UserSet0") {
    return Failure("the camera starts with the user set \"" + strStartSet + "\"");
  }
  QStringList listDifferences = CFeatureSnapshot(GetNodeMap()).GetDifferences(stSaved);
  // Which set would be loaded or saved next is no part of a set.
  listDifferences.removeAll(QStringLiteral("UserSetSelector"));
  return DescribeDifferences("the camera does not start as UserSet0 was saved", listDifferences);
}

/// So that nothing but what is loaded next can bring the coefficients back.
Result<> CDeviceWorkflow::ClearCoefficients()
{
  auto *pRegister = dynamic_cast<GenApi::IRegister *>(GetNodeMap().GetNode(COEFFICIENTS));
  if (pRegister == nullptr) {
    return Failure(std::string("the camera has no ") + COEFFICIENTS);
  }
  try {
    const std::vector<uint8_t> listZeros(static_cast<std::size_t>(pRegister->GetLength()));
    pRegister->Set(listZeros.data(), static_cast<int64_t>(listZeros.size()));
  } catch (const GenICam::GenericException &exception) {
    return Failure(exception.GetDescription());
  }
  return {};
}

Result<> CDeviceWorkflow::LoadFromFlash()
{
  m_session.GetReport().stAfterReload.emplace();
  SMeasurement stMeasurement;
  return RunUntilFailure(
    [&] { return ClearCoefficients(); }, [&] { return m_session.Judge(m_session.GetDriver().LoadFlash()); },
    [&] { return CheckCorrection(true); }, [&] { return CheckDialogReloaded(); },
    [&] { return MeasureState(stMeasurement, *m_session.GetReport().stAfterReload); }, [&] { return CheckFlatness(); });
}

/// The record behind the coefficients brings the dialog's values back.
Result<> CDeviceWorkflow::CheckDialogReloaded()
{
  const quality::SReport &stReport = m_session.GetReport();
  const int nAsked = m_session.GetOptions().stWorkflow.nFrames;
  const int nFrames = m_session.GetDriver().GetFrameCount();
  const int nGray = m_session.GetDriver().GetExpectGray();
  if (nFrames != nAsked || (m_bFlatField && nGray != stReport.nExpectGray)) {
    return Failure(QStringLiteral("the dialog shows %1 frames and expected grey %2 instead of %3 and %4")
                     .arg(nFrames)
                     .arg(nGray)
                     .arg(nAsked)
                     .arg(stReport.nExpectGray));
  }
  return {};
}

Result<> CDeviceWorkflow::CheckFlatness()
{
  const quality::SReport &stReport = m_session.GetReport();
  const double dAfter = stReport.stAfter.stOverall.dShadingPercent;
  const double dReloaded = stReport.stAfterReload->stOverall.dShadingPercent;
  if (std::abs(dReloaded - dAfter) > quality::RELOAD_TOLERANCE_PERCENT) {
    return Failure(
      QStringLiteral("the reloaded coefficients leave a shading of %1 % instead of %2 %").arg(dReloaded).arg(dAfter));
  }
  return {};
}

Result<> CDeviceWorkflow::LoadFromFile()
{
  return RunUntilFailure(
    [this] { return ClearCoefficients(); },
    [this] { return m_session.Judge(m_session.GetDriver().LoadFile(GetCoefficientPath(m_session))); },
    [this] { return CheckCorrection(true); }, [this] { return CheckDialogReloaded(); },
    [this] { return CheckSavedAgain(m_session); });
}

Result<> CDeviceWorkflow::WriteResults()
{
  m_session.NoteCamera();
  quality::SReport &stReport = m_session.GetReport();
  stReport.nBrightFrames = m_stAfter.stBright.GetFrameCount();
  stReport.nDarkFrames = m_stAfter.stDark.GetFrameCount();
  stReport.nBlockSize = ReadBlockSize(m_session.GetViewer().GetCamera());
  stReport.strCoefficientFile = GetCoefficientPath(m_session);
  m_session.Advise(m_stBefore.stBright);
  const CResultFolder &folder = m_session.GetFolder();
  const QString strTitle = QStringLiteral("%1, %2").arg(stReport.strCamera, stReport.strPixelFormat);
  return RunUntilFailure(
    [&] {
      return folder.WritePictures(m_stBefore.stBright, m_stAfter.stBright, m_session.GetFormat().pFormat->eLayout,
                                  strTitle);
    },
    [&] { return folder.WriteReport(m_session.MakeJson()); });
}

} // namespace ffc::host
