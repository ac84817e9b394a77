/// \file
/// The kinds of files that frames are kept in.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include <QString>
#include <QStringList>

#include "platform/result.h"

namespace ffc::frames {

/// How frames lie in memory: whole samples of 8 or 16 bits, right-aligned in the byte order of the machine, lines and
/// frames tightly packed.
struct SLayout {
  uint32_t nWidth = 0; ///< samples
  uint32_t nHeight = 0;
  uint32_t nBytesPerSample = 1; ///< or 2

  std::size_t GetLineSize() const { return static_cast<std::size_t>(nWidth) * nBytesPerSample; }
  std::size_t GetFrameSize() const { return GetLineSize() * nHeight; }
  bool operator==(const SLayout &stOther) const
  {
    return nWidth == stOther.nWidth && nHeight == stOther.nHeight && nBytesPerSample == stOther.nBytesPerSample;
  }
};

/// What one file holds: a single frame, or a sequence of frames that lie alike.
struct SContent {
  SLayout stLayout;
  std::vector<std::vector<uint8_t>> listFrames;
};

/// Reads and writes files of one kind. Has no state; on any thread.
class IFileKind {
public:
  virtual ~IFileKind() = default;

  /// Endings of file names, in lower case, without the dot.
  virtual QStringList GetSuffixes() const = 0;
  /// \return why it cannot be read as the end of a sentence that begins with the file's name
  virtual Result<SContent> Read(const QString &strPath) const = 0;
  /// Writes a frame into a file of its own, whole or not at all.
  /// \param pFrame stLayout.GetFrameSize() bytes
  virtual Result<> Write(const QString &strPath, const SLayout &stLayout, const void *pFrame) const = 0;
};

/// All kinds that there are.
const std::vector<const IFileKind *> &ListFileKinds();

/// The kind that the ending of the name says, in upper or lower case; null for another ending.
const IFileKind *FindFileKind(const QString &strPath);

} // namespace ffc::frames
