#include "host/window/measurementguide.h"

#include <QMessageBox>
#include <QPushButton>

#include "host/window/scenepanel.h"

namespace ffc::host {

CMeasurementGuide::CMeasurementGuide(CScenePanel &scenePanel, QWidget *pWindow)
  : m_scenePanel(scenePanel), m_pWindow(pWindow)
{
}

CMeasurementGuide::~CMeasurementGuide()
{
  if (m_scenePanel.HasScene()) {
    m_scenePanel.Restore();
  }
}

bool CMeasurementGuide::ArrangeScene(bool bCovered)
{
  if (m_scenePanel.HasScene()) {
    m_scenePanel.Arrange(bCovered);
    return true;
  }
  m_box.reset();
  QMessageBox box(QMessageBox::Information, tr("Measure"),
                  bCovered ? tr("Cover the lens, then press OK.")
                           : tr("Uncover the lens and show it the evenly lit target, then press OK."),
                  QMessageBox::NoButton, m_pWindow);
  box.setObjectName(QStringLiteral("AskScene"));
  const QPushButton *pOk = box.addButton(tr("&OK"), QMessageBox::AcceptRole);
  box.addButton(tr("&Cancel"), QMessageBox::RejectRole);
  box.exec();
  return box.clickedButton() == pOk;
}

void CMeasurementGuide::ShowProgress(const QString &strStep, uint32_t nDone, uint32_t nTotal)
{
  if (!m_box) {
    m_box.emplace(tr("Measure"), m_pWindow);
  }
  m_box->ShowProgress(strStep, nDone, nTotal);
}

bool CMeasurementGuide::IsCancelled() const
{
  return m_box && m_box->IsCancelled();
}

} // namespace ffc::host
