/// \file
/// What a file of frames says of them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

#include <QByteArray>
#include <QMap>
#include <QString>

#include "genapi/sensorformat.h"

namespace ffc::frames {

/// How frames lie in memory: whole samples of 8 or 16 bits in the byte order of the machine, lines and frames tightly
/// packed.
struct SLayout {
  uint32_t nWidth = 0; ///< samples
  uint32_t nHeight = 0;
  uint32_t nBytesPerSample = 1; ///< or 2

  std::size_t GetLineSize() const { return static_cast<std::size_t>(nWidth) * nBytesPerSample; }
  std::size_t GetFrameSize() const { return GetLineSize() * nHeight; }
  bool operator==(const SLayout &stOther) const
  {
    return nWidth == stOther.nWidth && nHeight == stOther.nHeight && nBytesPerSample == stOther.nBytesPerSample;
  }
  bool operator!=(const SLayout &stOther) const { return !(*this == stOther); }
};

/// Texts of a frame by keyword, as PNG has them. What a kind of file has no place for is not kept.
using Texts = QMap<QString, QString>;

/// What somebody wrote about the frame.
inline const QString TEXT_DESCRIPTION = QStringLiteral("Description");
/// Which correction was applied to the frame: a JSON object.
inline const QString TEXT_CORRECTION = QStringLiteral("Flat-field correction");

/// When the frame was taken: ISO 8601 with milliseconds, universal time, without a zone.
inline const QString TEXT_TIME = QStringLiteral("Time");

/// What TIFF keeps besides, from file to file.
struct STiffFeatures {
  bool bBig = false;         ///< BigTIFF
  uint16_t nCompression = 1; ///< none
  uint16_t nOrientation = 1; ///< top left
  uint16_t nResolutionUnit = 0;
  float fResolutionX = 0; ///< 0: not known
  float fResolutionY = 0;
};

/// What FITS keeps besides, from file to file.
struct SFitsFeatures {
  enum class ERowOrder {
    TopDown,  ///< the first row of the file is the top one
    BottomUp, ///< the first row of the file is the lowest one; frames in memory begin with the top one all the same
    Unstated, ///< the same as top down
  };
  ERowOrder eRowOrder = ERowOrder::TopDown;
  QByteArray byteCards; ///< lines of 80 characters of the header that mean nothing here, as they stand in the file
};

/// What one file holds: frames that lie alike, and what it says about them.
struct SFrameInfo {
  SLayout stLayout;
  uint64_t nFrames = 1;
  uint32_t nBitDepth = 0;                      ///< significant bits that the file states; 0 when it does not
  std::optional<genapi::EColorLayout> eColors; ///< that the file states
  Texts mapTexts;                              ///< of the first frame
  QString strRemark; ///< what had to be guessed to read the file, as a sentence; empty: nothing
  STiffFeatures stTiff;
  SFitsFeatures stFits;
  QByteArray byteSerDates; ///< dates of a SER file's header and the time of each frame, as they stand in the file
};

/// \param stFormat of the samples, as they lie in memory; not packed
inline SFrameInfo MakeFrameInfo(uint32_t nWidth, uint32_t nHeight, const genapi::SPixelFormat &stFormat)
{
  SFrameInfo stInfo;
  stInfo.stLayout = {nWidth, nHeight, stFormat.GetBytesPerPixel()};
  stInfo.nBitDepth = stFormat.nBitDepth;
  stInfo.eColors = stFormat.eLayout;
  return stInfo;
}

} // namespace ffc::frames
