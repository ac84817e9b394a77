/// \file
/// Frames without any header: whoever reads them says what they are.
#pragma once

#include <string>

#include "frames/ifilekind.h"

namespace ffc::frames {

/// Frames that follow each other, samples of 16 bits with the low byte first. The number of frames follows from the
/// file's length.
class CRawFile final : public IFileKind {
public:
  CRawFile() = default;
  CRawFile(uint32_t nWidth, uint32_t nHeight, const genapi::SSensorFormat &stFormat);

  /// \param strFormat "WIDTHxHEIGHT:FORMAT", the format as PFNC calls it
  static Result<CRawFile> Parse(const std::string &strFormat);

  QString GetName() const override { return QStringLiteral("raw"); }
  QStringList GetSuffixes() const override { return {QStringLiteral("raw"), QStringLiteral("bin")}; }
  bool KeepsTexts() const override { return false; }
  Result<std::unique_ptr<IFrameReader>> Open(const QString &strPath) const override;
  Result<std::unique_ptr<IFrameWriter>> Create(const QString &strPath, const SFrameInfo &stInfo) const override;

private:
  SFrameInfo m_stInfo;
};

} // namespace ffc::frames
