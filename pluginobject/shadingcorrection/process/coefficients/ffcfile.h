/// \file
/// Reading and writing coefficient files (.ffc): one image of coefficients, without header or version.
#pragma once

#include <cstdint>

#include <QFile>
#include <QSaveFile>
#include <QString>

#include "pluginobject/shadingcorrection/process/acquisition/framebuffer.h"

namespace ffc::process {

/// Opens a file for reading. \return 0, or -1004 when it cannot be opened (also: a folder)
[[nodiscard]] int32_t OpenCoefficientFile(QFile &file);

/// Reads a whole open file of nSize bytes.
/// \return 0; -1007 when it is empty or shorter; -2 when there is no memory
[[nodiscard]] int32_t ReadCoefficientFile(QFile &file, uint64_t nSize, CFrameBuffer &data);

/// Writes a file whole or not at all: an existing file stays as it was until the new one is complete.
///
/// An existing file is written in its place where its folder takes no new one, and where a new one would be
/// another one: a file with hard links, or of somebody else. When that fails, its former bytes are written back.
class CCoefficientFileWriter {
public:
  explicit CCoefficientFileWriter(const QString &strFileName) : m_file(strFileName), m_inPlace(strFileName) {}

  /// \return 0; -1004 when it cannot be opened, or is something else than a file; -2 without memory
  [[nodiscard]] int32_t Open();
  /// Once, after Open. \return 0; -1006 when writing fails; -2 without memory for the former bytes
  [[nodiscard]] int32_t Write(const uint8_t *pData, uint64_t nSize);
  /// Instead of Write: a new file is left behind empty, an existing one stays as it is.
  void LeaveEmpty();

private:
  [[nodiscard]] int32_t WriteInPlace(const uint8_t *pData, uint64_t nSize);

  QSaveFile m_file;
  QFile m_inPlace; // open: used instead
};

/// Opens and writes in one go. \return 0, -1004, -1006 or -2 as above
[[nodiscard]] int32_t WriteCoefficientFile(const QString &strFileName, const uint8_t *pData, uint64_t nSize);

} // namespace ffc::process
