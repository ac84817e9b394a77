#include "quality/profile.h"

#include <algorithm>

namespace ffc::quality {
namespace {

constexpr uint32_t PROFILE_BREADTH = 32; ///< pixels

/// A range of columns or lines.
struct SRange {
  uint32_t nFirst;
  uint32_t nEnd;
};

SRange GetMiddle(uint32_t nPixels)
{
  const uint32_t nBreadth = std::min(PROFILE_BREADTH, nPixels);
  // From an even place on, so that the narrowest strip of a mosaic still has whole cells.
  const uint32_t nFirst = (nPixels - nBreadth) / 2 & ~1U;
  return {nFirst, nFirst + nBreadth};
}

/// 1 for a plane of every pixel, 2 for one of a mosaic.
uint32_t GetBin(const SColorPlane &stPlane)
{
  return std::all_of(stPlane.abSites.begin(), stPlane.abSites.end(), [](bool bSite) { return bSite; }) ? 1U : 2U;
}

/// Sums that become means.
class CProfileSums {
public:
  CProfileSums(uint32_t nPixels, uint32_t nBin)
    : m_nBin(nBin), m_listSums((nPixels + nBin - 1) / nBin, 0.0), m_listCounts(m_listSums.size(), 0)
  {
  }

  void Add(uint32_t nPosition, double dGray)
  {
    m_listSums[nPosition / m_nBin] += dGray;
    ++m_listCounts[nPosition / m_nBin];
  }

  SProfile GetMeans() const
  {
    SProfile stProfile;
    for (std::size_t nPoint = 0; nPoint < m_listSums.size(); ++nPoint) {
      if (m_listCounts[nPoint] > 0) {
        stProfile.listPositions << static_cast<double>(nPoint * m_nBin) + 0.5 * static_cast<double>(m_nBin - 1);
        stProfile.listGrays << m_listSums[nPoint] / m_listCounts[nPoint];
      }
    }
    return stProfile;
  }

private:
  uint32_t m_nBin;
  std::vector<double> m_listSums;
  std::vector<int> m_listCounts;
};

} // namespace

SProfile MakeRowProfile(const CFrameStack &stStack, const SColorPlane &stPlane)
{
  const SRange stLines = GetMiddle(stStack.GetHeight());
  CProfileSums sums(stStack.GetWidth(), GetBin(stPlane));
  for (uint32_t nLine = stLines.nFirst; nLine < stLines.nEnd; ++nLine) {
    VisitPlaneLine(stPlane, stStack.GetWidth(), nLine,
                   [&](uint32_t nColumn) { sums.Add(nColumn, stStack.GetMean(nColumn, nLine)); });
  }
  return sums.GetMeans();
}

SProfile MakeColumnProfile(const CFrameStack &stStack, const SColorPlane &stPlane)
{
  const SRange stColumns = GetMiddle(stStack.GetWidth());
  CProfileSums sums(stStack.GetHeight(), GetBin(stPlane));
  for (uint32_t nLine = 0; nLine < stStack.GetHeight(); ++nLine) {
    VisitPlaneLine(stPlane, stColumns.nEnd - stColumns.nFirst, nLine,
                   [&](uint32_t nColumn) { sums.Add(nLine, stStack.GetMean(stColumns.nFirst + nColumn, nLine)); });
  }
  return sums.GetMeans();
}

} // namespace ffc::quality
