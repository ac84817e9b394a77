#include "host/headless/steps.h"

#include <QStringList>

#include <gtest/gtest.h>

using namespace ffc::host;

TEST(Steps, RunOneAfterTheOther)
{
  CProgressLine progress(nullptr);
  QStringList listRun;
  const auto step = [&](const char *pName) {
    return SStep{pName, [&listRun, pName] {
                   listRun << pName;
                   return ffc::Result<>();
                 }};
  };
  EXPECT_TRUE(RunSteps({step("one"), step("two")}, progress).IsOk());
  EXPECT_EQ(listRun, QStringList({"one", "two"}));
}

TEST(Steps, TheFirstFailureEndsTheWorkflowAndIsOneLineWithItsStep)
{
  CProgressLine progress(nullptr);
  bool bWentOn = false;
  const std::vector<SStep> listSteps = {
    {"one", [] { return ffc::Result<>(); }},
    {"two", [] { return ffc::Failure("it\nbroke"); }},
    {"three",
     [&] {
       bWentOn = true;
       return ffc::Result<>();
     }},
  };
  EXPECT_EQ(RunSteps(listSteps, progress).GetError(), "two: it broke");
  EXPECT_FALSE(bWentOn);
}
