/// \file
/// Whether bright frames can make a flat.
#pragma once

#include "tools/ffc/referencestack.h"

namespace ffc::tool {

/// Warns of clipped pixels, structure and unsteady light.
/// \param firstBright the first frame, right-aligned
/// \return a refusal of what cannot be a bright field, unless --force
std::optional<STrouble> JudgeLight(const SOptions &stOptions, const CReferenceStack &bright,
                                   const frames::SDepth &stDepth, const process::CFrameBuffer &firstBright,
                                   bool bMosaic, CReport &report);

} // namespace ffc::tool
