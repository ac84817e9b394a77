// Compiled once per instruction level: everything here is internal but the table (see cmake/FfcKernels.cmake).
#include "reference/kernels/referencekernels.h"

#include <cmath>

#include "platform/builtlevel.h"

namespace ffc::reference {

extern const SReferenceKernels FFC_KERNEL_TABLE;

namespace {

constexpr float CENTRE = 6.0F / 16;
constexpr float NEAR = 4.0F / 16;
constexpr float FAR = 1.0F / 16;
constexpr std::size_t LANES = SRegionRun::LANES;

void SmoothAcross(const float *const (&apLines)[5], std::size_t nCount, float *__restrict pTo)
{
  const float *const p0 = apLines[0];
  const float *const p1 = apLines[1];
  const float *const p2 = apLines[2];
  const float *const p3 = apLines[3];
  const float *const p4 = apLines[4];
  for (std::size_t n = 0; n < nCount; ++n) {
    pTo[n] = CENTRE * p2[n] + NEAR * (p1[n] + p3[n]) + FAR * (p0[n] + p4[n]);
  }
}

void SmoothAlong(const float *pFrom, std::size_t nCount, std::size_t nStep, float *__restrict pTo)
{
  SmoothAcross({pFrom - 2 * nStep, pFrom - nStep, pFrom, pFrom + nStep, pFrom + 2 * nStep}, nCount, pTo);
}

void TakeAway(const STakenAway &stTaken, const float *pSamples, std::size_t nWidth, float *__restrict pResult)
{
  const float *const pColumns = stTaken.pColumns;
  const float *const pLines = stTaken.pLines;
  const float *const pLinesAbove = stTaken.pLinesAbove;
  const float fWeight = stTaken.fWeight;
  pResult[0] = pSamples[0] + fWeight * (pColumns[0] + pLines[0]);
  if (pLinesAbove == nullptr) {
    for (std::size_t n = 1; n < nWidth; ++n) {
      pResult[n] = pSamples[n] + fWeight * (pColumns[n] - pColumns[n - 1] + pLines[n]);
    }
    return;
  }
  pResult[0] -= fWeight * pLinesAbove[0];
  for (std::size_t n = 1; n < nWidth; ++n) {
    const float fWithoutAbove = pSamples[n] + fWeight * (pColumns[n] - pColumns[n - 1] + pLines[n]);
    pResult[n] = fWithoutAbove - fWeight * pLinesAbove[n];
  }
}

/// \param fToRight, fToBelow differences of the result
inline void StepPixel(float fToRight, float fToBelow, float fMomentum, float &fColumn, float &fLine, float &fNextColumn,
                      float &fNextLine)
{
  const float fAlongLine = fNextColumn + fToRight;
  const float fDown = fNextLine + fToBelow;
  const float fLength = sqrtf(fAlongLine * fAlongLine + fDown * fDown);
  const float fLongest = fLength > 1 ? fLength : 1.0F;
  const float fScale = 1 / fLongest;
  fNextColumn = fAlongLine * fScale + fMomentum * (fAlongLine * fScale - fColumn);
  fNextLine = fDown * fScale + fMomentum * (fDown * fScale - fLine);
  fColumn = fAlongLine * fScale;
  fLine = fDown * fScale;
}

void Descend(const SDescent &stDescent, float *__restrict pColumns, float *__restrict pLines,
             float *__restrict pNextColumns, float *__restrict pNextLines)
{
  const float *const pHere = stDescent.pHere;
  const float *const pBelow = stDescent.pBelow;
  const float fStep = stDescent.fStep;
  const float fMomentum = stDescent.fMomentum;
  const std::size_t nLast = stDescent.nWidth - 1;
  for (std::size_t n = 0; n < nLast; ++n) {
    StepPixel(fStep * (pHere[n + 1] - pHere[n]), fStep * (pBelow[n] - pHere[n]), fMomentum, pColumns[n], pLines[n],
              pNextColumns[n], pNextLines[n]);
  }
  // Beyond the last column there is no difference.
  StepPixel(0, fStep * (pBelow[nLast] - pHere[nLast]), fMomentum, pColumns[nLast], pLines[nLast], pNextColumns[nLast],
            pNextLines[nLast]);
}

/// Sums of one block of a run stay in registers for the whole window.
void GrowRun(const SRegionRun &stRun, const SWindowPixel *pWindow, std::size_t nWindow, float *pNext,
             float *pNextCounts)
{
  for (std::size_t nFirst = 0; nFirst < stRun.nCount; nFirst += LANES) {
    const float *const pMeans = stRun.pMeans + nFirst;
    const float *const pCounts = stRun.pCounts + nFirst;
    const float *const pSamples = stRun.pSamples + nFirst;
    float afSums[LANES] = {};
    float afWeights[LANES] = {};
    float afSquares[LANES] = {};
    for (std::size_t nPixel = 0; nPixel < nWindow; ++nPixel) {
      const float fNear = pWindow[nPixel].fNear;
      const float *const pOthers = pMeans + pWindow[nPixel].nOffset;
      const float *const pOtherSamples = pSamples + pWindow[nPixel].nOffset;
      for (std::size_t n = 0; n < LANES; ++n) {
        const float fApart = pMeans[n] - pOthers[n];
        const float fAlike = 2 - 2 * pCounts[n] * (fApart * fApart);
        const float fAtLeast = fAlike > 0 ? fAlike : 0.0F;
        const float fLimited = fAtLeast < 1 ? fAtLeast : 1.0F;
        const float fWeight = fNear * fLimited;
        afSums[n] += fWeight * pOtherSamples[n];
        afWeights[n] += fWeight;
        afSquares[n] += fWeight * fWeight;
      }
    }
    for (std::size_t n = 0; n < LANES && nFirst + n < stRun.nCount; ++n) {
      pNext[nFirst + n] = afSums[n] / afWeights[n];
      pNextCounts[nFirst + n] = afWeights[n] * afWeights[n] / afSquares[n];
    }
  }
}

void SumSquares(const float *pCentre, std::size_t nCount, std::size_t nStride, float *pSums)
{
  constexpr std::size_t SIDE = 2 * SUMMED_REACH + 1;
  constexpr std::size_t WIDE = 2 * LANES; // two sums at a time, as each addition waits for the one before
  const float *const pCorner = pCentre - SUMMED_REACH * (nStride + 1);
  for (std::size_t nFirst = 0; nFirst < nCount; nFirst += WIDE) {
    float afSums[WIDE] = {};
    for (std::size_t nPlace = 0; nPlace < SIDE * SIDE; ++nPlace) {
      const float *const pOthers = pCorner + nFirst + nPlace / SIDE * nStride + nPlace % SIDE;
      for (std::size_t n = 0; n < WIDE; ++n) {
        afSums[n] += pOthers[n];
      }
    }
    for (std::size_t n = 0; n < WIDE && nFirst + n < nCount; ++n) {
      pSums[nFirst + n] = afSums[n];
    }
  }
}

} // namespace

const SReferenceKernels FFC_KERNEL_TABLE = {FFC_BUILT_LEVEL, SmoothAcross, SmoothAlong, TakeAway,
                                            Descend,         GrowRun,      SumSquares};

} // namespace ffc::reference
