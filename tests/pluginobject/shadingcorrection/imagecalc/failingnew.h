/// \file
/// Memory that runs out when a test wants it to.
#pragma once

/// While one lives, this program's allocations of arrays without exceptions fail.
class CFailingNew {
public:
  CFailingNew();
  ~CFailingNew();
  CFailingNew(const CFailingNew &) = delete;
  CFailingNew &operator=(const CFailingNew &) = delete;
};
