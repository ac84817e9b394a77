// What the fuzz target has been fed with, or should have been, again.
#include "tests/fuzz/fuzztargets.h"

#include <fstream>
#include <iterator>
#include <random>
#include <string>

#include <gtest/gtest.h>

#include "tests/camera/aravis/memorydevice.h"

using ffc::test::MakeDescription;

namespace {

void Feed(const std::string &strBytes)
{
  FuzzAravisNodeMap(reinterpret_cast<const uint8_t *>(strBytes.data()), strBytes.size());
}

std::string ReadDescription()
{
  std::ifstream file(GIGE_CAMERA_XML, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

/// One of the things that go wrong with a text: a byte, a piece left out, a piece said twice, a number.
std::string Mutate(std::string strText, std::mt19937 &random)
{
  const auto fnBelow = [&](std::size_t nLimit) { return random() % nLimit; };
  const std::size_t nAt = fnBelow(strText.size());
  const std::size_t nLength = 1 + fnBelow(60);
  switch (fnBelow(5)) {
  case 0: strText[nAt] = static_cast<char>(1 + fnBelow(255)); break;
  case 1: strText.erase(nAt, nLength); break;
  case 2: strText.insert(fnBelow(strText.size()), strText.substr(nAt, nLength)); break;
  default: {
    const char *const NUMBERS[] = {"0", "-1", "0xFFFFFFFFFFFFFFFF", "9223372036854775808", "1e400", "4294967296"};
    const std::size_t nDigit = strText.find_first_of("0123456789", nAt);
    if (nDigit != std::string::npos) {
      const std::size_t nEnd = strText.find_first_not_of("0123456789xABCDEF", nDigit);
      strText.replace(nDigit, nEnd - nDigit, NUMBERS[fnBelow(6)]);
    }
  }
  }
  return strText;
}

} // namespace

TEST(FuzzAravisNodeMap, AnythingButADescriptionIsTaken)
{
  for (const std::string &strBytes : {std::string(), std::string(1, '\0'), std::string("<"), std::string("<a/>"),
                                      std::string("<RegisterDescription/>"), std::string(70000, 'x')}) {
    Feed(strBytes);
  }
}

TEST(FuzzAravisNodeMap, HostileNodesAreTaken)
{
  const char *const NODES[] = {
    R"(<Integer Name="A"><pValue>A</pValue></Integer>)",
    R"(<Integer Name="A"><pIsAvailable>B</pIsAvailable></Integer><Integer Name="B"><pIsAvailable>A</pIsAvailable></Integer>)",
    R"(<IntReg Name="A"><pAddress>A</pAddress><Length>4</Length><pPort>Device</pPort></IntReg>)",
    R"(<IntReg Name="A"><Address>0</Address><Length>0</Length><AccessMode>RW</AccessMode><pPort>Device</pPort></IntReg>)",
    R"(<IntReg Name="A"><Address>0</Address><Length>-1</Length><AccessMode>RW</AccessMode><pPort>Device</pPort></IntReg>)",
    R"(<Register Name="A"><Address>0</Address><pLength>A</pLength><AccessMode>RW</AccessMode><pPort>Device</pPort></Register>)",
    R"(<StringReg Name="A"><Address>0</Address><Length>1</Length><AccessMode>RW</AccessMode><pPort>A</pPort></StringReg>)",
    R"(<FloatReg Name="A"><Address>0</Address><Length>3</Length><AccessMode>RW</AccessMode><pPort>Device</pPort></FloatReg>)",
    R"(<MaskedIntReg Name="A"><Address>0</Address><Length>4</Length><LSB>90</LSB><MSB>-3</MSB><AccessMode>RW</AccessMode><pPort>Device</pPort></MaskedIntReg>)",
    R"(<Enumeration Name="A"><EnumEntry Name="B"/><EnumEntry><Value>1</Value></EnumEntry><pValue>A</pValue></Enumeration>)",
    R"(<Enumeration Name="A"><EnumEntry Name="B"><Value>1</Value></EnumEntry></Enumeration>)",
    R"(<Command Name="A"/><Boolean Name="B"/><Float Name="C"/><Converter Name="D"/><String Name="E"/><Category Name="F"/>)",
    R"(<IntSwissKnife Name="A"><Formula>1/0</Formula></IntSwissKnife><SwissKnife Name="B"><Formula>((((</Formula></SwissKnife>)",
    R"(<IntSwissKnife Name="A"><Formula>1 %% 0 ** 5</Formula></IntSwissKnife>)",
    R"(<Integer Name="A"><Value>1</Value><Inc>0</Inc><Min>5</Min><Max>-5</Max></Integer>)",
    R"(<Float Name="A"><Value>1</Value><Inc>-1</Inc><Min>5</Min><Max>-5</Max></Float>)",
    R"(<Integer Name=""><Value>1</Value></Integer><Integer><Value>1</Value></Integer>)",
    R"(<StructReg><Address>0</Address><StructEntry Name="A"><Bit>70</Bit></StructEntry></StructReg>)",
  };
  for (const char *pNodes : NODES) {
    SCOPED_TRACE(pNodes);
    Feed(MakeDescription(pNodes));
    Feed(MakeDescription(pNodes) + std::string(200, '\xFF'));
  }
}

TEST(FuzzAravisNodeMap, ADamagedDescriptionOfACameraIsTaken)
{
  const std::string strDescription = ReadDescription();
  ASSERT_FALSE(strDescription.empty());
  std::mt19937 random(1); // the same every time
  for (int nRun = 0; nRun < 150; ++nRun) {
    SCOPED_TRACE(nRun);
    std::string strDamaged = strDescription;
    for (int nMutation = 0; nMutation <= nRun % 4; ++nMutation) {
      strDamaged = Mutate(strDamaged, random);
    }
    strDamaged += '\0';
    for (int nByte = 0; nByte < 300; ++nByte) {
      strDamaged += static_cast<char>(random());
    }
    Feed(strDamaged);
  }
}
