/// \file
/// Reads the parameters of one run from arbitrary bytes.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <type_traits>
#include <vector>

#include "tests/fuzz/exactbuffer.h"

/// Hands out the bytes of an input from its start. An input that has ended goes on with zeros.
class CFuzzInput {
public:
  CFuzzInput(const uint8_t *pData, std::size_t nSize) : m_pData(pData), m_nLeft(nSize) {}

  bool HasMore() const { return m_nLeft > 0; }

  /// The next bytes as a number, any bit pattern of its type.
  template <typename TNumber>
  TNumber Take()
  {
    static_assert(std::is_integral_v<TNumber> && !std::is_same_v<TNumber, bool>);
    TNumber nNumber = 0;
    const std::size_t nBytes = std::min(sizeof nNumber, m_nLeft);
    if (nBytes > 0) {
      std::memcpy(&nNumber, m_pData, nBytes);
    }
    Skip(nBytes);
    return nNumber;
  }

  bool TakeBool() { return (Take<uint8_t>() & 1U) != 0; }

  /// \return nMin to nMax, both included; less than 65536 apart
  int32_t TakeBetween(int32_t nMin, int32_t nMax) { return nMin + Take<uint16_t>() % (nMax - nMin + 1); }

  /// One of a list.
  template <typename TValue, std::size_t N>
  TValue Pick(const TValue (&listValues)[N])
  {
    return listValues[Take<uint8_t>() % N];
  }

  /// A side of an image or block as a camera may name it: a sane one, an edge of some number type, or anything.
  int64_t TakeSide(int32_t nLargestSane)
  {
    constexpr int64_t EDGES[] = {0,
                                 -1,
                                 INT32_MAX,
                                 int64_t{1} << 31,
                                 UINT32_MAX,
                                 int64_t{1} << 32,
                                 int64_t{1} << 62,
                                 INT64_MIN,
                                 INT64_MAX,
                                 INT32_MIN,
                                 65535,
                                 65536,
                                 100000,
                                 100001,
                                 0x40000000,
                                 0x3FFFFFFF,
                                 0xAAAAAAAA,
                                 int64_t{1} << 33};
    const auto nKind = Take<uint8_t>();
    if (nKind < 0xE0) {
      return TakeBetween(0, nLargestSane);
    }
    return nKind < 0xF8 ? Pick(EDGES) : Take<int64_t>();
  }

  /// nSize bytes: up to 63 of the input, as its next byte says, over and over; or, if that is 255, as many as there
  /// are.
  CExactBuffer TakeBuffer(std::size_t nSize)
  {
    CExactBuffer buffer(nSize);
    const auto nWanted = Take<uint8_t>();
    const std::size_t nThere = std::min({nSize, m_nLeft, nWanted == 0xFF ? nSize : nWanted % 64U});
    for (std::size_t nDone = 0; nThere > 0 && nDone < nSize; nDone += nThere) {
      std::memcpy(buffer.GetData() + nDone, m_pData, std::min(nThere, nSize - nDone));
    }
    Skip(nThere);
    return buffer;
  }

  /// At most nLongest bytes, of which there may be less.
  std::vector<uint8_t> TakeBytes(std::size_t nLongest)
  {
    const std::size_t nBytes = std::min(nLongest, m_nLeft);
    std::vector<uint8_t> listBytes(m_pData, m_pData + nBytes);
    Skip(nBytes);
    return listBytes;
  }

private:
  void Skip(std::size_t nBytes)
  {
    m_pData += nBytes;
    m_nLeft -= nBytes;
  }

  const uint8_t *m_pData;
  std::size_t m_nLeft;
};
