#include "host/window/toolbar.h"

#include <QPainter>
#include <QRegularExpression>
#include <QToolButton>

#include "host/window/appearance.h"

namespace ffc::host {
namespace {

constexpr int MORE_SIZE = 12;      ///< pixels, square
constexpr double CHEVRON_HIGH = 3; ///< from its tip to either end

} // namespace

CToolBar::CToolBar(QWidget *pParent) : QToolBar(pParent)
{
  PaintMore();
}

void CToolBar::changeEvent(QEvent *pEvent)
{
  QToolBar::changeEvent(pEvent);
  if (IsNewLook(*pEvent)) {
    PaintMore();
  }
}

/// Two chevrons in the colour of the other buttons' texts.
void CToolBar::PaintMore()
{
  auto *pMore = findChild<QToolButton *>(QStringLiteral("qt_toolbar_ext_button"));
  if (pMore == nullptr) {
    return;
  }
  QPixmap picture(QSize(MORE_SIZE, MORE_SIZE) * devicePixelRatioF());
  picture.setDevicePixelRatio(devicePixelRatioF());
  picture.fill(Qt::transparent);
  QPainter painter(&picture);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(palette().color(QPalette::ButtonText), 1.5));
  const double dMiddle = MORE_SIZE / 2.0;
  for (const double dTip : {5.5, 10.0}) {
    const QPointF listPoints[] = {
      {dTip - CHEVRON_HIGH, dMiddle - CHEVRON_HIGH}, {dTip, dMiddle}, {dTip - CHEVRON_HIGH, dMiddle + CHEVRON_HIGH}};
    painter.drawPolyline(listPoints, 3);
  }
  painter.end();
  pMore->setIcon(picture);
  pMore->setToolTip(tr("More tools"));
}

QString GetToolBarText(const QString &strMenuText)
{
  static const QRegularExpression bracketed(QStringLiteral("\\(&.\\)"));
  static const QRegularExpression dots(QStringLiteral("\\.\\.\\.$"));
  return QString(strMenuText).remove(bracketed).remove(dots).remove(QLatin1Char('&')).trimmed();
}

} // namespace ffc::host
