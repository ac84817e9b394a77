#include "tests/support/fullvolume.h"

#include <csignal>
#include <cstdlib>

#include <sys/resource.h>
#include <sys/stat.h>
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

CPlainUser::CPlainUser(const std::string &strFolder)
{
  constexpr unsigned NOBODY = 65534;
  // Real and effective, as some questions are about the one and some about the other; saved is the way back.
  m_bChanged = IsAboveAccessRights() && chown(strFolder.c_str(), NOBODY, NOBODY) == 0 &&
               setresgid(NOBODY, NOBODY, getegid()) == 0 && setresuid(NOBODY, NOBODY, 0) == 0;
  struct stat stFolder = {};
  m_bPlain = !IsAboveAccessRights() && stat(strFolder.c_str(), &stFolder) == 0;
}

CPlainUser::~CPlainUser()
{
  gid_t nReal = 0;
  gid_t nEffective = 0;
  gid_t nFormer = 0;
  if (m_bChanged && (setresuid(0, 0, 0) != 0 || getresgid(&nReal, &nEffective, &nFormer) != 0 ||
                     setresgid(nFormer, nFormer, nFormer) != 0)) {
    std::abort(); // every later test would be another one
  }
}

bool IsAboveAccessRights()
{
  return geteuid() == 0;
}

} // namespace ffc::test
