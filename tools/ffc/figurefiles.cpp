#include "tools/ffc/figurefiles.h"

#include <QDir>

#include "frames/wholefile.h"
#include "quality/deviationhistogram.h"
#include "quality/spectrogram.h"
#include "tools/ffc/transfer.h"

namespace ffc::tool {

using genapi::EColorLayout;

namespace {

QByteArray Number(double dNumber)
{
  return QByteArray::number(dNumber, 'g', 12);
}

/// The two tables, a section at a time.
class CFigureTables {
public:
  void Add(const QByteArray &byteKeys, const quality::SDeviationImage &stImage)
  {
    AddHistogram(byteKeys + ",logarithmic,", quality::MakeLogarithmicHistogram(stImage));
    AddHistogram(byteKeys + ",accumulated,", quality::MakeAccumulatedHistogram(stImage));
    AddSpectrogram(byteKeys + ",horizontal,", quality::MakeHorizontalSpectrogram(stImage), stImage.nColumns);
    AddSpectrogram(byteKeys + ",vertical,", quality::MakeVerticalSpectrogram(stImage), stImage.nRows);
  }

  Result<> Save(const QString &strFolder) const
  {
    const QDir dir(strFolder);
    return RunUntilFailure(
      [&] { return MakeFolder(strFolder); },
      [&] { return frames::SaveWholeFile(dir.filePath(QStringLiteral("histograms.csv")), m_byteHistograms); },
      [&] { return frames::SaveWholeFile(dir.filePath(QStringLiteral("spectrograms.csv")), m_byteSpectrograms); });
  }

private:
  void AddHistogram(const QByteArray &byteKeys, const quality::SDeviationHistogram &stHistogram)
  {
    for (std::size_t n = 0; n < stHistogram.listCounts.size(); ++n) {
      m_byteHistograms += byteKeys + Number(stHistogram.dFirst + static_cast<double>(n) * stHistogram.dWidth) + ',' +
                          QByteArray::number(static_cast<qulonglong>(stHistogram.listCounts[n])) + ',' +
                          (stHistogram.listNormal.empty() ? QByteArray() : Number(stHistogram.listNormal[n])) + '\n';
    }
  }

  void AddSpectrogram(const QByteArray &byteKeys, const std::vector<double> &listPower, uint32_t nLength)
  {
    for (std::size_t n = 0; n < listPower.size(); ++n) {
      m_byteSpectrograms += byteKeys + Number(static_cast<double>(n) / nLength) + ',' + Number(listPower[n]) + '\n';
    }
  }

  QByteArray m_byteHistograms = "state,figure,channel,high_pass,kind,deviation_dn,pixels,normal\n";
  QByteArray m_byteSpectrograms = "state,figure,channel,high_pass,direction,cycles_per_pixel,power_dn2\n";
};

void AddState(CFigureTables &tables, const QByteArray &byteState, const quality::CFrameStack &stackBright,
              const quality::CFrameStack &stackDark, EColorLayout eColors)
{
  const quality::EHighPass eHighPass = stackBright.GetHighPass();
  for (const quality::SChannel &stChannel : quality::GetChannels(eColors)) {
    const auto byteChannel = QByteArray::fromStdString(stChannel.stPlane.strName);
    for (const quality::EHighPass *pHighPass : {static_cast<const quality::EHighPass *>(nullptr), &eHighPass}) {
      const QByteArray byteKeys =
        ',' + byteChannel + ',' + (pHighPass == nullptr ? "none" : GetHighPassName(eHighPass));
      tables.Add(byteState + ",DSNU" + byteKeys, quality::MakeDeviationImage(stackDark, nullptr, stChannel, pHighPass));
      tables.Add(byteState + ",PRNU" + byteKeys,
                 quality::MakeDeviationImage(stackBright, &stackDark, stChannel, pHighPass));
    }
  }
}

} // namespace

Result<> WriteFigureFiles(const QString &strFolder, const SStacks &stBright, const SStacks &stDark,
                          EColorLayout eColors)
{
  CFigureTables tables;
  AddState(tables, "before", stBright.stackRaw, stDark.stackRaw, eColors);
  AddState(tables, "after", stBright.stackCorrected, stDark.stackCorrected, eColors);
  return tables.Save(strFolder);
}

} // namespace ffc::tool
