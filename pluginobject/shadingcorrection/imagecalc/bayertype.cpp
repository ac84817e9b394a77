#include "pluginobject/shadingcorrection/imagecalc/bayertype.h"

namespace ffc::imagecalc {

namespace {

// Indexed by Bayer type - 1.
constexpr SBayerLayout BAYER_LAYOUTS[] = {
  {BAYER_PLACE_TOP_LEFT, BAYER_PLACE_TOP_RIGHT, BAYER_PLACE_BOTTOM_LEFT, BAYER_PLACE_BOTTOM_RIGHT},
  {BAYER_PLACE_BOTTOM_LEFT, BAYER_PLACE_TOP_LEFT, BAYER_PLACE_BOTTOM_RIGHT, BAYER_PLACE_TOP_RIGHT},
  {BAYER_PLACE_TOP_RIGHT, BAYER_PLACE_TOP_LEFT, BAYER_PLACE_BOTTOM_RIGHT, BAYER_PLACE_BOTTOM_LEFT},
  {BAYER_PLACE_BOTTOM_RIGHT, BAYER_PLACE_TOP_RIGHT, BAYER_PLACE_BOTTOM_LEFT, BAYER_PLACE_TOP_LEFT},
};

} // namespace

const SBayerLayout *GetBayerLayout(int32_t nBayerType)
{
  return nBayerType >= BAYER_TYPE_RG && nBayerType <= BAYER_TYPE_BG ? &BAYER_LAYOUTS[nBayerType - BAYER_TYPE_RG]
                                                                    : nullptr;
}

} // namespace ffc::imagecalc
