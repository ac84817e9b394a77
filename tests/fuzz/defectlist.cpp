// Lists of defect pixels: whatever the bytes, they are refused with a reason, or read as what both kinds of list can be
// written from again.
#include <algorithm>

#include <QByteArray>

#include "quality/defects.h"
#include "tests/fuzz/fuzztargets.h"
#include "tests/fuzz/require.h"

using namespace ffc::quality;

namespace {

bool HaveSamePixels(const std::vector<SDefect> &listOne, const std::vector<SDefect> &listOther)
{
  return std::equal(listOne.begin(), listOne.end(), listOther.begin(), listOther.end(),
                    [](const SDefect &stOne, const SDefect &stOther) {
                      return stOne.nColumn == stOther.nColumn && stOne.nLine == stOther.nLine;
                    });
}

void RequireSame(const std::vector<SDefect> &listDefects, const QByteArray &byteWritten)
{
  const auto again = ParseDefects(byteWritten);
  Require(again.IsOk() && HaveSamePixels(again.GetValue(), listDefects),
          "a list that was read can be written and read again");
}

} // namespace

void FuzzDefectList(const uint8_t *pData, std::size_t nSize)
{
  const QByteArray byteInput(reinterpret_cast<const char *>(pData), static_cast<int>(nSize));
  const auto defects = ParseDefects(byteInput);
  if (!defects) {
    Require(!defects.GetError().empty(), "a list that is refused has a reason");
    return;
  }
  RequireSame(defects.GetValue(), MakeDefectsCsv(defects.GetValue()));
  RequireSame(defects.GetValue(), MakeDefectsXml(defects.GetValue(), 640, 480));
}
