#include "host/measurement/measurement.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

#include <QCoreApplication>

#include "host/dialogdriver/dialogdriver.h"
#include "host/headless/steps.h"
#include "host/measurement/background.h"
#include "host/options/cameraopening.h"
#include "host/viewer/featuretext.h"
#include "quality/gainlimit.h"
#include "quality/pictures.h"
#include "quality/profileplot.h"

namespace ffc::host {
namespace {

constexpr uint32_t STALL_MS = 3000; ///< beside some exposures
constexpr double STALL_EXPOSURES = 4;
/// Frames that may still be of the scene, or the correction, before a change.
constexpr uint32_t OLD_FRAMES = 3;
const QString CANCELLED = QStringLiteral("cancelled");

const char *const SETTINGS[] = {"PixelFormat",         "Width", "Height", "ExposureTime", "Gain", "BlackLevel",
                                "AcquisitionFrameRate"};

QString Translate(const char *pText)
{
  return QCoreApplication::translate("Measurement", pText);
}

uint32_t GetStallMs(CViewer &viewer)
{
  const double dMicroseconds = std::atof(ReadFeature(*viewer.GetCamera().GetDeviceNodeMap(), "ExposureTime").c_str());
  return STALL_MS + uint32_t(std::clamp(STALL_EXPOSURES * dMicroseconds / 1000.0, 0.0, 1e6));
}

bool HasCorrection(CViewer &viewer)
{
  return viewer.GetCamera().GetDeviceNodeMap()->GetNode(CORRECTION_FEATURE) != nullptr;
}

} // namespace

CMeasurement::CMeasurement(CViewer &viewer, IMeasurementGuide &guide)
  : m_viewer(viewer), m_guide(guide), m_collector(viewer.GetPipeline(), GetStallMs(viewer)),
    m_bByCamera(HasCorrection(viewer))
{
  m_collector.SetTroubleCheck([this] {
    m_guide.ShowProgress(m_strStep, m_nDone, m_nTotal);
    return m_guide.IsCancelled() ? CANCELLED : m_viewer.GetStreamError();
  });
}

QString CMeasurement::Collect(const QString &strStep, uint32_t nFrames, CFramePipeline::EWanted eWanted,
                              std::function<bool(const SProcessedFrame &)> fnSink)
{
  m_strStep = strStep;
  m_nTotal = nFrames;
  m_nDone = 0;
  return m_collector.Collect(nFrames, eWanted, [this, &fnSink](const SProcessedFrame &stFrame) {
    ++m_nDone;
    return fnSink(stFrame);
  });
}

QString CMeasurement::SkipOldFrames()
{
  return Collect(Translate("Waiting for the scene"), OLD_FRAMES, CFramePipeline::EWanted::Any,
                 [](const SProcessedFrame &) { return true; });
}

/// Also makes sure, before anybody is asked to cover a lens, that there is a correction to measure.
QString CMeasurement::ReadFormat()
{
  if (!m_viewer.GetCamera().IsStreaming()) {
    return Translate("Start the camera first.");
  }
  SCameraFrame stFrame;
  const auto TakeShape = [&stFrame](const SProcessedFrame &stProcessed) {
    stFrame = *stProcessed.pRaw;
    return true;
  };
  QString strError = Collect(Translate("Waiting for a frame"), 1, CFramePipeline::EWanted::Any, TakeShape);
  if (strError.isEmpty() && !m_bByCamera) {
    strError = Collect(Translate("Waiting for a corrected frame"), 1, CFramePipeline::EWanted::Corrected, TakeShape);
    strError = strError.isEmpty() || strError == CANCELLED
                 ? strError
                 : Translate("No corrected frame came. Execute the correction and tick its Preview first.");
  }
  m_pFormat = FindSensorFormat(stFrame.nPixelFormat);
  m_nWidth = stFrame.nWidth;
  m_nHeight = stFrame.nHeight;
  return strError.isEmpty() && m_pFormat == nullptr ? Translate("Frames of this pixel format cannot be measured.")
                                                    : strError;
}

QString CMeasurement::SwitchCamera(const char *pEntry)
{
  try {
    GenApi::INode *pNode = m_viewer.GetCamera().GetDeviceNodeMap()->GetNode(CORRECTION_FEATURE);
    dynamic_cast<GenApi::IEnumeration &>(*pNode).FromString(pEntry);
    return {};
  } catch (const GenICam::GenericException &exception) {
    return QString::fromUtf8(exception.GetDescription());
  }
}

QString CMeasurement::TakePairs(const QString &strStep, SStacks &stStacks)
{
  if (!stStacks.stPairs.Prepare(m_nWidth, m_nHeight, *m_pFormat)) {
    return Translate("There is not enough memory.");
  }
  return Collect(strStep, QUALITY_FRAMES, CFramePipeline::EWanted::Corrected,
                 [&stStacks](const SProcessedFrame &stFrame) {
                   return stStacks.stPairs.Add(stFrame.pRaw->pBuffer, stFrame.pCorrected, stFrame.pRaw->nSize);
                 });
}

QString CMeasurement::TakeByCamera(const QString &strStep, const char *pEntry, quality::CFrameStack &stStack)
{
  if (!stStack.Prepare(m_nWidth, m_nHeight, m_pFormat->nBitDepth)) {
    return Translate("There is not enough memory.");
  }
  return RunUntilFailure({
    [&] { return SwitchCamera(pEntry); },
    [&] { return SkipOldFrames(); },
    [&] {
      return Collect(strStep, QUALITY_FRAMES, CFramePipeline::EWanted::Any, [&stStack](const SProcessedFrame &stFrame) {
        return stStack.Add(stFrame.pRaw->pBuffer, stFrame.pRaw->nSize);
      });
    },
  });
}

QString CMeasurement::TakeScene(bool bCovered, SStacks &stStacks)
{
  if (!m_guide.ArrangeScene(bCovered)) {
    return CANCELLED;
  }
  const QString strStep = bCovered ? Translate("Measuring dark frames") : Translate("Measuring bright frames");
  if (!m_bByCamera) {
    return RunUntilFailure({[&] { return SkipOldFrames(); }, [&] { return TakePairs(strStep, stStacks); }});
  }
  return RunUntilFailure({
    [&] { return TakeByCamera(strStep, "Off", stStacks.stBefore); },
    [&] { return TakeByCamera(strStep, "On", stStacks.stAfter); },
  });
}

SMeasured CMeasurement::Measure()
{
  SMeasured stMeasured;
  const std::string strCorrection = ReadFeature(*m_viewer.GetCamera().GetDeviceNodeMap(), CORRECTION_FEATURE);
  auto pDark = std::make_shared<SStacks>();
  auto pBright = std::make_shared<SStacks>();
  stMeasured.strError = RunUntilFailure({
    [&] { return ReadFormat(); },
    [&] { return TakeScene(true, *pDark); },
    [&] { return TakeScene(false, *pBright); },
  });
  if (m_bByCamera) {
    (void)SwitchCamera(strCorrection.c_str());
  }
  if (!stMeasured.strError.isEmpty()) {
    stMeasured.strError = stMeasured.strError == CANCELLED ? QString() : stMeasured.strError;
    return stMeasured;
  }
  stMeasured.pResult = Evaluate(*pDark, *pBright);
  if (m_guide.IsCancelled()) {
    stMeasured.pResult.reset();
    return stMeasured;
  }
  stMeasured.strError = stMeasured.pResult == nullptr ? Translate("There is not enough memory.") : QString();
  return stMeasured;
}

std::shared_ptr<quality::SResult> CMeasurement::Evaluate(const SStacks &stDark, const SStacks &stBright)
{
  auto pResult = std::make_shared<quality::SResult>();
  FillReport(pResult->stReport);
  for (const char *pSetting : SETTINGS) {
    const std::string strValue = ReadFeature(*m_viewer.GetCamera().GetDeviceNodeMap(), pSetting);
    if (!strValue.empty()) {
      pResult->listSettings.append({QLatin1String(pSetting), QString::fromStdString(strValue)});
    }
  }
  const quality::CFrameStack &stBefore = stBright.GetBefore(m_bByCamera);
  const quality::CFrameStack &stAfter = stBright.GetAfter(m_bByCamera);
  const EColorLayout eLayout = m_pFormat->eLayout;
  CBackground background;
  bool bDone = false;
  background.Start([&]() -> std::function<void()> {
    quality::SResult &stResult = *pResult;
    stResult.stReport.nBrightFrames = stBefore.GetFrameCount();
    stResult.stReport.nDarkFrames = stDark.GetBefore(m_bByCamera).GetFrameCount();
    stResult.stReport.stBefore = quality::MeasureUniformity(stBefore, stDark.GetBefore(m_bByCamera), eLayout);
    stResult.stReport.stAfter = quality::MeasureUniformity(stAfter, stDark.GetAfter(m_bByCamera), eLayout);
    stResult.listNoise = quality::MeasureNoise(stBefore, eLayout);
    stResult.stAdvice = quality::AdviseFrameCount(stResult.listNoise);
    stResult.bSameExposures = !m_bByCamera;
    stResult.nNewlyClipped = stBright.stPairs.GetNewlyClippedCount();
    stResult.nAtGainLimit = quality::CountPixelsAtGainLimit(stBefore, stDark.GetBefore(m_bByCamera), stAfter);
    const double dSamples = double(m_nWidth) * m_nHeight * stBefore.GetFrameCount();
    stResult.stReport.dNewlyClippedPercent = 100.0 * double(stResult.nNewlyClipped) / dSamples;
    const double dRange = quality::GetContrastRange(stBefore, eLayout);
    stResult.imgBefore = quality::MakeViewPicture(stBefore, eLayout);
    stResult.imgAfter = quality::MakeViewPicture(stAfter, eLayout);
    stResult.imgContrastBefore = quality::MakeContrastPicture(stBefore, eLayout, dRange);
    stResult.imgContrastAfter = quality::MakeContrastPicture(stAfter, eLayout, dRange);
    return [&bDone] { bDone = true; };
  });
  m_guide.ShowProgress(Translate("Computing the figures"), 0, 0);
  background.Wait();
  if (!bDone) {
    return nullptr;
  }
  // Widgets draw the plot, so it is made on this thread.
  pResult->imgProfile = quality::DrawProfilePlot(
    quality::MakeRowProfile(stBefore, eLayout), quality::MakeRowProfile(stAfter, eLayout), pResult->stReport.strCamera);
  return pResult;
}

void CMeasurement::FillReport(quality::SReport &stReport) const
{
  stReport.strCamera = QString::fromStdString(m_viewer.GetCamera().GetDisplayName());
  stReport.strPixelFormat = QString::fromStdString(m_pFormat->strName);
  stReport.nWidth = m_nWidth;
  stReport.nHeight = m_nHeight;
  const std::string strMode = ReadFeature(*m_viewer.GetCamera().GetDeviceNodeMap(), "ShadingCorrectionMode");
  stReport.eMode = strMode.empty()                          ? ECorrectionMode::None
                   : strMode == "TailorFlatFieldCorrection" ? ECorrectionMode::Vignetting
                                                            : ECorrectionMode::FlatField;
  stReport.nBlockSize = ReadBlockSize(m_viewer.GetCamera());
  stReport.stThroughput = m_viewer.GetPipeline().GetThroughput();
  if (QDialog *pDialog = CDialogDriver::FindAnyDialog()) {
    const CDialogDriver driver(*pDialog);
    stReport.nFrameCount = driver.GetFrameCount();
    stReport.nExpectGray = driver.GetExpectGray();
    stReport.nExpectGrayDn = stReport.nExpectGray << (m_pFormat->nBitDepth - 8);
  }
}

SDriftMeasured CMeasurement::MeasureDrift()
{
  SDriftMeasured stMeasured;
  quality::CFrameStack stStack;
  stMeasured.strError = RunUntilFailure({
    [&] { return ReadFormat(); },
    [&] { return m_guide.ArrangeScene(false) ? SkipOldFrames() : CANCELLED; },
    [&] {
      return stStack.Prepare(m_nWidth, m_nHeight, m_pFormat->nBitDepth) ? QString()
                                                                        : Translate("There is not enough memory.");
    },
    [&] {
      const auto eWanted = m_bByCamera ? CFramePipeline::EWanted::Any : CFramePipeline::EWanted::Corrected;
      return Collect(Translate("Measuring a fresh flat"), QUALITY_FRAMES, eWanted, [&](const SProcessedFrame &stFrame) {
        return stStack.Add(m_bByCamera ? stFrame.pRaw->pBuffer : stFrame.pCorrected, stFrame.pRaw->nSize);
      });
    },
  });
  stMeasured.bCancelled = stMeasured.strError == CANCELLED;
  if (stMeasured.bCancelled) {
    stMeasured.strError.clear();
  } else if (stMeasured.strError.isEmpty()) {
    stMeasured.dShadingPercent = quality::MeasureShading(stStack, m_pFormat->eLayout);
  }
  return stMeasured;
}

} // namespace ffc::host
