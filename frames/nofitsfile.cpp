// Without the library for FITS files.
#include "frames/fitsfile.h"

namespace ffc::frames {

bool IsFitsSupported()
{
  return false;
}

Result<std::unique_ptr<IFrameReader>> CFitsFile::Open(const QString &) const
{
  return Failure("is a FITS file, which this program was built without.");
}

Result<std::unique_ptr<IFrameWriter>> CFitsFile::Create(const QString &strPath, const SFrameInfo &) const
{
  return Failure("cannot write " + strPath.toStdString() + ": this program was built without FITS");
}

} // namespace ffc::frames
