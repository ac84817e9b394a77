#include "ombrix/flatfield.h"

#include "ombrix/bandpool.h"
#include "ombrix/kernels/flatfieldkernels.h"
#include "platform/kernelchoice.h"

namespace ffc::ombrix {

namespace {

constexpr std::size_t WORD_BYTES = 2;

// Chosen once, when the library is loaded.
const SFlatFieldKernels &KERNELS = ChooseKernels(FindSFlatFieldKernels, GetInstructionLevel());

// Null stays null.
const void *Advance(const void *pData, std::size_t nBytes)
{
  return pData == nullptr ? nullptr : static_cast<const unsigned char *>(pData) + nBytes;
}

void *Advance(void *pData, std::size_t nBytes)
{
  return pData == nullptr ? nullptr : static_cast<unsigned char *>(pData) + nBytes;
}

template <typename TFunction, typename TWork>
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

void ComputeTable(const void *pBright, const void *pDark, uint32_t nBitDepth, std::size_t nPixels, uint32_t nTarget,
                  void *pTable, CBandPool &pool)
{
  const bool bDark = pDark != nullptr;
  void *const pLevels = bDark ? Advance(pTable, nPixels * WORD_BYTES) : nullptr;
  const SComputation stJob = {KERNELS.afnCompute[nBitDepth - FLATFIELD_MIN_BIT_DEPTH][bDark],
                              {pBright, pDark, nPixels, nTarget, pTable, pLevels},
                              GetPixelBytes(nBitDepth)};
  pool.Run(nPixels, ComputeBand, &stJob);
}

void ApplyTable(const void *pSource, void *pDestination, uint32_t nBitDepth, std::size_t nPixels, const void *pTable,
                bool bDark, CBandPool &pool)
{
  const bool bInPlace = pDestination == pSource;
  const void *const pLevels = bDark ? Advance(pTable, nPixels * WORD_BYTES) : nullptr;
  const SApplication stJob = {KERNELS.afnApply[nBitDepth - FLATFIELD_MIN_BIT_DEPTH][bDark][bInPlace],
                              {pSource, pDestination, nPixels, pTable, pLevels},
                              GetPixelBytes(nBitDepth)};
  pool.Run(nPixels, ApplyBand, &stJob);
}

} // namespace ffc::ombrix
