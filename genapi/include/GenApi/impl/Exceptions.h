/// \file
/// GenICam's exceptions.
#pragma once

#include <string>

namespace GenICam_3_0 {

/// Base of everything that GenApi throws. It does not derive from std::exception: the standard does
/// not promise it, so callers must name it in a handler of its own.
class GenericException {
public:
  /// \param pDescription what went wrong, shown to users
  /// \param pSourceFileName, nSourceLine the place that throws
  /// \param pExceptionType the class's name
  GenericException(const char *pDescription, const char *pSourceFileName, unsigned int nSourceLine,
                   const char *pExceptionType = "GenericException")
    : m_strDescription(pDescription == nullptr ? "" : pDescription),
      m_strSourceFileName(pSourceFileName == nullptr ? "" : pSourceFileName),
      m_strWhat(m_strDescription + " : " + pExceptionType + " thrown (file '" + m_strSourceFileName + "', line " +
                std::to_string(nSourceLine) + ")"),
      m_nSourceLine(nSourceLine)
  {
  }
  GenericException(const GenericException &) = default;
  GenericException &operator=(const GenericException &) = default;
  virtual ~GenericException() = default;

  virtual const char *GetDescription() const noexcept { return m_strDescription.c_str(); }
  virtual const char *GetSourceFileName() const noexcept { return m_strSourceFileName.c_str(); }
  virtual unsigned int GetSourceLine() const noexcept { return m_nSourceLine; }
  /// Description, type and place in one line.
  virtual const char *what() const noexcept { return m_strWhat.c_str(); }

private:
  std::string m_strDescription;
  std::string m_strSourceFileName;
  std::string m_strWhat;
  unsigned int m_nSourceLine;
};

// NOLINTBEGIN(bugprone-macro-parentheses): NAME is a class name
#define FFC_DECLARE_GENICAM_EXCEPTION(NAME)                                                                            \
  class NAME : public GenericException {                                                                               \
  public:                                                                                                              \
    NAME(const char *pDescription, const char *pSourceFileName, unsigned int nSourceLine,                              \
         const char *pExceptionType = #NAME)                                                                           \
      : GenericException(pDescription, pSourceFileName, nSourceLine, pExceptionType)                                   \
    {                                                                                                                  \
    }                                                                                                                  \
  }

FFC_DECLARE_GENICAM_EXCEPTION(BadAllocException);
FFC_DECLARE_GENICAM_EXCEPTION(InvalidArgumentException);
FFC_DECLARE_GENICAM_EXCEPTION(OutOfRangeException);
FFC_DECLARE_GENICAM_EXCEPTION(PropertyException);
FFC_DECLARE_GENICAM_EXCEPTION(RuntimeException);
FFC_DECLARE_GENICAM_EXCEPTION(LogicalErrorException);
FFC_DECLARE_GENICAM_EXCEPTION(AccessException);
FFC_DECLARE_GENICAM_EXCEPTION(TimeoutException);
FFC_DECLARE_GENICAM_EXCEPTION(DynamicCastException);

// NOLINTEND(bugprone-macro-parentheses)
#undef FFC_DECLARE_GENICAM_EXCEPTION

} // namespace GenICam_3_0
