/// \file
/// How even an image is: shading, corner-to-centre ratio, PRNU, DSNU.
#pragma once

#include <string>
#include <vector>

#include "quality/colorplane.h"
#include "quality/framestack.h"
#include "quality/nonuniformity.h"

namespace ffc::quality {

/// Figures of one colour plane, or of the whole image.
struct SUniformityFigures {
  std::string strName;        ///< the plane's
  double dShadingPercent = 0; ///< (max - min) / mean of the block means of the bright image
  double dCornerToCentre = 0; ///< mean of the four corner blocks / centre block, dark level taken off
  double dPrnuPercent = 0;    ///< of the mean signal
  double dDsnuDn = 0;         ///< DN
  double dMeanGray = 0;       ///< DN, of the bright frames
  double dClippedPercent = 0; ///< samples at the depth's maximum, over all bright frames
};

struct SUniformity {
  /// For a mosaic image: mean and clipped share over all pixels, each other figure the worst plane's (the
  /// corner ratio farthest from 1).
  SUniformityFigures stOverall;
  std::vector<SUniformityFigures> listPlanes; ///< one "Mono", or "R", "G", "B"
  /// By channel: "Mono", or "R", "Gr", "Gb", "B".
  std::vector<SNonuniformity> listPlain;    ///< without the standard's correction for uneven illumination
  std::vector<SNonuniformity> listHighPass; ///< with it; empty where the stacks were not prepared for it
  bool bWithoutDark = false;                ///< there were no dark frames: PRNU and DSNU are not known
};

/// Shading of the worst plane, in percent: (max - min) / mean of the block means. Needs no dark frames.
/// \return 0 for an empty stack
double MeasureShading(const CFrameStack &stBright, genapi::EColorLayout eLayout);

/// Each part the worst channel's. All 0 for an empty list.
struct SWorstParts {
  SNonuniformityParts stPrnu; ///< percent
  SNonuniformityParts stDsnu; ///< DN
};
SWorstParts TakeWorst(const std::vector<SNonuniformity> &listFigures);

/// Measures bright frames and dark frames of one size and depth.
///
/// Block means are those of whole blocks of 32 x 32 pixels, of the plane's own pixels in them; an image
/// smaller than a block is one block. PRNU and DSNU of the planes follow EMVA 1288 without its high-pass: with the
/// spatial variance s^2 of the mean image of L frames freed of the temporal noise left in it,
/// s^2 = s^2_measured - s^2_temporal / L,
///
///     DSNU = sqrt(s^2_dark),  PRNU = sqrt(s^2_bright - s^2_dark) / (mean_bright - mean_dark).
///
/// A single frame says nothing about temporal noise: none is then taken off.
/// Without dark frames the corner ratio keeps the dark level, and PRNU and DSNU are 0: see bWithoutDark.
/// \return all zero when there are no bright frames, or the two stacks differ in size or depth
SUniformity MeasureUniformity(const CFrameStack &stBright, const CFrameStack &stDark, genapi::EColorLayout eLayout);

} // namespace ffc::quality
