/// \file
/// The correction for uneven illumination that EMVA 1288 knows: an image less its smoothed self.
#pragma once

#include <cstdint>
#include <functional>
#include <string_view>
#include <vector>

namespace ffc::quality {

/// By what an image is smoothed, and what becomes of its border.
enum class EHighPass {
  Release4,      ///< boxes of 7 x 7 and 11 x 11 and a binomial of 3 x 3, mirrored at the border (edge pixels twice)
  Release4Inner, ///< the same, without the 9 pixels at each border that it cannot fully reach
  Release3       ///< a box of 5 x 5, without the 2 pixels at each border
};

/// "release4", "release4-inner", "release3"
const char *GetHighPassName(EHighPass eKind);
/// \return false for a name that none has
bool FindHighPass(std::string_view strName, EHighPass &eKind);

/// Filters images of one size, line by line, in some 50 lines of memory. All kernels of a kind are boxes, one after the
/// other, along the lines and down the columns (a binomial of 3 is two boxes of 2). A box is a running sum, so that its
/// length costs nothing; sums of whole numbers are exact. Used by one thread at a time.
class CHighPass {
public:
  CHighPass(EHighPass eKind, uint32_t nWidth, uint32_t nHeight);

  /// Size of the filtered image; 0 where no pixel is left.
  uint32_t GetWidth() const { return m_nWidth - 2 * m_nCutColumns; }
  uint32_t GetHeight() const { return m_nHeight - 2 * m_nCutLines; }

  /// Writes one line of the image, nWidth values.
  using FnRead = std::function<void(uint32_t nLine, double *pLine)>;
  /// Takes one line of the filtered image, GetWidth() values; lines come in order.
  using FnTake = std::function<void(uint32_t nLine, const double *pLine)>;
  void Run(const FnRead &fnRead, const FnTake &fnTake);

private:
  /// Lines that follow each other, the last of them kept.
  class CRing {
  public:
    CRing() = default;
    CRing(std::size_t nLines, std::size_t nWidth) : m_listLines(nLines, std::vector<double>(nWidth)) {}
    double *GetLine(std::size_t nLine) { return m_listLines[nLine % m_listLines.size()].data(); }

  private:
    std::vector<std::vector<double>> m_listLines;
  };
  /// A box down the columns.
  struct SBox {
    CRing lines; ///< what went in and is still in the sums
    std::vector<double> listSums;
  };

  void ReadLine(uint32_t nLine, const FnRead &fnRead);
  const double *SmoothDown(uint32_t nPadded);
  void Subtract(const double *pRaw, const double *pSmooth);

  std::vector<uint32_t> m_listBoxes; ///< lengths
  uint32_t m_nReach = 0;             ///< of all of them to either side, pixels
  double m_dWeight = 1;              ///< of all of them along both axes
  uint32_t m_nWidth;
  uint32_t m_nHeight;
  uint32_t m_nCutColumns = 0;
  uint32_t m_nCutLines = 0;
  CRing m_raw;
  CRing m_smoothAlong;
  std::vector<SBox> m_listDown;
  std::vector<double> m_listPadded;
  std::vector<double> m_listOut;
};

} // namespace ffc::quality
