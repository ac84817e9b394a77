#include "host/window/exposurehelper.h"

#include <algorithm>
#include <cmath>

#include "host/window/displaypicture.h"

namespace ffc::host {
namespace {

constexpr int FRAMES_UNDER_WAY = 3;
constexpr int MAX_STEPS = 12;
constexpr double SATURATED = 97; ///< percent: how much brighter it would be is not known
constexpr double BACK_OFF = 4;
constexpr double MAX_FACTOR = 16; ///< one step goes no further: what is nearly black says little
constexpr double DARK = 0.5;      ///< percent

} // namespace

void CExposureHelper::Begin()
{
  m_bRunning = true;
  m_nWait = 0;
  m_nSteps = 0;
}

CExposureHelper::SStep CExposureHelper::Look(const SFrameCopy &stFrame, double dExposure, double dMin, double dMax)
{
  if (m_nWait > 0) {
    --m_nWait;
    return {};
  }
  const genapi::SPixelFormat *pFormat = GetShownFormat(stFrame);
  SStep stStep;
  if (pFormat == nullptr) {
    stStep.eOutcome = EOutcome::NoFigures;
  } else {
    stStep = Judge(100.0 * FindGreyRange(stFrame).dWhite / pFormat->GetMaxValue(), dExposure, dMin, dMax);
  }
  if (stStep.eOutcome == EOutcome::Write) {
    m_nWait = FRAMES_UNDER_WAY;
    ++m_nSteps;
  } else {
    m_bRunning = false;
  }
  return stStep;
}

CExposureHelper::SStep CExposureHelper::Judge(double dLevel, double dExposure, double dMin, double dMax)
{
  if (std::abs(dLevel - TARGET_PERCENT) <= TOLERANCE) {
    return {EOutcome::Done, dExposure, dLevel};
  }
  const double dFactor = dLevel >= SATURATED ? 1 / BACK_OFF : TARGET_PERCENT / std::max(dLevel, DARK);
  const double dWanted = std::clamp(dExposure * std::min(dFactor, MAX_FACTOR), dMin, dMax);
  if (dLevel < TARGET_PERCENT && dExposure >= dMax) {
    return {EOutcome::TooDark, dExposure, dLevel};
  }
  if (dLevel > TARGET_PERCENT && dExposure <= dMin) {
    return {EOutcome::TooBright, dExposure, dLevel};
  }
  return {m_nSteps < MAX_STEPS ? EOutcome::Write : EOutcome::Unsteady, dWanted, dLevel};
}

} // namespace ffc::host
