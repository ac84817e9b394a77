#include "pluginobject/statuscode.h"

#include <limits>
#include <map>
#include <string>

#include <gtest/gtest.h>

using ffc::pluginobject::ETextAudience;
using ffc::pluginobject::GetStatusSourceText;

namespace {

const std::string UNKNOWN = "Unknown error";

// Every code with a text of its own, for both audiences.
const std::map<int32_t, std::string> COMMON_TEXTS = {
  {0, "Success"},
  {-1, "Unknown error"},
  {-2, "Out of memory"},
  {-3, "Invalid input param"},
  {-1002, "Failure to operation device feature"},
  {-1004, "Open file error"},
  {-1006, "Write file error"},
  {-1007, "Read file error"},
  {-1009, "Get buffer time out"},
  {-1010, "Flat field correction error"},
  {-1011, "Current camera is not support  "},
  {-1012, "Buffer size is error  "},
  {-1013, "Recovery user param fail  "},
  {-1015, "Current ROI is not matching with the coefficient  "},
  {-1017, "The pixelformat should be changed to bayer!"},
  {-1018, "The pixelformat not implement!"},
};

std::string ForHost(int32_t nStatus)
{
  return GetStatusSourceText(nStatus, ETextAudience::Host);
}

std::string ForDialog(int32_t nStatus)
{
  return GetStatusSourceText(nStatus, ETextAudience::Dialog);
}

} // namespace

TEST(StatusCode, EveryCodeFrom2000To2000HasItsTextOrUnknownError)
{
  for (int32_t nStatus = -2000; nStatus <= 2000; ++nStatus) {
    const auto itText = COMMON_TEXTS.find(nStatus);
    const std::string strExpected = itText == COMMON_TEXTS.end() ? UNKNOWN : itText->second;
    EXPECT_EQ(ForHost(nStatus), strExpected) << nStatus;
    if (nStatus != -1019) {
      EXPECT_EQ(ForDialog(nStatus), strExpected) << nStatus;
    }
  }
}

TEST(StatusCode, OnlyTheDialogKnowsThatParametersWereModified)
{
  EXPECT_EQ(ForHost(-1019), UNKNOWN);
  EXPECT_EQ(ForDialog(-1019), "The current device parameters have been modified. Please restore the default "
                              "parameters and try again!");
}

TEST(StatusCode, ReservedCodesAreUnknownErrors)
{
  for (const int32_t nStatus : {-1001, -1003, -1005, -1008, -1014, -1016, -4}) {
    EXPECT_EQ(ForHost(nStatus), UNKNOWN) << nStatus;
    EXPECT_EQ(ForDialog(nStatus), UNKNOWN) << nStatus;
  }
}

TEST(StatusCode, CodesOutsideAllTablesAreUnknownErrors)
{
  for (const int32_t nStatus :
       {1, -5, -1000, -1020, -2000, std::numeric_limits<int32_t>::min(), std::numeric_limits<int32_t>::max()}) {
    EXPECT_EQ(ForHost(nStatus), UNKNOWN) << nStatus;
    EXPECT_EQ(ForDialog(nStatus), UNKNOWN) << nStatus;
  }
}

TEST(StatusCode, FourTextsEndInExactlyTwoBlanks)
{
  for (int32_t nStatus = -1019; nStatus <= 0; ++nStatus) {
    const std::string strText = ForDialog(nStatus);
    const std::size_t nBlanks = strText.size() - 1 - strText.find_last_not_of(' ');
    const bool bTrailing = nStatus == -1011 || nStatus == -1012 || nStatus == -1013 || nStatus == -1015;
    EXPECT_EQ(nBlanks, bTrailing ? 2U : 0U) << nStatus;
  }
}
