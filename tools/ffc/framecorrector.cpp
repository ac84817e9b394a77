#include "tools/ffc/framecorrector.h"

#include <algorithm>
#include <cstring>

#include "ombrix/ombrix.h"

namespace ffc::tool {
namespace {

/// Of 16-bit samples 128 KB, with coefficients of 256 KB.
constexpr std::size_t RUN_PIXELS = std::size_t{1} << 16U;

} // namespace

/// The flat's table, as one table for each run of a frame.
class CFrameCorrector::CRunTable {
public:
  /// \return false when there is no memory
  bool Prepare(const process::CFrameBuffer &table, std::size_t nPixels)
  {
    m_nPixels = nPixels;
    m_nBytesPerPixel = table.GetSize() / nPixels;
    m_pTable = table.GetData();
    // Of gains alone, each part is a table already.
    return m_nBytesPerPixel == sizeof(uint16_t) || Interleave(table);
  }

  std::size_t GetPixelCount() const { return m_nPixels; }
  std::size_t GetBytesPerPixel() const { return m_nBytesPerPixel; }
  const uint8_t *GetRun(std::size_t nFirst) const { return m_pTable + nFirst * m_nBytesPerPixel; }

private:
  bool Interleave(const process::CFrameBuffer &table)
  {
    if (!m_runs.Allocate(table.GetSize())) {
      return false;
    }
    uint8_t *pRun = m_runs.GetData();
    for (std::size_t nFirst = 0; nFirst < m_nPixels; nFirst += RUN_PIXELS) {
      const std::size_t nBytes = std::min(RUN_PIXELS, m_nPixels - nFirst) * sizeof(uint16_t);
      for (const std::size_t nPlace : {nFirst, m_nPixels + nFirst}) {
        std::memcpy(pRun, table.GetData() + nPlace * sizeof(uint16_t), nBytes);
        pRun += nBytes;
      }
    }
    m_pTable = m_runs.GetData();
    return true;
  }

  process::CFrameBuffer m_runs; ///< of each run its gains, then its dark levels
  const uint8_t *m_pTable = nullptr;
  std::size_t m_nPixels = 0;
  std::size_t m_nBytesPerPixel = 0; ///< in the table
};

CFrameCorrector::CFrameCorrector(const CFlat &flat) : m_flat(flat) {}

CFrameCorrector::~CFrameCorrector() = default;

std::shared_ptr<const CFrameCorrector::CRunTable> CFrameCorrector::FindTable(std::size_t nPixels)
{
  const std::lock_guard<std::mutex> lock(m_mutex);
  if (m_pTable == nullptr || m_pTable->GetPixelCount() != nPixels) {
    auto pTable = std::make_shared<CRunTable>();
    m_pTable = pTable->Prepare(m_flat.GetTable(), nPixels) ? std::move(pTable) : nullptr;
  }
  return m_pTable;
}

Result<> CFrameCorrector::Correct(void *pFrame, const frames::SFrameInfo &stInfo, SFrameHashes *pHashes)
{
  const uint32_t nBytesPerSample = stInfo.stLayout.nBytesPerSample;
  const std::size_t nPixels = stInfo.stLayout.GetFrameSize() / nBytesPerSample;
  const std::shared_ptr<const CRunTable> pTable = FindTable(nPixels);
  if (pTable == nullptr) {
    return Failure("needs more memory than there is.");
  }
  const bool bDefects = m_flat.GetDefects().GetCount() > 0;
  uint32_t nShift = 0;
  auto *pRun = static_cast<uint8_t *>(pFrame);
  for (std::size_t nFirst = 0; nFirst < nPixels; nFirst += RUN_PIXELS) {
    const frames::SLayout stRun = {static_cast<uint32_t>(std::min(RUN_PIXELS, nPixels - nFirst)), 1, nBytesPerSample};
    if (pHashes != nullptr) {
      pHashes->hashRead.Add(pRun, stRun.GetFrameSize());
    }
    const auto nTable = static_cast<uint32_t>(stRun.nWidth * pTable->GetBytesPerPixel());
    const Result<uint32_t> shift = CorrectRun(pRun, stRun, pTable->GetRun(nFirst), nTable, stInfo);
    if (!shift) {
      return shift.GetFailure();
    }
    nShift = shift.GetValue();
    if (pHashes != nullptr && !bDefects) {
      pHashes->hashWritten.Add(pRun, stRun.GetFrameSize());
    }
    pRun += stRun.GetFrameSize();
  }
  if (bDefects) {
    ReplaceDefects(pFrame, stInfo.stLayout, nShift);
    if (pHashes != nullptr) {
      pHashes->hashWritten.Add(pFrame, stInfo.stLayout.GetFrameSize());
    }
  }
  return {};
}

void CFrameCorrector::ReplaceDefects(void *pFrame, const frames::SLayout &stLayout, uint32_t nShift) const
{
  if (nShift > 0) {
    frames::ShiftRight(pFrame, stLayout, nShift);
  }
  m_flat.GetDefects().Apply(pFrame, stLayout.nBytesPerSample);
  if (nShift > 0) {
    frames::ShiftLeft(pFrame, stLayout, nShift);
  }
}

Result<uint32_t> CFrameCorrector::CorrectRun(void *pRun, const frames::SLayout &stRun, const uint8_t *pTable,
                                             uint32_t nTable, const frames::SFrameInfo &stInfo) const
{
  // All values are below a power of two when all bits together are.
  const uint32_t nUsedBits = frames::FindUsedBits(pRun, stRun);
  Result<frames::SDepth> depth = m_flat.DecideDepth({nUsedBits, nUsedBits}, stInfo);
  if (!depth) {
    frames::SEvidence stEvidence;
    stEvidence.Add(pRun, stRun);
    depth = m_flat.DecideDepth(stEvidence, stInfo);
    return Failure(depth.GetError() + " If the values stand elsewhere in the 16 bits, use --align.");
  }
  const uint32_t nShift = depth.GetValue().GetShift(stRun);
  if (nShift > 0) {
    frames::ShiftRight(pRun, stRun, nShift);
  }
  if (OmbrixApplyFlatField(pRun, pRun, depth.GetValue().nBitDepth, stRun.nWidth, stRun.nHeight, pTable, &nTable) !=
      OMBRIX_STATUS_SUCCESS) {
    return Failure("cannot be corrected: the image library refuses its frames.");
  }
  if (nShift > 0) {
    frames::ShiftLeft(pRun, stRun, nShift);
  }
  return nShift;
}

} // namespace ffc::tool
