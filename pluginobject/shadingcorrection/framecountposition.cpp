#include "pluginobject/shadingcorrection/framecountposition.h"

#include <algorithm>
#include <iterator>

#include "genapi/framecounts.h"

namespace ffc::dialog {

using genapi::FRAME_COUNTS;

namespace {

constexpr int STEP = 4;
constexpr int LAST_POSITION = 16;

} // namespace

int FrameCountToPosition(int nFrameCount)
{
  const int *pFound = std::find(std::begin(FRAME_COUNTS), std::end(FRAME_COUNTS), nFrameCount);
  return pFound == std::end(FRAME_COUNTS) ? 0 : static_cast<int>(pFound - std::begin(FRAME_COUNTS)) * STEP;
}

int SnapPosition(int nPosition)
{
  return std::clamp(nPosition, 0, LAST_POSITION) / STEP * STEP;
}

int PositionToFrameCount(int nPosition)
{
  return FRAME_COUNTS[SnapPosition(nPosition) / STEP];
}

} // namespace ffc::dialog
