#include "ombrix/librarypool.h"

#include <new>

#include "platform/workerthread.h"

namespace ffc::ombrix {

namespace {

void PrepareForThreads();

// Never destroyed: while the process ends, frames may still come.
alignas(CBandPool) unsigned char g_aStorage[sizeof(CBandPool)];
CBandPool *g_pPool = new (g_aStorage) CBandPool(PrepareForThreads);

// The threads are not in the forked process, and its copy of the locks may be held by one of them.
void ForgetThreads()
{
  g_pPool = new (g_aStorage) CBandPool(PrepareForThreads);
}

// From the first thread until the library is unloaded.
struct SThreads {
  SThreads() { platform::PrepareForThreads(ForgetThreads); }
  ~SThreads()
  {
    platform::WaitAtUnload([] { g_pPool->Close(); });
  }
};

void PrepareForThreads()
{
  static const SThreads s_stThreads;
}

} // namespace

CBandPool &GetLibraryPool() noexcept
{
  return *g_pPool;
}

} // namespace ffc::ombrix
