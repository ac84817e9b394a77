#include "tests/pluginobject/shadingcorrection/imagecalc/failingnew.h"

#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <functional>
#include <limits>
#include <mutex>
#include <new>
#include <set>

#include "platform/zeroedmemory.h"

namespace {

constexpr int32_t NEVER_FAILING = std::numeric_limits<int32_t>::max();

std::atomic<int32_t> s_nSuccesses{NEVER_FAILING};
thread_local int32_t s_nThrowingSuccesses = NEVER_FAILING;

// Memory for the list of memory, which must not be in it.
template <class T>
struct SMallocator {
  using value_type = T;

  SMallocator() = default;
  template <class U>
  SMallocator(const SMallocator<U> &)
  {
  }

  T *allocate(std::size_t nCount) { return static_cast<T *>(std::malloc(nCount * sizeof(T))); }
  void deallocate(T *pMemory, std::size_t) { std::free(pMemory); }
  template <class U>
  bool operator==(const SMallocator<U> &) const
  {
    return true;
  }
  template <class U>
  bool operator!=(const SMallocator<U> &) const
  {
    return false;
  }
};

// What this program took without exceptions, as everything that is tested takes its arrays. The rest says nothing on
// Windows: there the program also gives back what libraries took with a new of their own, and they what it took.
struct SLive {
  std::mutex m_mutex;
  std::set<void *, std::less<>, SMallocator<void *>> m_setMemory;
};

// Made at the first allocation and never given back: others still allocate when the program ends.
SLive &GetLive()
{
  alignas(SLive) static unsigned char s_acLive[sizeof(SLive)];
  static SLive *const s_pLive = ::new (static_cast<void *>(s_acLive)) SLive;
  return *s_pLive;
}

void *Take(std::size_t nSize) noexcept
{
  return std::malloc(nSize == 0 ? 1 : nSize);
}

// Zeroed by the system: a frame that is never written costs nothing here either.
void *TakeZeroed(std::size_t nSize) noexcept
{
  return std::calloc(nSize == 0 ? 1 : nSize, 1);
}

void *TakeUnlessFailing(std::size_t nSize, void *(*fnTake)(std::size_t) noexcept = Take) noexcept
{
  if (s_nSuccesses == 0) {
    return nullptr;
  }
  if (s_nSuccesses != NEVER_FAILING) {
    --s_nSuccesses;
  }
  void *const pMemory = fnTake(nSize);
  if (pMemory != nullptr) {
    const std::lock_guard<std::mutex> lock(GetLive().m_mutex);
    GetLive().m_setMemory.insert(pMemory);
  }
  return pMemory;
}

void *TakeOrThrow(std::size_t nSize)
{
  if (s_nThrowingSuccesses == 0) {
    throw std::bad_alloc();
  }
  if (s_nThrowingSuccesses != NEVER_FAILING) {
    --s_nThrowingSuccesses;
  }
  void *const pMemory = Take(nSize);
  if (pMemory == nullptr) {
    throw std::bad_alloc();
  }
  return pMemory;
}

void Give(void *pMemory) noexcept
{
  {
    const std::lock_guard<std::mutex> lock(GetLive().m_mutex);
    GetLive().m_setMemory.erase(pMemory);
  }
  std::free(pMemory);
}

} // namespace

CFailingNew::CFailingNew(int32_t nSuccesses)
{
  s_nSuccesses = nSuccesses;
}

CFailingNew::~CFailingNew()
{
  s_nSuccesses = NEVER_FAILING;
}

CFailingThrowingNew::CFailingThrowingNew(int32_t nSuccesses)
{
  s_nThrowingSuccesses = nSuccesses;
}

CFailingThrowingNew::~CFailingThrowingNew()
{
  s_nThrowingSuccesses = NEVER_FAILING;
}

int64_t CountLiveAllocations()
{
  const std::lock_guard<std::mutex> lock(GetLive().m_mutex);
  return static_cast<int64_t>(GetLive().m_setMemory.size());
}

// In place of the platform's, which the linker then leaves out.

void *ffc::platform::TakeZeroedMemory(std::size_t nSize) noexcept
{
  return TakeUnlessFailing(nSize, TakeZeroed);
}

void ffc::platform::GiveZeroedMemory(void *pMemory) noexcept
{
  Give(pMemory);
}

// The program's own, in place of the standard library's: all of them, because each gives back what another
// took. Memory comes from malloc: under a sanitizer the library's new would end the program at a size that no
// machine has, instead of failing.

void *operator new(std::size_t nSize, const std::nothrow_t &) noexcept
{
  return TakeUnlessFailing(nSize);
}

void *operator new[](std::size_t nSize, const std::nothrow_t &) noexcept
{
  return TakeUnlessFailing(nSize);
}

void *operator new(std::size_t nSize)
{
  return TakeOrThrow(nSize);
}

void *operator new[](std::size_t nSize)
{
  return TakeOrThrow(nSize);
}

void operator delete(void *pMemory) noexcept
{
  Give(pMemory);
}

void operator delete[](void *pMemory) noexcept
{
  Give(pMemory);
}

void operator delete(void *pMemory, std::size_t) noexcept
{
  Give(pMemory);
}

void operator delete[](void *pMemory, std::size_t) noexcept
{
  Give(pMemory);
}

void operator delete(void *pMemory, const std::nothrow_t &) noexcept
{
  Give(pMemory);
}

void operator delete[](void *pMemory, const std::nothrow_t &) noexcept
{
  Give(pMemory);
}
