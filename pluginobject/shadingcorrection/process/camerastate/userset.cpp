#include "pluginobject/shadingcorrection/process/camerastate/userset.h"

#include "pluginobject/shadingcorrection/process/camerastate/savedsettings.h"
#include "pluginobject/shadingcorrection/process/steps.h"
#include "pluginobject/statuscode.h"

namespace ffc::process {

using pluginobject::CFeatureAccess;

namespace {

constexpr const char *USER_SET = "UserSet0";

int32_t Select(const CFeatureAccess &features, const std::string &strUserSet)
{
  return CSteps(features).Set("UserSetSelector", strUserSet).Status();
}

} // namespace

int32_t SaveUserSet(const CFeatureAccess &features, const char *pUserSet)
{
  return CSteps(features).Then(Select, features, pUserSet).Execute("UserSetSave").Status();
}

void CUserSetGuard::BeginAcquisition()
{
  *this = CUserSetGuard();
  m_bAcquiring = true;
}

int32_t CUserSetGuard::SaveSelector(const CFeatureAccess &features)
{
  return features.GetEnumFeature("UserSetSelector", m_strSelector);
}

int32_t CUserSetGuard::Run(const CFeatureAccess &features, const char *pUserSet, const char *pCommand)
{
  m_bSelectorMoved = true;
  return CSteps(features)
    .Then(Select, features, pUserSet)
    .Then([&] {
      m_strLastSelected = pUserSet;
      return features.ExecuteCommand(pCommand);
    })
    .Status();
}

int32_t CUserSetGuard::SwitchToDefault(const CFeatureAccess &features)
{
  if (m_bRestorePending) {
    return PLUGIN_STATUS_RESTORE_USER_PARAM_FAILED;
  }
  m_bAcquiring = true;
  const int32_t nStatus = Run(features, USER_SET, "UserSetSave");
  if (nStatus != PLUGIN_STATUS_SUCCESS) {
    return nStatus;
  }
  m_bStateSaved = true;
  return Run(features, "Default", "UserSetLoad");
}

void CUserSetGuard::Restore(const CFeatureAccess &features)
{
  if (!m_bAcquiring || m_bStateSaved) {
    const int32_t nStatus = TryTwice([&] { return Run(features, USER_SET, "UserSetLoad"); });
    m_bRestorePending = nStatus != PLUGIN_STATUS_SUCCESS && (m_bStateSaved || m_bRestorePending);
  }
  m_bAcquiring = false;
  m_bStateSaved = false;
  RestoreSelector(features);
}

int32_t CUserSetGuard::RefreshSelector(const CFeatureAccess &features)
{
  std::string strSelector;
  const int32_t nStatus = CSteps(features).Get("UserSetSelector", strSelector).Status();
  if (nStatus == PLUGIN_STATUS_SUCCESS && (!m_bSelectorMoved || strSelector != m_strLastSelected)) {
    m_strSelector = strSelector;
  }
  return nStatus;
}

void CUserSetGuard::RestoreSelector(const CFeatureAccess &features)
{
  if (m_bSelectorMoved && !m_strSelector.empty()) {
    m_bSelectorMoved = TryTwice([&] { return Select(features, m_strSelector); }) != PLUGIN_STATUS_SUCCESS;
  }
}

} // namespace ffc::process
