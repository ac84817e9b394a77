/// \file
/// The loops over samples that cost most, once per instruction level: each gives the same numbers on every level.
#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/instructionlevel.h"

namespace ffc::reference {

/// Smooths with the cubic B-spline across five lines.
using FnSmoothAcross = void (*)(const float *const (&apLines)[5], std::size_t nCount, float *pTo);
/// Smooths along one line: nCount samples from pFrom on, of which 2 nStep more are there on either side.
using FnSmoothAlong = void (*)(const float *pFrom, std::size_t nCount, std::size_t nStep, float *pTo);

/// What is taken away of one line of an image of least total variation, as CTotalVariation has it.
struct STakenAway {
  const float *pColumns;
  const float *pLines;
  const float *pLinesAbove; ///< of the line above; null: there is none
  float fWeight;
};
/// Writes samples less the divergence of that. \param nWidth at least 1
using FnTakeAway = void (*)(const STakenAway &stTaken, const float *pSamples, std::size_t nWidth, float *pResult);

/// A step along the gradient of the dual problem, for one line.
struct SDescent {
  const float *pHere;
  const float *pBelow; ///< the line below; the same line where it is the last one
  std::size_t nWidth;  ///< at least 1
  float fStep;
  float fMomentum;
};
/// Makes the step, goes back to lengths of at most 1, and on with the momentum of the step.
using FnDescend = void (*)(const SDescent &stDescent, float *pColumns, float *pLines, float *pNextColumns,
                           float *pNextLines);

/// A pixel of a window, and its weight for being near.
struct SWindowPixel {
  std::ptrdiff_t nOffset;
  float fNear;
};
/// Pixels side by side, whose regions grow in one window.
struct SRegionRun {
  /// Runs are worked on so many pixels at a time: what lies there beyond the last pixel is read too.
  static constexpr std::size_t LANES = 16;

  const float *pMeans;
  const float *pCounts; ///< samples that a mean is worth, over twice the tolerated variance
  const float *pSamples;
  std::size_t nCount;
};
/// Writes mean samples of the regions, and how many samples these means are worth.
using FnGrowRun = void (*)(const SRegionRun &stRun, const SWindowPixel *pWindow, std::size_t nWindow, float *pNext,
                           float *pNextCounts);

/// Writes sums over squares around pixels side by side.
/// \param pCentre the first pixel; twice LANES are read as above
using FnSumSquares = void (*)(const float *pCentre, std::size_t nCount, std::size_t nStride, float *pSums);

struct SReferenceKernels {
  platform::EInstructionLevel eLevel; ///< that the compiler really used
  FnSmoothAcross fnSmoothAcross;
  FnSmoothAlong fnSmoothAlong;
  FnTakeAway fnTakeAway;
  FnDescend fnDescend;
  FnGrowRun fnGrowRun;
  FnSumSquares fnSumSquares;
};

/// Half the side of the squares that are summed.
constexpr int32_t SUMMED_REACH = 6;

/// \return null for a level that was not built
const SReferenceKernels *FindSReferenceKernels(platform::EInstructionLevel eLevel);

/// What this program uses, chosen when it is loaded.
const SReferenceKernels &GetReferenceKernels();

} // namespace ffc::reference
