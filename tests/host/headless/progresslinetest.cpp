#include "host/headless/progressline.h"

#include <sstream>

#include <gtest/gtest.h>

using namespace ffc::host;

TEST(ProgressLine, CountsFramesUpToTheStepsNumber)
{
  std::ostringstream stream;
  CProgressLine progress(&stream);
  progress.BeginStep("bright field", 2);
  progress.CountFrame();
  progress.CountFrame();
  progress.CountFrame();
  const std::string strText = stream.str();
  EXPECT_EQ(strText.rfind("\rbright field: 0 of 2 frames", 0), 0U);
  EXPECT_NE(strText.find("bright field: 2 of 2 frames"), std::string::npos);
  EXPECT_EQ(strText.find("3 of 2"), std::string::npos);
  EXPECT_EQ(strText.find('\n'), std::string::npos);
}

TEST(ProgressLine, AShorterStepWipesTheLongerOne)
{
  std::ostringstream stream;
  CProgressLine progress(&stream);
  progress.BeginStep("a long step");
  progress.BeginStep("short");
  EXPECT_EQ(stream.str(), "\ra long step\rshort      ");
}

TEST(ProgressLine, ClearLeavesAnEmptyLine)
{
  std::ostringstream stream;
  CProgressLine progress(&stream);
  progress.BeginStep("step");
  progress.Clear();
  progress.Clear();
  EXPECT_EQ(stream.str(), "\rstep\r    \r");
}
