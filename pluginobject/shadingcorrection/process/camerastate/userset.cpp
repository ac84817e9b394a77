#include "pluginobject/shadingcorrection/process/camerastate/userset.h"

#include "pluginobject/shadingcorrection/process/featurechain.h"

namespace {

int32_t SelectAndExecute(const CFeatureAccess &features, const char *pUserSet, const char *pCommand)
{
  return CFeatureChain()
    .Then([&] { return features.SetEnumFeature("UserSetSelector", pUserSet); })
    .Then([&] { return features.ExecuteCommand(pCommand); })
    .Status();
}

} // namespace

int32_t SaveUserSet(const CFeatureAccess &features, const char *pUserSet)
{
  return SelectAndExecute(features, pUserSet, "UserSetSave");
}

int32_t LoadUserSet(const CFeatureAccess &features, const char *pUserSet)
{
  return SelectAndExecute(features, pUserSet, "UserSetLoad");
}
