#include "tools/ffc/referencestack.h"

#include <utility>

#include "tools/ffc/correctionmarks.h"
#include "tools/ffc/inputs.h"

namespace ffc::tool {

using genapi::EColorLayout;
using genapi::GetLayoutName;

using process::CFrameBuffer;
using process::SFrameFormat;

namespace {

/// Sums of 32 bits hold this many of the largest samples.
constexpr uint32_t MAX_FRAMES = 65536;
constexpr uint32_t MONO8 = 0x01080001;
constexpr uint32_t MONO16 = 0x01100007;

bool IsAlike(const frames::SFrameInfo &stOne, const frames::SFrameInfo &stOther)
{
  // Not every file states the depth.
  const bool bDepth = stOne.nBitDepth == 0 || stOther.nBitDepth == 0 || stOne.nBitDepth == stOther.nBitDepth;
  return stOne.stLayout == stOther.stLayout && bDepth &&
         stOne.eColors.value_or(EColorLayout::Mono) == stOther.eColors.value_or(EColorLayout::Mono);
}

QString Describe(const frames::SFrameInfo &stInfo)
{
  const uint32_t nBits = stInfo.nBitDepth != 0 ? stInfo.nBitDepth : 8 * stInfo.stLayout.nBytesPerSample;
  return QStringLiteral("%1 x %2 with %3 bits, %4")
    .arg(stInfo.stLayout.nWidth)
    .arg(stInfo.stLayout.nHeight)
    .arg(nBits)
    .arg(QLatin1String(GetLayoutName(stInfo.eColors.value_or(EColorLayout::Mono))));
}

} // namespace

std::optional<STrouble> CReferenceStack::Read(const QStringList &listFiles, const SOptions &stOptions,
                                              const frames::SFrameInfo *pLike)
{
  for (const QString &strFile : listFiles) {
    std::optional<STrouble> stTrouble = ReadFile(strFile, stOptions, m_nFrames == 0 ? pLike : &m_stInfo);
    if (stTrouble) {
      return stTrouble;
    }
  }
  return std::nullopt;
}

std::optional<STrouble> CReferenceStack::ReadFile(const QString &strFile, const SOptions &stOptions,
                                                  const frames::SFrameInfo *pLike)
{
  auto reader = OpenFrames(strFile, stOptions);
  if (!reader) {
    return STrouble{false, QString::fromStdString(reader.GetError())};
  }
  const frames::SFrameInfo &stInfo = reader.GetValue()->GetInfo();
  if (pLike != nullptr && !IsAlike(stInfo, *pLike)) {
    return Refuse(QStringLiteral("The file \"%1\" has frames of %2, unlike the others: %3. All frames of a flat have "
                                 "one size and format.")
                    .arg(strFile, Describe(stInfo), Describe(*pLike)));
  }
  std::optional<STrouble> stTrouble =
    stOptions.bForce ? std::nullopt
                     : CheckUncorrected(strFile, stInfo, "; a flat is made from frames as they came (or --force).");
  if (stTrouble) {
    return stTrouble;
  }
  if (!stInfo.strRemark.isEmpty() && !m_listRemarks.contains(stInfo.strRemark)) {
    m_listRemarks << stInfo.strRemark;
  }
  stTrouble = m_nFrames == 0 ? Prepare(strFile, stInfo) : std::nullopt;
  for (uint64_t n = 0; !stTrouble && n < stInfo.nFrames; ++n) {
    const Result<> read = reader.GetValue()->Read(m_frame.GetData());
    stTrouble = read ? AddFrame(strFile) : STrouble{false, MakeSentence(strFile, read.GetError())};
  }
  return stTrouble;
}

std::optional<STrouble> CReferenceStack::Prepare(const QString &strFile, const frames::SFrameInfo &stInfo)
{
  m_stInfo = stInfo;
  const uint64_t nSize = stInfo.stLayout.GetFrameSize();
  const bool bAllocated = m_frame.Allocate(nSize) && m_first.Allocate(nSize) && m_sums.Allocate(nSize) &&
                          (!m_bMeasured || m_former.Allocate(nSize));
  return bAllocated ? std::nullopt
                    : std::optional<STrouble>(
                        STrouble{false, MakeSentence(strFile, "has frames that need more memory than there is.")});
}

std::optional<STrouble> CReferenceStack::AddFrame(const QString &strFile)
{
  if (m_nFrames == MAX_FRAMES) {
    return Refuse(MakeSentence(strFile, "brings more than the 65536 frames that can be averaged."));
  }
  if (m_nFrames == 0) {
    m_first.CopyFrom(m_frame);
  }
  m_stEvidence.Add(m_frame.GetData(), m_stInfo.stLayout);
  m_watch.Add(m_frame.GetData(), m_stInfo.stLayout.nWidth, m_stInfo.stLayout.nHeight,
              m_stInfo.stLayout.nBytesPerSample);
  if (m_sums.Add(m_frame, MakeFormat()) != 0) {
    return Refuse(MakeSentence(strFile, "has frames that the image statistics refuse."));
  }
  if (m_bMeasured && m_nFrames > 0) {
    const frames::SLayout &stLayout = m_stInfo.stLayout;
    m_meter.Add(m_former.GetData(), m_frame.GetData(), stLayout.nWidth, stLayout.nHeight, stLayout.nBytesPerSample);
  }
  if (m_bMeasured) {
    std::swap(m_former, m_frame);
  }
  ++m_nFrames;
  return std::nullopt;
}

/// Sums and averages depend on the samples' size alone, so the depth may be found out afterwards.
SFrameFormat CReferenceStack::MakeFormat() const
{
  const frames::SLayout &stLayout = m_stInfo.stLayout;
  return {stLayout.nBytesPerSample == 1 ? MONO8 : MONO16, stLayout.nWidth, stLayout.nHeight, stLayout.GetFrameSize()};
}

bool CReferenceStack::Average(const frames::SDepth &stDepth, CFrameBuffer &average)
{
  if (!average.Allocate(m_stInfo.stLayout.GetFrameSize()) || m_sums.Average(m_nFrames, MakeFormat(), average) != 0) {
    return false;
  }
  // Shifting a truncated average is the truncated average of shifted samples.
  if (stDepth.GetShift(m_stInfo.stLayout) > 0) {
    frames::ShiftRight(average.GetData(), m_stInfo.stLayout, stDepth.GetShift(m_stInfo.stLayout));
  }
  return true;
}

reference::SFrameSums CReferenceStack::GetSums(const frames::SDepth &stDepth)
{
  return {m_sums.GetSums(), m_nFrames, stDepth.GetShift(m_stInfo.stLayout), &m_meter};
}

bool CReferenceStack::TakeFirst(const frames::SDepth &stDepth, CFrameBuffer &first)
{
  if (!first.Allocate(m_first.GetSize())) {
    return false;
  }
  first.CopyFrom(m_first);
  if (stDepth.GetShift(m_stInfo.stLayout) > 0) {
    frames::ShiftRight(first.GetData(), m_stInfo.stLayout, stDepth.GetShift(m_stInfo.stLayout));
  }
  return true;
}

} // namespace ffc::tool
