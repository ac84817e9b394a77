#include "ombrix/flatfield.h"

#include "ombrix/bandpool.h"
#include "ombrix/kernels/flatfieldkernels.h"
#include "platform/kernelchoice.h"

namespace ffc::ombrix {

namespace {

constexpr std::size_t WORD_BYTES = 2;

// Chosen once, when the library is loaded.
const SFlatFieldKernels &KERNELS = platform::ChooseKernels(FindSFlatFieldKernels, platform::GetInstructionLevel());

// Null stays null.
const void *Advance(const void *pData, std::size_t nBytes)
{
  return pData == nullptr ? nullptr : static_cast<const unsigned char *>(pData) + nBytes;
}

void *Advance(void *pData, std::size_t nBytes)
{
  return pData == nullptr ? nullptr : static_cast<unsigned char *>(pData) + nBytes;
}

template <class TFunction, class TWork>
struct SJob {
  TFunction fnKernel;
  TWork stWhole;
  std::size_t nPixelBytes;
};

using SComputation = SJob<FnComputeTable, STableRun>;
using SApplication = SJob<FnApplyTable, SFrameRun>;

void ComputeBand(const void *pContext, std::size_t nFirst, std::size_t nPixels)
{
  const auto &stJob = *static_cast<const SComputation *>(pContext);
  const STableRun &stWhole = stJob.stWhole;
  stJob.fnKernel({Advance(stWhole.pBright, nFirst * stJob.nPixelBytes),
                  Advance(stWhole.pDark, nFirst * stJob.nPixelBytes), nPixels, stWhole.nTarget,
                  Advance(stWhole.pGains, nFirst * WORD_BYTES), Advance(stWhole.pLevels, nFirst * WORD_BYTES)});
}

void ApplyBand(const void *pContext, std::size_t nFirst, std::size_t nPixels)
{
  const auto &stJob = *static_cast<const SApplication *>(pContext);
  const SFrameRun &stWhole = stJob.stWhole;
  stJob.fnKernel({Advance(stWhole.pSource, nFirst * stJob.nPixelBytes),
                  Advance(stWhole.pDestination, nFirst * stJob.nPixelBytes), nPixels,
                  Advance(stWhole.pGains, nFirst * WORD_BYTES), Advance(stWhole.pLevels, nFirst * WORD_BYTES)});
}

std::size_t GetPixelBytes(uint32_t nBitDepth)
{
  return nBitDepth == 8 ? 1 : 2;
}

} // namespace

void ComputeTable(const SReference &stReference, uint32_t nTarget, void *pTable, CBandPool &pool)
{
  const std::size_t nPixels = stReference.nPixels;
  const bool bDark = stReference.pDark != nullptr;
  void *const pLevels = bDark ? Advance(pTable, nPixels * WORD_BYTES) : nullptr;
  const SComputation stJob = {KERNELS.afnCompute[stReference.nBitDepth - FLATFIELD_MIN_BIT_DEPTH][bDark],
                              {stReference.pBright, stReference.pDark, nPixels, nTarget, pTable, pLevels},
                              GetPixelBytes(stReference.nBitDepth)};
  pool.Run(nPixels, ComputeBand, &stJob, reinterpret_cast<uintptr_t>(stJob.fnKernel));
}

void ApplyTable(const SFrame &stFrame, const STable &stTable, CBandPool &pool)
{
  const std::size_t nPixels = stFrame.nPixels;
  const bool bInPlace = stFrame.pDestination == stFrame.pSource;
  const void *const pLevels = stTable.bDark ? Advance(stTable.pData, nPixels * WORD_BYTES) : nullptr;
  const SApplication stJob = {KERNELS.afnApply[stFrame.nBitDepth - FLATFIELD_MIN_BIT_DEPTH][stTable.bDark][bInPlace],
                              {stFrame.pSource, stFrame.pDestination, nPixels, stTable.pData, pLevels},
                              GetPixelBytes(stFrame.nBitDepth)};
  pool.Run(nPixels, ApplyBand, &stJob, reinterpret_cast<uintptr_t>(stJob.fnKernel));
}

} // namespace ffc::ombrix
