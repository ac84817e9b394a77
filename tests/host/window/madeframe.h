/// \file
/// Frames for tests, made sample by sample.
#pragma once

#include <cstring>
#include <functional>
#include <string>

#include "genapi/pfnc.h"
#include "host/viewer/framepipeline.h"

namespace ffc::host {

using FnSample = std::function<uint32_t(uint32_t nX, uint32_t nY)>;

inline SFrameCopy MakeFrame(const char *pFormat, uint32_t nWidth, uint32_t nHeight, const FnSample &fnSample)
{
  const genapi::SPixelFormat *pSensorFormat = genapi::FindPixelFormat(std::string(pFormat));
  SFrameCopy stFrame;
  stFrame.nWidth = nWidth;
  stFrame.nHeight = nHeight;
  stFrame.nPixelFormat = pSensorFormat->nCode;
  for (uint32_t nY = 0; nY < nHeight; ++nY) {
    for (uint32_t nX = 0; nX < nWidth; ++nX) {
      const uint16_t nSample = static_cast<uint16_t>(fnSample(nX, nY));
      uint8_t abBytes[2];
      std::memcpy(abBytes, &nSample, 2);
      if (pSensorFormat->GetBytesPerPixel() == 1) {
        stFrame.listBytes.push_back(static_cast<uint8_t>(nSample));
      } else {
        stFrame.listBytes.insert(stFrame.listBytes.end(), abBytes, abBytes + 2);
      }
    }
  }
  return stFrame;
}

} // namespace ffc::host
