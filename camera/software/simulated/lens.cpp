#include "camera/software/simulated/lens.h"

#include <cmath>

namespace ffc::camera {

using genapi::EColor;

namespace {

constexpr float TILT_X = 0.03F; // how much brighter the right edge is than the centre
constexpr float TILT_Y = -0.02F;

// Reflectance of the test chart: a checkerboard of 12 x 9 fields whose light fields step from dark to
// light, above a band of vertical bars that get finer to the right.
float GetChartReflectance(float fU, float fV)
{
  if (fV > 0.85F) {
    const float fPhase = fU * fU * 60.0F;
    return fPhase - std::floor(fPhase) < 0.5F ? 0.9F : 0.1F;
  }
  const int nColumn = static_cast<int>(fU * 12.0F);
  const int nRow = static_cast<int>(fV * 9.0F);
  return (nColumn + nRow) % 2 == 0 ? 0.08F : 0.15F + 0.07F * static_cast<float>(nColumn);
}

} // namespace

CLens::CLens(uint32_t nSensorWidth, uint32_t nSensorHeight, double dCornerFalloff)
  : m_fCentreX(0.5F * static_cast<float>(nSensorWidth - 1)), m_fCentreY(0.5F * static_cast<float>(nSensorHeight - 1)),
    m_fScaleX(2.0F / static_cast<float>(nSensorWidth)), m_fScaleY(2.0F / static_cast<float>(nSensorHeight)),
    m_fTangentSquared(static_cast<float>(1.0 / std::sqrt(dCornerFalloff) - 1.0))
{
  const float fDiagonal = std::hypot(static_cast<float>(nSensorWidth), static_cast<float>(nSensorHeight));
  m_fAspectX = static_cast<float>(nSensorWidth) / fDiagonal;
  m_fAspectY = static_cast<float>(nSensorHeight) / fDiagonal;
}

float CLens::GetLight(const SScene &stScene, uint32_t nX, uint32_t nY) const
{
  if (stScene.bLensCapOn) {
    return 0.0F;
  }
  const float fFalloff = GetFalloff(nX, nY) * static_cast<float>(stScene.dIllumination);
  if (stScene.eScene == ISceneControl::EScene::Target) {
    return fFalloff;
  }
  return fFalloff *
         GetChartReflectance(0.5F * m_fScaleX * static_cast<float>(nX), 0.5F * m_fScaleY * static_cast<float>(nY));
}

float CLens::GetFalloff(uint32_t nX, uint32_t nY) const
{
  const float fX = (static_cast<float>(nX) - m_fCentreX) * m_fScaleX;
  const float fY = (static_cast<float>(nY) - m_fCentreY) * m_fScaleY;
  const float fRadiusSquared = fX * fX * m_fAspectX * m_fAspectX + fY * fY * m_fAspectY * m_fAspectY;
  const float fSecantSquared = 1.0F + fRadiusSquared * m_fTangentSquared; // 1 / cos^2
  return (1.0F + TILT_X * fX + TILT_Y * fY) / (fSecantSquared * fSecantSquared);
}

double GetLampColor(EColor eColor)
{
  static const double ALL_COLORS[] = {0.7, 1.0, 0.55};
  return ALL_COLORS[static_cast<int>(eColor)];
}

} // namespace ffc::camera
