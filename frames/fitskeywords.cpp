#include "frames/fitskeywords.h"

#include <cstdlib>
#include <new>

namespace ffc::frames {
namespace {

constexpr int MAX_AXES = 8;

/// What stands in a text as it is: all of ASCII that is printed, but for what means something in a header.
QByteArray ListPlainCharacters()
{
  QByteArray bytePlain;
  for (char c = ' '; c < '\x7F'; ++c) {
    if (c != '%' && c != '&' && c != '\'') {
      bytePlain.append(c);
    }
  }
  return bytePlain;
}

QByteArray Encode(const QString &strText)
{
  static const QByteArray bytePlain = ListPlainCharacters();
  QByteArray byteText = strText.toUtf8().toPercentEncoding(bytePlain, "%&'");
  // Blanks at the end of a text are none.
  if (byteText.endsWith(' ')) {
    byteText.chop(1);
    byteText += "%20";
  }
  return byteText;
}

std::mutex &GetLibraryMutex()
{
  static std::mutex mutex;
  return mutex;
}

} // namespace

CFitsKeywords::CFitsKeywords() : m_lock(GetLibraryMutex()) {}

CFitsKeywords::~CFitsKeywords()
{
  int nStatus = 0;
  if (m_pFile != nullptr) {
    fits_close_file(m_pFile, &nStatus);
  }
  fits_clear_errmsg();
  if (m_bOwned) {
    std::free(m_pMemory);
  }
}

Result<> CFitsKeywords::Read(const QByteArray &byteHeader)
{
  // Opened for reading only, the library leaves it as it is.
  m_pMemory = const_cast<char *>(byteHeader.constData());
  m_nMemory = static_cast<std::size_t>(byteHeader.size());
  fits_open_memfile(&m_pFile, "header", READONLY, &m_pMemory, &m_nMemory, 0, nullptr, &m_nStatus);
  int nAxes = 0;
  LONGLONG anAxes[MAX_AXES] = {};
  fits_get_img_paramll(m_pFile, MAX_AXES, &m_nBitpix, &nAxes, anAxes, &m_nStatus);
  if (m_nStatus != 0) {
    return Describe();
  }
  if (nAxes > MAX_AXES) {
    return Failure("has " + std::to_string(nAxes) + " axes; images have 2, cubes of frames 3.");
  }
  m_listAxes.assign(anAxes, anAxes + nAxes);
  return {};
}

void CFitsKeywords::Create()
{
  m_nMemory = FITS_BLOCK_SIZE;
  m_pMemory = std::calloc(1, m_nMemory);
  m_bOwned = true;
  m_nStatus = m_pMemory == nullptr ? MEMORY_ALLOCATION : 0; // of the C library: see GetCards
  fits_create_memfile(&m_pFile, &m_pMemory, &m_nMemory, FITS_BLOCK_SIZE, std::realloc, &m_nStatus);
  // Without an image, so that the library has nothing to write behind the header.
  fits_create_img(m_pFile, BYTE_IMG, 0, nullptr, &m_nStatus);
  fits_get_hdrspace(m_pFile, &m_nBegin, nullptr, &m_nStatus);
}

QString CFitsKeywords::GetText(const char *pKey)
{
  int nStatus = 0;
  char *pText = nullptr;
  fits_read_key_longstr(m_pFile, pKey, &pText, nullptr, &nStatus);
  if (nStatus == MEMORY_ALLOCATION) {
    throw std::bad_alloc(); // else frames that are corrected seem not to be
  }
  const QByteArray byteText = nStatus == 0 ? QByteArray(pText) : QByteArray();
  if (pText != nullptr) {
    int nFreed = 0;
    fits_free_memory(pText, &nFreed);
  }
  return QString::fromUtf8(QByteArray::fromPercentEncoding(byteText));
}

std::optional<double> CFitsKeywords::GetNumber(const char *pKey)
{
  int nStatus = 0;
  double dValue = 0;
  fits_read_key(m_pFile, TDOUBLE, pKey, &dValue, nullptr, &nStatus);
  return nStatus == 0 ? std::optional<double>(dValue) : std::nullopt;
}

void CFitsKeywords::SetText(const char *pKey, const QString &strText)
{
  fits_write_key_longstr(m_pFile, pKey, Encode(strText).constData(), nullptr, &m_nStatus);
}

void CFitsKeywords::SetWord(const char *pKey, const QString &strWord, const char *pComment)
{
  fits_write_key_str(m_pFile, pKey, strWord.toLatin1().constData(), pComment, &m_nStatus);
}

void CFitsKeywords::SetNumber(const char *pKey, int64_t nValue, const char *pComment)
{
  fits_write_key_lng(m_pFile, pKey, nValue, pComment, &m_nStatus);
}

void CFitsKeywords::AddHistory(const char *pText)
{
  fits_write_history(m_pFile, pText, &m_nStatus);
}

Result<QByteArray> CFitsKeywords::GetCards()
{
  char *pCards = nullptr;
  int nCards = 0;
  fits_hdr2str(m_pFile, 0, nullptr, 0, &pCards, &nCards, &m_nStatus);
  if (m_nStatus == 0 && pCards == nullptr) {
    m_nStatus = MEMORY_ALLOCATION; // the library does not look whether it could make them shorter
  }
  // Of what is written here the library takes everything; what it may lack is memory of the C library, which fails one
  // allocation after the other in the long form of tests/reliability alone, here, in Create, in GetText and in
  // Describe.
  if (m_nStatus != 0) {
    return Describe();
  }
  // The last line is the end's.
  const int nBegin = m_nBegin * FITS_CARD_SIZE;
  const QByteArray byteCards = QByteArray(pCards, (nCards - 1) * FITS_CARD_SIZE).mid(nBegin);
  fits_free_memory(pCards, &m_nStatus);
  return byteCards;
}

Failure CFitsKeywords::Describe() const
{
  if (m_nStatus == MEMORY_ALLOCATION) {
    return Failure("needs more memory than there is.");
  }
  char acText[FLEN_STATUS] = {};
  fits_get_errstatus(m_nStatus, acText);
  return Failure(std::string("has a header that is not FITS: ") + acText + ".");
}

} // namespace ffc::frames
