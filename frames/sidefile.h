/// \file
/// What stands beside a coefficient file: what the file itself, which has no header, cannot say.
#pragma once

#include <cstdint>
#include <optional>

#include <QByteArray>
#include <QString>

#include "frames/alignment.h"
#include "platform/result.h"

namespace ffc::frames {

/// How the coefficients of one .ffc file were made, and of what.
struct SSideFile {
  uint32_t nWidth = 0; ///< pixels
  uint32_t nHeight = 0;
  QString strPixelFormat;                    ///< PFNC name
  EAlignment eAlignment = EAlignment::Right; ///< of the frames in their files
  QString strCamera;                         ///< empty: not known, as everything that follows up to the temperature
  QString strSerial;
  std::optional<double> dExposureTime; ///< microseconds
  std::optional<double> dGain;         ///< dB
  std::optional<double> dBlackLevel;
  std::optional<double> dTemperature; ///< degrees Celsius
  uint32_t nDarkFrames = 0;
  uint32_t nBrightFrames = 0;
  bool bDarkUsed = false;   ///< dark frames that are too bright are not
  QString strMethod;        ///< how the bright frames became a reference
  QString strNoise;         ///< where the frames' noise was known from; empty where the method does not ask
  uint32_t nExpectGray = 0; ///< 0 to 255
  QString strCreated;       ///< ISO 8601, universal time
  QString strTool;          ///< program and version
  QString strSha256;        ///< of the .ffc file, in hexadecimal
};

/// "FLAT.ffc.json"
QString GetSideFilePath(const QString &strFlat);

/// SHA-256 of a coefficient file, in hexadecimal.
/// \return why it cannot be read, in the system's words
Result<QString> HashCoefficientFile(const QString &strFlat);

QByteArray MakeSideFile(const SSideFile &stSide);

/// \param byteJson may be anything
/// \return what is wrong as the end of a sentence that begins with the file's name
Result<SSideFile> ParseSideFile(const QByteArray &byteJson);

/// Reads the side file of a coefficient file.
/// \return nothing where there is none
Result<std::optional<SSideFile>> ReadSideFile(const QString &strFlat);

/// What is in that file, which is not looked at. \return nothing when there is none, a failure when the disk does not
/// give it
Result<std::optional<QByteArray>> ReadSideBytes(const QString &strFlat);

} // namespace ffc::frames
