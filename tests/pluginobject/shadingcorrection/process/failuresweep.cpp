#include "tests/pluginobject/shadingcorrection/process/failuresweep.h"

#include <algorithm>
#include <map>

#include <gtest/gtest.h>

namespace ffc::test {

using genapi::SNodeAccess;

SMeaning PickMeaning(const std::vector<SMeaning> &listMeanings, const SFeatureAccess &stAccess)
{
  return listMeanings.at(std::min(stAccess.nLookUp, listMeanings.size() - 1));
}

std::vector<SFeatureAccess> ListAccesses(CProcessRig &rig, const std::function<int32_t()> &fnOperation)
{
  std::map<std::string, std::size_t> mapLookUps;
  std::vector<SFeatureAccess> listAccesses;
  rig.SetHook([&](const SNodeAccess &stAccess) {
    const std::string strNode = stAccess.strNode.substr(0, stAccess.strNode.find('.'));
    mapLookUps[strNode] += stAccess.eKind == SNodeAccess::EKind::LookUp ? 1U : 0U;
    listAccesses.push_back({strNode, mapLookUps[strNode] - 1});
  });
  EXPECT_EQ(fnOperation(), 0);
  rig.SetHook(nullptr);
  return listAccesses;
}

int32_t RunWithFailure(CProcessRig &rig, std::size_t nAccess, EAccessFailure eFailure,
                       const std::function<int32_t()> &fnOperation)
{
  CFailNthAccess fail(nAccess + 1, eFailure);
  rig.SetHook(std::ref(fail));
  const int32_t nStatus = fnOperation();
  rig.SetHook(nullptr);
  EXPECT_GT(fail.GetCount(), nAccess);
  return nStatus;
}

} // namespace ffc::test
