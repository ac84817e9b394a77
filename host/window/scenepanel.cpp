#include "host/window/scenepanel.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QLabel>
#include <QSignalBlocker>
#include <QSlider>

namespace ffc::host {

using camera::ISceneControl;

namespace {

constexpr int FULL = 100; ///< percent
constexpr int BRIGHTEST = 200;

} // namespace

CScenePanel::CScenePanel(QWidget *pParent)
  : QGroupBox(tr("Scene"), pParent), m_pLensCap(new QCheckBox(tr("&Lens cap"), this)),
    m_pTestChart(new QCheckBox(tr("T&est chart"), this)), m_pLampLabel(new QLabel(tr("Ill&umination"), this)),
    m_pLamp(new QSlider(Qt::Horizontal, this)), m_pLampValue(new QLabel(this))
{
  m_pLensCap->setObjectName(QStringLiteral("LensCap"));
  m_pTestChart->setObjectName(QStringLiteral("TestChart"));
  m_pTestChart->setToolTip(tr("A chart with structure instead of the evenly lit target"));
  m_pLamp->setObjectName(QStringLiteral("Illumination"));
  m_pLamp->setRange(0, BRIGHTEST);
  m_pLamp->setPageStep(10);
  m_pLamp->setValue(FULL);
  m_pLampLabel->setBuddy(m_pLamp);
  m_pLampValue->setMinimumWidth(m_pLampValue->fontMetrics().horizontalAdvance(QStringLiteral("000 %")));
  m_pLampValue->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  ShowIllumination(FULL);

  QGridLayout *pLayout = new QGridLayout(this);
  pLayout->addWidget(m_pLensCap, 0, 0, 1, 2);
  pLayout->addWidget(m_pTestChart, 0, 2, 1, 2);
  pLayout->addWidget(m_pLampLabel, 1, 0);
  pLayout->addWidget(m_pLamp, 1, 1, 1, 2);
  pLayout->addWidget(m_pLampValue, 1, 3);

  connect(m_pLensCap, &QCheckBox::toggled, this, [this](bool bOn) {
    m_bCapOn = bOn;
    m_pScene->SetLensCap(bOn);
  });
  connect(m_pTestChart, &QCheckBox::toggled, this, [this](bool bOn) {
    m_pScene->SetScene(bOn ? ISceneControl::EScene::TestChart : ISceneControl::EScene::Target);
  });
  connect(m_pLamp, &QSlider::valueChanged, this, [this](int nPercent) {
    m_pScene->SetIllumination(static_cast<double>(nPercent) / FULL);
    ShowIllumination(nPercent);
  });
  hide();
}

void CScenePanel::SetScene(ISceneControl *pScene)
{
  const QSignalBlocker blockChart(m_pTestChart);
  const QSignalBlocker blockLamp(m_pLamp);
  m_pScene = pScene;
  m_bCapOn = pScene != nullptr && pScene->IsLensCapOn();
  m_pTestChart->setChecked(false);
  m_pLamp->setValue(FULL);
  ShowIllumination(FULL);
  const bool bArrange = pScene != nullptr && pScene->CanArrange();
  const bool bCover = camera::CanBeCovered(pScene);
  m_pLensCap->setEnabled(bCover);
  m_pLensCap->setToolTip(bCover ? QString() : tr("The recording has no dark frames"));
  for (QWidget *pWidget : QList<QWidget *>{m_pTestChart, m_pLampLabel, m_pLamp, m_pLampValue}) {
    pWidget->setVisible(bArrange);
  }
  setVisible(pScene != nullptr);
  Refresh();
}

void CScenePanel::Refresh()
{
  if (m_pScene != nullptr) {
    const QSignalBlocker blocker(m_pLensCap);
    m_pLensCap->setChecked(m_pScene->IsLensCapOn());
  }
}

QWidget *CScenePanel::GetLastInTabOrder() const
{
  return m_pLamp;
}

void CScenePanel::Arrange(bool bCovered)
{
  m_pScene->SetPurpose(ISceneControl::EPurpose::Measurement);
  m_pScene->SetScene(ISceneControl::EScene::Target);
  m_pScene->SetLensCap(bCovered);
  Refresh();
}

void CScenePanel::Restore()
{
  m_pScene->SetPurpose(ISceneControl::EPurpose::Acquisition);
  m_pScene->SetScene(m_pTestChart->isChecked() ? ISceneControl::EScene::TestChart : ISceneControl::EScene::Target);
  m_pScene->SetLensCap(m_bCapOn);
  Refresh();
}

void CScenePanel::ShowIllumination(int nPercent)
{
  m_pLampValue->setText(QStringLiteral("%1 %").arg(nPercent));
}

} // namespace ffc::host
