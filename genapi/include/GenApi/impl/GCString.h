/// \file
/// GenICam's string class.
#pragma once

#include <cstddef>
#include <ostream>
#include <string>

namespace GenICam_3_0 {

/// An 8-bit string that crosses GenApi's interfaces. Deliberately not a std::string and not
/// convertible to one: callers go through c_str(), as they must with any other provider.
class gcstring {
public:
  gcstring() = default;
  gcstring(const char *pText)
    : m_strText(pText == nullptr ? "" : pText) {} // NOLINT(google-explicit-constructor): as the standard has it
  gcstring(const char *pText, std::size_t nLength) : m_strText(pText, nLength) {}

  const char *c_str() const noexcept { return m_strText.c_str(); }
  std::size_t length() const noexcept { return m_strText.length(); }
  std::size_t size() const noexcept { return m_strText.size(); }
  bool empty() const noexcept { return m_strText.empty(); }

  gcstring &operator+=(const gcstring &strOther)
  {
    m_strText += strOther.m_strText;
    return *this;
  }

  friend bool operator==(const gcstring &a, const gcstring &b) noexcept { return a.m_strText == b.m_strText; }
  friend bool operator==(const gcstring &a, const char *b) noexcept { return a.m_strText == b; }
  friend bool operator!=(const gcstring &a, const gcstring &b) noexcept { return !(a == b); }
  friend bool operator!=(const gcstring &a, const char *b) noexcept { return !(a == b); }
  friend bool operator<(const gcstring &a, const gcstring &b) noexcept { return a.m_strText < b.m_strText; }
  friend std::ostream &operator<<(std::ostream &out, const gcstring &str) { return out << str.m_strText; }

private:
  std::string m_strText;
};

} // namespace GenICam_3_0

namespace GenICam = GenICam_3_0;
