#include "platform/moduleversion.h"

#include <algorithm>
#include <cstring>
#include <fstream>
#include <sstream>

#include <dlfcn.h>

#include "platform/elfsection.h"
#include "platform/moduleversionrecord.h"

namespace ffc::platform {

namespace {

// The file that is mapped at an address, by the system's own list, which is in order of addresses; empty where there is
// no such list.
std::string FindMappedFile(const void *pAddress)
{
  const auto nAddress = reinterpret_cast<uintptr_t>(pAddress);
  std::ifstream maps("/proc/self/maps");
  for (std::string strLine; std::getline(maps, strLine);) {
    std::istringstream line(strLine);
    uintptr_t nBegin = 0;
    uintptr_t nEnd = 0;
    char cDash = '\0';
    line >> std::hex >> nBegin >> cDash >> nEnd;
    if (nAddress < nEnd) {
      return strLine.substr(std::min(strLine.find('/'), strLine.size()));
    }
  }
  return {};
}

// The loader keeps the name that the module was asked for by. A relative one means another file, or none, once the
// working directory has changed.
std::string GetModuleFile(const void *pAddress)
{
  Dl_info stInfo = {};
  if (dladdr(pAddress, &stInfo) == 0) { // of code that was linked statically
    return {};
  }
  const std::string strName = stInfo.dli_fname;
  const std::string strMapped = strName.rfind('/', 0) == 0 ? std::string() : FindMappedFile(pAddress);
  return strMapped.empty() ? strName : strMapped;
}

} // namespace

bool QueryModuleVersion(uint16_t (&anVersion)[4], std::string &strError)
{
  const std::string strFile = GetModuleFile(reinterpret_cast<const void *>(&QueryModuleVersion));
  if (strFile.empty()) {
    strError = "Failed to get the full path of current process";
    return false;
  }
  return QueryModuleFileVersion(strFile, anVersion, strError);
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

} // namespace ffc::platform
