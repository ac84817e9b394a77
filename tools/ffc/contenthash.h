/// \file
/// Hash of the samples of frames.
#pragma once

#include <cstddef>
#include <memory>

#include <QByteArray>
#include <QString>

namespace ffc::tool {

/// Tells contents apart, as fast as memory is read; no protection against intent. Used by one thread at a time.
class CContentHash {
public:
  CContentHash();
  ~CContentHash();

  void Add(const void *pBytes, std::size_t nBytes);
  /// Adds another one's hash, as it is then: a file's is the hash of its frames' hashes, in their order.
  void Add(const CContentHash &hashPart);
  /// Name of the hash and the hash, in hexadecimal.
  QString Get() const;

private:
  struct SState;
  QByteArray GetDigest() const;

  std::unique_ptr<SState> m_pState;
};

/// Of one frame, before and after the correction.
struct SFrameHashes {
  CContentHash hashRead;
  CContentHash hashWritten;
};

} // namespace ffc::tool
