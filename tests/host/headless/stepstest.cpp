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
                   return QString();
                 }};
  };
  EXPECT_EQ(RunSteps({step("one"), step("two")}, progress), "");
  EXPECT_EQ(listRun, QStringList({"one", "two"}));
}

TEST(Steps, TheFirstFailureEndsTheStoryAndIsOneLineWithItsStep)
{
  CProgressLine progress(nullptr);
  bool bWentOn = false;
  const std::vector<SStep> listSteps = {
    {"one", [] { return QString(); }},
    {"two", [] { return QStringLiteral("it\nbroke"); }},
    {"three",
     [&] {
       bWentOn = true;
       return QString();
     }},
  };
  EXPECT_EQ(RunSteps(listSteps, progress), "two: it broke");
  EXPECT_FALSE(bWentOn);
}

TEST(Steps, ActionsStopAtTheFirstFailureWithItsReasonAsItIs)
{
  int nRun = 0;
  const auto action = [&nRun](const QString &strResult) {
    return [&nRun, strResult] {
      ++nRun;
      return strResult;
    };
  };
  EXPECT_EQ(RunUntilFailure({action(QString()), action("no"), action("never")}), "no");
  EXPECT_EQ(nRun, 2);
  EXPECT_EQ(RunUntilFailure({action(QString())}), "");
}
