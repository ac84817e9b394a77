/// \file
/// Frames as PNG: one grey frame of 8 or 16 bits per file.
#pragma once

#include "frames/ifilekind.h"

namespace ffc::frames {

class CPngFile final : public IFileKind {
public:
  QString GetName() const override { return QStringLiteral("PNG"); }
  QStringList GetSuffixes() const override { return {QStringLiteral("png")}; }
  bool KeepsTexts() const override { return true; }
  uint64_t GetMaxFrames() const override { return 1; }
  Result<std::unique_ptr<IFrameReader>> Open(const QString &strPath) const override;
  Result<std::unique_ptr<IFrameWriter>> Create(const QString &strPath, const SFrameInfo &stInfo) const override;
};

} // namespace ffc::frames
