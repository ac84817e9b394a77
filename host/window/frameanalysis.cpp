#include "host/window/frameanalysis.h"

#include <algorithm>

#include "host/window/displaypicture.h"
#include "host/window/frameinspection.h"

namespace ffc::host {

using genapi::SSensorFormat;

namespace {

/// The stack has one frame, so that its sums are the samples.
QVector<double> MakeHistogram(const quality::CFrameStack &stStack, const quality::SColorPlane &stPlane)
{
  QVector<double> listHistogram(HISTOGRAM_BINS, 0.0);
  const uint32_t nShift = stStack.GetBitDepth() - 8;
  for (uint32_t nLine = 0; nLine < stStack.GetHeight(); ++nLine) {
    const uint32_t *pSamples = stStack.GetSums(nLine);
    quality::VisitPlaneLine(stPlane, stStack.GetWidth(), nLine, [&](uint32_t nColumn) {
      listHistogram[std::min(static_cast<int>(pSamples[nColumn] >> nShift), HISTOGRAM_BINS - 1)] += 1;
    });
  }
  return listHistogram;
}

void AddRelative(const quality::SBlockMeans &stPlane, double dShare, quality::SBlockMeans &stSum)
{
  double dTotal = 0;
  for (const double dMean : stPlane.listMeans) {
    dTotal += dMean;
  }
  const double dAverage = dTotal / static_cast<double>(stPlane.listMeans.size());
  stSum.nColumns = stPlane.nColumns;
  stSum.nLines = stPlane.nLines;
  stSum.listMeans.resize(stPlane.listMeans.size(), 0.0);
  for (std::size_t nBlock = 0; nBlock < stPlane.listMeans.size(); ++nBlock) {
    stSum.listMeans[nBlock] += dAverage > 0 ? dShare * 100.0 * stPlane.listMeans[nBlock] / dAverage : 0.0;
  }
}

} // namespace

SFrameAnalysis AnalyseFrame(const SFrameCopy &stFrame, const std::optional<QLine> &line)
{
  SFrameAnalysis stAnalysis;
  const SSensorFormat *pFormat = GetShownFormat(stFrame);
  quality::CFrameStack stStack;
  if (pFormat == nullptr || !stStack.Prepare(stFrame.nWidth, stFrame.nHeight, pFormat->nBitDepth) ||
      !stStack.Add(stFrame.listBytes.data(), stFrame.listBytes.size())) {
    return stAnalysis;
  }
  stAnalysis.nMaximum = pFormat->GetMaxValue();
  const std::vector<quality::SColorPlane> listPlanes = quality::GetColorPlanes(pFormat->eLayout);
  for (const quality::SColorPlane &stPlane : listPlanes) {
    stAnalysis.listPlanes.push_back({QString::fromStdString(stPlane.strName),
                                     quality::MakeRowProfile(stStack, stPlane),
                                     quality::MakeColumnProfile(stStack, stPlane),
                                     {},
                                     MakeHistogram(stStack, stPlane)});
    AddRelative(quality::GetBlockMeans(stStack, stPlane), 1.0 / static_cast<double>(listPlanes.size()),
                stAnalysis.stBlocks);
  }
  const std::vector<SLineProfile> listLines = line ? MakeLineProfiles(stFrame, *line) : std::vector<SLineProfile>();
  for (std::size_t nPlane = 0; nPlane < listLines.size(); ++nPlane) {
    stAnalysis.listPlanes[nPlane].stLine = listLines[nPlane].stProfile;
  }
  return stAnalysis;
}

} // namespace ffc::host
