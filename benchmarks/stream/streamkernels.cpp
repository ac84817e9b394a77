// Compiled once per instruction level: everything here is internal but the table (see cmake/FfcKernels.cmake).
#include "benchmarks/stream/streamkernels.h"

#include <cstring>

#include "platform/builtlevel.h"

extern const SStreamKernels FFC_KERNEL_TABLE;

namespace {

// All parts advance by 1 / STEPS of their size at a time, each step within the nearest cache for the smaller parts.
constexpr std::size_t STEP_BYTES = 4096;
constexpr std::size_t LINE_BYTES = 64;
// Keeps a compiler from calling a library's function, which may store around the caches.
constexpr uint64_t MARK = 0x5A5A5A5A5A5A5A5A;

inline uint64_t Load(const unsigned char *pData, std::size_t nIndex)
{
  uint64_t nWord;
  std::memcpy(&nWord, pData + nIndex * sizeof nWord, sizeof nWord);
  return nWord;
}

inline void Store(unsigned char *pData, std::size_t nIndex, uint64_t nWord)
{
  std::memcpy(pData + nIndex * sizeof nWord, &nWord, sizeof nWord);
}

uint64_t Read(const unsigned char *pFrom, std::size_t nWords)
{
  uint64_t nBits = 0;
  for (std::size_t i = 0; i < nWords; ++i) {
    nBits ^= Load(pFrom, i);
  }
  return nBits;
}

void Copy(const unsigned char *pFrom, unsigned char *__restrict pTo, std::size_t nWords)
{
  for (std::size_t i = 0; i < nWords; ++i) {
    Store(pTo, i, Load(pFrom, i) ^ MARK);
  }
}

void Update(unsigned char *pData, std::size_t nWords)
{
  for (std::size_t i = 0; i < nWords; ++i) {
    Store(pData, i, Load(pData, i) + MARK);
  }
}

void Write(unsigned char *pTo, std::size_t nWords)
{
  for (std::size_t i = 0; i < nWords; ++i) {
    Store(pTo, i, MARK + i);
  }
}

// The piece of a part that a step takes, in words.
struct SPiece {
  std::size_t nStart; // bytes
  std::size_t nWords;
};

// Whole cache lines: stores that cross lines take up to half as long again, and it would not be memory that decides.
inline SPiece GetPiece(const void *pData, std::size_t nBytes, std::size_t nStep, std::size_t nSteps)
{
  const std::size_t nBefore = (LINE_BYTES - reinterpret_cast<uintptr_t>(pData) % LINE_BYTES) % LINE_BYTES;
  const std::size_t nLines = nBytes > nBefore ? (nBytes - nBefore) / LINE_BYTES : 0;
  const std::size_t nStart = nBefore + nLines * nStep / nSteps * LINE_BYTES;
  const std::size_t nEnd = nBefore + nLines * (nStep + 1) / nSteps * LINE_BYTES;
  return {nStart, (nEnd - nStart) / sizeof(uint64_t)};
}

inline std::size_t Max(std::size_t nFirst, std::size_t nSecond)
{
  return nFirst > nSecond ? nFirst : nSecond;
}

uint64_t Stream(const SStream &stStream)
{
  const std::size_t nLargest = Max(Max(stStream.nRead, stStream.nCopy), Max(stStream.nUpdate, stStream.nWrite));
  const std::size_t nSteps = nLargest / STEP_BYTES + 1;
  uint64_t nBits = 0;
  for (std::size_t nStep = 0; nStep < nSteps; ++nStep) {
    const SPiece stRead = GetPiece(stStream.pRead, stStream.nRead, nStep, nSteps);
    nBits ^= Read(static_cast<const unsigned char *>(stStream.pRead) + stRead.nStart, stRead.nWords);
    const SPiece stCopy = GetPiece(stStream.pCopyTo, stStream.nCopy, nStep, nSteps);
    Copy(static_cast<const unsigned char *>(stStream.pCopyFrom) + stCopy.nStart,
         static_cast<unsigned char *>(stStream.pCopyTo) + stCopy.nStart, stCopy.nWords);
    const SPiece stUpdate = GetPiece(stStream.pUpdate, stStream.nUpdate, nStep, nSteps);
    Update(static_cast<unsigned char *>(stStream.pUpdate) + stUpdate.nStart, stUpdate.nWords);
    const SPiece stWrite = GetPiece(stStream.pWrite, stStream.nWrite, nStep, nSteps);
    Write(static_cast<unsigned char *>(stStream.pWrite) + stWrite.nStart, stWrite.nWords);
  }
  return nBits;
}

} // namespace

const SStreamKernels FFC_KERNEL_TABLE = {FFC_BUILT_LEVEL, Stream};
