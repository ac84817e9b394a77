#include <ostream>
#include <sstream>

#include <QRegularExpression>

#include <gtest/gtest.h>

#include "tests/tools/ffc/toolrun.h"
#include "tools/ffc/commands.h"

using namespace ffc::test;

TEST(Usage, HelpHasExamplesForEveryCommand)
{
  const SToolResult stResult = RunTool({"--help"});
  EXPECT_EQ(stResult.nExitCode, 0);
  for (const char *pExample :
       {"ffc make --dark", "ffc apply FLAT.ffc", "ffc check FLAT.ffc", "ffc inspect", "ffc convert", "Exit codes"}) {
    EXPECT_TRUE(stResult.byteOutput.contains(pExample)) << pExample;
  }
  EXPECT_EQ(RunTool({"apply", "--help"}).nExitCode, 0);
  const QByteArray byteVersion = RunTool({"--version"}).byteOutput;
  EXPECT_TRUE(byteVersion.startsWith("ffc 1."));
  EXPECT_TRUE(byteVersion.contains("(PNG, ")) << "which kinds of files it was built with";
}

TEST(Usage, AnOutputThatCannotBeWrittenIsNoSuccess)
{
  std::ostream output(nullptr);
  std::ostringstream errors;
  EXPECT_EQ(ffc::tool::RunTool({"--version"}, false, output, errors), ffc::tool::EXIT_SOME_FAILED);
  EXPECT_NE(errors.str().find("ffc: the standard output cannot be written"), std::string::npos) << errors.str();
}

TEST(Usage, ManPageAndCompletionHaveEveryOptionOfTheHelp)
{
  const QString strPage = QString::fromUtf8(ReadBytes(FFC_SOURCE_DIR "/packaging/ffc.1")).remove('\\');
  const QString strCompletion = QString::fromUtf8(ReadBytes(FFC_SOURCE_DIR "/packaging/ffc.bash"));
  const QRegularExpression option(QStringLiteral("--[a-z][a-z-]+"));
  int nOptions = 0;
  for (const char *pCommand : {"make", "apply", "check", "inspect", "convert"}) {
    const QString strHelp = QString::fromUtf8(RunTool({pCommand, "--help"}).byteOutput);
    EXPECT_TRUE(strCompletion.contains(QStringLiteral("    %1) options").arg(QLatin1String(pCommand))));
    for (auto it = option.globalMatch(strHelp); it.hasNext(); ++nOptions) {
      const QString strOption = it.next().captured();
      const QRegularExpression word(strOption + QStringLiteral("(?![a-z-])"));
      EXPECT_TRUE(strPage.contains(word)) << pCommand << " " << strOption.toStdString();
      EXPECT_TRUE(strCompletion.contains(word)) << pCommand << " " << strOption.toStdString();
    }
  }
  EXPECT_GT(nOptions, 40);
}

TEST(Usage, WhatMakesNoSenseIsAUsageError)
{
  const QList<QStringList> listWrong{{},
                                     {"correct"},
                                     {"make", "-o", "x.ffc"},
                                     {"make", "--bright", "x", "-o", "x.ffc", "--expect-gray", "256"},
                                     {"make", "--bright", "x", "-o", "x.ffc", "--pixel-format", "RGB8"},
                                     {"make", "--bright", "x", "-o", "x.ffc", "--method", "magic"},
                                     {"make", "--bright", "x", "-o", "x.ffc", "--dark-noise", "3"},
                                     {"apply", "x.ffc", "-o", "out"},
                                     {"apply", "x.ffc", "frames"},
                                     {"apply", "x.ffc", "frames", "-o", "out", "--in-place"},
                                     {"apply", "x.ffc", "frames", "-o", "out", "--shard", "3/2"},
                                     {"apply", "x.ffc", "frames", "-o", "out", "--threads", "0"},
                                     {"apply", "x.ffc", "frames", "-o", "out", "--raw", "64:Mono8"},
                                     {"convert", "frames", "-o", "out", "--to", "jpeg"}};
  for (const QStringList &listArguments : listWrong) {
    const SToolResult stResult = RunTool(listArguments);
    EXPECT_EQ(stResult.nExitCode, 2) << listArguments.join(' ').toStdString();
    EXPECT_TRUE(stResult.byteErrors.startsWith("ffc: ")) << stResult.byteErrors.constData();
  }
}

TEST(Usage, FilesThatAreNotThereAreNamed)
{
  const SToolResult stResult = RunTool({"apply", "no-such.ffc", "no-such-frames", "-o", "out"});
  EXPECT_EQ(stResult.nExitCode, 1);
  EXPECT_TRUE(stResult.byteErrors.contains("no-such-frames")) << stResult.byteErrors.constData();
}
