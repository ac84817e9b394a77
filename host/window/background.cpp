#include "host/window/background.h"

#include <new>
#include <utility>

#include <QCoreApplication>
#include <QEventLoop>
#include <QMetaObject>
#include <QRunnable>

namespace {

class CWork final : public QRunnable {
public:
  explicit CWork(std::function<void()> fnRun) : m_fnRun(std::move(fnRun)) {}
  void run() override { m_fnRun(); }

private:
  std::function<void()> m_fnRun;
};

} // namespace

CBackground::CBackground(QObject *pParent) : QObject(pParent)
{
  m_pool.setMaxThreadCount(1);
}

CBackground::~CBackground()
{
  m_pool.waitForDone();
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
  m_bBusy = true;
  m_pool.start(new CWork([this, fnWork = std::move(fnWork)] {
    std::function<void()> fnWhenDone;
    try {
      fnWhenDone = fnWork();
    } catch (const std::bad_alloc &) {
      fnWhenDone = nullptr;
    }
    QMetaObject::invokeMethod(
      this,
      [this, fnWhenDone = std::move(fnWhenDone)] {
        m_bBusy = false;
        if (fnWhenDone) {
          fnWhenDone();
        }
      },
      Qt::QueuedConnection);
  }));
  return true;
}
