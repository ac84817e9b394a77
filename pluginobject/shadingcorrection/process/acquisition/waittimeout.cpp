#include "pluginobject/shadingcorrection/process/acquisition/waittimeout.h"

uint32_t GetFrameTimeout(float fExposureTime)
{
  constexpr uint32_t LONGEST = 0xFFFFFFFE;
  const float fTimeout = fExposureTime / 1000.0F + 1000.0F;
  if (!(fTimeout > 0.0F)) {
    return 0;
  }
  return fTimeout >= static_cast<float>(LONGEST) ? LONGEST : static_cast<uint32_t>(fTimeout);
}
