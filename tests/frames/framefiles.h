/// \file
/// Files of frames that tests write and read.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <QString>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include "frames/ifilekind.h"

namespace ffc::test {

using Frames = std::vector<std::vector<uint8_t>>;

/// Frames that differ in every sample and from frame to frame, of at most nBitDepth bits.
inline Frames MakeFrames(const frames::SLayout &stLayout, uint64_t nFrames, uint32_t nBitDepth = 16)
{
  Frames listFrames;
  uint32_t nRandom = 12345;
  for (uint64_t n = 0; n < nFrames; ++n) {
    std::vector<uint8_t> listFrame(stLayout.GetFrameSize());
    for (std::size_t i = 0; i < listFrame.size(); i += stLayout.nBytesPerSample) {
      nRandom = nRandom * 1664525U + 1013904223U;
      const uint32_t nSample = (nRandom >> 8U) & ((1U << nBitDepth) - 1);
      listFrame[i] = static_cast<uint8_t>(nSample);
      if (stLayout.nBytesPerSample == 2) {
        listFrame[i + 1] = static_cast<uint8_t>(nSample >> 8U);
      }
    }
    listFrames.push_back(std::move(listFrame));
  }
  return listFrames;
}

/// \param mapTexts of every frame
inline Result<> WriteFile(const frames::IFileKind &kind, const QString &strPath, frames::SFrameInfo stInfo,
                          const Frames &listFrames)
{
  stInfo.nFrames = listFrames.size();
  Result<std::unique_ptr<frames::IFrameWriter>> writer = kind.Create(strPath, stInfo);
  if (!writer) {
    return writer.GetFailure();
  }
  for (const std::vector<uint8_t> &listFrame : listFrames) {
    Result<> result = writer.GetValue()->Write(listFrame.data(), stInfo.mapTexts);
    if (!result) {
      return result;
    }
  }
  return writer.GetValue()->Commit();
}

/// All frames of a file; stops at the first failure and puts it into *pstrError.
inline Frames ReadFile(const frames::IFileKind &kind, const QString &strPath, std::string *pstrError,
                       frames::SFrameInfo *pInfo = nullptr)
{
  Result<std::unique_ptr<frames::IFrameReader>> reader = kind.Open(strPath);
  *pstrError = reader.GetError();
  Frames listFrames;
  if (!reader) {
    return listFrames;
  }
  const frames::SFrameInfo &stInfo = reader.GetValue()->GetInfo();
  for (uint64_t n = 0; n < stInfo.nFrames && pstrError->empty(); ++n) {
    std::vector<uint8_t> listFrame(stInfo.stLayout.GetFrameSize());
    *pstrError = reader.GetValue()->Read(listFrame.data()).GetError();
    listFrames.push_back(std::move(listFrame));
  }
  if (pInfo != nullptr) {
    *pInfo = stInfo;
  }
  return listFrames;
}

} // namespace ffc::test
