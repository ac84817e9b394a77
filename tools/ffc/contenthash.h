/// \file
/// Hash of the samples of frames.
#pragma once

#include <cstddef>
#include <memory>

#include <QString>

namespace ffc::tool {

/// Tells contents apart, as fast as memory is read; no protection against intent. Used by one thread at a time.
class CContentHash {
public:
  CContentHash();
  ~CContentHash();

  void Add(const void *pBytes, std::size_t nBytes);
  /// Name of the hash and the hash, in hexadecimal.
  QString Get() const;

private:
  struct SState;
  std::unique_ptr<SState> m_pState;
};

} // namespace ffc::tool
