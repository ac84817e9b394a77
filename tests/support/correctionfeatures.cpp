#include "tests/support/correctionfeatures.h"

#include <iterator>
#include <utility>

namespace ffc::test {

namespace {

constexpr std::size_t RECORD_SIZE = 24;
constexpr int64_t ELEMENT_SIZE = 8;
constexpr int64_t GAIN_SIZE = 2;

// Sides of the blocks by the value of FFCBlockSize; another value has the first.
constexpr int64_t BLOCK_SIDES[] = {32, 16, 64, 128};

// A rest wider than half a block is a block too.
int64_t CountBlocks(int64_t nSide, int64_t nBlockSide)
{
  return nSide / nBlockSide + (nSide % nBlockSide > nBlockSide / 2 ? 1 : 0);
}

} // namespace

CCorrectionFeatures::CCorrectionFeatures(genapi::CSoftwareNodeMap &map, const std::set<std::string> &setAbsent,
                                         ECoefficients eCoefficients)
  : m_map(map), m_eCoefficients(eCoefficients), m_bRecordExchanged(eCoefficients == ECoefficients::FlatField)
{
  AddSettings(setAbsent);
  AddCoefficients();
}

std::vector<uint8_t> CCorrectionFeatures::GetWritten() const
{
  const auto lock = m_map.Lock();
  return m_listWritten;
}

std::vector<uint8_t> CCorrectionFeatures::GetReadBack() const
{
  std::vector<uint8_t> listBytes = GetWritten();
  if (m_bRecordExchanged && listBytes.size() >= RECORD_SIZE) {
    for (std::size_t i = listBytes.size() - RECORD_SIZE; i < listBytes.size(); i += 2) {
      std::swap(listBytes[i], listBytes[i + 1]);
    }
  }
  return listBytes;
}

std::vector<uint8_t> CCorrectionFeatures::GetFlash() const
{
  const auto lock = m_map.Lock();
  return m_listFlash;
}

void CCorrectionFeatures::SetWritten(std::vector<uint8_t> listBytes)
{
  const auto lock = m_map.Lock();
  m_listWritten = std::move(listBytes);
}

void CCorrectionFeatures::SetFlash(std::vector<uint8_t> listBytes)
{
  const auto lock = m_map.Lock();
  m_listFlash = std::move(listBytes);
}

void CCorrectionFeatures::AddSettings(const std::set<std::string> &setAbsent)
{
  using Entries = std::vector<std::pair<const char *, int64_t>>;
  const Entries listLargeBlocks = {{"BlockSize_4096", 2}, {"BlockSize_16384", 3}};
  Entries listBlocks = {{"BlockSize_1024", 0}, {"BlockSize_256", 1}};
  listBlocks.insert(listBlocks.end(), listLargeBlocks.begin(), listLargeBlocks.end());
  const std::pair<const char *, Entries> aSettings[] = {
    {"FFCBlockSize", m_eCoefficients == ECoefficients::Vignetting ? listLargeBlocks : listBlocks},
    {"FFCFrameCount",
     {{"FFCFrameCount_1", 0},
      {"FFCFrameCount_2", 1},
      {"FFCFrameCount_4", 2},
      {"FFCFrameCount_8", 3},
      {"FFCFrameCount_16", 4}}},
    {"FlatFieldCorrection", {{"Off", 0}, {"On", 1}}},
    {"FixedPatternNoiseCorrectMode", {{"Off", 0}, {"On", 1}}},
    {"DeadPixelCorrect", {{"Off", 0}, {"On", 1}}},
    {"RemoveParameterLimit", {{"Off", 0}, {"On", 1}}},
  };
  for (const auto &[pName, listEntries] : aSettings) {
    if (setAbsent.count(pName) == 0) {
      auto &node = m_map.AddEnumeration(pName);
      for (const auto &[pEntry, nValue] : listEntries) {
        node.Entry(pEntry, nValue);
      }
    }
  }
  if (setAbsent.count("FFCExpectGray") == 0) {
    m_map.AddInteger("FFCExpectGray", 200).Range(0, 255);
  }
  if (setAbsent.count("DigitalShift") == 0) {
    m_map.AddInteger("DigitalShift").Range(0, 8);
  }
}

void CCorrectionFeatures::AddCoefficients()
{
  auto &size = m_map.AddInteger("FFCCoefficientsSize").OnRead([this] { return ComputeSize(); });
  m_map.AddRegister("FFCValueAll")
    .Length([&size] { return size.Peek(); })
    .OnRead([this] { return GetReadBack(); })
    .OnWrite([this](const std::vector<uint8_t> &listBytes) { SetWritten(listBytes); });
  m_map.AddCommand("FFCFlashLoad").OnExecute([this] { m_listWritten = m_listFlash; });
  m_map.AddCommand("FFCFlashSave").OnExecute([this] { m_listFlash = m_listWritten; });
}

// Points along a side: one in each block and one beyond either end; gains come in pairs.
int64_t CCorrectionFeatures::CountPoints(int64_t nSide) const
{
  const auto nEntry = static_cast<std::size_t>(m_map.Find<genapi::CSoftwareEnumeration>("FFCBlockSize")->Peek());
  const int64_t nBlockSide = BLOCK_SIDES[nEntry < std::size(BLOCK_SIDES) ? nEntry : 0];
  const int64_t nPoints = CountBlocks(nSide, nBlockSide) + 2;
  return m_eCoefficients == ECoefficients::Vignetting ? nPoints + nPoints % 2 : nPoints;
}

int64_t CCorrectionFeatures::ComputeSize() const
{
  const int64_t nGains = m_map.GetNode("PixelColorFilter") == nullptr ? 1 : 3;
  const int64_t nPointSize = m_eCoefficients == ECoefficients::Vignetting ? nGains * GAIN_SIZE : ELEMENT_SIZE;
  const int64_t nColumns = CountPoints(m_map.Find<genapi::CSoftwareInteger>("Width")->Peek());
  const int64_t nRows = CountPoints(m_map.Find<genapi::CSoftwareInteger>("Height")->Peek());
  return nColumns * nRows * nPointSize + static_cast<int64_t>(RECORD_SIZE);
}

} // namespace ffc::test
