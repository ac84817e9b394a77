/// \file
/// Frames as SER, version 3: mono or Bayer frames with their depth, and the time of each.
#pragma once

#include "frames/ifilekind.h"

namespace ffc::frames {

/// Programs do not agree on what the header's flag for the byte order means, so the order of 16-bit samples is taken
/// from the first frame: the one in which neighbours differ less, and in which no value exceeds the depth. Files are
/// written with the low byte first and the flag 0, as nearly all programs do.
class CSerFile final : public IFileKind {
public:
  QString GetName() const override { return QStringLiteral("SER"); }
  QStringList GetSuffixes() const override { return {QStringLiteral("ser")}; }
  bool KeepsTexts() const override { return false; }
  uint64_t GetMaxFrames() const override { return INT32_MAX; }
  Result<std::unique_ptr<IFrameReader>> Open(const QString &strPath) const override;
  Result<std::unique_ptr<IFrameWriter>> Create(const QString &strPath, const SFrameInfo &stInfo) const override;
};

} // namespace ffc::frames
