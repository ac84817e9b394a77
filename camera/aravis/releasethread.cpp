#include "camera/aravis/releasethread.h"

#include <mutex>
#include <system_error>
#include <thread>
#include <vector>

namespace ffc::camera {

namespace {

class CReleaseThreads {
public:
  ~CReleaseThreads()
  {
    for (std::thread &thread : m_listThreads) {
      thread.join();
    }
  }

  void Release(GObject *pObject)
  {
    const std::lock_guard lock(m_mutex);
    try {
      m_listThreads.reserve(m_listThreads.size() + 1);
      m_listThreads.emplace_back([pObject] { g_object_unref(pObject); });
    } catch (const std::bad_alloc &) {
      g_object_unref(pObject);
    } catch (const std::system_error &) {
      g_object_unref(pObject);
    }
  }

private:
  std::mutex m_mutex;
  std::vector<std::thread> m_listThreads; ///< two for each camera that was lost
};

} // namespace

void ReleaseElsewhere(CObjectPointer<GObject> pObject)
{
  static CReleaseThreads threads;
  if (pObject != nullptr) {
    threads.Release(pObject.release());
  }
}

} // namespace ffc::camera
