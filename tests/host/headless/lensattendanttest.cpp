#include "host/headless/lensattendant.h"

#include <sstream>

#include <gtest/gtest.h>

using ffc::host::CTerminalAttendant;

TEST(TerminalAttendant, AsksOnceForEachChangeAndWaitsForEnter)
{
  std::istringstream input("\n\n");
  std::ostringstream output;
  CTerminalAttendant attendant(input, output, std::nullopt);
  EXPECT_TRUE(attendant.Cover(true).IsOk());
  EXPECT_TRUE(attendant.Cover(true).IsOk());
  EXPECT_TRUE(attendant.Cover(false).IsOk());
  EXPECT_EQ(output.str(), "cover the lens, then press Enter\n"
                          "uncover the lens, with an evenly lit target before it, then press Enter\n");
  EXPECT_EQ(attendant.Cover(true).GetError().find("nobody is there to cover the lens"), 0U);
}

TEST(TerminalAttendant, ARigWithAShutterIsToldAndGivenTime)
{
  std::istringstream input;
  std::ostringstream output;
  CTerminalAttendant attendant(input, output, 0.001);
  EXPECT_TRUE(attendant.Cover(true).IsOk());
  EXPECT_EQ(output.str(), "cover the lens\n");
}
