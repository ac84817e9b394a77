/// \file
/// Frames as TIFF: grey, of 8 or 16 bits, one or many in a file, BigTIFF too.
#pragma once

#include "frames/ifilekind.h"

namespace ffc::frames {

/// Whether this program was built with the library for TIFF files.
bool IsTiffSupported();

/// Files keep their compression, where it is one without loss, and their texts. A file that is expected to grow beyond
/// 4 GB becomes a BigTIFF.
class CTiffFile final : public IFileKind {
public:
  QString GetName() const override { return QStringLiteral("TIFF"); }
  QStringList GetSuffixes() const override { return {QStringLiteral("tif"), QStringLiteral("tiff")}; }
  bool IsSupported() const override { return IsTiffSupported(); }
  bool KeepsTexts() const override { return true; }
  Result<std::unique_ptr<IFrameReader>> Open(const QString &strPath) const override;
  Result<std::unique_ptr<IFrameWriter>> Create(const QString &strPath, const SFrameInfo &stInfo) const override;
};

} // namespace ffc::frames
