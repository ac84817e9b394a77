#include "pluginobject/shadingcorrection/busyscope.h"

#include <QApplication>

CBusyScope::CBusyScope(QWidget *pButton) : m_pButton(pButton)
{
  if (m_pButton != nullptr) {
    m_pButton->setEnabled(false);
  }
  QApplication::setOverrideCursor(Qt::WaitCursor);
}

CBusyScope::~CBusyScope()
{
  PopCursor();
  if (m_pButton != nullptr) {
    m_pButton->setEnabled(true);
  }
}

void CBusyScope::Paint()
{
  QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
}

void CBusyScope::PopCursor()
{
  if (m_bCursor) {
    m_bCursor = false;
    QApplication::restoreOverrideCursor();
  }
}
