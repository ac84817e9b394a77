/// \file
/// A run of steps that stops at the first failing one.
#pragma once

#include <cstdint>

#include "pluginobject/statuscode.h"

/// Runs steps, callables that return a status, until one fails; keeps that status.
class CFeatureChain {
public:
  template <typename TStep>
  CFeatureChain &Then(TStep fnStep)
  {
    if (m_nStatus == PLUGIN_STATUS_SUCCESS) {
      m_nStatus = fnStep();
    }
    return *this;
  }

  /// Status of the last step performed.
  int32_t Status() const { return m_nStatus; }

private:
  int32_t m_nStatus = PLUGIN_STATUS_SUCCESS;
};
