/// \file
/// A volume that is full, and access rights.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

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

/// While one lives, access rights hold for this program also where its user is above them.
class CPlainUser {
public:
  /// \param strFolder is handed to the user that the program then has
  explicit CPlainUser(const std::string &strFolder);
  ~CPlainUser();
  CPlainUser(const CPlainUser &) = delete;
  CPlainUser &operator=(const CPlainUser &) = delete;

  /// Whether it worked, and the folder can be reached.
  bool IsPlain() const { return m_bPlain; }

private:
  bool m_bChanged = false;
  bool m_bPlain = false;
};

/// Whether this user may write where the access rights say otherwise.
bool IsAboveAccessRights();

} // namespace ffc::test
