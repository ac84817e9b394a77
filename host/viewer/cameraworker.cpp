#include "host/viewer/cameraworker.h"

#include <atomic>
#include <chrono>
#include <new>
#include <system_error>
#include <utility>

#include <QCoreApplication>
#include <QEventLoop>
#include <QMetaObject>

namespace ffc::host {
namespace {

constexpr std::chrono::milliseconds EVENT_PAUSE{5}; ///< between two looks for events

} // namespace

CCameraWorker::CCameraWorker(QObject *pParent) : QObject(pParent) {}

CCameraWorker::~CCameraWorker()
{
  if (!m_thread.joinable()) {
    return;
  }
  {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_bEnd = true;
  }
  m_condition.notify_all();
  m_thread.join();
}

void CCameraWorker::Post(Work fnWork)
{
  if (!StartThread()) {
    Do(fnWork);
    return;
  }
  {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_listWork.push_back(std::move(fnWork));
  }
  m_condition.notify_all();
}

void CCameraWorker::RunLive(const std::function<void()> &fnWork)
{
  std::atomic<bool> bDone{false};
  Post([&]() -> std::function<void()> {
    try {
      fnWork();
    } catch (const std::bad_alloc &) {
      // There is no result to hand over.
    }
    bDone = true;
    return nullptr;
  });
  // Not every system's event loop wakes up for what another thread posts while it leaves the user's input aside.
  while (!bDone) {
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    std::unique_lock<std::mutex> lock(m_mutex);
    m_condition.wait_for(lock, EVENT_PAUSE, [&bDone] { return bDone.load(); });
  }
}

void CCameraWorker::Finish()
{
  std::unique_lock<std::mutex> lock(m_mutex);
  m_condition.wait(lock, [this] { return m_listWork.empty(); });
}

bool CCameraWorker::StartThread()
{
  try {
    if (!m_thread.joinable()) {
      m_thread = std::thread([this] { Run(); });
    }
    return true;
  } catch (const std::system_error &) {
    return false;
  }
}

void CCameraWorker::Run()
{
  std::unique_lock<std::mutex> lock(m_mutex);
  while (true) {
    m_condition.wait(lock, [this] { return m_bEnd || !m_listWork.empty(); });
    if (m_listWork.empty()) {
      return;
    }
    {
      const Work fnWork = m_listWork.front();
      lock.unlock();
      Do(fnWork);
    }
    lock.lock();
    m_listWork.pop_front();
    m_condition.notify_all();
  }
}

void CCameraWorker::Do(const Work &fnWork)
{
  try {
    std::function<void()> fnWhenDone = fnWork();
    if (fnWhenDone) {
      const std::lock_guard<std::mutex> lock(m_mutex);
      m_listDone.push_back(std::move(fnWhenDone));
    }
  } catch (const std::bad_alloc &) {
    // As if it had no result.
  }
  QMetaObject::invokeMethod(this, "SlotDone", Qt::QueuedConnection);
}

/// What is done may let events pass, and so this be called again.
void CCameraWorker::SlotDone()
{
  std::unique_lock<std::mutex> lock(m_mutex);
  while (!m_listDone.empty()) {
    const std::function<void()> fnWhenDone = std::move(m_listDone.front());
    m_listDone.pop_front();
    lock.unlock();
    fnWhenDone();
    lock.lock();
  }
}

} // namespace ffc::host
