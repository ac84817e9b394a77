#include "frames/serheader.h"

#include <iterator>

#include <QtEndian>

namespace ffc::frames {

using genapi::EColorLayout;

namespace {

const QByteArray FILE_ID = QByteArrayLiteral("LUCAM-RECORDER");
constexpr int NUMBERS_AT = 14; // seven numbers of four bytes: LuID, ColorID, LittleEndian, width, height, depth, count
constexpr int NUMBER_COUNT = 7;
constexpr int TEXTS_AT = 42;
constexpr int TEXT_SIZE = 40;
constexpr int DATES_AT = 162;
const char *const TEXT_KEYS[] = {"Observer", "Instrument", "Telescope"};

struct SColors {
  int32_t nNumber;
  EColorLayout eLayout;
};

constexpr SColors COLORS[] = {{0, EColorLayout::Mono},
                              {8, EColorLayout::BayerRG},
                              {9, EColorLayout::BayerGR},
                              {10, EColorLayout::BayerGB},
                              {11, EColorLayout::BayerBG}};

int32_t GetNumber(const QByteArray &byteHeader, int nNumber)
{
  return qFromLittleEndian<int32_t>(byteHeader.constData() + NUMBERS_AT + qptrdiff{4} * nNumber);
}

} // namespace

std::optional<EColorLayout> FindSerColors(int32_t nColors)
{
  for (const SColors &stColors : COLORS) {
    if (stColors.nNumber == nColors) {
      return stColors.eLayout;
    }
  }
  return std::nullopt;
}

int32_t GetSerColors(EColorLayout eLayout)
{
  int32_t nNumber = 0;
  for (const SColors &stColors : COLORS) {
    nNumber = stColors.eLayout == eLayout ? stColors.nNumber : nNumber;
  }
  return nNumber;
}

Result<SSerHeader> ParseSerHeader(const QByteArray &byteHeader)
{
  if (byteHeader.size() != SER_HEADER_SIZE || !byteHeader.startsWith(FILE_ID)) {
    return Failure("is no SER file: it does not begin with its header.");
  }
  SSerHeader stHeader;
  stHeader.nColors = GetNumber(byteHeader, 1);
  stHeader.bFlagged = GetNumber(byteHeader, 2) != 0;
  stHeader.nWidth = GetNumber(byteHeader, 3);
  stHeader.nHeight = GetNumber(byteHeader, 4);
  stHeader.nBitDepth = GetNumber(byteHeader, 5);
  stHeader.nFrames = GetNumber(byteHeader, 6);
  if (!FindSerColors(stHeader.nColors)) {
    return Failure("has the colours " + std::to_string(stHeader.nColors) +
                   "; only mono (0) and Bayer frames (8 to 11) are read.");
  }
  if (stHeader.nBitDepth < 1 || stHeader.nBitDepth > 16) {
    return Failure("has " + std::to_string(stHeader.nBitDepth) + " bits per sample; 1 to 16 are read.");
  }
  if (stHeader.nWidth <= 0 || stHeader.nHeight <= 0 || stHeader.nFrames <= 0) {
    return Failure("has " + std::to_string(stHeader.nFrames) + " frames of " + std::to_string(stHeader.nWidth) + " x " +
                   std::to_string(stHeader.nHeight) + " pixels, which is nothing to read.");
  }
  for (int nText = 0; nText < static_cast<int>(std::size(TEXT_KEYS)); ++nText) {
    const QByteArray byteText = byteHeader.mid(TEXTS_AT + nText * TEXT_SIZE, TEXT_SIZE);
    const auto nLength = static_cast<int>(qstrnlen(byteText.constData(), TEXT_SIZE));
    const QString strText = QString::fromUtf8(byteText.constData(), nLength);
    if (!strText.trimmed().isEmpty()) {
      stHeader.mapTexts[QLatin1String(TEXT_KEYS[nText])] = strText;
    }
  }
  stHeader.byteDates = byteHeader.mid(DATES_AT);
  return stHeader;
}

QByteArray MakeSerHeader(const SSerHeader &stHeader)
{
  QByteArray byteHeader(SER_HEADER_SIZE, '\0');
  byteHeader.replace(0, FILE_ID.size(), FILE_ID);
  const int32_t anNumbers[NUMBER_COUNT] = {0,
                                           stHeader.nColors,
                                           static_cast<int32_t>(stHeader.bFlagged),
                                           stHeader.nWidth,
                                           stHeader.nHeight,
                                           stHeader.nBitDepth,
                                           stHeader.nFrames};
  qToLittleEndian<int32_t>(anNumbers, NUMBER_COUNT, byteHeader.data() + NUMBERS_AT);
  for (int nText = 0; nText < static_cast<int>(std::size(TEXT_KEYS)); ++nText) {
    const QByteArray byteText = stHeader.mapTexts.value(QLatin1String(TEXT_KEYS[nText])).toUtf8().left(TEXT_SIZE);
    byteHeader.replace(TEXTS_AT + nText * TEXT_SIZE, byteText.size(), byteText);
  }
  const QByteArray byteDates = stHeader.byteDates.left(SER_HEADER_SIZE - DATES_AT);
  byteHeader.replace(DATES_AT, byteDates.size(), byteDates);
  return byteHeader;
}

} // namespace ffc::frames
