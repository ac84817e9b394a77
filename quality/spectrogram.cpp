#include "quality/spectrogram.h"

#include <cmath>
#include <complex>

namespace ffc::quality {
namespace {

using Complex = std::complex<double>;
using ComplexList = std::vector<Complex>;

constexpr double PI = 3.141592653589793;

Complex Multiply(const Complex &one, const Complex &other)
{
  return {one.real() * other.real() - one.imag() * other.imag(), one.real() * other.imag() + one.imag() * other.real()};
}

/// Discrete Fourier transform of any length, as a convolution with a chirp of a length that is a power of 2
/// (Bluestein).
class CFourier {
public:
  explicit CFourier(std::size_t nLength) : m_nLength(nLength), m_listChirp(nLength)
  {
    while (m_nPadded < 2 * nLength) {
      m_nPadded *= 2;
    }
    for (std::size_t n = 0; n < m_nPadded / 2; ++n) {
      m_listTurns.push_back(std::polar(1.0, -2.0 * PI * static_cast<double>(n) / static_cast<double>(m_nPadded)));
    }
    m_listFilter.assign(m_nPadded, 0.0);
    for (std::size_t n = 0; n < nLength; ++n) {
      // The square modulo its period, which keeps the angle small and so exact.
      const std::size_t nSquare = n * n % (2 * nLength);
      m_listChirp[n] = std::polar(1.0, -PI * static_cast<double>(nSquare) / static_cast<double>(nLength));
      m_listFilter[n] = std::conj(m_listChirp[n]);
      m_listFilter[(m_nPadded - n) % m_nPadded] = m_listFilter[n];
    }
    Transform(m_listFilter);
  }

  /// In place; the list has nLength values.
  void Run(ComplexList &listValues)
  {
    m_listWork.assign(m_nPadded, 0.0);
    for (std::size_t n = 0; n < m_nLength; ++n) {
      m_listWork[n] = Multiply(listValues[n], m_listChirp[n]);
    }
    Transform(m_listWork);
    // The inverse transform is the conjugate of the transform of the conjugate.
    for (std::size_t n = 0; n < m_nPadded; ++n) {
      m_listWork[n] = std::conj(Multiply(m_listWork[n], m_listFilter[n]));
    }
    Transform(m_listWork);
    for (std::size_t n = 0; n < m_nLength; ++n) {
      listValues[n] = Multiply(std::conj(m_listWork[n]), m_listChirp[n]) / static_cast<double>(m_nPadded);
    }
  }

private:
  void Transform(ComplexList &listValues) const
  {
    for (std::size_t n = 1, nReversed = 0; n < m_nPadded; ++n) {
      std::size_t nBit = m_nPadded / 2;
      for (; (nReversed & nBit) != 0; nBit /= 2) {
        nReversed ^= nBit;
      }
      nReversed |= nBit;
      if (n < nReversed) {
        std::swap(listValues[n], listValues[nReversed]);
      }
    }
    for (std::size_t nHalf = 1; nHalf < m_nPadded; nHalf *= 2) {
      const std::size_t nTurn = m_nPadded / (2 * nHalf);
      for (std::size_t nFirst = 0; nFirst < m_nPadded; nFirst += 2 * nHalf) {
        for (std::size_t n = 0; n < nHalf; ++n) {
          const Complex turned = Multiply(listValues[nFirst + nHalf + n], m_listTurns[n * nTurn]);
          listValues[nFirst + nHalf + n] = listValues[nFirst + n] - turned;
          listValues[nFirst + n] += turned;
        }
      }
    }
  }

  std::size_t m_nLength;
  std::size_t m_nPadded = 2;
  ComplexList m_listChirp;
  ComplexList m_listFilter;
  ComplexList m_listTurns;
  ComplexList m_listWork;
};

/// \param fnValue (line, position): double
template <class TValue>
std::vector<double> MakeSpectrogram(std::size_t nLines, std::size_t nLength, TValue fnValue)
{
  if (nLines == 0 || nLength == 0) {
    return {};
  }
  CFourier fourier(nLength);
  std::vector<double> listPower(nLength / 2 + 1, 0.0);
  ComplexList listPair(nLength);
  // Two lines at a time, as the parts of complex ones: their powers together are the mean of those of k and -k.
  for (std::size_t nLine = 0; nLine < nLines; nLine += 2) {
    for (std::size_t n = 0; n < nLength; ++n) {
      listPair[n] = {fnValue(nLine, n), nLine + 1 < nLines ? fnValue(nLine + 1, n) : 0.0};
    }
    fourier.Run(listPair);
    for (std::size_t n = 0; n < listPower.size(); ++n) {
      listPower[n] += (std::norm(listPair[n]) + std::norm(listPair[(nLength - n) % nLength])) / 2;
    }
  }
  for (double &dPower : listPower) {
    dPower /= static_cast<double>(nLines) * static_cast<double>(nLength);
  }
  return listPower;
}

} // namespace

std::vector<double> MakeHorizontalSpectrogram(const SDeviationImage &stImage)
{
  const std::size_t nColumns = stImage.nColumns;
  return MakeSpectrogram(stImage.nRows, nColumns,
                         [&](std::size_t nLine, std::size_t n) { return stImage.listValues[nLine * nColumns + n]; });
}

std::vector<double> MakeVerticalSpectrogram(const SDeviationImage &stImage)
{
  const std::size_t nColumns = stImage.nColumns;
  return MakeSpectrogram(nColumns, stImage.nRows, [&](std::size_t nColumn, std::size_t n) {
    return stImage.listValues[n * nColumns + nColumn];
  });
}

} // namespace ffc::quality
