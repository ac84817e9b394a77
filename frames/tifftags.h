/// \file
/// What reading and writing TIFF files share: the library's handle on a file of the toolkit, and the texts' tags.
#pragma once

#include <memory>
#include <string>

#include <QFile>

#include <tiffio.h>

#include "frames/frameinfo.h"

namespace ffc::frames {

struct SCloseTiff {
  void operator()(TIFF *pTiff) const { TIFFClose(pTiff); }
};
using TiffPtr = std::unique_ptr<TIFF, SCloseTiff>;

/// Opens a file of the toolkit, which stays open and the caller's.
/// \param pMode as TIFFOpen takes it
/// \param pstrError where the library's messages go, as long as the handle lives
/// \return null when the library cannot
TiffPtr OpenTiff(QFile &file, const char *pMode, std::string *pstrError);

/// Texts of the directory that was read last.
Texts GetTiffTexts(TIFF *pTiff);
/// What became of tags that were set.
struct STiffSetting {
  bool bTaken = true;
  bool bTorn = false; ///< the library counts one that found no memory; closing the file would read it
};

template <class TValue>
void SetTiffField(TIFF *pTiff, uint32_t nTag, TValue value, STiffSetting &stSetting)
{
  const int nListed = TIFFGetTagListCount(pTiff);
  // Of the numbers, the compression's alone can fail: its codec takes memory.
  if (TIFFSetField(pTiff, nTag, value) != 1) {
    stSetting.bTaken = false;
    stSetting.bTorn = stSetting.bTorn || TIFFGetTagListCount(pTiff) > nListed;
  }
}

/// Texts without a tag of their own are left out.
void SetTiffTexts(TIFF *pTiff, const Texts &mapTexts, STiffSetting &stSetting);

} // namespace ffc::frames
