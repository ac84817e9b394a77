#include "host/headless/devicestory.h"

#include <cmath>

#include "host/headless/coefficientfile.h"
#include "host/headless/featuresnapshot.h"
#include "host/viewer/featuretext.h"
#include "host/viewer/framecopy.h"

namespace ffc::host {
namespace {

const char *const COEFFICIENTS = "FFCValueAll";

} // namespace

CDeviceStory::CDeviceStory(CBench &bench)
  : m_bench(bench), m_bFlatField(bench.GetOptions().eMode == ECorrectionMode::FlatField)
{
}

QString CDeviceStory::Run()
{
  return RunSteps(ListSteps(), m_bench.GetProgress());
}

std::vector<SStep> CDeviceStory::ListSteps()
{
  std::vector<SStep> listSteps = {
    {"open", [this] { return m_bench.Open(); }},
    {"dialog", [this] { return RunUnchanged([this] { return m_bench.OpenDialog(); }); }},
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
    {"saving to file", [this] { return SaveCoefficients(m_bench); }},
    {"power cycle", [this] { return CyclePower(); }},
    {"loading from flash", [this] { return LoadFromFlash(); }},
    {"loading from file", [this] { return LoadFromFile(); }},
    {"report", [this] { return WriteResults(); }},
  };
  listSteps.insert(listSteps.end(), listRest.begin(), listRest.end());
  return listSteps;
}

QString CDeviceStory::GetSummary() const
{
  return quality::MakeReportTable(m_bench.GetReport());
}

/// Runs an action that must leave every feature of the camera as it is. The stream runs before and after it,
/// or at neither time.
QString CDeviceStory::RunUnchanged(const std::function<QString()> &fnAction)
{
  const CFeatureSnapshot stBefore(GetNodeMap());
  QString strError = fnAction();
  if (!strError.isEmpty()) {
    return strError;
  }
  QStringList listDifferences = CFeatureSnapshot(GetNodeMap()).GetDifferences(stBefore);
  if (!m_bFlatField && CheckCorrection(false).isEmpty()) {
    // This process leaves the camera uncorrected.
    listDifferences.removeAll(CORRECTION_FEATURE);
  }
  return listDifferences.isEmpty()
           ? QString()
           : QStringLiteral("the camera is not as it was before: %1").arg(listDifferences.join(QStringLiteral(", ")));
}

QString CDeviceStory::AcquireDark()
{
  return RunUntilFailure({
    [this] { return m_bench.SetScene(true, ISceneControl::EPurpose::Acquisition); },
    [this] { return RunUnchanged([this] { return m_bench.AcquireDark(); }); },
  });
}

QString CDeviceStory::AcquireBright()
{
  return RunUntilFailure({
    [this] { return m_bench.SetScene(false, ISceneControl::EPurpose::Acquisition); },
    [this] { return m_bench.ReadFormat(); },
    [this] { return m_bench.SelectFrameCount(); },
    [this] { return RunUnchanged([this] { return m_bench.AcquireBright(); }); },
    [this] { return m_bFlatField ? m_bench.SelectExpectGray() : QString(); },
  });
}

QString CDeviceStory::Execute()
{
  const SDialogAnswer stAnswer = m_bench.GetDriver().Execute();
  QString strError = m_bench.Judge(stAnswer);
  if (!strError.isEmpty()) {
    return strError;
  }
  return m_bench.GetDriver().IsPreviewOn() ? CheckCorrection(true) : stAnswer.strPrompt;
}

QString CDeviceStory::CheckCorrection(bool bOn)
{
  const std::string strCorrection = ReadFeature(GetNodeMap(), CORRECTION_FEATURE);
  return strCorrection == (bOn ? "On" : "Off")
           ? QString()
           : QStringLiteral("the camera's correction is \"%1\"").arg(QString::fromStdString(strCorrection));
}

QString CDeviceStory::MeasureWithPreview(bool bPreview, const char *pKind, SMeasurement &stMeasurement)
{
  quality::SReport &stReport = m_bench.GetReport();
  return RunUntilFailure({
    [&] { return m_bench.Judge(m_bench.GetDriver().SetPreview(bPreview)); },
    [&] { return CheckCorrection(bPreview); },
    [&] { return MeasureState(stMeasurement, bPreview ? stReport.stAfter : stReport.stBefore); },
    [&] { return SaveFrames(pKind); },
  });
}

QString CDeviceStory::MeasureState(SMeasurement &stMeasurement, quality::SUniformity &stUniformity)
{
  QString strError = MeasureScene(true, stMeasurement.stDark);
  strError = strError.isEmpty() ? MeasureScene(false, stMeasurement.stBright) : strError;
  if (strError.isEmpty()) {
    stUniformity =
      quality::MeasureUniformity(stMeasurement.stBright, stMeasurement.stDark, m_bench.GetFormat()->eLayout);
  }
  return strError;
}

QString CDeviceStory::MeasureScene(bool bLensCap, quality::CFrameStack &stStack)
{
  const quality::SReport &stReport = m_bench.GetReport();
  QString strError = m_bench.SetScene(bLensCap, ISceneControl::EPurpose::Measurement);
  if (strError.isEmpty() && !stStack.Prepare(stReport.nWidth, stReport.nHeight, m_bench.GetFormat()->nBitDepth)) {
    strError = QStringLiteral("out of memory");
  }
  if (!strError.isEmpty()) {
    return strError;
  }
  m_bench.GetProgress().BeginStep(bLensCap ? "measuring dark frames" : "measuring bright frames", MEASURED_FRAMES);
  return m_bench.GetCollector().Collect(
    MEASURED_FRAMES, CFramePipeline::EWanted::Any,
    [&stStack](const SProcessedFrame &stFrame) { return stStack.Add(stFrame.pRaw->pBuffer, stFrame.pRaw->nSize); });
}

QString CDeviceStory::SaveFrames(const char *pKind)
{
  const uint32_t nFrames = uint32_t(m_bench.GetOptions().nSaveFrames);
  QString strError;
  for (uint32_t nFrame = 0; nFrame < nFrames && strError.isEmpty(); ++nFrame) {
    std::vector<uint8_t> listFrame;
    strError = m_bench.GetCollector().Collect(1, CFramePipeline::EWanted::Any, [&](const SProcessedFrame &stFrame) {
      return CopyFrame(stFrame.pRaw->pBuffer, stFrame.pRaw->nSize, listFrame);
    });
    if (strError.isEmpty()) {
      strError = m_bench.GetFolder().WriteFrame(pKind, nFrame, listFrame, m_bench.GetReport(), *m_bench.GetFormat());
    }
  }
  return strError;
}

QString CDeviceStory::SaveToFlash()
{
  // A camera may refuse its user sets as long as it streams.
  m_bench.StopStream();
  return RunUntilFailure({
    [this] { return m_bench.GetFolder().WriteDialog(m_bench.GetDriver().GrabPicture()); },
    [this] { return m_bench.Judge(m_bench.GetDriver().SaveFlash()); },
  });
}

QString CDeviceStory::CyclePower()
{
  m_bench.StopStream();
  const CFeatureSnapshot stSaved(GetNodeMap());
  QString strError = m_bench.PowerCycle();
  if (!strError.isEmpty()) {
    return strError;
  }
  const std::string strStartSet = ReadFeature(GetNodeMap(), "UserSetDefault");
  if (strStartSet != "UserSet0") {
    return QStringLiteral("the camera starts with the user set \"%1\"").arg(QString::fromStdString(strStartSet));
  }
  QStringList listDifferences = CFeatureSnapshot(GetNodeMap()).GetDifferences(stSaved);
  // Which set would be loaded or saved next is no part of a set.
  listDifferences.removeAll(QStringLiteral("UserSetSelector"));
  if (!listDifferences.isEmpty()) {
    return QStringLiteral("the camera does not start as UserSet0 was saved: %1")
      .arg(listDifferences.join(QStringLiteral(", ")));
  }
  return RunUntilFailure({[this] { return CheckCorrection(true); }, [this] { return m_bench.OpenDialog(); }});
}

/// So that nothing but what is loaded next can bring the coefficients back.
QString CDeviceStory::ClearCoefficients()
{
  auto *pRegister = dynamic_cast<GenApi::IRegister *>(GetNodeMap().GetNode(COEFFICIENTS));
  if (pRegister == nullptr) {
    return QStringLiteral("the camera has no %1").arg(QLatin1String(COEFFICIENTS));
  }
  try {
    const std::vector<uint8_t> listZeros(std::size_t(pRegister->GetLength()));
    pRegister->Set(listZeros.data(), int64_t(listZeros.size()));
  } catch (const GenICam::GenericException &exception) {
    return QString::fromUtf8(exception.GetDescription());
  }
  return {};
}

QString CDeviceStory::LoadFromFlash()
{
  m_bench.GetReport().stAfterReload.emplace();
  SMeasurement stMeasurement;
  return RunUntilFailure({
    [&] { return ClearCoefficients(); },
    [&] { return m_bench.Judge(m_bench.GetDriver().LoadFlash()); },
    [&] { return CheckCorrection(true); },
    [&] { return CheckDialogReloaded(); },
    [&] { return MeasureState(stMeasurement, *m_bench.GetReport().stAfterReload); },
    [&] { return CheckFlatness(); },
  });
}

/// The record behind the coefficients brings the dialog's values back.
QString CDeviceStory::CheckDialogReloaded()
{
  const quality::SReport &stReport = m_bench.GetReport();
  const int nFrames = m_bench.GetDriver().GetFrameCount();
  const int nGray = m_bench.GetDriver().GetExpectGray();
  if (nFrames != stReport.nFrameCount || (m_bFlatField && nGray != stReport.nExpectGray)) {
    return QStringLiteral("the dialog shows %1 frames and expected grey %2 instead of %3 and %4")
      .arg(nFrames)
      .arg(nGray)
      .arg(stReport.nFrameCount)
      .arg(stReport.nExpectGray);
  }
  return {};
}

QString CDeviceStory::CheckFlatness()
{
  const quality::SReport &stReport = m_bench.GetReport();
  const double dAfter = stReport.stAfter.stOverall.dShadingPercent;
  const double dReloaded = stReport.stAfterReload->stOverall.dShadingPercent;
  return std::abs(dReloaded - dAfter) <= quality::RELOAD_TOLERANCE_PERCENT
           ? QString()
           : QStringLiteral("the reloaded coefficients leave a shading of %1 % instead of %2 %")
               .arg(dReloaded)
               .arg(dAfter);
}

QString CDeviceStory::LoadFromFile()
{
  return RunUntilFailure({
    [this] { return ClearCoefficients(); },
    [this] { return m_bench.Judge(m_bench.GetDriver().LoadFile(GetCoefficientPath(m_bench))); },
    [this] { return CheckCorrection(true); },
    [this] { return CheckDialogReloaded(); },
    [this] { return CheckSavedAgain(m_bench); },
  });
}

QString CDeviceStory::WriteResults()
{
  quality::SReport &stReport = m_bench.GetReport();
  stReport.nBrightFrames = m_stAfter.stBright.GetFrameCount();
  stReport.nDarkFrames = m_stAfter.stDark.GetFrameCount();
  stReport.nBlockSize = ReadBlockSize(m_bench.GetViewer().GetCamera());
  const CResultFolder &folder = m_bench.GetFolder();
  const QString strTitle = QStringLiteral("%1, %2").arg(stReport.strCamera, stReport.strPixelFormat);
  const QString strError =
    folder.WritePictures(m_stBefore.stBright, m_stAfter.stBright, m_bench.GetFormat()->eLayout, strTitle);
  return strError.isEmpty() ? folder.WriteReport(quality::MakeReportJson(stReport)) : strError;
}

} // namespace ffc::host
