/// \file
/// How many bits of a sample mean something, and where in the sample they stand.
#pragma once

#include <cstdint>
#include <optional>

#include <QString>

#include "frames/frameinfo.h"
#include "platform/result.h"

namespace ffc::frames {

enum class EAlignment {
  Right, ///< the lowest bits mean something
  Left,  ///< the highest bits do, and those below are empty
};

/// What the samples of frames show.
struct SEvidence {
  uint32_t nUsedBits = 0; ///< bits that are set in any sample
  uint32_t nLargest = 0;

  /// Adds a frame.
  void Add(const void *pFrame, const SLayout &stLayout);
  /// Adds what other frames of the same camera show.
  void Add(const SEvidence &stOther);
  /// Bits at the low end of a 16-bit sample that are set in none; 16 when all samples are 0.
  uint32_t CountEmptyLowBits() const;
};

struct SDepth {
  uint32_t nBitDepth = 8; ///< 8 to 16
  EAlignment eAlignment = EAlignment::Right;
  QString strReason; ///< why, as a sentence, where it was guessed; else empty

  /// Bits that samples are shifted by to stand at the low end.
  uint32_t GetShift(const SLayout &stLayout) const
  {
    return eAlignment == EAlignment::Left ? 8 * stLayout.nBytesPerSample - nBitDepth : 0;
  }
};

/// What somebody stated about the samples.
struct SStated {
  uint32_t nBitDepth = 0; ///< 0: nobody did
  std::optional<EAlignment> eAlignment;
};

/// Decides by what is stated, and guesses the rest from the evidence.
/// \return why the evidence speaks against what is stated, or is none, as the end of a sentence about the file
Result<SDepth> DecideDepth(const SEvidence &stEvidence, const SLayout &stLayout, const SStated &stStated);

/// Bits that are set in any sample: faster than all the evidence.
uint32_t FindUsedBits(const void *pFrame, const SLayout &stLayout);

/// Shift all samples of 16 bits.
void ShiftRight(void *pFrame, const SLayout &stLayout, uint32_t nBits);
void ShiftLeft(void *pFrame, const SLayout &stLayout, uint32_t nBits);

} // namespace ffc::frames
