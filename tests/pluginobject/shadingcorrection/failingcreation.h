/// \file
/// Memory that runs out when a test wants it to.
#pragma once

/// While one lives, one of this program's creations of single objects without exceptions fails.
class CFailingCreation {
public:
  /// Lets the nFailing-th creation from now on fail, counted from 1.
  explicit CFailingCreation(int nFailing);
  ~CFailingCreation();
  CFailingCreation(const CFailingCreation &) = delete;
  CFailingCreation &operator=(const CFailingCreation &) = delete;

  /// Whether that many creations were tried.
  bool HasFailed() const;
};
