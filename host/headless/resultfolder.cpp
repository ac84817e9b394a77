#include "host/headless/resultfolder.h"

#include <utility>

#include "frames/ifilekind.h"
#include "frames/wholefile.h"
#include "host/measurement/defectfiles.h"
#include "quality/pictures.h"
#include "quality/profileplot.h"

namespace ffc::host {

using genapi::EColorLayout;

Result<> CResultFolder::Prepare()
{
  if (!m_dir.mkpath(QStringLiteral("."))) {
    return Failure(QStringLiteral("cannot make the folder %1").arg(m_dir.absolutePath()));
  }
  return {};
}

Result<> CResultFolder::WritePictures(const quality::CFrameStack &stBefore, const quality::CFrameStack &stAfter,
                                      EColorLayout eLayout, const QString &strTitle) const
{
  const quality::SPictures stPictures = quality::MakePictures(stBefore, stAfter, eLayout);
  const std::pair<const char *, QImage> listPictures[] = {
    {"before.png", stPictures.imgBefore},
    {"after.png", stPictures.imgAfter},
    {"contrast_before.png", stPictures.imgContrastBefore},
    {"contrast_after.png", stPictures.imgContrastAfter},
    {"profile.png", quality::DrawProfilePlot(quality::MakeRowProfile(stBefore, eLayout),
                                             quality::MakeRowProfile(stAfter, eLayout), strTitle)},
  };
  for (const auto &[pName, imgPicture] : listPictures) {
    Result<> result = frames::SaveWholePicture(GetPath(QLatin1String(pName)), imgPicture);
    if (!result) {
      return result;
    }
  }
  return {};
}

Result<> CResultFolder::WriteFrame(const char *pKind, uint32_t nIndex, const std::vector<uint8_t> &listFrame,
                                   const SStreamFormat &stFormat) const
{
  const QString strName = QStringLiteral("%1_%2.png").arg(QLatin1String(pKind)).arg(nIndex, 3, 10, QLatin1Char('0'));
  const QString strPath = GetPath(strName);
  const frames::SLayout stLayout{stFormat.nWidth, stFormat.nHeight, stFormat.pFormat->GetBytesPerPixel()};
  return frames::SaveFrame(strPath, stLayout, listFrame.data());
}

Result<> CResultFolder::WriteDialog(const QImage &imgDialog) const
{
  return frames::SaveWholePicture(GetPath(QStringLiteral("dialog.png")), imgDialog);
}

Result<> CResultFolder::WriteReport(const QByteArray &byteReport) const
{
  return frames::SaveWholeFile(GetPath(QStringLiteral("report.json")), byteReport);
}

Result<> CResultFolder::WriteDefects(const quality::SReport &stReport) const
{
  return SaveDefects(GetPath(QStringLiteral("defects")), stReport);
}

} // namespace ffc::host
