#include "tools/ffc/framestacks.h"

#include "tools/ffc/correctionmarks.h"
#include "tools/ffc/inputs.h"

namespace ffc::tool {

using genapi::EColorLayout;

std::optional<STrouble> CStackReader::Read(const std::vector<std::string> &listNames, SStacks &stStacks)
{
  const Result<QStringList> listFiles = ListFiles(listNames, m_stOptions.raw.has_value());
  return listFiles ? Read(listFiles.GetValue(), stStacks)
                   : std::optional<STrouble>(STrouble{false, QString::fromStdString(listFiles.GetError())});
}

std::optional<STrouble> CStackReader::Read(const QStringList &listFiles, SStacks &stStacks)
{
  std::optional<STrouble> stTrouble;
  for (const QString &strFile : listFiles) {
    stTrouble = stTrouble ? stTrouble : ReadFile(strFile, stStacks);
  }
  return stTrouble;
}

std::optional<STrouble> CStackReader::ReadFile(const QString &strFile, SStacks &stStacks)
{
  auto reader = OpenFrames(strFile, m_stOptions);
  if (!reader) {
    return STrouble{false, QString::fromStdString(reader.GetError())};
  }
  const frames::SFrameInfo &stInfo = reader.GetValue()->GetInfo();
  std::optional<STrouble> stTrouble = m_flat.CheckFits(strFile, stInfo);
  stTrouble = stTrouble ? stTrouble : CheckUncorrected(strFile, stInfo, "; the check takes frames as they came.");
  std::vector<uint8_t> listFrame(stInfo.stLayout.GetFrameSize());
  for (uint64_t n = 0; !stTrouble && n < stInfo.nFrames; ++n) {
    const Result<> read = reader.GetValue()->Read(listFrame.data());
    stTrouble =
      read ? AddFrame(strFile, stInfo, listFrame, stStacks) : STrouble{false, MakeSentence(strFile, read.GetError())};
  }
  return stTrouble;
}

std::optional<STrouble> CStackReader::Prepare(const frames::SFrameInfo &stInfo, uint32_t nBitDepth, SStacks &stStacks)
{
  m_eColors = m_flat.GetColors().value_or(stInfo.eColors.value_or(EColorLayout::Mono));
  quality::EHighPass eHighPass = quality::EHighPass::Release4;
  quality::FindHighPass(m_stOptions.strHighPass, eHighPass);
  for (quality::CFrameStack *pStack : {&stStacks.stackRaw, &stStacks.stackCorrected}) {
    if (!pStack->Prepare(stInfo.stLayout.nWidth, stInfo.stLayout.nHeight, nBitDepth)) {
      return STrouble{false, QStringLiteral("There is not enough memory for the figures.")};
    }
    pStack->AlsoFilter(m_eColors, eHighPass);
  }
  return std::nullopt;
}

std::optional<STrouble> CStackReader::AddFrame(const QString &strFile, const frames::SFrameInfo &stInfo,
                                               std::vector<uint8_t> &listFrame, SStacks &stStacks)
{
  if (stStacks.stackRaw.GetFrameCount() == MAX_FIGURE_FRAMES) {
    return std::nullopt;
  }
  frames::SEvidence stEvidence;
  stEvidence.Add(listFrame.data(), stInfo.stLayout);
  const Result<frames::SDepth> depth = m_flat.DecideDepth(stEvidence, stInfo);
  if (!depth) {
    return STrouble{true, MakeSentence(strFile, depth.GetError())};
  }
  const uint32_t nBitDepth = depth.GetValue().nBitDepth;
  const uint32_t nShift = depth.GetValue().GetShift(stInfo.stLayout);
  if (nShift > 0) {
    frames::ShiftRight(listFrame.data(), stInfo.stLayout, nShift);
  }
  if (stStacks.stackRaw.GetFrameCount() == 0) {
    std::optional<STrouble> stTrouble = Prepare(stInfo, nBitDepth, stStacks);
    if (stTrouble) {
      return stTrouble;
    }
  }
  if (stInfo.stLayout.nWidth != stStacks.stackRaw.GetWidth() || listFrame.size() != stStacks.stackRaw.GetFrameSize()) {
    return STrouble{true, MakeSentence(strFile, "is unlike the frames before.")};
  }
  const bool bAdded = stStacks.stackRaw.Add(listFrame.data(), listFrame.size()) &&
                      m_flat.Apply(listFrame.data(), stInfo.stLayout, nBitDepth) &&
                      stStacks.stackCorrected.Add(listFrame.data(), listFrame.size());
  return bAdded ? std::nullopt
                : std::optional<STrouble>(STrouble{false, MakeSentence(strFile, "needs more memory than there is.")});
}

} // namespace ffc::tool
