#include <QFileInfo>

#include "frames/pngfile.h"

namespace ffc::frames {

const std::vector<const IFileKind *> &ListFileKinds()
{
  static const CPngFile png;
  static const std::vector<const IFileKind *> listKinds{&png};
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

} // namespace ffc::frames
