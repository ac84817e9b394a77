/// \file
/// A run of steps that stops at the first failing one.
#pragma once

#include <cstdint>
#include <new>

#include "pluginobject/statuscode.h"

/// Runs steps, callables that return a status, until one fails; keeps that status. A step that runs out of memory
/// has failed with -2.
class CFeatureChain {
public:
  template <typename TStep>
  CFeatureChain &Then(TStep fnStep)
  {
    if (m_nStatus == PLUGIN_STATUS_SUCCESS) {
      try {
        m_nStatus = fnStep();
      } catch (const std::bad_alloc &) {
        m_nStatus = PLUGIN_STATUS_OUT_OF_MEMORY;
      }
    }
    return *this;
  }

  /// Status of the last step performed.
  int32_t Status() const { return m_nStatus; }

private:
  int32_t m_nStatus = PLUGIN_STATUS_SUCCESS;
};
