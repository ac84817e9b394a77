#include "frames/fitsheader.h"

#include <algorithm>
#include <cmath>
#include <iterator>

#include <QStringList>

#include "frames/fileio.h"
#include "frames/fitskeywords.h"

namespace ffc::frames {

using genapi::EColorLayout;

namespace {

constexpr int MAX_HEADER_BLOCKS = 1000;
constexpr int MAX_TEXTS = 99;
constexpr double UNSIGNED_ZERO = 32768;
const char *const CORRECTED = "Flat-field corrected; FFCCORR tells with which coefficients";

struct STextKey {
  const char *pKeyword;
  const char *pKey;
};

/// Texts that have a keyword of their own. The others are numbered.
constexpr STextKey FITS_TEXTS[] = {
  {"Description", "FFCDESC"}, {"Flat-field correction", "FFCCORR"},
  {"Observer", "OBSERVER"},   {"Instrument", "INSTRUME"},
  {"Telescope", "TELESCOP"},  {"Time", "DATE-OBS"},
};

/// Keywords that are written anew, or that would no longer be true.
constexpr const char *OWN_KEYS[] = {"SIMPLE",   "BITPIX",   "EXTEND",   "PCOUNT",   "GCOUNT",  "GROUPS",
                                    "BZERO",    "BSCALE",   "CHECKSUM", "DATASUM",  "DATAMIN", "DATAMAX",
                                    "BAYERPAT", "COLORTYP", "XBAYROFF", "YBAYROFF", "CTYPE3",  "ROWORDER",
                                    "OBSERVER", "INSTRUME", "TELESCOP", "DATE-OBS", "END",     ""};

struct SPattern {
  const char *pName;
  EColorLayout eLayout;
};

/// In an order in which the places differ by SWAPS_ROWS where one pattern is the other turned over, and by
/// SWAPS_COLUMNS where it is its mirror image.
constexpr SPattern PATTERNS[] = {{"RGGB", EColorLayout::BayerRG},
                                 {"GBRG", EColorLayout::BayerGB},
                                 {"GRBG", EColorLayout::BayerGR},
                                 {"BGGR", EColorLayout::BayerBG}};
constexpr std::size_t SWAPS_ROWS = 1;
constexpr std::size_t SWAPS_COLUMNS = 2;

/// Whether the pattern of the file's first two rows is not that of the frame's.
bool IsPatternTurned(const SFrameInfo &stInfo)
{
  return stInfo.stFits.eRowOrder == SFitsFeatures::ERowOrder::BottomUp && stInfo.stLayout.nHeight % 2 == 0;
}

bool IsOdd(const std::optional<double> &dNumber)
{
  return dNumber && std::fabs(std::fmod(*dNumber, 2.0)) == 1;
}

/// Colours of the frame in memory; nothing where the file does not tell.
std::optional<EColorLayout> FindColors(CFitsKeywords &keywords, const SFrameInfo &stInfo)
{
  std::size_t nSwaps = IsPatternTurned(stInfo) ? SWAPS_ROWS : 0;
  nSwaps ^= IsOdd(keywords.GetNumber("XBAYROFF")) ? SWAPS_COLUMNS : 0;
  nSwaps ^= IsOdd(keywords.GetNumber("YBAYROFF")) ? SWAPS_ROWS : 0;
  for (const char *pKey : {"BAYERPAT", "COLORTYP"}) {
    const QString strPattern = keywords.GetText(pKey).trimmed().toUpper();
    for (std::size_t n = 0; n < std::size(PATTERNS); ++n) {
      if (strPattern == QLatin1String(PATTERNS[n].pName)) {
        return PATTERNS[n ^ nSwaps].eLayout;
      }
    }
  }
  return std::nullopt;
}

Texts ReadTexts(CFitsKeywords &keywords)
{
  Texts mapTexts;
  for (const STextKey &stKey : FITS_TEXTS) {
    const QString strText = keywords.GetText(stKey.pKey);
    if (!strText.isEmpty()) {
      mapTexts[QLatin1String(stKey.pKeyword)] = strText;
    }
  }
  for (int n = 1; n <= MAX_TEXTS; ++n) {
    const QString strText = keywords.GetText(QByteArray("FFCTXT" + QByteArray::number(n)).constData());
    const int nEnd = strText.indexOf('=');
    if (nEnd < 0) {
      break;
    }
    mapTexts[strText.left(nEnd)] = strText.mid(nEnd + 1);
  }
  return mapTexts;
}

/// Texts that have no place are left out.
void WriteTexts(CFitsKeywords &keywords, const Texts &mapTexts)
{
  int nNumbered = 0;
  for (auto it = mapTexts.begin(); it != mapTexts.end(); ++it) {
    const auto isKey = [&](const STextKey &stKey) { return it.key() == QLatin1String(stKey.pKeyword); };
    const auto *pKey = std::find_if(std::begin(FITS_TEXTS), std::end(FITS_TEXTS), isKey);
    if (pKey != std::end(FITS_TEXTS)) {
      keywords.SetText(pKey->pKey, it.value());
    } else if (!it.key().contains('=') && nNumbered < MAX_TEXTS) {
      keywords.SetText(QByteArray("FFCTXT" + QByteArray::number(++nNumbered)).constData(), it.key() + '=' + it.value());
    }
  }
  if (mapTexts.contains(TEXT_CORRECTION)) {
    keywords.AddHistory(CORRECTED);
  }
}

/// What stands in the header and means nothing here.
/// \param byteHeader has its end, which ReadBlocks has seen
QByteArray FindForeignCards(const QByteArray &byteHeader)
{
  QByteArray byteCards;
  bool bOwn = true;
  for (int n = 0; byteHeader.mid(n, 8).trimmed() != "END"; n += FITS_CARD_SIZE) {
    const QByteArray byteCard = byteHeader.mid(n, FITS_CARD_SIZE);
    const QByteArray byteKey = byteCard.left(8).trimmed();
    // A line that continues the one before goes with it.
    if (byteKey != "CONTINUE") {
      bOwn = byteKey.startsWith("NAXIS") || byteKey.startsWith("FFC") || byteCard.mid(8).trimmed() == CORRECTED ||
             std::find(std::begin(OWN_KEYS), std::end(OWN_KEYS), byteKey) != std::end(OWN_KEYS);
    }
    if (!bOwn) {
      byteCards += byteCard;
    }
  }
  return byteCards;
}

/// All blocks up to the one with the end.
Result<QByteArray> ReadBlocks(QFile &file)
{
  QByteArray byteHeader;
  const QByteArray byteEnd = QByteArray("END").leftJustified(FITS_CARD_SIZE, ' ');
  while (byteHeader.size() < MAX_HEADER_BLOCKS * FITS_BLOCK_SIZE) {
    const QByteArray byteBlock = file.read(FITS_BLOCK_SIZE);
    if (byteHeader.isEmpty() && byteBlock.startsWith("\x1F\x8B")) {
      return Failure("is compressed; unpack it first (gunzip).");
    }
    if (byteHeader.isEmpty() && !byteBlock.startsWith("SIMPLE  =")) {
      return Failure("is no FITS file: it does not begin with SIMPLE.");
    }
    if (byteBlock.size() < FITS_BLOCK_SIZE) {
      return Failure("ends early.");
    }
    byteHeader += byteBlock;
    for (int n = 0; n < FITS_BLOCK_SIZE; n += FITS_CARD_SIZE) {
      if (byteBlock.mid(n, FITS_CARD_SIZE) == byteEnd) {
        return byteHeader;
      }
    }
  }
  return Failure("has a header that does not end.");
}

/// Why there is no image where one is looked for.
Failure DescribeMissingImage(QFile &file)
{
  const QByteArray byteNext = file.read(FITS_BLOCK_SIZE);
  return Failure(byteNext.contains("ZIMAGE  =") ? "holds a compressed image; unpack it first (funpack)."
                                                : "has no image in its first part; only that one is read.");
}

Result<> ReadAxes(CFitsKeywords &keywords, QFile &file, SFrameInfo &stInfo)
{
  const std::vector<int64_t> &listAxes = keywords.GetAxes();
  if (listAxes.empty()) {
    return DescribeMissingImage(file);
  }
  if (listAxes.size() < 2 || listAxes.size() > 3) {
    return Failure("has " + std::to_string(listAxes.size()) + " axes; images have 2, cubes of frames 3.");
  }
  const int64_t nFrames = listAxes.size() == 3 ? listAxes[2] : 1;
  if (nFrames <= 0) {
    return Failure("has no frames.");
  }
  const QString strThird = keywords.GetText("CTYPE3").trimmed().toUpper();
  if (strThird.startsWith("RGB") || strThird.startsWith("COLO")) {
    return Failure("is a colour picture; only grey pictures are read.");
  }
  if (nFrames == 3 && strThird.isEmpty() && !stInfo.eColors) {
    return Failure("has three planes and does not say whether these are colours or frames; frames have the keyword "
                   "CTYPE3 with the value 'FRAME'.");
  }
  const uint64_t nRest = static_cast<uint64_t>(file.size() - file.pos());
  Result<> result = CheckFrameSize(static_cast<uint64_t>(listAxes[0]), static_cast<uint64_t>(listAxes[1]),
                                   stInfo.stLayout.nBytesPerSample, nRest);
  if (!result) {
    return result;
  }
  stInfo.nFrames = static_cast<uint64_t>(nFrames);
  if (stInfo.nFrames > nRest / stInfo.stLayout.GetFrameSize()) {
    return Failure("is too short for " + std::to_string(nFrames) + " frames of " + Describe(stInfo.stLayout) +
                   ": it ends after " + std::to_string(nRest / stInfo.stLayout.GetFrameSize()) + ".");
  }
  return {};
}

/// Samples that are whole numbers without a sign, or may be.
Result<> ReadSamples(CFitsKeywords &keywords, SFitsHeader &stHeader)
{
  const int nBitpix = keywords.GetBitpix();
  if (nBitpix != 8 && nBitpix != 16) {
    return Failure("has samples of " + std::to_string(std::abs(nBitpix)) + " bits" +
                   (nBitpix < 0 ? " in floating point" : "") + "; whole numbers of 8 or 16 are read.");
  }
  const double dZero = keywords.GetNumber("BZERO").value_or(0);
  const double dScale = keywords.GetNumber("BSCALE").value_or(1);
  if (dScale != 1 || (dZero != 0 && (nBitpix == 8 || dZero != UNSIGNED_ZERO))) {
    return Failure("has samples that are scaled with BSCALE " + QByteArray::number(dScale).toStdString() +
                   " and BZERO " + QByteArray::number(dZero).toStdString() +
                   "; 1 and 0 are read, for 16 bits also 32768.");
  }
  stHeader.stInfo.stLayout.nBytesPerSample = nBitpix == 8 ? 1 : 2;
  stHeader.bSigned = nBitpix == 16 && dZero == 0;
  return {};
}

void ReadRowOrder(CFitsKeywords &keywords, SFrameInfo &stInfo)
{
  const QString strOrder = keywords.GetText("ROWORDER").trimmed().toUpper();
  using ERowOrder = SFitsFeatures::ERowOrder;
  stInfo.stFits.eRowOrder = strOrder == QLatin1String("BOTTOM-UP")  ? ERowOrder::BottomUp
                            : strOrder == QLatin1String("TOP-DOWN") ? ERowOrder::TopDown
                                                                    : ERowOrder::Unstated;
  if (stInfo.stFits.eRowOrder == ERowOrder::Unstated) {
    stInfo.strRemark = QStringLiteral("The first row is taken as the top one: the file does not say (ROWORDER).");
  }
}

/// "KEY     =                value / comment", for the lines that the image's own shape is in.
QByteArray MakeCard(const char *pKey, const QByteArray &byteValue)
{
  return (QByteArray(pKey).leftJustified(8, ' ') + "= " + byteValue.rightJustified(20, ' '))
    .leftJustified(FITS_CARD_SIZE, ' ');
}

QByteArray MakeShapeCards(const SFrameInfo &stInfo)
{
  const bool bWide = stInfo.stLayout.nBytesPerSample == 2;
  QByteArray byteCards = MakeCard("SIMPLE", "T") + MakeCard("BITPIX", bWide ? "16" : "8");
  byteCards += MakeCard("NAXIS", stInfo.nFrames > 1 ? "3" : "2");
  byteCards += MakeCard("NAXIS1", QByteArray::number(stInfo.stLayout.nWidth));
  byteCards += MakeCard("NAXIS2", QByteArray::number(stInfo.stLayout.nHeight));
  if (stInfo.nFrames > 1) {
    byteCards += MakeCard("NAXIS3", QByteArray::number(static_cast<qulonglong>(stInfo.nFrames)));
  }
  if (bWide) {
    byteCards += MakeCard("BZERO", "32768") + MakeCard("BSCALE", "1");
  }
  return byteCards;
}

void WriteMeaning(CFitsKeywords &keywords, const SFrameInfo &stInfo)
{
  using ERowOrder = SFitsFeatures::ERowOrder;
  if (stInfo.nFrames > 1) {
    keywords.SetWord("CTYPE3", QStringLiteral("FRAME"), "frames of one camera");
  }
  if (stInfo.stFits.eRowOrder != ERowOrder::Unstated) {
    const bool bBottomUp = stInfo.stFits.eRowOrder == ERowOrder::BottomUp;
    keywords.SetWord("ROWORDER", bBottomUp ? QStringLiteral("BOTTOM-UP") : QStringLiteral("TOP-DOWN"),
                     "order of the rows in this file");
  }
  for (std::size_t n = 0; n < std::size(PATTERNS); ++n) {
    if (stInfo.eColors == PATTERNS[n].eLayout) {
      const SPattern &stPattern = PATTERNS[n ^ (IsPatternTurned(stInfo) ? SWAPS_ROWS : 0)];
      keywords.SetWord("BAYERPAT", QLatin1String(stPattern.pName), "colours of the first two rows");
    }
  }
  if (stInfo.nBitDepth != 0 && stInfo.nBitDepth <= 8 * stInfo.stLayout.nBytesPerSample) {
    keywords.SetNumber("FFCBITS", stInfo.nBitDepth, "significant bits of a sample");
  }
}

} // namespace

Result<SFitsHeader> ReadFitsHeader(QFile &file)
{
  const Result<QByteArray> blocks = ReadBlocks(file);
  if (!blocks) {
    return blocks.GetFailure();
  }
  CFitsKeywords keywords;
  SFitsHeader stHeader;
  SFrameInfo &stInfo = stHeader.stInfo;
  const Result<> read =
    RunUntilFailure([&] { return keywords.Read(blocks.GetValue()); }, [&] { return ReadSamples(keywords, stHeader); },
                    [&]() -> Result<> {
                      if (keywords.GetAxes().size() >= 2) {
                        // Those that are too large for it ReadAxes refuses.
                        stInfo.stLayout.nWidth = static_cast<uint32_t>(keywords.GetAxes()[0]);
                        stInfo.stLayout.nHeight = static_cast<uint32_t>(keywords.GetAxes()[1]);
                      }
                      ReadRowOrder(keywords, stInfo);
                      stInfo.eColors = FindColors(keywords, stInfo);
                      return ReadAxes(keywords, file, stInfo);
                    });
  if (!read) {
    return read.GetFailure();
  }
  const double dBits = keywords.GetNumber("FFCBITS").value_or(0);
  stInfo.nBitDepth = dBits >= 8 && dBits <= 8 * stInfo.stLayout.nBytesPerSample ? static_cast<uint32_t>(dBits) : 0;
  stInfo.mapTexts = ReadTexts(keywords);
  stInfo.stFits.byteCards = FindForeignCards(blocks.GetValue());
  return stHeader;
}

Result<QByteArray> MakeFitsHeader(const SFrameInfo &stInfo, const Texts &mapTexts)
{
  CFitsKeywords keywords;
  keywords.Create();
  WriteMeaning(keywords, stInfo);
  WriteTexts(keywords, mapTexts);
  Result<QByteArray> cards = keywords.GetCards();
  if (!cards) {
    return cards; // no memory: see GetCards
  }
  QByteArray byteHeader = MakeShapeCards(stInfo) + stInfo.stFits.byteCards + cards.GetValue();
  byteHeader += QByteArray("END").leftJustified(FITS_CARD_SIZE, ' ');
  return byteHeader + QByteArray(static_cast<int>(GetFitsPadding(static_cast<uint64_t>(byteHeader.size()))), ' ');
}

uint64_t GetFitsPadding(uint64_t nBytes)
{
  return (FITS_BLOCK_SIZE - nBytes % FITS_BLOCK_SIZE) % FITS_BLOCK_SIZE;
}

} // namespace ffc::frames
