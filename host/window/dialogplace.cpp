#include "host/window/dialogplace.h"

#include <algorithm>
#include <utility>

namespace ffc::host {
namespace {

constexpr int GAP = 8; ///< pixels

int GetArea(const QRect &rcArea)
{
  return rcArea.isEmpty() ? 0 : rcArea.width() * rcArea.height();
}

/// As near to the wish as the screen allows; a dialog larger than the screen shows its upper left corner.
QPoint KeepInside(const QRect &rcScreen, const QPoint &ptWish, const QSize &szDialog)
{
  const auto Keep = [](int nWish, int nFirst, int nRoom) { return std::max(nFirst, std::min(nWish, nFirst + nRoom)); };
  return {Keep(ptWish.x(), rcScreen.left(), rcScreen.width() - szDialog.width()),
          Keep(ptWish.y(), rcScreen.top(), rcScreen.height() - szDialog.height())};
}

} // namespace

QPoint FindDialogPlace(const QRect &rcScreen, const QRect &rcWindow, const QRect &rcImage, const QSize &szDialog)
{
  const int nWidth = szDialog.width();
  // Earlier ones win: beside the window, then over its right panel, then over its left one.
  const int listLefts[] = {rcWindow.right() + GAP,        rcWindow.left() - GAP - nWidth, rcImage.right() + GAP,
                           rcScreen.right() + 1 - nWidth, rcImage.left() - GAP - nWidth,  rcScreen.left()};
  QPoint ptBest;
  std::pair<int, int> best;
  for (const int nLeft : listLefts) {
    const QPoint ptPlace = KeepInside(rcScreen, {nLeft, rcImage.top()}, szDialog);
    const QRect rcPlace(ptPlace, szDialog);
    const std::pair<int, int> covered(GetArea(rcPlace & rcImage), GetArea(rcPlace & rcWindow));
    if (nLeft == listLefts[0] || covered < best) {
      best = covered;
      ptBest = ptPlace;
    }
  }
  return ptBest;
}

} // namespace ffc::host
