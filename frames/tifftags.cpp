#include "frames/tifftags.h"

#include <cstdarg>
#include <cstdio>
#include <iterator>
#include <mutex>
#include <new>

namespace ffc::frames {
namespace {

// Private tag: which correction was applied. Readers that do not know it leave it alone.
constexpr uint32_t CORRECTION_TAG = 65170;
// A hostile file may ask for any amount of memory for a tag.
constexpr tmsize_t LARGEST_ALLOCATION = tmsize_t{1} << 32;

struct STextTag {
  const char *pKeyword;
  uint32_t nTag;
};

constexpr STextTag TEXT_TAGS[] = {
  {"Description", TIFFTAG_IMAGEDESCRIPTION},
  {"Software", TIFFTAG_SOFTWARE},
  {"Author", TIFFTAG_ARTIST},
  {"Copyright", TIFFTAG_COPYRIGHT},
  {"Creation Time", TIFFTAG_DATETIME},
  {"Camera maker", TIFFTAG_MAKE},
  {"Camera model", TIFFTAG_MODEL},
  {"Flat-field correction", CORRECTION_TAG},
};

TIFFExtendProc s_fnFormerExtender = nullptr;

void AddCorrectionTag(TIFF *pTiff)
{
  static char s_acName[] = "FlatFieldCorrection";
  static const TIFFFieldInfo FIELDS[] = {{CORRECTION_TAG, -1, -1, TIFF_ASCII, FIELD_CUSTOM, 1, 0, s_acName}};
  TIFFMergeFieldInfo(pTiff, FIELDS, 1);
  if (s_fnFormerExtender != nullptr) {
    s_fnFormerExtender(pTiff);
  }
}

QFile &ToFile(thandle_t pHandle)
{
  return *static_cast<QFile *>(pHandle);
}

tmsize_t ReadBytes(thandle_t pHandle, void *pBytes, tmsize_t nBytes)
{
  return static_cast<tmsize_t>(ToFile(pHandle).read(static_cast<char *>(pBytes), nBytes));
}

tmsize_t WriteBytes(thandle_t pHandle, void *pBytes, tmsize_t nBytes)
{
  return static_cast<tmsize_t>(ToFile(pHandle).write(static_cast<const char *>(pBytes), nBytes));
}

toff_t Seek(thandle_t pHandle, toff_t nOffset, int nFrom)
{
  QFile &file = ToFile(pHandle);
  const auto nBase = static_cast<toff_t>(nFrom == SEEK_SET ? 0 : nFrom == SEEK_CUR ? file.pos() : file.size());
  const toff_t nPlace = nBase + nOffset;
  // Beyond what the file's numbers hold the place is below 0, where no file is.
  return file.seek(static_cast<qint64>(nPlace)) ? nPlace : static_cast<toff_t>(-1);
}

int CloseNothing(thandle_t)
{
  return 0;
}

toff_t GetSize(thandle_t pHandle)
{
  return static_cast<toff_t>(ToFile(pHandle).size());
}

#if defined(__GNUC__)
__attribute__((format(printf, 4, 0)))
#endif
int KeepError(TIFF *, void *pError, const char *, const char *pFormat, va_list listArguments)
{
  char acText[512];
  std::vsnprintf(acText, sizeof acText, pFormat, listArguments);
  auto *pstrError = static_cast<std::string *>(pError);
  if (pstrError->empty()) {
    try {
      *pstrError = acText;
    } catch (const std::bad_alloc &) {
      *pstrError = "no memory"; // short enough to take none
    }
  }
  return 1;
}

#if defined(__GNUC__)
__attribute__((format(printf, 4, 0)))
#endif
int DropWarning(TIFF *, void *, const char *, const char *, va_list)
{
  return 1;
}

} // namespace

TiffPtr OpenTiff(QFile &file, const char *pMode, std::string *pstrError)
{
  static std::once_flag s_once;
  std::call_once(s_once, [] {
    s_fnFormerExtender = TIFFSetTagExtender(AddCorrectionTag);
    // Parts of the library know the handlers of the whole program only, which print.
    TIFFSetErrorHandler(nullptr);
    TIFFSetWarningHandler(nullptr);
  });
  TIFFOpenOptions *pOptions = TIFFOpenOptionsAlloc();
  if (pOptions == nullptr) { // a few bytes
    *pstrError = "there is no memory";
    return nullptr;
  }
  TIFFOpenOptionsSetMaxSingleMemAlloc(pOptions, LARGEST_ALLOCATION);
  TIFFOpenOptionsSetErrorHandlerExtR(pOptions, KeepError, pstrError);
  TIFFOpenOptionsSetWarningHandlerExtR(pOptions, DropWarning, nullptr);
  TiffPtr pTiff(TIFFClientOpenExt(file.fileName().toUtf8().constData(), pMode, &file, ReadBytes, WriteBytes, Seek,
                                  CloseNothing, GetSize, nullptr, nullptr, pOptions));
  TIFFOpenOptionsFree(pOptions);
  return pTiff;
}

Texts GetTiffTexts(TIFF *pTiff)
{
  Texts mapTexts;
  for (const STextTag &stTag : TEXT_TAGS) {
    const char *pText = nullptr;
    TIFFGetField(pTiff, stTag.nTag, &pText);
    const QString strText = QString::fromUtf8(pText);
    if (!strText.isEmpty()) {
      mapTexts[QLatin1String(stTag.pKeyword)] = strText;
    }
  }
  return mapTexts;
}

void SetTiffTexts(TIFF *pTiff, const Texts &mapTexts, STiffSetting &stSetting)
{
  for (const STextTag &stTag : TEXT_TAGS) {
    const QString strText = mapTexts.value(QLatin1String(stTag.pKeyword));
    if (!strText.isEmpty()) {
      const QByteArray byteText = strText.toUtf8();
      SetTiffField(pTiff, stTag.nTag, byteText.constData(), stSetting);
    }
  }
}

} // namespace ffc::frames
