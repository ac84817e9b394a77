// Every input that is kept, without a fuzzer: seeds, and what once broke something.
#include <algorithm>
#include <cstdio>
#include <ostream>
#include <string>

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

#include "tests/fuzz/exactbuffer.h"
#include "tests/fuzz/fuzztargets.h"

/// A target by the name of its folders.
struct SFuzzTarget {
  const char *pName;
  void (*fnRun)(const uint8_t *pData, std::size_t nSize);
};

// NOLINTNEXTLINE(readability-identifier-naming): GoogleTest's name
void PrintTo(const SFuzzTarget &stTarget, std::ostream *pStream)
{
  *pStream << stTarget.pName;
}

namespace {

constexpr SFuzzTarget TARGETS[] = {
  {"coefficientgenerator", FuzzCoefficientGenerator},
  {"vignetting", FuzzVignetting},
  {"ombrix", FuzzOmbrix},
  {"hostfile", FuzzHostFile},
  {"devicefile", FuzzDeviceFile},
  {"vignettingfile", FuzzVignettingFile},
  {"pluginrecords", FuzzPluginRecords},
};

class FuzzRegression : public testing::TestWithParam<SFuzzTarget> {
protected:
  // \return how many files there are
  static int RunAll(const char *pKind)
  {
    const QDir folder(QString::fromUtf8(FFC_FUZZ_INPUTS "/%1/%2")
                        .arg(QString::fromLatin1(pKind), QString::fromLatin1(GetParam().pName)));
    const QStringList listNames = folder.entryList(QDir::Files, QDir::Name);
    for (const QString &strName : listNames) {
      Run(folder.filePath(strName));
    }
    return static_cast<int>(listNames.size());
  }

private:
  static void Run(const QString &strFile)
  {
    // A target that breaks ends the program: the last name tells which input it was.
    std::fprintf(stderr, "%s\n", qPrintable(strFile));
    QFile file(strFile);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray bytes = file.readAll();
    CExactBuffer input(static_cast<std::size_t>(bytes.size()));
    std::copy(bytes.begin(), bytes.end(), input.GetData());
    GetParam().fnRun(input.GetData(), input.GetSize());
  }
};

} // namespace

TEST_P(FuzzRegression, SeedsAndWhatOnceBrokeAPromiseKeepEveryPromise)
{
  EXPECT_GT(RunAll("seeds"), 0);
  RunAll("regressions"); // most targets have none
}

TEST_P(FuzzRegression, AnEmptyInputIsOne)
{
  GetParam().fnRun(nullptr, 0);
}

INSTANTIATE_TEST_SUITE_P(Targets, FuzzRegression, testing::ValuesIn(TARGETS),
                         [](const auto &stInfo) { return std::string(stInfo.param.pName); });
