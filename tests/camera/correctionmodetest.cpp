#include "camera/correctionmode.h"

#include <gtest/gtest.h>

using ffc::camera::ECorrectionMode;

TEST(ModeName, FindsEveryModeByItsName)
{
  for (const ECorrectionMode eMode :
       {ECorrectionMode::None, ECorrectionMode::FlatField, ECorrectionMode::Vignetting, ECorrectionMode::Unknown}) {
    EXPECT_EQ(ffc::camera::FindMode(ffc::camera::GetModeName(eMode)), eMode);
  }
  EXPECT_EQ(ffc::camera::FindMode("Flatfield"), std::nullopt);
  EXPECT_STREQ(ffc::camera::GetModeName(static_cast<ECorrectionMode>(77)), "") << "of a number that is no mode";
}
