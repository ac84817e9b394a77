#include "host/window/stretchcontrol.h"

#include <algorithm>

#include <QAction>
#include <QActionGroup>
#include <QMenu>
#include <QSignalBlocker>
#include <QSpinBox>
#include <QToolBar>
#include <QToolButton>

#include "host/window/toolbar.h"

namespace ffc::host {

CStretchControl::CStretchControl(QWidget *pParent)
  : QObject(pParent), m_pMenu(new QMenu(tr("S&tretch"), pParent)), m_pModes(new QActionGroup(this)),
    m_pButton(new QToolButton(pParent)), m_pBlack(MakeGrey("StretchBlack", tr("black "), pParent)),
    m_pWhite(MakeGrey("StretchWhite", tr("white "), pParent))
{
  AddMode(EStretch::FullRange, tr("&Full range"), tr("Black is 0 and white the format's maximum"));
  AddMode(EStretch::Auto, tr("&Auto"), tr("Black and white are the darkest and the brightest greys of each frame"));
  AddMode(EStretch::PerImage, tr("&Per image"), tr("As Auto, each half of a split view for itself"));
  AddMode(EStretch::Fixed, tr("Fi&xed"), tr("Black and white are as you set them"));
  m_pButton->setObjectName(QStringLiteral("StretchButton"));
  m_pButton->setPopupMode(QToolButton::InstantPopup);
  m_pButton->setMenu(m_pMenu);
  m_pButton->setFocusPolicy(Qt::TabFocus);
  m_pButton->setToolTip(tr("Which greys the display shows as black and as white; the frames stay as they are"));
  SetMode(EStretch::FullRange);
}

QAction *CStretchControl::AddMode(EStretch eMode, const QString &strText, const QString &strTip)
{
  QAction *pAction = m_pMenu->addAction(strText);
  pAction->setCheckable(true);
  pAction->setToolTip(strTip);
  pAction->setData(static_cast<int>(eMode));
  m_pModes->addAction(pAction);
  connect(pAction, &QAction::triggered, this, [this, eMode] { SetMode(eMode); });
  return pAction;
}

QSpinBox *CStretchControl::MakeGrey(const char *pName, const QString &strPrefix, QWidget *pParent)
{
  QSpinBox *pBox = new QSpinBox(pParent);
  pBox->setObjectName(QLatin1String(pName));
  pBox->setPrefix(strPrefix);
  pBox->setSuffix(QStringLiteral(" DN"));
  pBox->setRange(0, UINT16_MAX);
  pBox->setKeyboardTracking(false);
  pBox->hide();
  connect(pBox, QOverload<int>::of(&QSpinBox::valueChanged), this, &CStretchControl::SigChanged);
  return pBox;
}

void CStretchControl::AddTo(QMenu &menu, QToolBar &tools)
{
  menu.addMenu(m_pMenu);
  tools.addWidget(m_pButton);
  m_pBlackPlace = tools.addWidget(m_pBlack);
  m_pWhitePlace = tools.addWidget(m_pWhite);
  SetMode(m_eMode);
}

void CStretchControl::SetMode(EStretch eMode)
{
  m_eMode = eMode;
  for (QAction *pAction : m_pModes->actions()) {
    if (pAction->data().toInt() == static_cast<int>(eMode)) {
      pAction->setChecked(true);
      m_pButton->setText(tr("Stretch: %1").arg(GetToolBarText(pAction->text())));
    }
  }
  for (QAction *pPlace : {m_pBlackPlace, m_pWhitePlace}) {
    if (pPlace != nullptr) {
      pPlace->setVisible(eMode == EStretch::Fixed);
    }
  }
  emit SigChanged();
}

SGreyRange CStretchControl::GetFixed() const
{
  const double dBlack = m_pBlack->value();
  return {dBlack, std::max(dBlack + 1, static_cast<double>(m_pWhite->value()))};
}

void CStretchControl::Follow(const SGreyRange &stRange, uint32_t nMaximum)
{
  const QSignalBlocker blockBlack(m_pBlack);
  const QSignalBlocker blockWhite(m_pWhite);
  m_pBlack->setMaximum(static_cast<int>(nMaximum));
  m_pWhite->setMaximum(static_cast<int>(nMaximum));
  if (m_eMode != EStretch::Fixed) {
    m_pBlack->setValue(qRound(stRange.dBlack));
    m_pWhite->setValue(qRound(stRange.dWhite));
  }
}

} // namespace ffc::host
