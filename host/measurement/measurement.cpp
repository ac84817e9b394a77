#include "host/measurement/measurement.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

#include <QCoreApplication>

#include "camera/iscenecontrol.h"
#include "host/measurement/background.h"
#include "host/measurement/tablefile.h"
#include "host/viewer/blocksize.h"
#include "host/viewer/featuretext.h"
#include "quality/belonging.h"
#include "quality/gainlimit.h"
#include "quality/profileplot.h"

namespace ffc::host {

using camera::ECorrectionMode;

namespace {

using EWanted = CFramePipeline::EWanted;

constexpr uint32_t STALL_MS = 3000; ///< beside some exposures
constexpr double STALL_EXPOSURES = 4;
/// Frames that may still be of the scene, or the correction, before a change.
constexpr uint32_t OLD_FRAMES = 3;

const char *const SETTINGS[] = {"PixelFormat",         "Width", "Height", "ExposureTime", "Gain", "BlackLevel",
                                "AcquisitionFrameRate"};

QString Translate(const char *pText)
{
  return QCoreApplication::translate("Measurement", pText);
}

uint32_t GetStallMs(CViewer &viewer)
{
  const double dMicroseconds = std::atof(ReadFeature(*viewer.GetCamera().GetDeviceNodeMap(), "ExposureTime").c_str());
  return STALL_MS + static_cast<uint32_t>(std::clamp(STALL_EXPOSURES * dMicroseconds / 1000.0, 0.0, 1e6));
}

bool HasCorrection(CViewer &viewer)
{
  return viewer.GetCamera().GetDeviceNodeMap()->GetNode(CORRECTION_FEATURE) != nullptr;
}

Failure DescribeNoCorrection()
{
  return Failure(Translate("No corrected frame came. Execute the correction and tick its Preview first."));
}

} // namespace

CMeasurement::CMeasurement(CViewer &viewer, IMeasurementGuide &guide, SCoefficientOrigin stOrigin)
  : m_viewer(viewer), m_guide(guide), m_stOrigin(std::move(stOrigin)),
    m_collector(viewer.GetPipeline(), GetStallMs(viewer)), m_bByCamera(HasCorrection(viewer))
{
  m_collector.SetCheck([this] {
    m_guide.ShowProgress(m_strStep, m_collector.GetTakenCount(), m_nTotal);
    return m_guide.IsCancelled() ? Cancel() : m_viewer.GetStreamState();
  });
}

Failure CMeasurement::Cancel()
{
  m_bCancelled = true;
  return Failure("cancelled");
}

CFrameCollector &CMeasurement::BeginStep(const QString &strStep, uint32_t nFrames)
{
  m_strStep = strStep;
  m_nTotal = nFrames;
  return m_collector;
}

Result<> CMeasurement::SkipOldFrames()
{
  return SkipFrames(BeginStep(Translate("Waiting for the scene"), OLD_FRAMES), OLD_FRAMES);
}

/// Also makes sure, before anybody is asked to cover a lens, that there is a correction to measure.
Result<> CMeasurement::ReadFormat(bool bCorrected)
{
  if (!m_viewer.GetCamera().IsStreaming()) {
    return Failure(Translate("Start the camera first."));
  }
  Result<SStreamFormat> format = ReadStreamFormat(BeginStep(Translate("Waiting for a frame"), 1));
  if (format && bCorrected && !m_bByCamera) {
    format = ReadStreamFormat(BeginStep(Translate("Waiting for a corrected frame"), 1), EWanted::Corrected);
    if (!format && !m_bCancelled) {
      return DescribeNoCorrection();
    }
  }
  if (!format) {
    return format.GetFailure();
  }
  m_stFormat = format.GetValue();
  return {};
}

Result<> CMeasurement::SwitchCamera(const char *pEntry)
{
  try {
    GenApi::INode *pNode = m_viewer.GetCamera().GetDeviceNodeMap()->GetNode(CORRECTION_FEATURE);
    dynamic_cast<GenApi::IEnumeration &>(*pNode).FromString(pEntry);
    return {};
  } catch (const GenICam::GenericException &exception) {
    return Failure(exception.GetDescription());
  }
}

Result<> CMeasurement::TakeByCamera(const QString &strStep, const char *pEntry, quality::CFrameStack &stStack)
{
  return RunUntilFailure(
    [&] { return SwitchCamera(pEntry); }, [&] { return SkipOldFrames(); },
    [&] { return TakeFrames(BeginStep(strStep, MEASURED_FRAMES), m_stFormat, EWanted::Any, stStack); });
}

Result<> CMeasurement::Arrange(bool bCovered)
{
  return m_guide.ArrangeScene(bCovered) ? Result<>() : Cancel();
}

Result<> CMeasurement::TakeScene(bool bCovered, SScene &stScene)
{
  const QString strStep = bCovered ? Translate("Measuring dark frames") : Translate("Measuring bright frames");
  Result<> arranged = Arrange(bCovered);
  if (!arranged) {
    return arranged;
  }
  if (m_bBaseline || !m_bByCamera) {
    return RunUntilFailure([&] { return SkipOldFrames(); },
                           [&] {
                             return TakePairs(BeginStep(strStep, MEASURED_FRAMES), m_stFormat, stScene.stPairs,
                                              m_bBaseline ? EWanted::Any : EWanted::Corrected);
                           });
  }
  return RunUntilFailure([&] { return TakeByCamera(strStep, "Off", stScene.stBefore); },
                         [&] { return TakeByCamera(strStep, "On", stScene.stAfter); });
}

bool CMeasurement::CanCover() const
{
  return camera::CanBeCovered(camera::FindSceneControl(m_viewer.GetCamera()));
}

Result<CMeasurement::QualityResult> CMeasurement::Measure(bool bPreview)
{
  m_bCancelled = false;
  const std::string strCorrection = ReadFeature(*m_viewer.GetCamera().GetDeviceNodeMap(), CORRECTION_FEATURE);
  m_bBaseline = m_bByCamera ? strCorrection != "On" : !bPreview;
  SScene stDark;
  SScene stBright;
  const Result<> taken = RunUntilFailure([&] { return ReadFormat(!m_bBaseline); },
                                         [&] { return CanCover() ? TakeScene(true, stDark) : Result<>(); },
                                         [&] { return TakeScene(false, stBright); });
  if (m_bByCamera && !m_bBaseline) {
    (void)SwitchCamera(strCorrection.c_str());
  }
  if (m_bCancelled) {
    return QualityResult();
  }
  if (!taken) {
    return taken.GetFailure();
  }
  QualityResult pResult = Evaluate(stDark, stBright);
  if (m_guide.IsCancelled()) {
    return QualityResult();
  }
  if (pResult == nullptr) {
    return Failure(Translate("There is not enough memory."));
  }
  return pResult;
}

quality::SFigureStacks CMeasurement::GetStacks(const SScene &stDark, const SScene &stBright) const
{
  const genapi::EColorLayout eLayout = m_stFormat.pFormat->eLayout;
  if (m_bBaseline) {
    return {stDark.stPairs.GetRaw(), stDark.stAfter, stBright.stPairs.GetRaw(), stBright.stAfter, eLayout};
  }
  if (m_bByCamera) {
    return {stDark.stBefore, stDark.stAfter, stBright.stBefore, stBright.stAfter, eLayout};
  }
  return {stDark.stPairs.GetRaw(), stDark.stPairs.GetCorrected(), stBright.stPairs.GetRaw(),
          stBright.stPairs.GetCorrected(), eLayout};
}

std::shared_ptr<quality::SResult> CMeasurement::Evaluate(const SScene &stDark, const SScene &stBright)
{
  auto pResult = std::make_shared<quality::SResult>();
  DescribeStream(*pResult);
  pResult->stReport.strPrograms = m_viewer.DescribePrograms();
  if (!m_bBaseline) {
    DescribeCoefficients(pResult->stReport);
  }
  const quality::SFigureStacks stStacks = GetStacks(stDark, stBright);
  CBackground background;
  bool bDone = false;
  background.Start([&]() -> std::function<void()> {
    quality::SResult &stResult = *pResult;
    quality::MeasureFigures(stStacks, stResult.stReport);
    stResult.stReport.dNewlyClippedPercent = stBright.stPairs.GetNewlyClippedPercent();
    stResult.listNoise = quality::MeasureNoise(stStacks.stBrightBefore, stStacks.eLayout);
    stResult.stAdvice = quality::AdviseFrameCount(stResult.listNoise);
    stResult.listAdvice = quality::AdviseReference(
      stResult.listNoise, {m_stFormat.pFormat->nBitDepth, stResult.stReport.nFrameCount, m_stOrigin.IsWeighted(),
                           stResult.stReport.eMode, stResult.stReport.nBlockSize});
    const quality::SBrightField stField = quality::MeasureBrightField(
      stStacks.stBrightBefore, m_bByCamera && !m_bBaseline ? nullptr : &stBright.stPairs.GetWatch(), stStacks.eLayout);
    for (const quality::SBrightRemark &stRemark : quality::JudgeBrightField(stField)) {
      stResult.listBrightRemarks << stRemark.strText;
    }
    stResult.bSameExposures = !m_bByCamera || m_bBaseline;
    stResult.nNewlyClipped = stBright.stPairs.GetNewlyClippedCount();
    stResult.nAtGainLimit =
      quality::CountPixelsAtGainLimit(stStacks.stBrightBefore, stStacks.stDarkBefore, stStacks.stBrightAfter);
    CheckBelonging(stStacks.stBrightBefore, stResult.stReport);
    stResult.stPictures = quality::MakePictures(stStacks.stBrightBefore, stStacks.stBrightAfter, stStacks.eLayout);
    return [&bDone] { bDone = true; };
  });
  m_guide.ShowProgress(Translate("Computing the figures"), 0, 0);
  background.Wait();
  if (!bDone) {
    return nullptr;
  }
  DescribeFrames(pResult->stReport);
  // Widgets draw the plot, so it is made on this thread.
  pResult->imgProfile = quality::DrawProfilePlot(
    quality::MakeRowProfile(stStacks.stBrightBefore, stStacks.eLayout),
    m_bBaseline ? quality::SProfile() : quality::MakeRowProfile(stStacks.stBrightAfter, stStacks.eLayout),
    pResult->stReport.strCamera);
  return pResult;
}

/// Coefficients that were acquired here belong to this camera, and those in a camera evens out blocks.
void CMeasurement::CheckBelonging(const quality::CFrameStack &stRaw, quality::SReport &stReport) const
{
  if (m_bBaseline || m_bByCamera || m_stOrigin.eKind != SCoefficientOrigin::EKind::File) {
    return;
  }
  const std::vector<uint16_t> listGains = ReadGains(m_stOrigin.strFile, stRaw.GetWidth(), stRaw.GetHeight());
  if (!listGains.empty() && quality::JudgeBelonging(stRaw, listGains.data()).eBelonging == quality::EBelonging::No) {
    stReport.listNotes << Translate("The coefficients are another camera's: the pattern of their pixels is not that of "
                                    "the frames");
  }
}

void CMeasurement::DescribeStream(quality::SResult &stResult) const
{
  GenApi::INodeMap &nodeMap = *m_viewer.GetCamera().GetDeviceNodeMap();
  quality::SReport &stReport = stResult.stReport;
  stReport.strCamera = QString::fromStdString(m_viewer.GetCamera().GetDisplayName());
  stReport.strPixelFormat = QString::fromLatin1(m_stFormat.pFormat->pName);
  stReport.nWidth = m_stFormat.nWidth;
  stReport.nHeight = m_stFormat.nHeight;
  const std::string strMode = ReadFeature(nodeMap, "ShadingCorrectionMode");
  stReport.eMode = strMode.empty()                          ? ECorrectionMode::None
                   : strMode == "TailorFlatFieldCorrection" ? ECorrectionMode::Vignetting
                                                            : ECorrectionMode::FlatField;
  stReport.nBlockSize = ReadBlockSize(m_viewer.GetCamera());
  const SThroughput stThroughput = m_viewer.GetPipeline().GetThroughput();
  stReport.dFramesPerSecond = stThroughput.GetFramesPerSecond();
  stReport.dMegapixelsPerSecond = stThroughput.GetMegapixelsPerSecond();
  for (const char *pSetting : SETTINGS) {
    const std::string strValue = ReadFeature(nodeMap, pSetting);
    if (!strValue.empty()) {
      stResult.listSettings.append({QLatin1String(pSetting), QString::fromStdString(strValue)});
    }
  }
}

void CMeasurement::DescribeCoefficients(quality::SReport &stReport) const
{
  stReport.nFrameCount = m_stOrigin.nFrames;
  stReport.nDarkCount = m_stOrigin.nDarkFrames;
  stReport.bWeighted = m_stOrigin.IsWeighted();
  stReport.eDarkField = m_stOrigin.eDarkField;
  stReport.strCoefficientFile = m_stOrigin.strFile;
  stReport.nExpectGray = m_stOrigin.nExpectGray;
  stReport.nExpectGrayDn = std::max(0, m_stOrigin.nExpectGray) << (m_stFormat.pFormat->nBitDepth - 8);
  stReport.listNotes += m_stOrigin.GetNotes();
}

/// A recording that is played in a loop has fewer different frames than were measured.
void CMeasurement::DescribeFrames(quality::SReport &stReport) const
{
  if (!CanCover()) {
    stReport.listNotes << Translate("There are no dark frames: PRNU and DSNU are not known");
  }
  const uint32_t nLeast = CanCover() ? std::min(stReport.nBrightFrames, stReport.nDarkFrames) : stReport.nBrightFrames;
  if (nLeast == 1) {
    stReport.listNotes << Translate(
      "Measured on a single frame: its temporal noise cannot be told apart and is in PRNU "
      "and DSNU");
  } else if (nLeast < MEASURED_FRAMES) {
    stReport.listNotes << Translate("The camera repeats itself: only %1 different frames were measured").arg(nLeast);
  }
}

Result<std::optional<double>> CMeasurement::MeasureDrift(bool bPreview)
{
  m_bCancelled = false;
  if (!m_bByCamera && !bPreview) {
    return DescribeNoCorrection();
  }
  quality::CFrameStack stStack;
  const Result<> taken =
    RunUntilFailure([&] { return ReadFormat(true); }, [&] { return Arrange(false); }, [&] { return SkipOldFrames(); },
                    [&] {
                      return TakeFrames(BeginStep(Translate("Measuring a fresh flat"), MEASURED_FRAMES), m_stFormat,
                                        m_bByCamera ? EWanted::Any : EWanted::Corrected, stStack);
                    });
  if (m_bCancelled) {
    return std::optional<double>();
  }
  if (!taken) {
    return taken.GetFailure();
  }
  return std::optional<double>(quality::MeasureShading(stStack, m_stFormat.pFormat->eLayout));
}

} // namespace ffc::host
