// The stand-in's base library: enough to link against.
#include <Base/GCBase.h>

#include <cstring>

namespace GENICAM_NAMESPACE {

namespace {

char *Copy(const char *pText, size_t nLength)
{
  char *pCopy = new char[nLength + 1];
  std::memcpy(pCopy, pText, nLength);
  pCopy[nLength] = '\0';
  return pCopy;
}

} // namespace

gcstring::gcstring() : gcstring("") {}
gcstring::gcstring(const char *pc) : gcstring(pc, std::strlen(pc)) {}
gcstring::gcstring(const char *pc, size_t n) : m_pText(Copy(pc, n)) {}
gcstring::gcstring(size_t count, char ch) : m_pText(new char[count + 1])
{
  std::memset(m_pText, ch, count);
  m_pText[count] = '\0';
}
gcstring::gcstring(const gcstring &str) : gcstring(str.m_pText) {}
gcstring::~gcstring()
{
  delete[] m_pText;
}
gcstring &gcstring::operator=(const gcstring &str)
{
  char *pText = Copy(str.m_pText, str.length());
  delete[] m_pText;
  m_pText = pText;
  return *this;
}
gcstring &gcstring::operator+=(const gcstring &str)
{
  gcstring both(length() + str.length(), ' ');
  std::strcpy(both.m_pText, m_pText);
  std::strcat(both.m_pText, str.m_pText);
  return *this = both;
}
bool gcstring::operator==(const gcstring &str) const
{
  return *this == str.m_pText;
}
bool gcstring::operator==(const char *pc) const
{
  return std::strcmp(m_pText, pc) == 0;
}
const char *gcstring::c_str() const
{
  return m_pText;
}
bool gcstring::empty() const
{
  return length() == 0;
}
size_t gcstring::length() const
{
  return std::strlen(m_pText);
}
size_t gcstring::size() const
{
  return length();
}
gcstring::operator const char *() const
{
  return m_pText;
}

GenericException::GenericException(const char *description, const char *, unsigned int) : m_description(description) {}
GenericException::GenericException(const GenericException &other) : m_description(other.m_description) {}
GenericException::~GenericException() throw() {}
const char *GenericException::GetDescription() const throw()
{
  return m_description;
}
const char *GenericException::GetSourceFileName() const throw()
{
  return "";
}
unsigned int GenericException::GetSourceLine() const throw()
{
  return 0;
}
const char *GenericException::what() const throw()
{
  return m_description;
}

} // namespace GENICAM_NAMESPACE
