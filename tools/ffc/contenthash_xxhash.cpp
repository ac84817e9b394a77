#define XXH_INLINE_ALL
#include <xxhash.h>

#include <QByteArray>

#include "tools/ffc/contenthash.h"

namespace ffc::tool {

struct CContentHash::SState {
  XXH3_state_t m_stState;
};

CContentHash::CContentHash() : m_pState(std::make_unique<SState>())
{
  XXH3_128bits_reset(&m_pState->m_stState);
}

CContentHash::~CContentHash() = default;

void CContentHash::Add(const void *pBytes, std::size_t nBytes)
{
  XXH3_128bits_update(&m_pState->m_stState, pBytes, nBytes);
}

QString CContentHash::Get() const
{
  XXH128_canonical_t stCanonical;
  XXH128_canonicalFromHash(&stCanonical, XXH3_128bits_digest(&m_pState->m_stState));
  const auto *pDigest = reinterpret_cast<const char *>(stCanonical.digest);
  return QStringLiteral("xxh3:") + QLatin1String(QByteArray(pDigest, sizeof stCanonical.digest).toHex());
}

} // namespace ffc::tool
