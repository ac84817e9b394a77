#include "frames/rawfile.h"

#include <charconv>

#include <QFile>

#include "frames/fileio.h"
#include "frames/partialfile.h"

namespace ffc::frames {

using genapi::FindSensorFormat;
using genapi::SSensorFormat;

namespace {

constexpr uint64_t MAX_SIDE = 100000; // of the image computations

class CRawReader final : public IFrameReader {
public:
  explicit CRawReader(const SFrameInfo &stInfo) : m_stInfo(stInfo) {}

  Result<> Open(const QString &strPath)
  {
    m_file.setFileName(strPath);
    Result<> result = OpenForReading(m_file);
    if (!result) {
      return result;
    }
    const auto nSize = static_cast<uint64_t>(m_file.size());
    const uint64_t nFrame = m_stInfo.stLayout.GetFrameSize();
    if (nFrame == 0 || nSize == 0 || nSize % nFrame != 0) {
      return Failure("has " + std::to_string(nSize) + " bytes, which is no multiple of the " + std::to_string(nFrame) +
                     " bytes of a frame of " + Describe(m_stInfo.stLayout) + ".");
    }
    m_stInfo.nFrames = nSize / nFrame;
    return {};
  }

  const SFrameInfo &GetInfo() const override { return m_stInfo; }
  void Close() override { m_file.close(); }

  Result<> Read(void *pFrame, Texts *pTexts) override
  {
    if (pTexts != nullptr) {
      pTexts->clear();
    }
    Result<> result = ReadExactly(m_file, pFrame, m_stInfo.stLayout.GetFrameSize());
    ConvertOrder<QSysInfo::LittleEndian>(pFrame, m_stInfo.stLayout);
    return result;
  }

private:
  SFrameInfo m_stInfo;
  QFile m_file;
};

class CRawWriter final : public IFrameWriter {
public:
  CRawWriter(const QString &strPath, const SLayout &stLayout) : m_file(strPath), m_stLayout(stLayout) {}

  Result<> Open() { return m_file.Open(); }

  Result<> Write(const void *pFrame, const Texts &) override { return m_file.WriteLittleEndian(pFrame, m_stLayout); }

  Result<> Commit(ECommit eCommit) override { return m_file.Commit(eCommit); }

private:
  CPartialFile m_file;
  SLayout m_stLayout;
};

// A side of a frame; 0 for a text that is none, or a number that is far too large for one.
uint64_t ParseSide(const std::string &strSide)
{
  uint32_t nSide = 0;
  const char *pEnd = strSide.data() + strSide.size();
  return std::from_chars(strSide.data(), pEnd, nSide).ptr == pEnd ? nSide : 0;
}

} // namespace

CRawFile::CRawFile(uint32_t nWidth, uint32_t nHeight, const SSensorFormat &stFormat)
  : m_stInfo(MakeFrameInfo(nWidth, nHeight, stFormat))
{
}

Result<CRawFile> CRawFile::Parse(const std::string &strFormat)
{
  const std::size_t nCross = strFormat.find('x');
  // Behind the cross; where there is none, nothing is found either.
  const std::size_t nColon = strFormat.find(':', nCross);
  if (nColon == std::string::npos) {
    return Failure("write it as WIDTHxHEIGHT:FORMAT, such as 2048x1536:Mono12");
  }
  const uint64_t nWidth = ParseSide(strFormat.substr(0, nCross));
  const uint64_t nHeight = ParseSide(strFormat.substr(nCross + 1, nColon - nCross - 1));
  if (nWidth == 0 || nHeight == 0 || nWidth > MAX_SIDE || nHeight > MAX_SIDE || nWidth * nHeight > MAX_PIXELS) {
    return Failure("width and height are numbers from 1 to " + std::to_string(MAX_SIDE));
  }
  const SSensorFormat *pFormat = FindSensorFormat(strFormat.substr(nColon + 1));
  if (pFormat == nullptr) {
    return Failure("there is no unpacked pixel format \"" + strFormat.substr(nColon + 1) + "\"");
  }
  return CRawFile(static_cast<uint32_t>(nWidth), static_cast<uint32_t>(nHeight), *pFormat);
}

Result<std::unique_ptr<IFrameReader>> CRawFile::Open(const QString &strPath) const
{
  return OpenObject<IFrameReader>(std::make_unique<CRawReader>(m_stInfo), strPath);
}

Result<std::unique_ptr<IFrameWriter>> CRawFile::Create(const QString &strPath, const SFrameInfo &stInfo) const
{
  return OpenObject<IFrameWriter>(std::make_unique<CRawWriter>(strPath, stInfo.stLayout));
}

} // namespace ffc::frames
