/// \file
/// The uniformity figures straight from their definitions, with every frame at hand.
#pragma once

#include <vector>

#include "quality/uniformity.h"
#include "tests/quality/syntheticscene.h"

/// Figures of the pixels of one colour (0 red, 1 green, 2 blue), or of all pixels with -1.
ffc::quality::SUniformityFigures MeasureSlowly(const SSyntheticScene &stScene, const std::vector<TestFrame> &listBright,
                                               const std::vector<TestFrame> &listDark,
                                               ffc::genapi::EColorLayout eLayout, int nColor);
