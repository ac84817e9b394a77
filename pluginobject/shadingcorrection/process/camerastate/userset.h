/// \file
/// The camera's user sets.
#pragma once

#include <cstdint>

#include "pluginobject/featureaccess.h"

/// Selects a user set and saves the camera's state into it. \return the code of the first failing step
int32_t SaveUserSet(const CFeatureAccess &features, const char *pUserSet);
/// Selects a user set and loads it.
int32_t LoadUserSet(const CFeatureAccess &features, const char *pUserSet);
