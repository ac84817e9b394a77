/// \file
/// Keywords of a FITS header, which the library reads and writes in memory: what lies behind the header is none of its
/// business.
#pragma once

#include <cstdint>
#include <mutex>
#include <optional>
#include <vector>

#include <QByteArray>
#include <QString>

#include <fitsio.h>

#include "platform/result.h"

namespace ffc::frames {

constexpr int FITS_CARD_SIZE = 80;
constexpr int FITS_BLOCK_SIZE = 2880;

/// One header. Used by one thread at a time; while there is one, other threads wait for it before they begin theirs,
/// for the library has state that all files share and that it sets up unlocked. So a thread has no second one
/// meanwhile.
class CFitsKeywords {
public:
  CFitsKeywords();
  ~CFitsKeywords();
  CFitsKeywords(const CFitsKeywords &) = delete;
  CFitsKeywords &operator=(const CFitsKeywords &) = delete;

  /// Reads a header. Once, instead of Create.
  /// \param byteHeader whole blocks; lives as long as this
  Result<> Read(const QByteArray &byteHeader);
  /// Begins a header without any keyword. Once, instead of Read. What fails here and in the functions that set
  /// something, GetCards tells.
  void Create();

  /// BITPIX.
  int GetBitpix() const { return m_nBitpix; }
  /// NAXIS1 and so on.
  const std::vector<int64_t> &GetAxes() const { return m_listAxes; }
  /// Empty when there is no such keyword, or no text behind it. Throws std::bad_alloc.
  QString GetText(const char *pKey);
  std::optional<double> GetNumber(const char *pKey);

  /// Any text: it is split up among several lines where it is long, and what no FITS text may hold is written as %XX.
  void SetText(const char *pKey, const QString &strText);
  void SetWord(const char *pKey, const QString &strWord, const char *pComment);
  void SetNumber(const char *pKey, int64_t nValue, const char *pComment);
  void AddHistory(const char *pText);
  /// The lines of all keywords that were set, 80 characters each.
  Result<QByteArray> GetCards();

private:
  Failure Describe() const;

  std::unique_lock<std::mutex> m_lock; ///< of the library; the last that is given up
  fitsfile *m_pFile = nullptr;
  void *m_pMemory = nullptr; ///< the library's while there is a file
  std::size_t m_nMemory = 0;
  bool m_bOwned = false;
  int m_nStatus = 0; ///< of writing: the first failure stays
  int m_nBegin = 0;  ///< lines that stand before the first keyword
  int m_nBitpix = 0;
  std::vector<int64_t> m_listAxes;
};

} // namespace ffc::frames
