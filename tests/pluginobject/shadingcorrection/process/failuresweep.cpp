#include "tests/pluginobject/shadingcorrection/process/failuresweep.h"

#include <algorithm>
#include <map>

#include <gtest/gtest.h>

namespace ffc::test {

using genapi::SNodeAccess;

namespace {

// In order.
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

} // namespace

SMeaning PickMeaning(const std::vector<SMeaning> &listMeanings, const SFeatureAccess &stAccess)
{
  return listMeanings.at(std::min(stAccess.nLookUp, listMeanings.size() - 1));
}

void SweepAccesses(CProcessRig &rig, std::size_t nLeast, const std::function<int32_t()> &fnOperation,
                   const std::function<void(std::size_t nAccess, const SFeatureAccess &stAccess)> &fnFail)
{
  const std::vector<SFeatureAccess> listAccesses = ListAccesses(rig, fnOperation);
  EXPECT_GE(listAccesses.size(), nLeast);
  for (std::size_t i = 0; i < listAccesses.size(); ++i) {
    SCOPED_TRACE("access " + std::to_string(i) + ": " + listAccesses[i].Describe());
    fnFail(i, listAccesses[i]);
  }
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
