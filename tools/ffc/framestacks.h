/// \file
/// Frames added up before and after a correction, for figures.
#pragma once

#include "quality/framestack.h"
#include "tools/ffc/flat.h"

namespace ffc::tool {

/// Most frames of the sums of the figures; what comes after them is left out.
constexpr uint32_t MAX_FIGURE_FRAMES = 256;

struct SStacks {
  quality::CFrameStack stackRaw;
  quality::CFrameStack stackCorrected;
};

/// Reads frames that fit a flat. Used by one thread at a time.
class CStackReader {
public:
  CStackReader(const SOptions &stOptions, const CFlat &flat) : m_stOptions(stOptions), m_flat(flat) {}

  /// Adds the frames of files.
  std::optional<STrouble> Read(const QStringList &listFiles, SStacks &stStacks);
  /// The same for names of files, folders and patterns.
  std::optional<STrouble> Read(const std::vector<std::string> &listNames, SStacks &stStacks);

  /// Of the frames read last.
  genapi::EColorLayout GetColors() const { return m_eColors; }

private:
  std::optional<STrouble> ReadFile(const QString &strFile, SStacks &stStacks);
  std::optional<STrouble> Prepare(const frames::SFrameInfo &stInfo, uint32_t nBitDepth, SStacks &stStacks);
  std::optional<STrouble> AddFrame(const QString &strFile, const frames::SFrameInfo &stInfo,
                                   std::vector<uint8_t> &listFrame, SStacks &stStacks);

  const SOptions &m_stOptions;
  const CFlat &m_flat;
  genapi::EColorLayout m_eColors = genapi::EColorLayout::Mono;
};

} // namespace ffc::tool
