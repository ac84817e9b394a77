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

std::vector<SChannel> GetChannels(EColorLayout eLayout)
{
  if (eLayout == EColorLayout::Mono) {
    return {{GetWholeImagePlane(), 0, 0, 1}};
  }
  std::vector<SChannel> listChannels;
  for (const char *pName : {"R", "Gr", "Gb", "B"}) {
    for (uint32_t nSite = 0; nSite < CELL_SITES; ++nSite) {
      const uint32_t nColumn = nSite & 1U;
      const uint32_t nLine = nSite >> 1U;
      const EColor eColor = GetPixelColor(eLayout, nColumn, nLine);
      const bool bBesideRed = GetPixelColor(eLayout, 1 - nColumn, nLine) == EColor::Red;
      const std::string strName = eColor == EColor::Red ? "R" : eColor == EColor::Blue ? "B" : bBesideRed ? "Gr" : "Gb";
      if (strName == pName) {
        SChannel stChannel{{strName, {}}, nColumn, nLine, 2};
        stChannel.stPlane.abSites[nSite] = true;
        listChannels.push_back(stChannel);
      }
    }
  }
  return listChannels;
}

} // namespace ffc::quality
