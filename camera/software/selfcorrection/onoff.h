/// \file
/// Features that are "Off" or "On".
#pragma once

#include <cstdint>
#include <string>

#include "genapi/softwarenodemap/softwarenodemap.h"

namespace ffc::camera {

constexpr int64_t SWITCH_OFF = 0;
constexpr int64_t SWITCH_ON = 1;

inline genapi::CSoftwareEnumeration &AddOnOff(genapi::CSoftwareNodeMap &map, const std::string &strName)
{
  return map.AddEnumeration(strName).Entry("Off", SWITCH_OFF).Entry("On", SWITCH_ON).Strict();
}

inline bool IsOn(const genapi::CSoftwareEnumeration &node)
{
  return node.Peek() == SWITCH_ON;
}

} // namespace ffc::camera
