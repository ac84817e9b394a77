#include "platform/elfsection.h"

#include <cstring>
#include <fstream>

#include <elf.h>

namespace ffc::platform {

namespace {

// Reads nSize bytes at an offset, or returns false and leaves the output unspecified.
bool ReadAt(std::ifstream &file, uint64_t nOffset, void *pOut, std::size_t nSize)
{
  file.clear();
  return nOffset <= INT64_MAX && file.seekg(static_cast<std::streamoff>(nOffset)) &&
         file.read(static_cast<char *>(pOut), static_cast<std::streamsize>(nSize));
}

bool IsElf64(const Elf64_Ehdr &stHeader)
{
  const unsigned char nOrder = __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__ ? ELFDATA2LSB : ELFDATA2MSB;
  return std::memcmp(stHeader.e_ident, ELFMAG, SELFMAG) == 0 && stHeader.e_ident[EI_CLASS] == ELFCLASS64 &&
         stHeader.e_ident[EI_DATA] == nOrder && stHeader.e_shentsize == sizeof(Elf64_Shdr);
}

bool ReadSectionHeader(std::ifstream &file, const Elf64_Ehdr &stHeader, uint64_t nIndex, Elf64_Shdr &stSection)
{
  uint64_t nOffset = 0;
  return !__builtin_add_overflow(stHeader.e_shoff, nIndex * sizeof(Elf64_Shdr), &nOffset) &&
         ReadAt(file, nOffset, &stSection, sizeof stSection);
}

bool HasName(std::ifstream &file, const Elf64_Shdr &stNames, const Elf64_Shdr &stSection, const std::string &strName)
{
  std::vector<char> listName(strName.size() + 1);
  uint64_t nOffset = 0;
  return !__builtin_add_overflow(stNames.sh_offset, uint64_t{stSection.sh_name}, &nOffset) &&
         ReadAt(file, nOffset, listName.data(), listName.size()) && listName.back() == '\0' &&
         strName == listName.data();
}

} // namespace

std::vector<char> ReadElfSection(const std::string &strPath, const std::string &strSection, std::size_t nMaxSize)
{
  std::ifstream file(strPath, std::ios::binary);
  Elf64_Ehdr stHeader;
  Elf64_Shdr stNames;
  if (!file || !ReadAt(file, 0, &stHeader, sizeof stHeader) || !IsElf64(stHeader) ||
      !ReadSectionHeader(file, stHeader, stHeader.e_shstrndx, stNames)) {
    return {};
  }
  for (uint64_t nIndex = 0; nIndex < stHeader.e_shnum; ++nIndex) {
    Elf64_Shdr stSection;
    if (!ReadSectionHeader(file, stHeader, nIndex, stSection)) {
      return {};
    }
    if (stSection.sh_type != SHT_NOBITS && stSection.sh_size <= nMaxSize &&
        HasName(file, stNames, stSection, strSection)) {
      std::vector<char> listBytes(stSection.sh_size);
      return ReadAt(file, stSection.sh_offset, listBytes.data(), listBytes.size()) ? listBytes : std::vector<char>();
    }
  }
  return {};
}

} // namespace ffc::platform
