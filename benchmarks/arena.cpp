#include "benchmarks/arena.h"

#include <cstring>
#include <map>
#include <memory>

CArena &CArena::ForDepth(int32_t nBitDepth)
{
  static std::map<int32_t, std::unique_ptr<CArena>> s_mapArenas;
  std::unique_ptr<CArena> &pArena = s_mapArenas[nBitDepth];
  if (pArena == nullptr) {
    pArena.reset(new CArena(nBitDepth));
  }
  return *pArena;
}

CArena::CArena(int32_t nBitDepth)
  : m_nBitDepth(nBitDepth), m_listSource(LARGEST_PIXELS * GetBytesPerPixel()),
    m_listDark(LARGEST_PIXELS * GetBytesPerPixel()), m_listDestination(LARGEST_PIXELS * GetBytesPerPixel()),
    m_listTable(2 * LARGEST_PIXELS), m_listSums(LARGEST_PIXELS)
{
  const uint32_t nMax = (1U << nBitDepth) - 1;
  uint32_t nNoise = 1;
  for (std::size_t i = 0; i < LARGEST_PIXELS; ++i) {
    nNoise = nNoise * 1664525U + 1013904223U;
    const uint32_t nGrey = nMax / 2 + static_cast<uint32_t>(i % 4096) * nMax / 16384 + (nNoise >> 24) * nMax / 4096;
    const auto nWord = static_cast<uint16_t>(nGrey);
    m_listDark[i * GetBytesPerPixel()] = static_cast<uint8_t>(nNoise >> 28);
    if (nBitDepth == 8) {
      m_listSource[i] = static_cast<uint8_t>(nWord);
    } else {
      std::memcpy(m_listSource.data() + 2 * i, &nWord, sizeof nWord);
    }
    m_listTable[i] = static_cast<uint16_t>(4096 + (nNoise >> 22));
    m_listTable[LARGEST_PIXELS + i] = static_cast<uint16_t>((nNoise >> 28) << (16 - nBitDepth));
    m_listSums[i] = 16 * nGrey;
  }
}
