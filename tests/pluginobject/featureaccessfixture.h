/// \file
/// A node map with one feature of each kind, and the statuses that accesses to it give.
#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include <gtest/gtest.h>

#include "genapi/softwarenodemap/softwarenodemap.h"
#include "pluginobject/featureaccess.h"

using ByteList = std::vector<uint8_t>;

constexpr int32_t SUCCESS = 0;
constexpr int32_t INVALID_PARAM = -3;
constexpr int32_t FEATURE_ERROR = -1002;
constexpr int32_t ROI_MISMATCH = -1015;
constexpr int64_t REGISTER_LENGTH = 4;

class CFeatureAccessTest : public testing::Test {
protected:
  CFeatureAccessTest()
  {
    m_integer.Range(0, 100).Increment(10);
    m_float.Range(0.0, 10.0);
    m_enumeration.Entry("First", 1).Entry("Second", 2).Entry("Third", 3);
    m_string.MaxLength(8);
    m_register.Length(REGISTER_LENGTH).Poke({1, 2, 3, 4});
    m_command.OnExecute([this] { ++m_nExecuted; });
  }

  /// Calls fnDo before every use of every node.
  void InterceptEverything(const std::function<void()> &fnDo)
  {
    const auto access = [fnDo] {
      fnDo();
      return GenApi::RW;
    };
    m_integer.Access(access);
    m_float.Access(access);
    m_boolean.Access(access);
    m_enumeration.Access(access);
    m_string.Access(access);
    m_register.Access(access);
    m_command.Access(access);
  }

  void SetAccess(GenApi::EAccessMode eMode)
  {
    InterceptEverything([] {});
    m_integer.Access(eMode);
    m_float.Access(eMode);
    m_boolean.Access(eMode);
    m_enumeration.Access(eMode);
    m_string.Access(eMode);
    m_register.Access(eMode);
    m_command.Access(eMode);
  }

  void ExpectNothingChanged()
  {
    EXPECT_EQ(m_integer.Peek(), 10);
    EXPECT_EQ(m_float.Peek(), 1.5);
    EXPECT_TRUE(m_boolean.Peek());
    EXPECT_EQ(m_enumeration.Peek(), 1);
    EXPECT_EQ(m_string.Peek(), "text");
    EXPECT_EQ(m_register.Peek(), (ByteList{1, 2, 3, 4}));
    EXPECT_EQ(m_nExecuted, 0);
  }

  ffc::genapi::CSoftwareNodeMap m_map;
  ffc::genapi::CSoftwareInteger &m_integer = m_map.AddInteger("Integer", 10);
  ffc::genapi::CSoftwareFloat &m_float = m_map.AddFloat("Float", 1.5);
  ffc::genapi::CSoftwareBoolean &m_boolean = m_map.AddBoolean("Boolean", true);
  ffc::genapi::CSoftwareEnumeration &m_enumeration = m_map.AddEnumeration("Enumeration");
  ffc::genapi::CSoftwareString &m_string = m_map.AddString("String", "text");
  ffc::genapi::CSoftwareRegister &m_register = m_map.AddRegister("Register");
  ffc::genapi::CSoftwareCommand &m_command = m_map.AddCommand("Command");
  int m_nExecuted = 0;
  ffc::pluginobject::CFeatureAccess m_features{&m_map};
};
