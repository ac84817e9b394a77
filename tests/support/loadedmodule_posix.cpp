#include "tests/support/loadedmodule.h"

#include <link.h>

namespace ffc::test {

namespace {

struct SSearch {
  std::string strPart;
  std::string strFound;
};

int Visit(dl_phdr_info *pInfo, std::size_t, void *pSearch)
{
  auto *pstSearch = static_cast<SSearch *>(pSearch);
  const std::string strFile = pInfo->dlpi_name;
  if (strFile.find(pstSearch->strPart) == std::string::npos) {
    return 0;
  }
  pstSearch->strFound = strFile;
  return 1;
}

} // namespace

std::string FindLoadedModule(const std::string &strPart)
{
  SSearch stSearch{strPart, {}};
  dl_iterate_phdr(&Visit, &stSearch);
  return stSearch.strFound;
}

} // namespace ffc::test
