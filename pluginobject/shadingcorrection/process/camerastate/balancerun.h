/// \file
/// Letting a camera finish a one-shot white balance.
#pragma once

#include <cstdint>
#include <functional>

#include "pluginobject/featureaccess.h"
#include "pluginobject/shadingcorrection/process/acquisition/frameexchange.h"

/// Starts the stream and takes up to 5 frames, until BalanceWhiteAuto reads "Off" or a frame fails to come.
/// A balance that does not finish is no error. No request stays pending. User-interface thread only.
/// \param nTimeout milliseconds to wait for each frame
void RunWhiteBalance(const CFeatureAccess &features, CFrameExchange &exchange, uint32_t nTimeout,
                     const std::function<void()> &fnStartStream);
