#include "camera/software/selfcorrection/sensorfeatures.h"

#include <algorithm>
#include <vector>

#include "camera/software/selfcorrection/onoff.h"

namespace ffc::camera {

namespace {

struct SLimit {
  const char *pName;
  double dWidestMax;
};
constexpr SLimit ALL_LIMITS[] = {{"ExposureTime", 10000000.0}, {"Gain", 36.0}, {"BlackLevel", 25.0}};

} // namespace

CSensorFeatures::CSensorFeatures(genapi::CSoftwareNodeMap &deviceMap)
{
  m_pFixedPattern = &AddOnOff(deviceMap, "FixedPatternNoiseCorrectMode");
  m_pDeadPixel = &AddOnOff(deviceMap, "DeadPixelCorrect");
  m_pDigitalShift = &deviceMap.AddInteger("DigitalShift").Range(0, 4).Strict();
  m_pRemoveLimit = &AddOnOff(deviceMap, "RemoveParameterLimit");
  std::vector<std::function<void()>> listLimiters;
  for (const SLimit &stLimit : ALL_LIMITS) {
    genapi::CSoftwareFloat &node = *deviceMap.Find<genapi::CSoftwareFloat>(stLimit.pName);
    const double dMin = node.GetMin();
    const double dMax = node.GetMax();
    node.Range(dMin, [this, dMax, dWidest = stLimit.dWidestMax] { return IsOn(*m_pRemoveLimit) ? dWidest : dMax; });
    listLimiters.emplace_back([&node, dMax] { node.Poke(std::min(node.Peek(), dMax)); });
  }
  m_pRemoveLimit->OnWrite([listLimiters](int64_t nValue) {
    if (nValue == SWITCH_OFF) {
      for (const auto &fnLimit : listLimiters) {
        fnLimit();
      }
    }
  });
}

void CSensorFeatures::CompleteSettings(SCameraSettings &stSettings) const
{
  stSettings.bFixedPatternCorrection = IsOn(*m_pFixedPattern);
  stSettings.bDeadPixelCorrection = IsOn(*m_pDeadPixel);
}

} // namespace ffc::camera
