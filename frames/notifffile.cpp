// Without the library for TIFF files.
#include "frames/tifffile.h"

namespace ffc::frames {

bool IsTiffSupported()
{
  return false;
}

Result<std::unique_ptr<IFrameReader>> CTiffFile::Open(const QString &) const
{
  return Failure("is a TIFF file, which this program was built without.");
}

Result<std::unique_ptr<IFrameWriter>> CTiffFile::Create(const QString &strPath, const SFrameInfo &) const
{
  return Failure("cannot write " + strPath.toStdString() + ": this program was built without TIFF");
}

} // namespace ffc::frames
