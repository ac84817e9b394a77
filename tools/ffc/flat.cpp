#include "tools/ffc/flat.h"

#include <algorithm>
#include <utility>

#include <QCryptographicHash>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>

#include "frames/correctionmark.h"
#include "frames/fileio.h"
#include "genapi/sensorformat.h"
#include "ombrix/ombrix.h"
#include "pluginobject/shadingcorrection/process/coefficients/ffcfile.h"
#include "tools/ffc/inputs.h"

namespace ffc::tool {

using genapi::EColorLayout;
using genapi::FindSensorFormat;
using genapi::GetLayoutName;
using genapi::SSensorFormat;

using process::OpenCoefficientFile;
using process::ReadCoefficientFile;

namespace {

constexpr uint64_t GAIN_BYTES = 2;
constexpr uint64_t GAIN_AND_DARK_BYTES = 4;
/// A depth that programs state for any samples in 16 bits. What the values are is checked frame by frame.
constexpr uint32_t WHOLE_WORD = 16;

} // namespace

std::optional<STrouble> CFlat::Load(const QString &strPath, const SOptions &stOptions)
{
  m_strName = QFileInfo(strPath).fileName();
  QFile file(strPath);
  if (OpenCoefficientFile(file) != 0) {
    return STrouble{false, MakeSentence(strPath, "cannot be opened: " + file.errorString().toStdString() + ".")};
  }
  const auto nSize = static_cast<uint64_t>(file.size());
  if (nSize == 0 || nSize > UINT32_MAX || nSize % GAIN_BYTES != 0) {
    return Refuse(MakeSentence(strPath, "has " + std::to_string(nSize) + " bytes, which no coefficient file has."));
  }
  if (ReadCoefficientFile(file, nSize, m_table) != 0) {
    return STrouble{false, MakeSentence(strPath, "cannot be read.")};
  }
  m_strSha256 = HashTable(m_table.GetData(), m_table.GetSize());
  std::optional<STrouble> stSideTrouble = LoadSide(strPath);
  if (stSideTrouble) {
    return stSideTrouble;
  }
  m_strPixelFormat = stOptions.strPixelFormat;
  m_eAlignment = stOptions.eAlignment;
  const std::optional<STrouble> stTrouble = CheckSide(stOptions.bForce);
  return stTrouble || stOptions.strDefects.empty() ? stTrouble
                                                   : LoadDefects(QString::fromStdString(stOptions.strDefects));
}

std::optional<STrouble> CFlat::LoadSide(const QString &strPath)
{
  const Result<std::optional<QByteArray>> bytes = frames::ReadSideBytes(strPath);
  if (!bytes) {
    return STrouble{false, MakeSentence(frames::GetSideFilePath(strPath), bytes.GetError())};
  }
  m_stSide.reset();
  if (!bytes.GetValue()) {
    return std::nullopt;
  }
  Result<frames::SSideFile> side = frames::ParseSideFile(*bytes.GetValue());
  if (!side) {
    return Refuse(MakeSentence(frames::GetSideFilePath(strPath), side.GetError()));
  }
  m_stSide = std::move(side).GetValue();
  return std::nullopt;
}

std::optional<STrouble> CFlat::LoadDefects(const QString &strList)
{
  QFile file(strList);
  const Result<QByteArray> list = frames::ReadWhole(file);
  if (!list) {
    return STrouble{false, MakeSentence(strList, list.GetError())};
  }
  if (!m_stSide) {
    return Refuse(QStringLiteral("The flat \"%1\" has no side file, so the width of its frames is unknown: defects "
                                 "cannot be replaced.")
                    .arg(m_strName));
  }
  const QByteArray &byteList = list.GetValue();
  const Result<std::vector<quality::SDefect>> listDefects = quality::ParseDefects(byteList);
  const Result<> prepared = listDefects ? m_defects.Prepare(listDefects.GetValue(), m_stSide->nWidth, m_stSide->nHeight,
                                                            GetColors().value_or(EColorLayout::Mono))
                                        : Result<>(listDefects.GetFailure());
  if (!prepared) {
    return Refuse(MakeSentence(strList, prepared.GetError()));
  }
  m_strSha256 += '+' + QString::fromLatin1(QCryptographicHash::hash(byteList, QCryptographicHash::Sha256).toHex());
  return std::nullopt;
}

std::optional<STrouble> CFlat::CheckSide(bool bForce)
{
  if (!m_stSide) {
    return std::nullopt;
  }
  const uint64_t nPixels = uint64_t{m_stSide->nWidth} * m_stSide->nHeight;
  if (m_table.GetSize() != nPixels * GAIN_BYTES && m_table.GetSize() != nPixels * GAIN_AND_DARK_BYTES) {
    return Refuse(QStringLiteral("The file \"%1\" has %2 bytes, which are no coefficients for the %3 x %4 pixels that "
                                 "its side file states: one of the two belongs to another flat.")
                    .arg(m_strName)
                    .arg(m_table.GetSize())
                    .arg(m_stSide->nWidth)
                    .arg(m_stSide->nHeight));
  }
  if (!bForce && !m_stSide->strSha256.isEmpty() && m_stSide->strSha256 != m_strSha256) {
    return Refuse(QStringLiteral("The file \"%1\" is not the one that its side file describes (another SHA-256): make "
                                 "it anew, or use --force.")
                    .arg(m_strName));
  }
  if (!m_strPixelFormat.empty() && !bForce && m_strPixelFormat != m_stSide->strPixelFormat.toStdString()) {
    return Refuse(QStringLiteral("The flat \"%1\" is for %2, not for %3, the value of --pixel-format.")
                    .arg(m_strName, m_stSide->strPixelFormat, QString::fromStdString(m_strPixelFormat)));
  }
  m_strPixelFormat = m_strPixelFormat.empty() ? m_stSide->strPixelFormat.toStdString() : m_strPixelFormat;
  m_eAlignment = m_eAlignment ? m_eAlignment : m_stSide->eAlignment;
  return std::nullopt;
}

std::optional<STrouble> CFlat::CheckFits(const QString &strFile, const frames::SFrameInfo &stInfo) const
{
  const frames::SLayout &stLayout = stInfo.stLayout;
  const QString strSize = QStringLiteral("%1 x %2").arg(stLayout.nWidth).arg(stLayout.nHeight);
  const uint64_t nPixels = uint64_t{stLayout.nWidth} * stLayout.nHeight;
  if (m_stSide && (stLayout.nWidth != m_stSide->nWidth || stLayout.nHeight != m_stSide->nHeight)) {
    return Refuse(QStringLiteral("The file \"%1\" has frames of %2 pixels, but the flat \"%3\" is for %4 x %5: use the "
                                 "flat that was made for these frames.")
                    .arg(strFile, strSize, m_strName)
                    .arg(m_stSide->nWidth)
                    .arg(m_stSide->nHeight));
  }
  if (m_table.GetSize() != nPixels * GAIN_BYTES && m_table.GetSize() != nPixels * GAIN_AND_DARK_BYTES) {
    return Refuse(QStringLiteral("The file \"%1\" has frames of %2 pixels, for which a flat has %3 or %4 bytes; \"%5\" "
                                 "has %6.")
                    .arg(strFile, strSize)
                    .arg(nPixels * GAIN_BYTES)
                    .arg(nPixels * GAIN_AND_DARK_BYTES)
                    .arg(m_strName)
                    .arg(m_table.GetSize()));
  }
  if (m_strPixelFormat.empty()) {
    return stLayout.nBytesPerSample == 1 || stInfo.nBitDepth != 0
             ? std::nullopt
             : std::optional<STrouble>(
                 Refuse(QStringLiteral("The flat \"%1\" has no side file, so the bit depth of \"%2\" is "
                                       "unknown: state --pixel-format.")
                          .arg(m_strName, strFile)));
  }
  const SSensorFormat &stFormat = *FindSensorFormat(m_strPixelFormat);
  const QString strFormat = QString::fromStdString(m_strPixelFormat);
  if (stFormat.GetBytesPerPixel() != stLayout.nBytesPerSample ||
      (stInfo.nBitDepth != 0 && stInfo.nBitDepth != WHOLE_WORD && stInfo.nBitDepth != stFormat.nBitDepth)) {
    const uint32_t nBits = stInfo.nBitDepth != 0 ? stInfo.nBitDepth : 8 * stLayout.nBytesPerSample;
    return Refuse(QStringLiteral("The file \"%1\" has %2 bits per pixel, but the flat \"%3\" is for %4.")
                    .arg(strFile)
                    .arg(nBits)
                    .arg(m_strName, strFormat));
  }
  if (stInfo.eColors && *stInfo.eColors != stFormat.eLayout) {
    return Refuse(QStringLiteral("The file \"%1\" has the colours %2, but the flat \"%3\" is for %4.")
                    .arg(strFile, QLatin1String(GetLayoutName(*stInfo.eColors)), m_strName, strFormat));
  }
  return std::nullopt;
}

Result<frames::SDepth> CFlat::DecideDepth(const frames::SEvidence &stEvidence, const frames::SFrameInfo &stInfo) const
{
  const uint32_t nStated = m_strPixelFormat.empty() ? stInfo.nBitDepth : FindSensorFormat(m_strPixelFormat)->nBitDepth;
  return frames::DecideDepth(stEvidence, stInfo.stLayout, {nStated, m_eAlignment.value_or(frames::EAlignment::Right)});
}

bool CFlat::Apply(void *pFrame, const frames::SLayout &stLayout, uint32_t nBitDepth) const
{
  const auto nSize = static_cast<uint32_t>(m_table.GetSize());
  const bool bApplied = OmbrixApplyFlatField(pFrame, pFrame, nBitDepth, stLayout.nWidth, stLayout.nHeight,
                                             m_table.GetData(), &nSize) == OMBRIX_STATUS_SUCCESS;
  if (bApplied && m_defects.GetCount() > 0) {
    m_defects.Apply(pFrame, stLayout.nBytesPerSample);
  }
  return bApplied;
}

std::optional<EColorLayout> CFlat::GetColors() const
{
  return m_strPixelFormat.empty() ? std::nullopt
                                  : std::optional<EColorLayout>(FindSensorFormat(m_strPixelFormat)->eLayout);
}

QString CFlat::DescribeCorrection() const
{
  QJsonObject object = frames::MakeCorrectionMark(m_strName, m_strSha256, QStringLiteral("ffc " FFC_VERSION));
  if (m_defects.GetCount() > 0) {
    object[QStringLiteral("defectsReplaced")] = static_cast<double>(m_defects.GetCount());
  }
  return frames::ToLine(object);
}

QString HashTable(const uint8_t *pTable, uint64_t nSize)
{
  QCryptographicHash hash(QCryptographicHash::Sha256);
  constexpr uint64_t STEP = uint64_t{1} << 30U;
  for (uint64_t nDone = 0; nDone < nSize; nDone += STEP) {
    hash.addData(reinterpret_cast<const char *>(pTable + nDone), static_cast<int>(std::min(STEP, nSize - nDone)));
  }
  return QString::fromLatin1(hash.result().toHex());
}

} // namespace ffc::tool
