/// \file
/// Taking several frames, one request at a time.
#pragma once

#include <cstdint>

#include "pluginobject/shadingcorrection/process/acquisition/frameexchange.h"
#include "pluginobject/statuscode.h"

/// Requests and waits for nCount frames; each is handed to fnTakeFrame(nIndex), which returns a status,
/// before the next one is requested. Stops at the first failure and returns it: -1017 and -1009 come from
/// the wait. User-interface thread only.
/// \param nTimeout milliseconds to wait for each frame
template <typename TTakeFrame>
int32_t TakeFrames(CFrameExchange &exchange, uint32_t nTimeout, uint32_t nCount, TTakeFrame fnTakeFrame)
{
  exchange.BeginRequests();
  for (uint32_t nFrame = 0; nFrame < nCount; ++nFrame) {
    int32_t nStatus = exchange.WaitFrame(nTimeout);
    if (nStatus == PLUGIN_STATUS_SUCCESS) {
      nStatus = fnTakeFrame(nFrame);
    }
    if (nStatus != PLUGIN_STATUS_SUCCESS) {
      return nStatus;
    }
    if (nFrame + 1 < nCount) {
      exchange.RequestFrame();
    }
  }
  return PLUGIN_STATUS_SUCCESS;
}
