/// \file
/// Features of a camera as texts.
#pragma once

#include <string>

#include <GenApi/GenApi.h>

namespace ffc::host {

/// Whether a camera that corrects itself does so: "On" or "Off".
constexpr const char *CORRECTION_FEATURE = "FlatFieldCorrection";

/// The value as a text; why it cannot be told when the node throws.
std::string ReadText(GenApi::IValue &value);

/// The value of a feature; empty when there is no such feature.
std::string ReadFeature(GenApi::INodeMap &nodeMap, const char *pFeature);

} // namespace ffc::host
