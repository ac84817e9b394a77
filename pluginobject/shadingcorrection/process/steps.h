/// \file
/// Fallible steps that read as lines, their statuses, and what happens at the end of a scope.
#pragma once

#include <cstdint>
#include <functional>
#include <new>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "pluginobject/featureaccess.h"
#include "pluginobject/shadingcorrection/imagecalc/calcstatus.h"
#include "pluginobject/statuscode.h"

namespace ffc::process {

/// A status of the image computations (imagecalc/calcstatus.h), or of Ombrix, as one of the plug-in.
/// \return 0 for 0; -3 for -101, -102 and -106; -2 for -103; -1011 for -105; -1 for anything else
[[nodiscard]] constexpr int32_t MapCalcStatus(int32_t nCalcStatus)
{
  switch (nCalcStatus) {
  case imagecalc::IMAGECALC_STATUS_SUCCESS: return PLUGIN_STATUS_SUCCESS;
  case imagecalc::IMAGECALC_STATUS_INVALID_ARGUMENT:
  case imagecalc::IMAGECALC_STATUS_OUT_OF_RANGE:
  case imagecalc::IMAGECALC_STATUS_SIZE_MISMATCH: return PLUGIN_STATUS_INVALID_PARAM;
  case imagecalc::IMAGECALC_STATUS_OUT_OF_MEMORY: return PLUGIN_STATUS_OUT_OF_MEMORY;
  case imagecalc::IMAGECALC_STATUS_NOT_SUPPORTED: return PLUGIN_STATUS_CAMERA_NOT_SUPPORTED;
  default: return PLUGIN_STATUS_UNKNOWN_ERROR;
  }
}

/// Runs steps until one fails, and keeps that one's status:
///
///     return CSteps(features)
///       .Get("ExposureTime", fExposureTime)
///       .Set("UserSetSelector", "UserSet0")
///       .Execute("UserSetSave")
///       .Then(ReadWidth, features, stFormat)
///       .Then(&CExample::Prepare, this)
///       .Status();
///
/// A step that runs out of memory has failed with -2; other exceptions pass. Each access has the statuses of
/// pluginobject::CFeatureAccess. On one thread.
class CSteps {
public:
  /// \param features outlive this object
  explicit CSteps(const pluginobject::CFeatureAccess &features) : m_features(features) {}

  // Reading; the value is written on success only. A string is the current entry of an enumeration.
  CSteps &Get(const char *pName, int64_t &nValue)
  {
    return Then(&pluginobject::CFeatureAccess::GetIntFeature, m_features, pName, nValue);
  }
  CSteps &Get(const char *pName, float &fValue)
  {
    return Then(&pluginobject::CFeatureAccess::GetFloatFeature, m_features, pName, fValue);
  }
  CSteps &Get(const char *pName, std::string &strEntry)
  {
    return Then(&pluginobject::CFeatureAccess::GetEnumFeature, m_features, pName, strEntry);
  }
  CSteps &GetEntries(const char *pName, std::vector<std::string> &listEntries)
  {
    return Then(&pluginobject::CFeatureAccess::GetEnumEntries, m_features, pName, listEntries);
  }

  // Writing. A string is an entry of an enumeration.
  CSteps &Set(const char *pName, int64_t nValue)
  {
    return Then(&pluginobject::CFeatureAccess::SetIntFeature, m_features, pName, nValue);
  }
  CSteps &Set(const char *pName, float fValue)
  {
    return Then(&pluginobject::CFeatureAccess::SetFloatFeature, m_features, pName, fValue);
  }
  CSteps &Set(const char *pName, std::string_view strEntry)
  {
    // The copy is made within the step: it may find no memory.
    return Then([&] { return m_features.SetEnumFeature(pName, std::string(strEntry)); });
  }

  CSteps &Execute(const char *pName) { return Then(&pluginobject::CFeatureAccess::ExecuteCommand, m_features, pName); }

  /// A setting that is saved and written as one, such as those in camerastate/savedsettings.h.
  template <class TSetting>
  CSteps &Save(TSetting &setting)
  {
    return Then([&] { return setting.Save(m_features); });
  }
  template <class TSetting>
  CSteps &Write(TSetting &setting)
  {
    return Then([&] { return setting.Write(m_features); });
  }

  /// Any other step: a function, or a member function and its object, with its arguments, which are read when the
  /// step's turn comes. It answers a status, or nothing when it cannot fail.
  template <class TStep, class... TArguments>
  CSteps &Then(TStep &&fnStep, TArguments &&...arguments)
  {
    using TResult = std::invoke_result_t<TStep, TArguments...>;
    static_assert(std::is_void_v<TResult> || std::is_same_v<TResult, int32_t>, "A step answers a status, or nothing.");
    if (m_nStatus != PLUGIN_STATUS_SUCCESS) {
      return *this;
    }
    try {
      if constexpr (std::is_void_v<TResult>) {
        std::invoke(std::forward<TStep>(fnStep), std::forward<TArguments>(arguments)...);
      } else {
        m_nStatus = std::invoke(std::forward<TStep>(fnStep), std::forward<TArguments>(arguments)...);
      }
    } catch (const std::bad_alloc &) {
      m_nStatus = PLUGIN_STATUS_OUT_OF_MEMORY;
    }
    return *this;
  }

  /// Status of the last step performed; 0 without one.
  [[nodiscard]] int32_t Status() const { return m_nStatus; }

private:
  const pluginobject::CFeatureAccess &m_features;
  int32_t m_nStatus = PLUGIN_STATUS_SUCCESS;
};

/// Runs its callable when it is destroyed. What that throws ends there: the path out of the scope may be an
/// exception already.
template <class TAction>
class [[nodiscard]] CScopeGuard {
public:
  explicit CScopeGuard(TAction fnAction) : m_fnAction(std::move(fnAction)) {}
  ~CScopeGuard()
  {
    try {
      m_fnAction();
    } catch (...) { // NOLINT(bugprone-empty-catch): nobody is left to tell
    }
  }
  CScopeGuard(const CScopeGuard &) = delete;
  CScopeGuard &operator=(const CScopeGuard &) = delete;

private:
  TAction m_fnAction;
};

} // namespace ffc::process
