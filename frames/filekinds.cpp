#include <algorithm>
#include <iterator>

#include <QFileInfo>

#include "frames/fitsfile.h"
#include "frames/pngfile.h"
#include "frames/serfile.h"
#include "frames/tifffile.h"

namespace ffc::frames {

namespace {

const std::vector<const IFileKind *> &ListKnownKinds()
{
  static const CPngFile png;
  static const CTiffFile tiff;
  static const CSerFile ser;
  static const CFitsFile fits;
  static const std::vector<const IFileKind *> listKinds{&png, &tiff, &ser, &fits};
  return listKinds;
}

std::vector<const IFileKind *> FilterSupported(const std::vector<const IFileKind *> &listKinds)
{
  std::vector<const IFileKind *> listSupported;
  std::copy_if(listKinds.begin(), listKinds.end(), std::back_inserter(listSupported),
               [](const IFileKind *pKind) { return pKind->IsSupported(); });
  return listSupported;
}

} // namespace

const std::vector<const IFileKind *> &ListFileKinds()
{
  static const std::vector<const IFileKind *> listKinds = FilterSupported(ListKnownKinds());
  return listKinds;
}

const IFileKind *FindFileKind(const QString &strPath)
{
  const QString strSuffix = QFileInfo(strPath).suffix().toLower();
  for (const IFileKind *pKind : ListKnownKinds()) {
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
