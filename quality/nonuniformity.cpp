#include "quality/nonuniformity.h"

#include <algorithm>
#include <cmath>

#include "quality/noise.h"

namespace ffc::quality {

using genapi::EColorLayout;

namespace {

/// Sums over an image that comes line by line, of distances from a level near its mean.
class CMoments {
public:
  CMoments(uint32_t nColumns, uint32_t nRows, double dLevel)
    : m_dLevel(dLevel), m_nRows(nRows), m_listColumns(nColumns, 0.0)
  {
  }

  void AddLine(const double *pLine)
  {
    double dLine = 0;
    double dSquares = 0;
    for (std::size_t nColumn = 0; nColumn < m_listColumns.size(); ++nColumn) {
      const double dDistance = pLine[nColumn] - m_dLevel;
      m_listColumns[nColumn] += dDistance;
      dLine += dDistance;
      dSquares += dDistance * dDistance;
    }
    m_dSum += dLine;
    m_dSquares += dSquares;
    m_dLineSquares += dLine * dLine;
  }

  double GetSquares() const { return m_dSquares + 2 * m_dLevel * m_dSum + GetPixels() * m_dLevel * m_dLevel; }

  /// \param dTemporal mean over the pixels
  SSpatialVariances Get(uint32_t nFrames, double dTemporal) const
  {
    const auto dColumns = static_cast<double>(m_listColumns.size());
    const auto dRows = static_cast<double>(m_nRows);
    const double dMean = m_dSum / GetPixels();
    double dColumnSquares = 0;
    for (const double dColumn : m_listColumns) {
      dColumnSquares += (dColumn / dRows - dMean) * (dColumn / dRows - dMean);
    }
    const double dNoise = dTemporal / nFrames;
    SSpatialVariances stVariances;
    stVariances.nRows = m_nRows;
    stVariances.nColumns = static_cast<uint32_t>(m_listColumns.size());
    stVariances.nFrames = nFrames;
    stVariances.dTemporal = dTemporal;
    stVariances.dMeasured = m_dSquares / GetPixels() - dMean * dMean;
    stVariances.dTotal = stVariances.dMeasured - dNoise;
    stVariances.dColumnAverage = dColumnSquares / dColumns - dNoise / dRows;
    stVariances.dRowAverage = m_dLineSquares / (dColumns * dColumns * dRows) - dMean * dMean - dNoise / dColumns;
    SplitVariance(stVariances);
    return stVariances;
  }

private:
  double GetPixels() const { return static_cast<double>(m_listColumns.size()) * m_nRows; }

  double m_dLevel;
  uint32_t m_nRows;
  std::vector<double> m_listColumns;
  double m_dSum = 0;
  double m_dSquares = 0;
  double m_dLineSquares = 0;
};

double GetMean(const CFrameStack &stack, const SChannel &stChannel)
{
  uint64_t nSum = 0;
  uint64_t nPixels = 0;
  for (uint32_t nLine = 0; nLine < stack.GetHeight(); ++nLine) {
    const uint32_t *pSums = stack.GetSums(nLine);
    VisitPlaneLine(stChannel.stPlane, stack.GetWidth(), nLine, [&](uint32_t nColumn) {
      nSum += pSums[nColumn];
      ++nPixels;
    });
  }
  return static_cast<double>(nSum) / (static_cast<double>(nPixels) * stack.GetFrameCount());
}

SSpatialVariances MeasurePlain(const CFrameStack &stack, const SChannel &stChannel, double dMean)
{
  const uint32_t nColumns = stChannel.GetColumns(stack.GetWidth());
  const uint32_t nRows = stChannel.GetLines(stack.GetHeight());
  CMoments moments(nColumns, nRows, dMean);
  std::vector<double> listLine(nColumns);
  for (uint32_t nLine = 0; nLine < nRows; ++nLine) {
    stack.ReadMeans(stChannel, nLine, listLine.data());
    moments.AddLine(listLine.data());
  }
  const double dPixels = static_cast<double>(nColumns) * nRows;
  return moments.Get(stack.GetFrameCount(), SumTemporalVariances(stack, stChannel.stPlane) / dPixels);
}

SSpatialVariances MeasureHighPass(const CFrameStack &stack, std::size_t nChannel)
{
  const SChannel &stChannel = stack.GetFilteredChannels()[nChannel];
  CHighPass highPass(stack.GetHighPass(), stChannel.GetColumns(stack.GetWidth()),
                     stChannel.GetLines(stack.GetHeight()));
  CMoments moments(highPass.GetWidth(), highPass.GetHeight(), 0.0);
  highPass.Run([&](uint32_t nLine, double *pLine) { stack.ReadMeans(stChannel, nLine, pLine); },
               [&](uint32_t, const double *pLine) { moments.AddLine(pLine); });
  const uint32_t nFrames = stack.GetFrameCount();
  const double dPixels = static_cast<double>(highPass.GetWidth()) * highPass.GetHeight();
  const double dSquares = stack.GetFilteredSquareSum(nChannel) - nFrames * moments.GetSquares();
  return moments.Get(nFrames, nFrames < 2 ? 0.0 : std::max(0.0, dSquares) / (dPixels * (nFrames - 1.0)));
}

double GetRoot(double dVariance)
{
  return std::sqrt(std::max(0.0, dVariance));
}

void SetFigures(SNonuniformity &stFigures)
{
  const SSpatialVariances &stBright = stFigures.stBright;
  const SSpatialVariances &stDark = stFigures.stDark;
  stFigures.stDsnu = {GetRoot(stDark.dTotal), GetRoot(stDark.dRow), GetRoot(stDark.dColumn), GetRoot(stDark.dPixel)};
  if (stFigures.dSignal > 0) {
    const double dPercent = 100.0 / stFigures.dSignal;
    stFigures.stPrnu = {
      dPercent * GetRoot(stBright.dTotal - stDark.dTotal), dPercent * GetRoot(stBright.dRow - stDark.dRow),
      dPercent * GetRoot(stBright.dColumn - stDark.dColumn), dPercent * GetRoot(stBright.dPixel - stDark.dPixel)};
  }
}

bool IsMeasurable(const CFrameStack &stack, const SChannel &stChannel, std::size_t nChannel, bool bHighPass)
{
  const uint32_t nColumns = stChannel.GetColumns(stack.GetWidth());
  const uint32_t nLines = stChannel.GetLines(stack.GetHeight());
  if (stack.GetFrameCount() == 0 || nColumns == 0 || nLines == 0) {
    return false;
  }
  return !bHighPass || (nChannel < stack.GetFilteredChannels().size() &&
                        CHighPass(stack.GetHighPass(), nColumns, nLines).GetWidth() > 0);
}

} // namespace

void SplitVariance(SSpatialVariances &stVariances)
{
  const double dRows = stVariances.nRows;
  const double dColumns = stVariances.nColumns;
  const double dShare = dRows * dColumns - dRows - dColumns;
  // A line, or 2 x 2 pixels, cannot be split.
  if (dShare <= 0) {
    stVariances.dPixel = stVariances.dTotal;
    return;
  }
  stVariances.dPixel =
    dRows * dColumns / dShare * (stVariances.dTotal - stVariances.dColumnAverage - stVariances.dRowAverage);
  stVariances.dColumn = stVariances.dColumnAverage - stVariances.dPixel / dRows;
  stVariances.dRow = stVariances.dRowAverage - stVariances.dPixel / dColumns;
}

std::vector<SNonuniformity> MeasureNonuniformity(const CFrameStack &stBright, const CFrameStack &stDark,
                                                 EColorLayout eLayout, bool bHighPass)
{
  std::vector<SNonuniformity> listFigures;
  const std::vector<SChannel> listChannels = GetChannels(eLayout);
  for (std::size_t nChannel = 0; nChannel < listChannels.size(); ++nChannel) {
    const SChannel &stChannel = listChannels[nChannel];
    if (!IsMeasurable(stBright, stChannel, nChannel, bHighPass) ||
        !IsMeasurable(stDark, stChannel, nChannel, bHighPass)) {
      return {};
    }
    SNonuniformity stFigures;
    stFigures.strName = stChannel.stPlane.strName;
    const double dBright = GetMean(stBright, stChannel);
    const double dDark = GetMean(stDark, stChannel);
    stFigures.dSignal = dBright - dDark;
    stFigures.stBright = bHighPass ? MeasureHighPass(stBright, nChannel) : MeasurePlain(stBright, stChannel, dBright);
    stFigures.stDark = bHighPass ? MeasureHighPass(stDark, nChannel) : MeasurePlain(stDark, stChannel, dDark);
    SetFigures(stFigures);
    listFigures.push_back(stFigures);
  }
  return listFigures;
}

} // namespace ffc::quality
