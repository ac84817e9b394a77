/// \file
/// Images for the tests of the image statistics.
#pragma once

#include <cstdint>
#include <random>
#include <vector>

#include "pluginobject/shadingcorrection/imagecalc/blockparam.h"

namespace ffc::test {

/// Random numbers that are the same on every machine.
class CTestRandom {
public:
  explicit CTestRandom(uint32_t nSeed) : m_engine(nSeed) {}

  /// \return nMin to nMax, both included
  int32_t Between(int32_t nMin, int32_t nMax)
  {
    return nMin + static_cast<int32_t>(m_engine() % (static_cast<uint32_t>(nMax - nMin) + 1));
  }

private:
  std::mt19937 m_engine;
};

/// An image of a bit depth. Its buffer is exactly as large as its pixels, so that a sanitizer sees every
/// access outside.
class CTestImage {
public:
  CTestImage(int32_t nWidth, int32_t nHeight, int32_t nBitDepth, int32_t nFill = 0)
    : m_nWidth(nWidth), m_nHeight(nHeight), m_nBitDepth(nBitDepth)
  {
    const auto nPixels = static_cast<std::size_t>(nWidth) * static_cast<std::size_t>(nHeight);
    m_listBytes.resize(nBitDepth == 8 ? nPixels : 0);
    m_listWords.resize(nBitDepth == 8 ? 0 : nPixels);
    for (int32_t i = 0; i < GetPixelCount(); ++i) {
      SetAt(i, nFill);
    }
  }

  static CTestImage MakeRandom(int32_t nWidth, int32_t nHeight, int32_t nBitDepth, CTestRandom &random)
  {
    CTestImage image(nWidth, nHeight, nBitDepth);
    for (int32_t i = 0; i < image.GetPixelCount(); ++i) {
      image.SetAt(i, random.Between(0, (1 << nBitDepth) - 1));
    }
    return image;
  }

  /// All 2x2 cells alike, their four values row by row.
  static CTestImage MakeCells(int32_t nWidth, int32_t nHeight, int32_t nBitDepth, const int32_t (&anCell)[4])
  {
    CTestImage image(nWidth, nHeight, nBitDepth);
    for (int32_t y = 0; y < nHeight; ++y) {
      for (int32_t x = 0; x < nWidth; ++x) {
        image.Set(x, y, anCell[y % 2 * 2 + x % 2]);
      }
    }
    return image;
  }

  int32_t GetWidth() const { return m_nWidth; }
  int32_t GetHeight() const { return m_nHeight; }
  int32_t GetBitDepth() const { return m_nBitDepth; }
  int32_t GetPixelCount() const { return m_nWidth * m_nHeight; }
  int32_t Get(int32_t nX, int32_t nY) const { return GetAt(nY * m_nWidth + nX); }
  void Set(int32_t nX, int32_t nY, int32_t nValue) { SetAt(nY * m_nWidth + nX, nValue); }

  int32_t GetAt(int32_t nIndex) const
  {
    const auto i = static_cast<std::size_t>(nIndex);
    return m_nBitDepth == 8 ? m_listBytes[i] : m_listWords[i];
  }

  void SetAt(int32_t nIndex, int32_t nValue)
  {
    const auto i = static_cast<std::size_t>(nIndex);
    if (m_nBitDepth == 8) {
      m_listBytes[i] = static_cast<uint8_t>(nValue);
    } else {
      m_listWords[i] = static_cast<uint16_t>(nValue);
    }
  }

  const void *GetData() const
  {
    return m_nBitDepth == 8 ? static_cast<const void *>(m_listBytes.data()) : m_listWords.data();
  }
  void *GetData() { return m_nBitDepth == 8 ? static_cast<void *>(m_listBytes.data()) : m_listWords.data(); }

  bool operator==(const CTestImage &other) const
  {
    return m_listBytes == other.m_listBytes && m_listWords == other.m_listWords;
  }

private:
  int32_t m_nWidth;
  int32_t m_nHeight;
  int32_t m_nBitDepth;
  std::vector<uint8_t> m_listBytes;
  std::vector<uint16_t> m_listWords;
};

} // namespace ffc::test
