#include "host/headless/resultfolder.h"

#include <utility>

#include "frames/ifilekind.h"
#include "frames/wholefile.h"
#include "quality/pictures.h"
#include "quality/profileplot.h"

namespace ffc::host {

QString CResultFolder::Prepare()
{
  return m_dir.mkpath(QStringLiteral(".")) ? QString()
                                           : QStringLiteral("cannot make the folder %1").arg(m_dir.absolutePath());
}

QString CResultFolder::WritePictures(const quality::CFrameStack &stBefore, const quality::CFrameStack &stAfter,
                                     EColorLayout eLayout, const QString &strTitle) const
{
  const double dRange = quality::GetContrastRange(stBefore, eLayout);
  const std::pair<const char *, QImage> listPictures[] = {
    {"before.png", quality::MakeViewPicture(stBefore, eLayout)},
    {"after.png", quality::MakeViewPicture(stAfter, eLayout)},
    {"contrast_before.png", quality::MakeContrastPicture(stBefore, eLayout, dRange)},
    {"contrast_after.png", quality::MakeContrastPicture(stAfter, eLayout, dRange)},
    {"profile.png", quality::DrawProfilePlot(quality::MakeRowProfile(stBefore, eLayout),
                                             quality::MakeRowProfile(stAfter, eLayout), strTitle)},
  };
  for (const auto &[pName, imgPicture] : listPictures) {
    const Result<> result = frames::SaveWholePicture(GetPath(QLatin1String(pName)), imgPicture);
    if (!result) {
      return QString::fromStdString(result.GetError());
    }
  }
  return {};
}

QString CResultFolder::WriteFrame(const char *pKind, uint32_t nIndex, const std::vector<uint8_t> &listFrame,
                                  const quality::SReport &stReport, const SSensorFormat &stFormat) const
{
  const QString strName = QStringLiteral("%1_%2.png").arg(QLatin1String(pKind)).arg(nIndex, 3, 10, QLatin1Char('0'));
  const QString strPath = GetPath(strName);
  const frames::SLayout stLayout{stReport.nWidth, stReport.nHeight, stFormat.GetBytesPerPixel()};
  return QString::fromStdString(frames::FindFileKind(strPath)->Write(strPath, stLayout, listFrame.data()).GetError());
}

QString CResultFolder::WriteDialog(const QImage &imgDialog) const
{
  return QString::fromStdString(frames::SaveWholePicture(GetPath(QStringLiteral("dialog.png")), imgDialog).GetError());
}

QString CResultFolder::WriteReport(const QByteArray &byteReport) const
{
  return QString::fromStdString(frames::SaveWholeFile(GetPath(QStringLiteral("report.json")), byteReport).GetError());
}

} // namespace ffc::host
