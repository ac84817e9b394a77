/// \file
/// What would make a reference better: frames, bits, or neither.
#pragma once

#include <QStringList>

#include "camera/correctionmode.h"
#include "quality/framecountadvice.h"

namespace ffc::quality {

/// What is known of a reference besides its frames' noise.
struct SReferenceFacts {
  uint32_t nBitDepth = 0; ///< of the frames; 0 when not known
  int nFrames = 0;        ///< bright frames that it was made of; 0 when not known
  bool bWeighted = false; ///< instead of averaged
  camera::ECorrectionMode eMode = camera::ECorrectionMode::None;
  uint32_t nBlockSize = 0; ///< side of a block of the camera's coefficients, pixels
};

/// What rounding to whole numbers leaves in a corrected image, in percent of its mean: 1 / root 12 DN.
double GetRoundingPercent(const SNoise &stNoise);

/// Whether rounding leaves more than the reference's noise, so that more frames would not help.
bool DoBitsSetTheFloor(const SNoise &stNoise, const SReferenceFacts &stFacts);

/// Sentences, in the language of the program.
QStringList AdviseReference(const std::vector<SNoise> &listNoise, const SReferenceFacts &stFacts);

} // namespace ffc::quality
