#include "tests/support/fullvolume.h"

#include <csignal>

#include <sys/resource.h>
#include <unistd.h>

namespace ffc::test {

struct CFullVolume::SImpl {
  rlimit m_stFormerLimit{};
  void (*m_fnFormerHandler)(int) = nullptr;
};

CFullVolume::CFullVolume(uint64_t nBytes) : m_pImpl(std::make_unique<SImpl>())
{
  // Without this the signal would end the program before the write could fail.
  m_pImpl->m_fnFormerHandler = std::signal(SIGXFSZ, SIG_IGN);
  getrlimit(RLIMIT_FSIZE, &m_pImpl->m_stFormerLimit);
  rlimit stLimit = m_pImpl->m_stFormerLimit;
  stLimit.rlim_cur = nBytes;
  setrlimit(RLIMIT_FSIZE, &stLimit);
}

CFullVolume::~CFullVolume()
{
  setrlimit(RLIMIT_FSIZE, &m_pImpl->m_stFormerLimit);
  std::signal(SIGXFSZ, m_pImpl->m_fnFormerHandler);
}

bool IsAboveAccessRights()
{
  return geteuid() == 0;
}

} // namespace ffc::test
