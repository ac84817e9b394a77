/// \file
/// The header of SER files, version 3.
#pragma once

#include <cstdint>

#include <QByteArray>

#include "frames/frameinfo.h"
#include "platform/result.h"

namespace ffc::frames {

constexpr int SER_HEADER_SIZE = 178;

/// Numbers of a header. Bytes of the file have the lowest first.
struct SSerHeader {
  int32_t nColors = 0;   ///< 0 mono, 8 to 11 Bayer
  bool bFlagged = false; ///< the flag that is called "little endian", which programs use either way
  int32_t nWidth = 0;
  int32_t nHeight = 0;
  int32_t nBitDepth = 0; ///< 1 to 16
  int32_t nFrames = 0;
  Texts mapTexts;       ///< observer, instrument, telescope
  QByteArray byteDates; ///< 16 bytes, local and universal, as they stand in the file
};

/// \param byteHeader SER_HEADER_SIZE bytes
/// \return why the file is not read, as the end of a sentence that begins with its name
Result<SSerHeader> ParseSerHeader(const QByteArray &byteHeader);

QByteArray MakeSerHeader(const SSerHeader &stHeader);

/// Colour layout of a header's number, and the number of a layout.
std::optional<genapi::EColorLayout> FindSerColors(int32_t nColors);
int32_t GetSerColors(genapi::EColorLayout eLayout);

} // namespace ffc::frames
