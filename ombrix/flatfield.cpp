#include "ombrix/flatfield.h"

#include "ombrix/kernels/flatfieldkernels.h"
#include "platform/kernelchoice.h"

namespace {

// Chosen once, when the library is loaded.
const SFlatFieldKernels &KERNELS = ChooseKernels(FindSFlatFieldKernels, GetInstructionLevel());

} // namespace

void ComputeTable(const void *pBright, const void *pDark, uint32_t nBitDepth, std::size_t nPixels, uint32_t nTarget,
                  void *pTable)
{
  KERNELS.afnCompute[nBitDepth - FLATFIELD_MIN_BIT_DEPTH][pDark != nullptr](pBright, pDark, nPixels, nTarget, pTable);
}

void ApplyTable(const void *pSource, void *pDestination, uint32_t nBitDepth, std::size_t nPixels, const void *pTable,
                bool bDark)
{
  const bool bInPlace = pDestination == pSource;
  KERNELS.afnApply[nBitDepth - FLATFIELD_MIN_BIT_DEPTH][bDark][bInPlace](pSource, pDestination, nPixels, pTable);
}
