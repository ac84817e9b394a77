#include "host/resultfolder.h"

#include <new>
#include <utility>

#include "host/quality/pictures.h"
#include "host/quality/profileplot.h"
#include "host/wholefile.h"

bool SFramePair::Take(const void *pRaw, const void *pCorrected, std::size_t nSize)
{
  const uint8_t *pBefore = static_cast<const uint8_t *>(pRaw);
  const uint8_t *pAfter = static_cast<const uint8_t *>(pCorrected);
  try {
    listRaw.assign(pBefore, pBefore + nSize);
    listCorrected.assign(pAfter, pAfter + nSize);
  } catch (const std::bad_alloc &) {
    return false;
  }
  return true;
}

QString CResultFolder::Prepare()
{
  return m_dir.mkpath(QStringLiteral(".")) ? QString()
                                           : QStringLiteral("cannot make the folder %1").arg(m_dir.absolutePath());
}

QString CResultFolder::WritePictures(const CPairedStacks &stBright, EColorLayout eLayout, const QString &strTitle) const
{
  const CFrameStack &stBefore = stBright.GetRaw();
  const CFrameStack &stAfter = stBright.GetCorrected();
  const double dRange = GetContrastRange(stBefore, eLayout);
  const std::pair<const char *, QImage> listPictures[] = {
    {"before.png", MakeViewPicture(stBefore, eLayout)},
    {"after.png", MakeViewPicture(stAfter, eLayout)},
    {"contrast_before.png", MakeContrastPicture(stBefore, eLayout, dRange)},
    {"contrast_after.png", MakeContrastPicture(stAfter, eLayout, dRange)},
    {"profile.png", DrawProfilePlot(MakeRowProfile(stBefore, eLayout), MakeRowProfile(stAfter, eLayout), strTitle)},
  };
  QString strError;
  for (const auto &[pName, imgPicture] : listPictures) {
    if (strError.isEmpty()) {
      strError = SaveWholePicture(GetPath(QLatin1String(pName)), imgPicture);
    }
  }
  return strError;
}

QString CResultFolder::WriteFrames(const SFramePair &stPair, uint32_t nIndex, uint32_t nWidth, uint32_t nHeight,
                                   const SSensorFormat &stFormat) const
{
  const auto Write = [&](const char *pKind, const std::vector<uint8_t> &listFrame) {
    const QString strName = QStringLiteral("%1_%2.png").arg(QLatin1String(pKind)).arg(nIndex, 3, 10, QLatin1Char('0'));
    return SaveWholePicture(GetPath(strName), MakeFramePicture(listFrame.data(), nWidth, nHeight, stFormat));
  };
  const QString strError = Write("raw", stPair.listRaw);
  return strError.isEmpty() ? Write("corrected", stPair.listCorrected) : strError;
}

QString CResultFolder::WriteDialog(const QImage &imgDialog) const
{
  return SaveWholePicture(GetPath(QStringLiteral("dialog.png")), imgDialog);
}

QString CResultFolder::WriteReport(const SReport &stReport) const
{
  return SaveWholeFile(GetPath(QStringLiteral("report.json")), MakeReportJson(stReport));
}
