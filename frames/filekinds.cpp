#include <QFileInfo>

#include "frames/pngfile.h"
#include "frames/serfile.h"
#include "frames/tifffile.h"

namespace ffc::frames {

const std::vector<const IFileKind *> &ListFileKinds()
{
  static const CPngFile png;
  static const CTiffFile tiff;
  static const CSerFile ser;
  static const std::vector<const IFileKind *> listKinds =
    IsTiffSupported() ? std::vector<const IFileKind *>{&png, &tiff, &ser} : std::vector<const IFileKind *>{&png, &ser};
  return listKinds;
}

const IFileKind *FindFileKind(const QString &strPath)
{
  const QString strSuffix = QFileInfo(strPath).suffix().toLower();
  for (const IFileKind *pKind : ListFileKinds()) {
    if (pKind->GetSuffixes().contains(strSuffix)) {
      return pKind;
    }
  }
  return nullptr;
}

Result<> SaveFrame(const QString &strPath, const SLayout &stLayout, const void *pFrame)
{
  const IFileKind *pKind = FindFileKind(strPath);
  if (pKind == nullptr) {
    return Failure("cannot write " + strPath.toStdString() + ": no kind of file has this ending");
  }
  SFrameInfo stInfo;
  stInfo.stLayout = stLayout;
  Result<std::unique_ptr<IFrameWriter>> writer = pKind->Create(strPath, stInfo);
  if (!writer) {
    return writer.GetFailure();
  }
  return RunUntilFailure([&] { return writer.GetValue()->Write(pFrame, {}); },
                         [&] { return writer.GetValue()->Commit(); });
}

} // namespace ffc::frames
