#include "quality/blockmeans.h"

namespace ffc::quality {
namespace {

struct SBlockLength {
  uint32_t nBlocks;
  uint32_t nLength;
};

SBlockLength CutIntoBlocks(uint32_t nPixels)
{
  const uint32_t nBlocks = nPixels / BLOCK_SIDE;
  return nBlocks == 0 ? SBlockLength{1, nPixels} : SBlockLength{nBlocks, BLOCK_SIDE};
}

} // namespace

SBlockMeans GetBlockMeans(const CFrameStack &stStack, const SColorPlane &stPlane)
{
  const SBlockLength stAcross = CutIntoBlocks(stStack.GetWidth());
  const SBlockLength stDown = CutIntoBlocks(stStack.GetHeight());
  const std::size_t nBlocks = static_cast<std::size_t>(stAcross.nBlocks) * stDown.nBlocks;
  std::vector<uint64_t> listSums(nBlocks, 0);
  std::vector<uint64_t> listCounts(nBlocks, 0);
  const uint32_t nWidth = stAcross.nBlocks * stAcross.nLength;
  for (uint32_t nLine = 0; nLine < stDown.nBlocks * stDown.nLength; ++nLine) {
    const std::size_t nFirst = static_cast<std::size_t>(nLine / stDown.nLength) * stAcross.nBlocks;
    const uint32_t *pSums = stStack.GetSums(nLine);
    VisitPlaneLine(stPlane, nWidth, nLine, [&](uint32_t nColumn) {
      const std::size_t nBlock = nFirst + nColumn / stAcross.nLength;
      listSums[nBlock] += pSums[nColumn];
      ++listCounts[nBlock];
    });
  }

  SBlockMeans stMeans{stAcross.nBlocks, stDown.nBlocks, {}};
  for (std::size_t nBlock = 0; nBlock < nBlocks; ++nBlock) {
    const double dSamples = static_cast<double>(listCounts[nBlock]) * static_cast<double>(stStack.GetFrameCount());
    stMeans.listMeans.push_back(dSamples > 0 ? static_cast<double>(listSums[nBlock]) / dSamples : 0.0);
  }
  return stMeans;
}

} // namespace ffc::quality
