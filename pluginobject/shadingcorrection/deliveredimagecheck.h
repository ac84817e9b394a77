/// \file
/// Whether the host delivers the image as the camera makes it.
#pragma once

#include <cstdint>

#include "pluginobject/featureaccess.h"

namespace ffc::dialog {

/// Compares pixel format, payload size, width and height of the delivered image with the camera's own. A
/// pair of which either feature is missing counts as equal.
/// \return 0; -1019 at the first pair that differs; or the code of a failing read
[[nodiscard]] int32_t CheckDeliveredImage(const pluginobject::CFeatureAccess &outputFeatures,
                                          const pluginobject::CFeatureAccess &deviceFeatures);

} // namespace ffc::dialog
