#include "camera/software/selfcorrection/blocktable.h"

#include <cstddef>

namespace ffc::camera {

using genapi::EColor;

namespace {

constexpr double GAIN_UNIT = 256.0;

// The words of a register.
class CWords {
public:
  explicit CWords(const std::vector<uint8_t> &listBytes) : m_listBytes(listBytes) {}

  double Get(std::size_t nWord) const { return m_listBytes[2 * nWord] + 256.0 * m_listBytes[2 * nWord + 1]; }
  double GetGain(std::size_t nWord) const { return Get(nWord) / GAIN_UNIT; }

private:
  const std::vector<uint8_t> &m_listBytes;
};

GridPlane &GetGainPlane(SBlockTable &stTable, EColor eColor)
{
  return stTable.alistGain[static_cast<std::size_t>(eColor)];
}

void ReadFlatField(const CWords &words, SBlockTable &stTable)
{
  for (std::size_t nPoint = 0; nPoint < stTable.listDark.size(); ++nPoint) {
    const std::size_t nWord = 4 * nPoint;
    stTable.listDark[nPoint] = words.Get(nWord);
    GetGainPlane(stTable, EColor::Blue)[nPoint] = words.GetGain(nWord + 1);
    GetGainPlane(stTable, EColor::Green)[nPoint] = words.GetGain(nWord + 2);
    GetGainPlane(stTable, EColor::Red)[nPoint] = words.GetGain(nWord + 3);
  }
}

void ReadVignetting(const CWords &words, const SBlockLayout &stLayout, SBlockTable &stTable)
{
  const std::size_t nWordsPerPoint = stLayout.bColor ? 3 : 1;
  const std::size_t nGroupsPerRow = (std::size_t{stLayout.GetColumns()} + 1) / 2;
  for (std::size_t nRow = 0; nRow < stLayout.GetRows(); ++nRow) {
    for (std::size_t nColumn = 0; nColumn < stLayout.GetColumns(); ++nColumn) {
      const std::size_t nGroup = nRow / 2 * nGroupsPerRow + nColumn / 2;
      const std::size_t nWord = (4 * nGroup + nRow % 2 * 2 + nColumn % 2) * nWordsPerPoint;
      const std::size_t nPoint = nRow * stLayout.GetColumns() + nColumn;
      for (const EColor eColor : {EColor::Red, EColor::Green, EColor::Blue}) {
        const std::size_t nShift = stLayout.bColor ? static_cast<std::size_t>(eColor) : 0;
        GetGainPlane(stTable, eColor)[nPoint] = words.GetGain(nWord + nShift);
      }
    }
  }
}

} // namespace

SBlockTable ReadBlockTable(const SBlockLayout &stLayout, const std::vector<uint8_t> &listRegister)
{
  const std::size_t nPoints = std::size_t{stLayout.GetRows()} * stLayout.GetColumns();
  SBlockTable stTable;
  stTable.listDark.assign(nPoints, 0.0);
  for (GridPlane &listGain : stTable.alistGain) {
    listGain.assign(nPoints, 0.0);
  }
  const CWords words(listRegister);
  if (stLayout.eMode == ECorrectionMode::FlatField) {
    ReadFlatField(words, stTable);
  } else {
    ReadVignetting(words, stLayout, stTable);
  }
  return stTable;
}

} // namespace ffc::camera
