/// \file
/// A coefficient file, ready to correct frames.
#pragma once

#include <optional>

#include <QString>

#include "frames/frameinfo.h"
#include "frames/sidefile.h"
#include "pluginobject/shadingcorrection/process/acquisition/framebuffer.h"
#include "quality/defectreplacement.h"
#include "tools/ffc/options.h"
#include "tools/ffc/report.h"

namespace ffc::tool {

/// The table of the host-side correction, and what its side file says. Correcting runs on any number of threads.
class CFlat {
public:
  /// Reads a file and the one beside it.
  /// \return why it cannot be used, as a sentence
  std::optional<STrouble> Load(const QString &strPath, const SOptions &stOptions);

  /// Whether frames can be corrected with it: size, depth and colours.
  /// \return what does not fit, as a sentence that names the frames' file
  std::optional<STrouble> CheckFits(const QString &strFile, const frames::SFrameInfo &stInfo) const;
  /// Depth and alignment of the frames of a file that fits.
  Result<frames::SDepth> DecideDepth(const frames::SEvidence &stEvidence, const frames::SFrameInfo &stInfo) const;
  /// Corrects a frame in place, right-aligned, and replaces its defect pixels. \return false when it is not of the
  /// table's format
  bool Apply(void *pFrame, const frames::SLayout &stLayout, uint32_t nBitDepth) const;

  const QString &GetName() const { return m_strName; }
  /// SHA-256 of the table; with a list of defects, a plus and that of the list.
  const QString &GetSha256() const { return m_strSha256; }
  const quality::CDefectReplacement &GetDefects() const { return m_defects; }
  const std::optional<frames::SSideFile> &GetSide() const { return m_stSide; }
  const process::CFrameBuffer &GetTable() const { return m_table; }
  /// Colours of the frames that it is for, where they are known.
  std::optional<genapi::EColorLayout> GetColors() const;
  /// What is to be kept with a corrected frame.
  QString DescribeCorrection() const;

private:
  std::optional<STrouble> LoadSide(const QString &strPath);
  std::optional<STrouble> CheckSide(bool bForce);
  std::optional<STrouble> LoadDefects(const QString &strList);

  QString m_strName;
  QString m_strSha256;
  process::CFrameBuffer m_table;
  quality::CDefectReplacement m_defects;
  std::optional<frames::SSideFile> m_stSide;
  std::string m_strPixelFormat; ///< stated; else the side file's; else empty
  std::optional<frames::EAlignment> m_eAlignment;
};

/// SHA-256 of a table, in hexadecimal.
QString HashTable(const uint8_t *pTable, uint64_t nSize);

} // namespace ffc::tool
