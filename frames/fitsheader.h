/// \file
/// The header of a FITS file of frames.
#pragma once

#include <QFile>

#include "frames/frameinfo.h"
#include "platform/result.h"

namespace ffc::frames {

/// What a header says of the frames behind it.
struct SFitsHeader {
  SFrameInfo stInfo;    ///< eColors those of the frames in memory, which begin with their top row
  bool bSigned = false; ///< samples of 16 bits without BZERO: they may be negative
};

/// Reads the header that the file begins with, and leaves the file where it ends.
/// \return why such files are not read, as the end of a sentence that begins with the file's name
Result<SFitsHeader> ReadFitsHeader(QFile &file);

/// Whole blocks.
/// \param mapTexts of the first frame
Result<QByteArray> MakeFitsHeader(const SFrameInfo &stInfo, const Texts &mapTexts);

/// Bytes that follow so many so that whole blocks are written.
uint64_t GetFitsPadding(uint64_t nBytes);

} // namespace ffc::frames
