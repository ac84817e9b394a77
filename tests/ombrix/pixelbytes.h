/// \file
/// Frames and tables between lists of values and the bytes that the image library takes.
#pragma once

#include <cstdint>
#include <cstring>
#include <random>
#include <vector>

using TValues = std::vector<uint32_t>;
using TBytes = std::vector<unsigned char>;

inline std::size_t GetBytesPerPixel(uint32_t nBitDepth)
{
  return nBitDepth == 8 ? 1 : 2;
}

/// Values as little units of 1 or 2 bytes in the machine's order, after nOffset bytes of nothing.
inline TBytes PackValues(const TValues &listValues, std::size_t nBytesPerValue, std::size_t nOffset = 0)
{
  TBytes listBytes(nOffset + listValues.size() * nBytesPerValue);
  for (std::size_t i = 0; i < listValues.size(); ++i) {
    const auto nByte = static_cast<uint8_t>(listValues[i]);
    const auto nWord = static_cast<uint16_t>(listValues[i]);
    std::memcpy(listBytes.data() + nOffset + i * nBytesPerValue,
                nBytesPerValue == 1 ? static_cast<const void *>(&nByte) : &nWord, nBytesPerValue);
  }
  return listBytes;
}

inline TValues UnpackValues(const TBytes &listBytes, std::size_t nBytesPerValue, std::size_t nOffset = 0)
{
  TValues listValues((listBytes.size() - nOffset) / nBytesPerValue);
  for (std::size_t i = 0; i < listValues.size(); ++i) {
    uint8_t nByte = 0;
    uint16_t nWord = 0;
    std::memcpy(nBytesPerValue == 1 ? static_cast<void *>(&nByte) : &nWord,
                listBytes.data() + nOffset + i * nBytesPerValue, nBytesPerValue);
    listValues[i] = nBytesPerValue == 1 ? nByte : nWord;
  }
  return listValues;
}

/// Values from 0 to nMax. The same seed gives the same values everywhere.
inline TValues MakeRandomValues(std::size_t nCount, uint32_t nMax, uint32_t nSeed)
{
  std::mt19937 engine(nSeed);
  TValues listValues(nCount);
  for (uint32_t &nValue : listValues) {
    nValue = static_cast<uint32_t>(engine() % (uint64_t{nMax} + 1));
  }
  return listValues;
}

/// Everything that a pixel of this depth can hold, values above the nominal maximum included.
inline uint32_t GetMaxStoredValue(uint32_t nBitDepth)
{
  return nBitDepth == 8 ? 255 : 65535;
}
