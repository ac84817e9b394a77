/// \file
/// Failing each access of an operation in turn.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "pluginobject/statuscode.h"
#include "tests/pluginobject/shadingcorrection/process/processrig.h"
#include "tests/support/failnthaccess.h"

namespace ffc::test {

/// An access that belongs to the n-th look-up of a feature, counted from 0.
struct SFeatureAccess {
  std::string strNode;
  std::size_t nLookUp = 0;

  std::string Describe() const { return strNode + " for the " + std::to_string(nLookUp + 1) + ". time"; }
};

/// What the failure of an access means.
struct SMeaning {
  int32_t nStatus;
  bool bRestoring; ///< its failure leaves something as the operation set it
};

constexpr SMeaning IGNORED = {0, false};
constexpr SMeaning FAILS = {PLUGIN_STATUS_FEATURE_ERROR, false};
constexpr SMeaning BALANCE_FAILS = {PLUGIN_STATUS_PIXEL_FORMAT_NOT_IMPLEMENTED, false};
constexpr SMeaning RESTORES = {0, true};

/// By look-up; the last one stands for all that follow.
SMeaning PickMeaning(const std::vector<SMeaning> &listMeanings, const SFeatureAccess &stAccess);

/// Runs an operation, which has to succeed, and has each of its accesses, at least nLeast, fail in turn: fnFail(n,
/// stAccess) is to run the operation with its n-th access failing, counted from 0.
void SweepAccesses(CProcessRig &rig, std::size_t nLeast, const std::function<int32_t()> &fnOperation,
                   const std::function<void(std::size_t nAccess, const SFeatureAccess &stAccess)> &fnFail);

/// Runs an operation whose nAccess-th access, counted from 0, fails.
int32_t RunWithFailure(CProcessRig &rig, std::size_t nAccess, EAccessFailure eFailure,
                       const std::function<int32_t()> &fnOperation);

} // namespace ffc::test
