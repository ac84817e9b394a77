// What every operation has in common, and the access-mode query.
#include <functional>
#include <map>
#include <new>
#include <stdexcept>

#include "tests/pluginobject/featureaccessfixture.h"

using ffc::pluginobject::CFeatureAccess;

using FeatureAccess = CFeatureAccessTest;

namespace {

// One operation, called so that a failure which touches an output is noticed.
struct SOperation {
  const char *pOperation;
  const char *pFeature; // a feature of the right type
  std::function<int32_t(const CFeatureAccess &, const char *)> fnCall;
};

std::ostream &operator<<(std::ostream &out, const SOperation &stOperation)
{
  return out << stOperation.pOperation;
}

template <class TValue>
auto MakeGetter(int32_t (CFeatureAccess::*fnGet)(const char *, TValue &) const, TValue sentinel)
{
  return [fnGet, sentinel](const CFeatureAccess &features, const char *pName) {
    TValue value = sentinel;
    const int32_t nStatus = (features.*fnGet)(pName, value);
    EXPECT_EQ(value == sentinel, nStatus != SUCCESS);
    return nStatus;
  };
}

template <class TValue>
auto MakeSetter(int32_t (CFeatureAccess::*fnSet)(const char *, TValue) const, TValue value)
{
  return [fnSet, value](const CFeatureAccess &features, const char *pName) { return (features.*fnSet)(pName, value); };
}

int32_t ReadRegister(const CFeatureAccess &features, const char *pName)
{
  const ByteList listSentinel(REGISTER_LENGTH, 0xEE);
  ByteList listBytes = listSentinel;
  const int32_t nStatus = features.ReadRegisterFeature(pName, listBytes.data(), REGISTER_LENGTH);
  EXPECT_EQ(listBytes == listSentinel, nStatus != SUCCESS);
  return nStatus;
}

int32_t WriteRegister(const CFeatureAccess &features, const char *pName)
{
  const ByteList listBytes = {9, 8, 7, 6};
  return features.WriteRegisterFeature(pName, listBytes.data(), REGISTER_LENGTH);
}

// Every typed operation. The sentinels differ from the values of the fixture's features.
const std::vector<SOperation> &GetOperations()
{
  using Access = CFeatureAccess;
  static const std::vector<SOperation> OPERATIONS = {
    {"GetIntFeature", "Integer", MakeGetter<int64_t>(&Access::GetIntFeature, -99)},
    {"SetIntFeature", "Integer", MakeSetter<int64_t>(&Access::SetIntFeature, 20)},
    {"GetFloatFeature", "Float", MakeGetter<float>(&Access::GetFloatFeature, -99.0F)},
    {"SetFloatFeature", "Float", MakeSetter<float>(&Access::SetFloatFeature, 2.25F)},
    {"GetBoolFeature", "Boolean", MakeGetter<bool>(&Access::GetBoolFeature, false)},
    {"SetBoolFeature", "Boolean", MakeSetter<bool>(&Access::SetBoolFeature, false)},
    {"GetEnumFeature", "Enumeration", MakeGetter<std::string>(&Access::GetEnumFeature, "sentinel")},
    {"GetEnumIntFeature", "Enumeration", MakeGetter<int64_t>(&Access::GetEnumIntFeature, -99)},
    {"SetEnumFeature", "Enumeration", MakeSetter<std::string>(&Access::SetEnumFeature, "Second")},
    {"GetEnumEntries", "Enumeration", MakeGetter<std::vector<std::string>>(&Access::GetEnumEntries, {"sentinel"})},
    {"GetStringFeature", "String", MakeGetter<std::string>(&Access::GetStringFeature, "sentinel")},
    {"SetStringFeature", "String", MakeSetter<std::string>(&Access::SetStringFeature, "other")},
    {"GetRegisterLength", "Register", MakeGetter<int64_t>(&Access::GetRegisterLength, -99)},
    {"ReadRegisterFeature", "Register", ReadRegister},
    {"WriteRegisterFeature", "Register", WriteRegister},
    {"ExecuteCommand", "Command",
     [](const Access &features, const char *pName) { return features.ExecuteCommand(pName); }},
  };
  return OPERATIONS;
}

// Everything that a node map may throw.
const std::map<std::string, std::function<void()>> &GetThrowers()
{
  static const std::map<std::string, std::function<void()>> THROWERS = {
    {"generic", [] { throw GenICam::GenericException("text", __FILE__, __LINE__); }},
    {"bad alloc", [] { throw GenICam::BadAllocException("text", __FILE__, __LINE__); }},
    {"invalid argument", [] { throw GenICam::InvalidArgumentException("text", __FILE__, __LINE__); }},
    {"out of range", [] { throw GenICam::OutOfRangeException("text", __FILE__, __LINE__); }},
    {"property", [] { throw GenICam::PropertyException("text", __FILE__, __LINE__); }},
    {"runtime", [] { throw GenICam::RuntimeException("text", __FILE__, __LINE__); }},
    {"logical error", [] { throw GenICam::LogicalErrorException("text", __FILE__, __LINE__); }},
    {"access", [] { throw GenICam::AccessException("text", __FILE__, __LINE__); }},
    {"timeout", [] { throw GenICam::TimeoutException("text", __FILE__, __LINE__); }},
    {"dynamic cast", [] { throw GenICam::DynamicCastException("text", __FILE__, __LINE__); }},
    {"std::bad_alloc", [] { throw std::bad_alloc(); }},
    {"std::runtime_error", [] { throw std::runtime_error("text"); }},
    {"of no class", [] { throw 42; }},
  };
  return THROWERS;
}

// A node map that fails to look anything up.
class CThrowingNodeMap : public GenApi::INodeMap {
public:
  GenApi::INode *GetNode(const GenICam::gcstring &) const override
  {
    m_fnThrow();
    return nullptr;
  }
  void GetNodes(GenApi::NodeList_t &) const override {}

  std::function<void()> m_fnThrow;
};
} // namespace

TEST_F(FeatureAccess, EveryOperationSucceedsOnAFeatureOfItsType)
{
  for (const SOperation &stOperation : GetOperations()) {
    EXPECT_EQ(stOperation.fnCall(m_features, stOperation.pFeature), SUCCESS) << stOperation;
  }
}

TEST_F(FeatureAccess, AMissingFeatureIsAnInvalidParameter)
{
  for (const SOperation &stOperation : GetOperations()) {
    EXPECT_EQ(stOperation.fnCall(m_features, "Missing"), INVALID_PARAM) << stOperation;
    EXPECT_EQ(stOperation.fnCall(m_features, ""), INVALID_PARAM) << stOperation;
  }
  ExpectNothingChanged();
}

TEST_F(FeatureAccess, ANullNameIsAnInvalidParameter)
{
  for (const SOperation &stOperation : GetOperations()) {
    EXPECT_EQ(stOperation.fnCall(m_features, nullptr), INVALID_PARAM) << stOperation;
  }
  ExpectNothingChanged();
}

TEST_F(FeatureAccess, WithoutANodeMapThereIsNoFeature)
{
  const CFeatureAccess features(nullptr);
  EXPECT_FALSE(features.HasNodeMap());
  EXPECT_TRUE(m_features.HasNodeMap());
  for (const SOperation &stOperation : GetOperations()) {
    EXPECT_EQ(stOperation.fnCall(features, stOperation.pFeature), INVALID_PARAM) << stOperation;
  }
}

TEST_F(FeatureAccess, AFeatureOfAnotherTypeIsAFeatureError)
{
  for (const SOperation &stOperation : GetOperations()) {
    for (const char *pFeature : {"Integer", "Float", "Boolean", "Enumeration", "String", "Register", "Command"}) {
      if (std::string(pFeature) != stOperation.pFeature) {
        EXPECT_EQ(stOperation.fnCall(m_features, pFeature), FEATURE_ERROR) << stOperation << ' ' << pFeature;
      }
    }
  }
  ExpectNothingChanged();
}

TEST_F(FeatureAccess, WhateverAnAccessThrowsIsAFeatureError)
{
  for (const auto &[strKind, fnThrow] : GetThrowers()) {
    InterceptEverything(fnThrow);
    for (const SOperation &stOperation : GetOperations()) {
      EXPECT_EQ(stOperation.fnCall(m_features, stOperation.pFeature), FEATURE_ERROR) << stOperation << ' ' << strKind;
    }
  }
  ExpectNothingChanged();
}

TEST_F(FeatureAccess, WhateverTheLookUpThrowsIsAFeatureError)
{
  CThrowingNodeMap map;
  const CFeatureAccess features(&map);
  for (const auto &[strKind, fnThrow] : GetThrowers()) {
    map.m_fnThrow = fnThrow;
    for (const SOperation &stOperation : GetOperations()) {
      EXPECT_EQ(stOperation.fnCall(features, "Any"), FEATURE_ERROR) << stOperation << ' ' << strKind;
    }
    bool bAnswer = true;
    EXPECT_EQ(features.IsFeatureImplemented("Any", bAnswer), FEATURE_ERROR) << strKind;
    EXPECT_TRUE(bAnswer) << strKind;
  }
}

TEST_F(FeatureAccess, WhatACameraThrowsAtAWriteLeavesTheValue)
{
  for (const auto &stThrower : GetThrowers()) {
    const std::function<void()> &fnThrow = stThrower.second;
    m_integer.OnWrite([&](int64_t) { fnThrow(); });
    m_float.OnWrite([&](double) { fnThrow(); });
    m_string.OnWrite([&](const std::string &) { fnThrow(); });
    m_register.OnWrite([&](const ByteList &) { fnThrow(); });
    EXPECT_EQ(m_features.SetIntFeature("Integer", 20), FEATURE_ERROR);
    EXPECT_EQ(m_features.SetFloatFeature("Float", 2.0F), FEATURE_ERROR);
    EXPECT_EQ(m_features.SetStringFeature("String", "other"), FEATURE_ERROR);
    EXPECT_EQ(WriteRegister(m_features, "Register"), FEATURE_ERROR);
  }
  ExpectNothingChanged();
}

TEST_F(FeatureAccess, UnavailableFeaturesAreFeatureErrors)
{
  for (const GenApi::EAccessMode eMode : {GenApi::NI, GenApi::NA}) {
    SetAccess(eMode);
    for (const SOperation &stOperation : GetOperations()) {
      EXPECT_EQ(stOperation.fnCall(m_features, stOperation.pFeature), FEATURE_ERROR) << stOperation << ' ' << eMode;
    }
  }
  ExpectNothingChanged();
}

TEST_F(FeatureAccess, SettersVerifyTheAccessModeAndGettersDoNot)
{
  SetAccess(GenApi::RO);
  EXPECT_EQ(m_features.SetIntFeature("Integer", 20), FEATURE_ERROR);
  EXPECT_EQ(m_features.SetFloatFeature("Float", 2.0F), FEATURE_ERROR);
  EXPECT_EQ(m_features.SetBoolFeature("Boolean", false), FEATURE_ERROR);
  EXPECT_EQ(m_features.SetEnumFeature("Enumeration", "Second"), FEATURE_ERROR);
  EXPECT_EQ(m_features.SetStringFeature("String", "other"), FEATURE_ERROR);
  EXPECT_EQ(WriteRegister(m_features, "Register"), FEATURE_ERROR);
  EXPECT_EQ(m_features.ExecuteCommand("Command"), FEATURE_ERROR);
  ExpectNothingChanged();

  SetAccess(GenApi::WO);
  int64_t nValue = 0;
  EXPECT_EQ(m_features.GetIntFeature("Integer", nValue), SUCCESS);
  EXPECT_EQ(nValue, 10);
  float fValue = 0.0F;
  EXPECT_EQ(m_features.GetFloatFeature("Float", fValue), SUCCESS);
  EXPECT_EQ(fValue, 1.5F);
}

TEST_F(FeatureAccess, AFeatureIsImplementedUnlessItsModeSaysOtherwise)
{
  for (const GenApi::EAccessMode eMode : {GenApi::NI, GenApi::NA, GenApi::WO, GenApi::RO, GenApi::RW}) {
    m_integer.Access(eMode);
    bool bImplemented = eMode == GenApi::NI;
    EXPECT_EQ(m_features.IsFeatureImplemented("Integer", bImplemented), SUCCESS);
    EXPECT_EQ(bImplemented, eMode != GenApi::NI) << eMode;
    bool bWritable = false;
    EXPECT_EQ(m_features.IsFeatureWritable("Integer", bWritable), SUCCESS);
    EXPECT_EQ(bWritable, eMode == GenApi::WO || eMode == GenApi::RW) << eMode;
  }
}

TEST_F(FeatureAccess, AFeatureOfAnyTypeCanBeImplemented)
{
  for (const char *pFeature : {"Integer", "Float", "Boolean", "Enumeration", "String", "Register", "Command"}) {
    bool bImplemented = false;
    EXPECT_EQ(m_features.IsFeatureImplemented(pFeature, bImplemented), SUCCESS);
    EXPECT_TRUE(bImplemented) << pFeature;
  }
}

TEST_F(FeatureAccess, AskingForAMissingFeatureIsNoFailure)
{
  for (const CFeatureAccess &features : {m_features, CFeatureAccess(nullptr)}) {
    bool bAnswer = true;
    EXPECT_EQ(features.IsFeatureImplemented("Missing", bAnswer), SUCCESS);
    EXPECT_FALSE(bAnswer);
    bAnswer = true;
    EXPECT_EQ(features.IsFeatureWritable("Missing", bAnswer), SUCCESS);
    EXPECT_FALSE(bAnswer);
  }
}

TEST_F(FeatureAccess, AskingForANullNameIsAFailureAndAnswersNo)
{
  bool bAnswer = true;
  EXPECT_EQ(m_features.IsFeatureImplemented(nullptr, bAnswer), INVALID_PARAM);
  EXPECT_FALSE(bAnswer);
  bAnswer = true;
  EXPECT_EQ(m_features.IsFeatureWritable(nullptr, bAnswer), INVALID_PARAM);
  EXPECT_FALSE(bAnswer);
}

TEST_F(FeatureAccess, AskingWhatThrowsLeavesTheAnswerAsItWas)
{
  for (const auto &[strKind, fnThrow] : GetThrowers()) {
    InterceptEverything(fnThrow);
    for (const bool bBefore : {true, false}) {
      bool bAnswer = bBefore;
      EXPECT_EQ(m_features.IsFeatureImplemented("Integer", bAnswer), FEATURE_ERROR) << strKind;
      EXPECT_EQ(bAnswer, bBefore) << strKind;
      EXPECT_EQ(m_features.IsFeatureWritable("Integer", bAnswer), FEATURE_ERROR) << strKind;
      EXPECT_EQ(bAnswer, bBefore) << strKind;
    }
  }
}
