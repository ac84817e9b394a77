/// \file
/// Stand-in for the GenICam SDK's base library: strings and exceptions in a versioned namespace, with members that
/// live in a library.
#pragma once

#include <cstddef>
#include <cstdint>

#define GENICAM_VERSION_MAJOR 3
#define GENICAM_VERSION_MINOR 7
#define GENICAM_NAMESPACE GenICam_3_7

#define GCBASE_API __attribute__((visibility("default")))

namespace GENICAM_NAMESPACE {

class GCBASE_API gcstring {
public:
  gcstring();
  gcstring(const char *pc);
  gcstring(const char *pc, size_t n);
  gcstring(size_t count, char ch);
  gcstring(const gcstring &str);
  virtual ~gcstring();
  virtual gcstring &operator=(const gcstring &str);
  virtual gcstring &operator+=(const gcstring &str);
  virtual bool operator==(const gcstring &str) const;
  virtual bool operator==(const char *pc) const;
  virtual const char *c_str() const;
  virtual bool empty() const;
  virtual size_t length() const;
  virtual size_t size() const;
  operator const char *() const;

private:
  char *m_pText;
};

class GCBASE_API GenericException {
public:
  GenericException(const char *description, const char *sourceFileName, unsigned int sourceLine);
  GenericException(const GenericException &other);
  virtual ~GenericException() throw();
  virtual const char *GetDescription() const throw();
  virtual const char *GetSourceFileName() const throw();
  virtual unsigned int GetSourceLine() const throw();
  virtual const char *what() const throw();

private:
  gcstring m_description;
};

#define GCBASE_EXCEPTION(name)                                                                                         \
  class GCBASE_API name : public GenericException {                                                                    \
  public:                                                                                                              \
    using GenericException::GenericException;                                                                          \
  }
GCBASE_EXCEPTION(BadAllocException);
GCBASE_EXCEPTION(InvalidArgumentException);
GCBASE_EXCEPTION(OutOfRangeException);
GCBASE_EXCEPTION(PropertyException);
GCBASE_EXCEPTION(RuntimeException);
GCBASE_EXCEPTION(LogicalErrorException);
GCBASE_EXCEPTION(AccessException);
GCBASE_EXCEPTION(TimeoutException);
GCBASE_EXCEPTION(DynamicCastException);

} // namespace GENICAM_NAMESPACE

namespace GenICam = GENICAM_NAMESPACE;
