/// \file
/// Frames as FITS: grey or Bayer frames of 8 or 16 bits, one in a file or many as a cube.
#pragma once

#include "frames/ifilekind.h"

namespace ffc::frames {

/// Whether this program was built with the library for FITS files.
bool IsFitsSupported();

/// The image of a file's first part: NAXIS 2, or 3 with the frames along the third axis; samples of 8 bits, or of 16
/// either with BZERO 32768 or without a negative one. Written with BZERO 32768. Frames in memory begin with their top
/// row: a file that says ROWORDER "BOTTOM-UP" is turned over while it is read, and back when it is written; one that
/// says nothing is taken as top down. BAYERPAT (or COLORTYP) names the colours of the first two rows of the file. Texts
/// stand in keywords of their own, those of the first frame for all; what else the header of a FITS file says is kept
/// when it becomes one again.
class CFitsFile final : public IFileKind {
public:
  QString GetName() const override { return QStringLiteral("FITS"); }
  QStringList GetSuffixes() const override
  {
    return {QStringLiteral("fits"), QStringLiteral("fit"), QStringLiteral("fts")};
  }
  bool IsSupported() const override { return IsFitsSupported(); }
  bool KeepsTexts() const override { return true; }
  Result<std::unique_ptr<IFrameReader>> Open(const QString &strPath) const override;
  Result<std::unique_ptr<IFrameWriter>> Create(const QString &strPath, const SFrameInfo &stInfo) const override;
};

} // namespace ffc::frames
