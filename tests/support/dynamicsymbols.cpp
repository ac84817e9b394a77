#include "tests/support/dynamicsymbols.h"

#include <algorithm>
#include <cstring>

#include <elf.h>

#include "platform/elfsection.h"

namespace ffc::test {

namespace {

bool IsExported(const Elf64_Sym &stSymbol)
{
  const auto nBinding = ELF64_ST_BIND(stSymbol.st_info);
  const auto nVisibility = ELF64_ST_VISIBILITY(stSymbol.st_other);
  return stSymbol.st_shndx != SHN_UNDEF && nBinding != STB_LOCAL &&
         (nVisibility == STV_DEFAULT || nVisibility == STV_PROTECTED);
}

} // namespace

std::vector<std::string> ReadExportedNames(const std::string &strPath)
{
  constexpr std::size_t LARGEST_SECTION = std::size_t{1} << 26;
  const std::vector<char> listSymbols = platform::ReadElfSection(strPath, ".dynsym", LARGEST_SECTION);
  std::vector<char> listNames = platform::ReadElfSection(strPath, ".dynstr", LARGEST_SECTION);
  listNames.push_back('\0');
  std::vector<std::string> listExported;
  for (std::size_t i = 0; i + sizeof(Elf64_Sym) <= listSymbols.size(); i += sizeof(Elf64_Sym)) {
    Elf64_Sym stSymbol;
    std::memcpy(&stSymbol, listSymbols.data() + i, sizeof stSymbol);
    if (IsExported(stSymbol) && stSymbol.st_name < listNames.size()) {
      const std::string strName = listNames.data() + stSymbol.st_name;
      if (strName.rfind("__", 0) != 0) {
        listExported.push_back(strName);
      }
    }
  }
  std::sort(listExported.begin(), listExported.end());
  return listExported;
}

} // namespace ffc::test
