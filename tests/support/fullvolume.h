/// \file
/// A volume that is full.
#pragma once

#include <cstdint>
#include <memory>

namespace ffc::test {

/// While one lives, no file of this program can grow beyond nBytes: writing more fails, as on a full volume.
class CFullVolume {
public:
  explicit CFullVolume(uint64_t nBytes);
  ~CFullVolume();
  CFullVolume(const CFullVolume &) = delete;
  CFullVolume &operator=(const CFullVolume &) = delete;

private:
  struct SImpl;
  std::unique_ptr<SImpl> m_pImpl;
};

/// Whether this user may write where the access rights say otherwise.
bool IsAboveAccessRights();

} // namespace ffc::test
