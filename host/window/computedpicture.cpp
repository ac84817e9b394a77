#include "host/window/computedpicture.h"

#include "genapi/pfnc.h"

namespace ffc::host {
namespace {

/// Where the bytes of a pixel stand that are shown, counted from its first one.
struct SByteOrder {
  uint32_t nCode;  ///< PFNC code
  uint32_t nBytes; ///< of a pixel
  uint32_t nRed;
  uint32_t nGreen;
  uint32_t nBlue;
};

/// Samples of 16 bits by their high byte; of a YUV format only the brightness.
constexpr SByteOrder BYTE_ORDERS[] = {
  {genapi::GetPixelFormatCode("RGB8"), 3, 0, 1, 2},
  {genapi::GetPixelFormatCode("BGR8"), 3, 2, 1, 0},
  {0x02200016, 4, 0, 1, 2}, // RGBa8
  {0x02200017, 4, 2, 1, 0}, // BGRa8
  {0x02300033, 6, 1, 3, 5}, // RGB16
  {0x0230004B, 6, 5, 3, 1}, // BGR16
  {0x0210001F, 2, 1, 1, 1}, // YUV422_8_UYVY
  {0x02100043, 2, 1, 1, 1}, // YCbCr422_8_CbYCrY
  {0x02100044, 2, 1, 1, 1}, // YCbCr601_422_8_CbYCrY
  {0x02100045, 2, 1, 1, 1}, // YCbCr709_422_8_CbYCrY
  {0x02100032, 2, 0, 0, 0}, // YUV422_8
  {0x0210003B, 2, 0, 0, 0}, // YCbCr422_8
  {0x0210003E, 2, 0, 0, 0}, // YCbCr601_422_8
  {0x02100041, 2, 0, 0, 0}, // YCbCr709_422_8
  {0x02180020, 3, 1, 1, 1}, // YUV8_UYV
  {0x0218003A, 3, 1, 1, 1}, // YCbCr8_CbYCr
  {0x0218003D, 3, 1, 1, 1}, // YCbCr601_8_CbYCr
  {0x02180040, 3, 1, 1, 1}, // YCbCr709_8_CbYCr
};

/// No bytes: the format is not shown.
SByteOrder FindByteOrder(uint32_t nCode)
{
  for (const SByteOrder &stOrder : BYTE_ORDERS) {
    if (stOrder.nCode == nCode) {
      return stOrder;
    }
  }
  constexpr uint32_t ONE_NUMBER = 0x01; // the top byte, but for a maker's own bit
  const bool bOne = (nCode >> 24U & 0x7FU) == ONE_NUMBER;
  switch (bOne ? genapi::GetBitsPerPixel(nCode) : 0) {
  case 8: return {nCode, 1, 0, 0, 0};
  case 16: return {nCode, 2, 1, 1, 1};
  default: return {nCode, 0, 0, 0, 0};
  }
}

} // namespace

QImage MakeComputedPicture(const SFrameCopy &stFrame)
{
  const SByteOrder stOrder = FindByteOrder(stFrame.nPixelFormat);
  const std::size_t nPixels = std::size_t{stFrame.nWidth} * stFrame.nHeight;
  if (stOrder.nBytes == 0 || nPixels == 0 || stFrame.listBytes.size() / stOrder.nBytes != nPixels) {
    return {};
  }
  QImage imgPicture(static_cast<int>(stFrame.nWidth), static_cast<int>(stFrame.nHeight), QImage::Format_RGB32);
  const uint8_t *pPixel = stFrame.listBytes.data();
  for (int nY = 0; nY < imgPicture.height(); ++nY) {
    auto *pLine = reinterpret_cast<QRgb *>(imgPicture.scanLine(nY));
    for (int nX = 0; nX < imgPicture.width(); ++nX, pPixel += stOrder.nBytes) {
      pLine[nX] = qRgb(pPixel[stOrder.nRed], pPixel[stOrder.nGreen], pPixel[stOrder.nBlue]);
    }
  }
  return imgPicture;
}

} // namespace ffc::host
