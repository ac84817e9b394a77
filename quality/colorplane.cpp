#include "quality/colorplane.h"

namespace ffc::quality {

using genapi::EColor;
using genapi::EColorLayout;
using genapi::GetPixelColor;

SColorPlane GetWholeImagePlane()
{
  return {"Mono", {true, true, true, true}};
}

std::vector<SColorPlane> GetColorPlanes(EColorLayout eLayout)
{
  if (eLayout == EColorLayout::Mono) {
    return {GetWholeImagePlane()};
  }
  std::vector<SColorPlane> listPlanes{{"R", {}}, {"G", {}}, {"B", {}}};
  for (uint32_t nSite = 0; nSite < CELL_SITES; ++nSite) {
    const EColor eColor = GetPixelColor(eLayout, nSite & 1U, nSite >> 1U);
    listPlanes[static_cast<std::size_t>(eColor)].abSites[nSite] = true;
  }
  return listPlanes;
}

} // namespace ffc::quality
