#include "platform/moduleversion.h"

#include <cstring>

#include <dlfcn.h>

#include "platform/elfsection.h"
#include "platform/moduleversionrecord.h"

bool QueryModuleVersion(uint16_t (&anVersion)[4], std::string &strError)
{
  Dl_info stInfo = {};
  const auto *pAddress = reinterpret_cast<const void *>(&QueryModuleVersion);
  if (dladdr(pAddress, &stInfo) == 0 || stInfo.dli_fname == nullptr || stInfo.dli_fname[0] == '\0') {
    strError = "Failed to get the full path of current process";
    return false;
  }
  return QueryModuleFileVersion(stInfo.dli_fname, anVersion, strError);
}

bool QueryModuleFileVersion(const std::string &strPath, uint16_t (&anVersion)[4], std::string &strError)
{
  constexpr std::size_t MAX_SECTION_SIZE = 4096;
  const std::vector<char> listSection = ReadElfSection(strPath, FFC_VERSION_SECTION, MAX_SECTION_SIZE);
  if (listSection.empty()) {
    strError = "Failed to get the content of version structure";
    return false;
  }
  SModuleVersionRecord stRecord = {};
  if (listSection.size() < sizeof stRecord ||
      std::memcmp(listSection.data(), FFC_VERSION_SIGNATURE, sizeof stRecord.acSignature) != 0) {
    strError = "Failed to query version information";
    return false;
  }
  std::memcpy(&stRecord, listSection.data(), sizeof stRecord);
  std::memcpy(anVersion, stRecord.anVersion, sizeof anVersion);
  return true;
}
