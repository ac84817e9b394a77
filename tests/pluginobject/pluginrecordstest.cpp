// Sizes and offsets are checked where the records are declared.
#include "pluginobject/pluginrecords.h"

#include <algorithm>
#include <cstring>
#include <new>

#include <gtest/gtest.h>

using ffc::pluginobject::MakePluginMsg;

namespace {

template <class TRecord>
bool AreBytesZero(const TRecord &stRecord, std::size_t nFirst = 0)
{
  unsigned char acBytes[sizeof stRecord];
  std::memcpy(acBytes, &stRecord, sizeof stRecord);
  return std::all_of(acBytes + nFirst, acBytes + sizeof acBytes, [](unsigned char c) { return c == 0; });
}

} // namespace

TEST(PluginRecords, AMessageIsZeroBeyondItsCode)
{
  for (const EPluginMsgCode eCode :
       {PLUGIN_MSG_ACQUISITION_ON, PLUGIN_MSG_ACQUISITION_OFF, PLUGIN_MSG_DIALOG_HIDDEN, PLUGIN_MSG_DIALOG_SHOWN}) {
    const PLUGIN_MSG stPluginMsg = MakePluginMsg(eCode);
    EXPECT_EQ(stPluginMsg.nMsgCode, eCode);
    EXPECT_TRUE(AreBytesZero(stPluginMsg, sizeof stPluginMsg.nMsgCode));
  }
}

TEST(PluginRecords, AConstructedMessageAndImageAreZeroAlsoInUsedMemory)
{
  alignas(PLUGIN_MSG) unsigned char acMemory[sizeof(PLUGIN_MSG)];
  std::memset(acMemory, 0xEE, sizeof acMemory);
  EXPECT_TRUE(AreBytesZero(*new (acMemory) PLUGIN_MSG));
  std::memset(acMemory, 0xEE, sizeof acMemory);
  EXPECT_TRUE(AreBytesZero(*new (acMemory) PLUGIN_IMAGE_INFO));
}

TEST(PluginRecords, MessageCodesHaveTheirValues)
{
  EXPECT_EQ(PLUGIN_MSG_SHOW_DIALOG, 1);
  EXPECT_EQ(PLUGIN_MSG_HIDE_DIALOG, 2);
  EXPECT_EQ(PLUGIN_MSG_ACQUISITION_ON, 10);
  EXPECT_EQ(PLUGIN_MSG_ACQUISITION_OFF, 11);
  EXPECT_EQ(PLUGIN_MSG_DEVICE_NAME, 13);
  EXPECT_EQ(PLUGIN_MSG_DIALOG_HIDDEN, 1001);
  EXPECT_EQ(PLUGIN_MSG_DIALOG_SHOWN, 1002);
  EXPECT_EQ(PLUGIN_PROPERTY_IN_USE, 1003U);
}
