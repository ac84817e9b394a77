#include "camera/selfcorrection/modename.h"

#include <gtest/gtest.h>

TEST(ModeName, FindsEveryModeByItsName)
{
  for (const ECorrectionMode eMode :
       {ECorrectionMode::None, ECorrectionMode::FlatField, ECorrectionMode::Vignetting, ECorrectionMode::Unknown}) {
    ECorrectionMode eFound = eMode == ECorrectionMode::None ? ECorrectionMode::Unknown : ECorrectionMode::None;
    EXPECT_TRUE(ffc::camera::FindMode(ffc::camera::GetModeName(eMode), eFound));
    EXPECT_EQ(eFound, eMode);
  }
  ECorrectionMode eFound = ECorrectionMode::FlatField;
  EXPECT_FALSE(ffc::camera::FindMode("Flatfield", eFound));
  EXPECT_EQ(eFound, ECorrectionMode::FlatField);
}
