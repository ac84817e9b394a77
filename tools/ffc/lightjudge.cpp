#include "tools/ffc/lightjudge.h"

namespace ffc::tool {

using process::CFrameBuffer;

namespace {

double MeasureClipped(const quality::CLightWatch &watch, const frames::SDepth &stDepth, const frames::SLayout &stLayout)
{
  const uint32_t nMaximum = ((1U << stDepth.nBitDepth) - 1U) << stDepth.GetShift(stLayout);
  return watch.GetLargest() >= nMaximum && watch.GetSampleCount() > 0
           ? 100.0 * static_cast<double>(watch.GetLargestCount()) / static_cast<double>(watch.GetSampleCount())
           : 0.0;
}

/// Of a mosaic, the pixels of one site of its cell.
double MeasureStructure(const CFrameBuffer &frame, const frames::SLayout &stLayout, bool bMosaic)
{
  const uint32_t nStep = bMosaic ? 2 : 1;
  const auto *pBytes = frame.GetData();
  return quality::MeasureStructure(
    stLayout.nWidth / nStep, stLayout.nHeight / nStep, [&](uint32_t nColumn, uint32_t nLine) -> double {
      const std::size_t nPixel = std::size_t{nLine} * nStep * stLayout.nWidth + std::size_t{nColumn} * nStep;
      return stLayout.nBytesPerSample == 1 ? pBytes[nPixel] : reinterpret_cast<const uint16_t *>(pBytes)[nPixel];
    });
}

} // namespace

std::optional<STrouble> JudgeLight(const SOptions &stOptions, const CReferenceStack &bright,
                                   const frames::SDepth &stDepth, const CFrameBuffer &firstBright, bool bMosaic,
                                   CReport &report)
{
  const frames::SLayout &stLayout = bright.GetInfo().stLayout;
  const quality::SBrightField stField = {MeasureClipped(bright.GetWatch(), stDepth, stLayout),
                                         MeasureStructure(firstBright, stLayout, bMosaic),
                                         bright.GetWatch().GetFlickerPercent(), bright.GetWatch().GetDriftPercent()};
  for (const quality::SBrightRemark &stRemark : quality::JudgeBrightField(stField)) {
    if (stRemark.bUnusable && !stOptions.bForce) {
      return STrouble{true,
                      stRemark.strText + QStringLiteral(" This is no bright field; --force takes it all the same.")};
    }
    report.Warn(stRemark.strText);
  }
  return std::nullopt;
}

} // namespace ffc::tool
