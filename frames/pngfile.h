/// \file
/// Frames as grey PNG pictures.
#pragma once

#include "frames/ifilekind.h"

namespace ffc::frames {

/// One frame per file, 8 or 16 bit, the values as the camera delivered them.
class CPngFile final : public IFileKind {
public:
  QStringList GetSuffixes() const override { return {QStringLiteral("png")}; }
  Result<SContent> Read(const QString &strPath) const override;
  Result<> Write(const QString &strPath, const SLayout &stLayout, const void *pFrame) const override;
};

} // namespace ffc::frames
