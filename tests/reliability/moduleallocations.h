/// \file
/// Memory that runs out in the module's own code.
#pragma once

#include <cstdint>
#include <string>

/// Counts the allocations that the loaded module and its image library make on this thread, and fails one of them.
///
/// Theirs is an allocation whose caller lies in them; where the caller is the C++ library (a string that grows) or
/// one of its templates, the first one outside of it counts. So the toolkit, which ends the program without memory, and
/// the test itself are spared. The program's own operators new stand in place of the C++ library's for all modules; the
/// module's way to calloc is bent in its table of imports.
class CModuleAllocations {
public:
  enum class EWhose {
    Module,
    Everybody, ///< the toolkit's operators new too
  };

  /// Lets the nFailing-th allocation from now on fail, counted from 1; 0: none. One of these at a time on a thread.
  explicit CModuleAllocations(uint64_t nFailing, EWhose eWhose = EWhose::Module);
  ~CModuleAllocations();
  CModuleAllocations(const CModuleAllocations &) = delete;
  CModuleAllocations &operator=(const CModuleAllocations &) = delete;

  uint64_t GetCount() const;
  bool HasFailed() const;

  /// Once, when the module is loaded. \return empty, or what cannot be watched
  static std::string Watch(const std::string &strModule);
};
