#include "tests/camera/software/selfcorrection/handmadetable.h"

#include <algorithm>
#include <cmath>

namespace ffc::test {

namespace {

uint32_t CountPoints(uint32_t nPixels, uint32_t nSide)
{
  uint32_t nBlocks = 0;
  while (nPixels >= nSide) {
    nPixels -= nSide;
    ++nBlocks;
  }
  return nBlocks + (2 * nPixels > nSide ? 1 : 0) + 2;
}

std::string GetColors(const std::string &strFormat)
{
  if (strFormat.rfind("Bayer", 0) != 0) {
    return {};
  }
  const std::string strTop = strFormat.substr(5, 2);
  return strTop == "RG" ? "RGGB" : strTop == "GB" ? "GBRG" : strTop == "GR" ? "GRBG" : "BGGR";
}

void PutWord(std::vector<uint8_t> &listBytes, uint16_t nWord)
{
  listBytes.push_back(static_cast<uint8_t>(nWord & 255));
  listBytes.push_back(static_cast<uint8_t>(nWord >> 8));
}

// Where along an axis a pixel lies: behind which point, and how far on the way to the next.
void Locate(uint32_t nPixel, uint32_t nSide, uint32_t *pnPoint, double *pdWay)
{
  const double dSide = nSide;
  double dPoint = -(dSide + 1.0) / 2.0; // the middle of the block before the first: pixels -side to -1
  *pnPoint = 0;
  while (dPoint + dSide <= nPixel) {
    dPoint += dSide;
    ++*pnPoint;
  }
  *pdWay = (nPixel - dPoint) / dSide;
}

} // namespace

CHandMadeTable::CHandMadeTable(camera::ECorrectionMode eMode, const std::string &strFormat, uint32_t nWidth,
                               uint32_t nHeight, uint32_t nSide)
  : m_eMode(eMode), m_strColors(GetColors(strFormat)), m_nWidth(nWidth),
    m_nBits(static_cast<uint32_t>(std::stoul(strFormat.substr(strFormat.find_first_of("0123456789"))))), m_nSide(nSide),
    m_nRows(CountPoints(nHeight, nSide)), m_nColumns(CountPoints(nWidth, nSide)), m_listPoints(m_nRows * m_nColumns)
{
}

void CHandMadeTable::Scatter(uint32_t nSeed)
{
  std::mt19937 generator(nSeed);
  const auto drawGain = [&] { return static_cast<uint16_t>(128 + generator() % 1152); };
  for (SPoint &stPoint : m_listPoints) {
    stPoint.nDark =
      m_eMode == camera::ECorrectionMode::FlatField ? static_cast<uint16_t>(generator() % 41) : uint16_t{0};
    stPoint.nGreen = drawGain();
    stPoint.nRed = m_strColors.empty() ? stPoint.nGreen : drawGain();
    stPoint.nBlue = m_strColors.empty() ? stPoint.nGreen : drawGain();
  }
}

std::vector<uint8_t> CHandMadeTable::Pack() const
{
  std::vector<uint8_t> listBytes;
  if (m_eMode == camera::ECorrectionMode::FlatField) {
    for (const SPoint &stPoint : m_listPoints) {
      PutWord(listBytes, stPoint.nDark);
      PutWord(listBytes, stPoint.nBlue);
      PutWord(listBytes, stPoint.nGreen);
      PutWord(listBytes, stPoint.nRed);
    }
  } else {
    for (uint32_t nQuadRow = 0; nQuadRow < m_nRows; nQuadRow += 2) {
      for (uint32_t nQuadColumn = 0; nQuadColumn < m_nColumns; nQuadColumn += 2) {
        for (const auto &[nRow, nColumn] :
             {std::pair(nQuadRow, nQuadColumn), std::pair(nQuadRow, nQuadColumn + 1),
              std::pair(nQuadRow + 1, nQuadColumn), std::pair(nQuadRow + 1, nQuadColumn + 1)}) {
          const bool bThere = nRow < m_nRows && nColumn < m_nColumns;
          const SPoint stPoint = bThere ? m_listPoints[nRow * m_nColumns + nColumn] : SPoint{0, 0, 0, 0};
          PutWord(listBytes, stPoint.nRed);
          if (!m_strColors.empty()) {
            PutWord(listBytes, stPoint.nGreen);
            PutWord(listBytes, stPoint.nBlue);
          }
        }
      }
    }
  }
  for (uint8_t nByte = 1; nByte <= 24; ++nByte) {
    listBytes.push_back(nByte);
  }
  return listBytes;
}

double CHandMadeTable::GetGain(const SPoint &stPoint, uint32_t nX, uint32_t nY) const
{
  const char cColor = m_strColors.empty() ? 'G' : m_strColors[nY % 2 * 2 + nX % 2];
  return cColor == 'R' ? stPoint.nRed : cColor == 'G' ? stPoint.nGreen : stPoint.nBlue;
}

double CHandMadeTable::Correct(double dPixel, uint32_t nX, uint32_t nY, double dGray) const
{
  uint32_t nRow = 0;
  uint32_t nColumn = 0;
  double dDown = 0.0;
  double dRight = 0.0;
  Locate(nY, m_nSide, &nRow, &dDown);
  Locate(nX, m_nSide, &nColumn, &dRight);
  double dDark = 0.0;
  double dGain = 0.0;
  for (uint32_t nCorner = 0; nCorner < 4; ++nCorner) {
    const bool bLower = nCorner / 2 == 1;
    const bool bRight = nCorner % 2 == 1;
    const double dWeight = (bLower ? dDown : 1.0 - dDown) * (bRight ? dRight : 1.0 - dRight);
    const SPoint &stPoint = m_listPoints[(nRow + nCorner / 2) * m_nColumns + nColumn + nCorner % 2];
    dDark += dWeight * stPoint.nDark;
    dGain += dWeight * GetGain(stPoint, nX, nY);
  }
  return (dPixel - dDark * std::pow(2.0, m_nBits - 8.0)) * dGain / 256.0 * dGray / 255.0;
}

std::size_t CHandMadeTable::CountWrong(const std::vector<uint16_t> &listRaw, const std::vector<uint16_t> &listCorrected,
                                       double dGray) const
{
  const double dMax = std::pow(2.0, m_nBits) - 1.0;
  std::size_t nWrong = listRaw.size() == listCorrected.size() ? 0 : 1;
  for (std::size_t n = 0; n < std::min(listRaw.size(), listCorrected.size()); ++n) {
    const auto nX = static_cast<uint32_t>(n % m_nWidth);
    const auto nY = static_cast<uint32_t>(n / m_nWidth);
    const double dExact = std::clamp(Correct(listRaw[n], nX, nY, dGray), 0.0, dMax);
    nWrong += std::fabs(listCorrected[n] - dExact) > 0.52 ? 1U : 0U;
  }
  return nWrong;
}

} // namespace ffc::test
