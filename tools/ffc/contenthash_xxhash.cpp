#if defined(FFC_XXHASH_DISPATCH)
#define XXH_STATIC_LINKING_ONLY
#include <xxh_x86dispatch.h>
#else
#define XXH_INLINE_ALL
#include <xxhash.h>
#endif

#include <QByteArray>

#include "tools/ffc/contenthash.h"

namespace ffc::tool {
namespace {

#if defined(FFC_XXHASH_DISPATCH)
// The library has the loops for every instruction level and takes the processor's own.
constexpr auto UPDATE = XXH3_128bits_update_dispatch;
#else
constexpr auto UPDATE = XXH3_128bits_update;
#endif

} // namespace

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
  UPDATE(&m_pState->m_stState, pBytes, nBytes);
}

void CContentHash::Add(const CContentHash &hashPart)
{
  const QByteArray byteDigest = hashPart.GetDigest();
  Add(byteDigest.constData(), static_cast<std::size_t>(byteDigest.size()));
}

QByteArray CContentHash::GetDigest() const
{
  XXH128_canonical_t stCanonical;
  XXH128_canonicalFromHash(&stCanonical, XXH3_128bits_digest(&m_pState->m_stState));
  return QByteArray(reinterpret_cast<const char *>(stCanonical.digest), sizeof stCanonical.digest);
}

QString CContentHash::Get() const
{
  return QStringLiteral("xxh3:") + QLatin1String(GetDigest().toHex());
}

} // namespace ffc::tool
