// Floats that are kept in an integer: what is read can be written back.
#include <cmath>
#include <string>

#include <gtest/gtest.h>

#include "tests/camera/aravis/memorydevice.h"

using ffc::test::CMemoryDevice;
using ffc::test::MakeDescription;
using ffc::test::MakeRegister;

namespace {

struct SChain {
  const char *pName;
  const char *pNodes; ///< the feature is called Value; Raw is the integer at 0, Scale the one at 4
  uint32_t nMaxRaw;
};

/// Patterns of real cameras' descriptions.
const SChain CHAINS[] = {
  {"Direct", R"(<Float Name="Value"><pValue>Raw</pValue></Float>)", 3000},
  {"Linear",
   R"(<Converter Name="Value"><FormulaTo>FROM / 0.0359</FormulaTo><FormulaFrom>TO * 0.0359</FormulaFrom><pValue>Raw</pValue></Converter>)",
   1023},
  {"LinearWithinAFloat",
   R"(<Float Name="Value"><pValue>Conversion</pValue><Min>0</Min><Max>102.4</Max></Float>
<Converter Name="Conversion"><FormulaTo>FROM * 10</FormulaTo><FormulaFrom>TO / 10</FormulaFrom><pValue>Raw</pValue></Converter>)",
   1024},
  {"Logarithmic",
   R"(<Converter Name="Value"><FormulaTo>32 * EXP(FROM * LN(10) / 20)</FormulaTo><FormulaFrom>20 * LG(TO / 32)</FormulaFrom><pValue>Raw</pValue></Converter>)",
   512},
  {"RoundedByItsFormula",
   R"(<Converter Name="Value"><FormulaTo>FROM * 100 + 0.5</FormulaTo><FormulaFrom>TO / 100</FormulaFrom><pValue>Raw</pValue></Converter>)",
   2400},
  {"ConstantsAndExpressions",
   R"(<Converter Name="Value"><Constant Name="C">7.5</Constant><Expression Name="E">C * 2</Expression><FormulaTo>(FROM + C) * E</FormulaTo><FormulaFrom>TO / E - C</FormulaFrom><pValue>Raw</pValue></Converter>)",
   1023},
  {"SwissKnifeVariable",
   R"(<SwissKnife Name="Step"><pVariable Name="S">Scale</pVariable><Formula>S / 1000.0</Formula></SwissKnife>
<Converter Name="Value"><pVariable Name="STEP">Step</pVariable><FormulaTo>FROM / STEP</FormulaTo><FormulaFrom>TO * STEP</FormulaFrom><pValue>Raw</pValue></Converter>)",
   4095},
  {"TwoConverters",
   R"(<Converter Name="Value"><pVariable Name="S">Scale</pVariable><FormulaTo>FROM * 1000 / S</FormulaTo><FormulaFrom>TO * S / 1000</FormulaFrom><pValue>Inner</pValue></Converter>
<Float Name="Inner"><pValue>Second</pValue></Float>
<Converter Name="Second"><FormulaTo>FROM - 5</FormulaTo><FormulaFrom>TO + 5</FormulaFrom><pValue>RawToo</pValue></Converter>
<Integer Name="RawToo"><pValue>Raw</pValue></Integer>)",
   2047},
  {"Selected",
   R"(<Integer Name="Index"><Value>1</Value></Integer>
<Float Name="Value"><pIndex>Index</pIndex><pValueIndexed Index="1">Conversion</pValueIndexed><pValueDefault>Scale</pValueDefault></Float>
<Converter Name="Conversion"><FormulaTo>FROM / 0.7</FormulaTo><FormulaFrom>TO * 0.7</FormulaFrom><pValue>Raw</pValue></Converter>)",
   1023},
};

class FloatChain : public testing::TestWithParam<SChain> {
protected:
  FloatChain()
    : m_device(MakeDescription(std::string(GetParam().pNodes) + MakeRegister("Raw", 0) + MakeRegister("Scale", 4)))
  {
    m_device.Poke(4, 35);
  }

  GenApi::IFloat &Value() { return dynamic_cast<GenApi::IFloat &>(*m_device.GetMap()->GetNode("Value")); }

  CMemoryDevice m_device;
};

std::string GetChainName(const testing::TestParamInfo<SChain> &stInfo)
{
  return stInfo.param.pName;
}

} // namespace

TEST_P(FloatChain, AValueThatIsReadNarrowedAndWrittenBackLeavesEveryRawValueAsItWas)
{
  for (uint32_t nRaw = 1; nRaw <= GetParam().nMaxRaw; ++nRaw) {
    m_device.Poke(0, nRaw);
    const auto fValue = static_cast<float>(Value().GetValue());
    m_device.Poke(0, 0);
    Value().SetValue(static_cast<double>(fValue));
    ASSERT_EQ(m_device.Peek(0), nRaw) << fValue;
  }
}

TEST_P(FloatChain, AValueBetweenTwoRawValuesGoesToTheNearerOne)
{
  m_device.Poke(0, 100);
  const double dLow = Value().GetValue();
  m_device.Poke(0, 101);
  const double dHigh = Value().GetValue();
  Value().SetValue(dLow + 0.4 * (dHigh - dLow));
  EXPECT_EQ(m_device.Peek(0), 100U);
  Value().SetValue(dLow + 0.6 * (dHigh - dLow));
  EXPECT_EQ(m_device.Peek(0), 101U);
  EXPECT_NEAR(Value().GetValue(), dHigh, 1e-9 * std::fabs(dHigh));
}

INSTANTIATE_TEST_SUITE_P(Chains, FloatChain, testing::ValuesIn(CHAINS), GetChainName);

TEST(FloatChainEnd, AFormulaThatCannotBeEvaluatedWritesNothing)
{
  CMemoryDevice device(
    MakeDescription(R"(<Converter Name="Value"><FormulaTo>FROM * UNKNOWN</FormulaTo><FormulaFrom>TO</FormulaFrom>
<pValue>Raw</pValue></Converter>)" +
                    MakeRegister("Raw", 0)));
  device.Poke(0, 55);
  EXPECT_THROW(dynamic_cast<GenApi::IFloat &>(*device.GetMap()->GetNode("Value")).SetValue(3.0),
               GenICam::RuntimeException);
  EXPECT_EQ(device.Peek(0), 55U);
}

TEST(FloatChainEnd, WithoutAFormulaBackTheNearestRawValueIsWritten)
{
  for (const char *pBack : {"", "<FormulaFrom>TO * UNKNOWN</FormulaFrom>"}) {
    CMemoryDevice device(MakeDescription(R"(<Converter Name="Value"><FormulaTo>FROM * 10</FormulaTo>)" +
                                         std::string(pBack) + "<pValue>Raw</pValue></Converter>" +
                                         MakeRegister("Raw", 0)));
    auto &value = dynamic_cast<GenApi::IFloat &>(*device.GetMap()->GetNode("Value"));
    value.SetValue(2.26, false);
    EXPECT_EQ(device.Peek(0), 23U) << pBack;
    EXPECT_THROW(value.GetValue(), GenICam::RuntimeException) << pBack;
  }
}

TEST(FloatChainEnd, WithoutAFormulaThatGivesANumberNothingIsWritten)
{
  for (const std::string strTo : {"", "<FormulaTo>FROM * 0 / 0</FormulaTo>",
                                  "<pVariable Name=\"V\">Far</pVariable><FormulaTo>FROM * V</FormulaTo>",
                                  "<pVariable Name=\"V\">Text</pVariable><FormulaTo>FROM * V</FormulaTo>"}) {
    CMemoryDevice device(MakeDescription("<Converter Name=\"Value\">" + strTo + R"(<FormulaFrom>TO</FormulaFrom>
<pValue>Raw</pValue></Converter><String Name="Text"><Value>seven</Value></String>)" +
                                         MakeRegister("Raw", 0) + MakeRegister("Far", 0x5000)));
    device.Poke(0, 55);
    EXPECT_THROW(dynamic_cast<GenApi::IFloat &>(*device.GetMap()->GetNode("Value")).SetValue(3.0, false),
                 GenICam::RuntimeException)
      << strTo;
    EXPECT_EQ(device.Peek(0), 55U) << strTo;
  }
}

TEST(FloatChainEnd, ALimitThatWentThroughSinglePrecisionIsTheLimit)
{
  CMemoryDevice device(MakeDescription(R"(<Float Name="Value"><Value>1</Value><Min>-0.7</Min><Max>0.1</Max></Float>
<Float Name="Positive"><Value>1</Value><Min>0.7</Min></Float>)"));
  auto &value = dynamic_cast<GenApi::IFloat &>(*device.GetMap()->GetNode("Value"));
  auto &positive = dynamic_cast<GenApi::IFloat &>(*device.GetMap()->GetNode("Positive"));
  positive.SetValue(double(0.7F)); // a little less than 0.7
  EXPECT_EQ(positive.GetValue(), 0.7);
  for (const double dLimit : {value.GetMin(), value.GetMax()}) {
    value.SetValue(double(float(dLimit)));
    EXPECT_NEAR(value.GetValue(), dLimit, 1e-7);
    EXPECT_LE(value.GetMin(), value.GetValue());
    EXPECT_LE(value.GetValue(), value.GetMax());
  }
  EXPECT_THROW(value.SetValue(0.1001), GenICam::OutOfRangeException);
  EXPECT_THROW(value.SetValue(-0.7001), GenICam::OutOfRangeException);
}
