#include "host/measurement/background.h"

#include <new>
#include <system_error>
#include <utility>

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QEventLoop>
#include <QMetaObject>

namespace ffc::host {

CBackground::CBackground(QObject *pParent) : QObject(pParent) {}

CBackground::~CBackground()
{
  if (m_thread.joinable()) {
    m_thread.join();
  }
}

void CBackground::Wait()
{
  while (m_bBusy) {
    QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
  }
}

bool CBackground::Start(std::function<std::function<void()>()> fnWork)
{
  if (m_bBusy) {
    return false;
  }
  try {
    m_thread = std::thread([this, fnWork = std::move(fnWork)] { Run(fnWork); });
  } catch (const std::system_error &) {
    return false;
  }
  m_bBusy = true;
  return true;
}

void CBackground::Run(const std::function<std::function<void()>()> &fnWork)
{
  std::function<void()> fnWhenDone;
  try {
    fnWhenDone = fnWork();
  } catch (const std::bad_alloc &) {
    fnWhenDone = nullptr;
  }
  {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_fnWhenDone = std::move(fnWhenDone);
  }
  QMetaObject::invokeMethod(this, "SlotFinished", Qt::QueuedConnection);
}

void CBackground::SlotFinished()
{
  m_thread.join();
  std::function<void()> fnWhenDone;
  {
    const std::lock_guard<std::mutex> lock(m_mutex);
    fnWhenDone.swap(m_fnWhenDone);
  }
  m_bBusy = false;
  if (fnWhenDone) {
    fnWhenDone();
  }
  // Windows: a call for more events that has delivered this one goes on waiting for another all the same.
  QAbstractEventDispatcher::instance()->wakeUp();
}

} // namespace ffc::host
