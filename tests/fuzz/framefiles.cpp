// Files of frames and side files: whatever the bytes, reading them ends with frames of the stated size or with a
// reason.
#include <algorithm>

#include <QByteArray>

#include "frames/fitsfile.h"
#include "frames/rawfile.h"
#include "frames/serfile.h"
#include "frames/sidefile.h"
#include "frames/tifffile.h"
#include "tests/fuzz/exactbuffer.h"
#include "tests/fuzz/fuzzedfile.h"
#include "tests/fuzz/fuzztargets.h"
#include "tests/fuzz/require.h"

using namespace ffc::frames;

namespace {

/// Frames beyond these are left alone, so that a run takes no time to speak of.
constexpr uint64_t MOST_FRAMES = 16;

void ReadAll(const IFileKind &kind, const uint8_t *pData, std::size_t nSize)
{
  CExactBuffer content(nSize);
  std::copy_n(pData, nSize, content.GetData());
  CFuzzedFile::Write(content);
  auto reader = kind.Open(CFuzzedFile::GetFileName());
  if (!reader) {
    Require(!reader.GetError().empty(), "a file that is refused has a reason");
    return;
  }
  const SFrameInfo &stInfo = reader.GetValue()->GetInfo();
  const std::size_t nFrame = stInfo.stLayout.GetFrameSize();
  Require(stInfo.nFrames > 0 && nFrame > 0, "a file that is read has frames");
  Require(nFrame / 4096 <= nSize, "no file asks for more memory than it could fill");
  for (uint64_t n = 0; n < stInfo.nFrames && n < MOST_FRAMES; ++n) {
    CExactBuffer frame(nFrame);
    Texts mapTexts;
    const auto result = reader.GetValue()->Read(frame.GetData(), &mapTexts);
    Require(result.IsOk() || !result.GetError().empty(), "a frame that is not read has a reason");
    if (!result) {
      break;
    }
  }
}

} // namespace

void FuzzSerFile(const uint8_t *pData, std::size_t nSize)
{
  ReadAll(CSerFile(), pData, nSize);
}

void FuzzTiffFile(const uint8_t *pData, std::size_t nSize)
{
  ReadAll(CTiffFile(), pData, nSize);
}

void FuzzFitsFile(const uint8_t *pData, std::size_t nSize)
{
  // Lines that become those of a header, up to an empty one, and the data: a header of whole blocks is longer than a
  // fuzzer's inputs.
  QByteArray byteFile(reinterpret_cast<const char *>(pData), static_cast<int>(nSize));
  const int nEnd = byteFile.indexOf("\n\n");
  if (nEnd >= 0) {
    QByteArray byteHeader;
    const QList<QByteArray> listLines = byteFile.left(nEnd).split('\n') + QList<QByteArray>{"END"};
    for (const QByteArray &byteLine : listLines) {
      byteHeader += byteLine.leftJustified(80, ' ', true);
    }
    const int nBlocks = (byteHeader.size() + 2879) / 2880;
    byteFile = byteHeader.leftJustified(2880 * nBlocks, ' ') + byteFile.mid(nEnd + 2);
  }
  ReadAll(CFitsFile(), reinterpret_cast<const uint8_t *>(byteFile.constData()),
          static_cast<std::size_t>(byteFile.size()));
}

void FuzzRawFile(const uint8_t *pData, std::size_t nSize)
{
  // The first line is what --raw says.
  const QByteArray byteInput(reinterpret_cast<const char *>(pData), static_cast<int>(nSize));
  const int nLine = std::max(0, byteInput.indexOf('\n'));
  const auto raw = CRawFile::Parse(byteInput.left(nLine).toStdString());
  if (raw) {
    ReadAll(raw.GetValue(), pData + nLine, nSize - static_cast<std::size_t>(nLine));
  }
}

void FuzzSideFile(const uint8_t *pData, std::size_t nSize)
{
  const QByteArray byteInput(reinterpret_cast<const char *>(pData), static_cast<int>(nSize));
  const auto side = ParseSideFile(byteInput);
  if (!side) {
    Require(!side.GetError().empty(), "a file that is refused has a reason");
    return;
  }
  const auto again = ParseSideFile(MakeSideFile(side.GetValue()));
  Require(again.IsOk() && MakeSideFile(again.GetValue()) == MakeSideFile(side.GetValue()),
          "what was read can be written and read again");
}
