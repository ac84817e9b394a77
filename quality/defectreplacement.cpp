#include "quality/defectreplacement.h"

#include <cassert>
#include <cmath>
#include <cstdlib>
#include <unordered_set>

namespace ffc::quality {

using genapi::EColorLayout;

namespace {

constexpr int64_t LARGEST_REACH = 8; ///< pixels of the channel

/// Positions around a pixel on the square of a reach; at reach 1 without corners when bCross.
template <class TFunction>
void VisitSquare(int64_t nReach, bool bCross, TFunction fnVisit)
{
  for (int64_t nDown = -nReach; nDown <= nReach; ++nDown) {
    for (int64_t nAcross = -nReach; nAcross <= nReach; ++nAcross) {
      const bool bOnSquare = std::max(std::abs(nDown), std::abs(nAcross)) == nReach;
      if (bOnSquare && (!bCross || nDown == 0 || nAcross == 0)) {
        fnVisit(nAcross, nDown);
      }
    }
  }
}

} // namespace

Result<> CDefectReplacement::Prepare(const std::vector<SDefect> &listDefects, uint32_t nWidth, uint32_t nHeight,
                                     EColorLayout eLayout)
{
  *this = CDefectReplacement();
  const int64_t nStep = eLayout == EColorLayout::Mono ? 1 : 2;
  std::unordered_set<std::size_t> setDefects;
  for (const SDefect &stDefect : listDefects) {
    if (stDefect.nColumn >= nWidth || stDefect.nLine >= nHeight) {
      return Failure(QStringLiteral("has the pixel %1,%2, which frames of %3 x %4 have not.")
                       .arg(stDefect.nColumn)
                       .arg(stDefect.nLine)
                       .arg(nWidth)
                       .arg(nHeight));
    }
    setDefects.insert(std::size_t{stDefect.nLine} * nWidth + stDefect.nColumn);
  }
  for (const std::size_t nPixel : setDefects) {
    SPlace stPlace{nPixel, m_listSources.size(), 0};
    const auto nColumn = static_cast<int64_t>(nPixel % nWidth);
    const auto nLine = static_cast<int64_t>(nPixel / nWidth);
    const auto fnTake = [&](int64_t nAcross, int64_t nDown) {
      const int64_t nX = nColumn + nStep * nAcross;
      const int64_t nY = nLine + nStep * nDown;
      const bool bInside = nX >= 0 && nX < nWidth && nY >= 0 && nY < nHeight;
      if (bInside && setDefects.count(static_cast<std::size_t>(nY * nWidth + nX)) == 0) {
        m_listSources.push_back(static_cast<std::size_t>(nY * nWidth + nX));
        ++stPlace.nCount;
      }
    };
    VisitSquare(1, true, fnTake);
    for (int64_t nReach = 1; nReach <= LARGEST_REACH && stPlace.nCount == 0; ++nReach) {
      VisitSquare(nReach, false, fnTake);
    }
    m_nLeft += stPlace.nCount == 0 ? 1U : 0U;
    if (stPlace.nCount > 0) {
      m_listPlaces.push_back(stPlace);
    }
  }
  return {};
}

template <class TSample>
void CDefectReplacement::Replace(TSample *pSamples) const
{
  // Sources are never defects, so the order does not matter.
  for (const SPlace &stPlace : m_listPlaces) {
    assert(stPlace.nCount > 0); // others are no places
    uint64_t nSum = stPlace.nCount / 2;
    for (std::size_t n = 0; n < stPlace.nCount; ++n) {
      nSum += pSamples[m_listSources[stPlace.nFirst + n]];
    }
    pSamples[stPlace.nPixel] = static_cast<TSample>(nSum / stPlace.nCount);
  }
}

void CDefectReplacement::Apply(void *pFrame, uint32_t nBytesPerSample) const
{
  if (nBytesPerSample == 1) {
    Replace(static_cast<uint8_t *>(pFrame));
  } else {
    Replace(static_cast<uint16_t *>(pFrame));
  }
}

} // namespace ffc::quality
