// Where the faster hash is not at hand.
#include <QCryptographicHash>

#include "tools/ffc/contenthash.h"

namespace ffc::tool {

struct CContentHash::SState {
  QCryptographicHash m_hash{QCryptographicHash::Sha256};
};

CContentHash::CContentHash() : m_pState(std::make_unique<SState>()) {}

CContentHash::~CContentHash() = default;

void CContentHash::Add(const void *pBytes, std::size_t nBytes)
{
  m_pState->m_hash.addData(QByteArray::fromRawData(static_cast<const char *>(pBytes), static_cast<int>(nBytes)));
}

void CContentHash::Add(const CContentHash &hashPart)
{
  const QByteArray byteDigest = hashPart.GetDigest();
  Add(byteDigest.constData(), static_cast<std::size_t>(byteDigest.size()));
}

QByteArray CContentHash::GetDigest() const
{
  return m_pState->m_hash.result();
}

QString CContentHash::Get() const
{
  return QStringLiteral("sha256:") + QLatin1String(GetDigest().toHex());
}

} // namespace ffc::tool
