#include "genapi/softwarenodemap/observednodes.h"

#include <map>
#include <mutex>
#include <utility>

#include "genapi/softwarenodemap/numbertext.h"

namespace ffc::genapi {

namespace {

using EKind = SNodeAccess::EKind;
using GenICam::gcstring;

// Name and access mode of a stand-in, and the way to its hook.
template <class TInterface>
class CObservedNode : public GenApi::INode, public TInterface {
public:
  CObservedNode(GenApi::INode *pNode, TInterface &inner, const NodeAccessHook &fnHook)
    : CObservedNode(pNode, inner, fnHook, pNode->GetName().c_str(), EKind::AccessMode)
  {
  }

  gcstring GetName(bool bFullQualified = false) const override { return m_pNode->GetName(bFullQualified); }
  GenApi::EAccessMode GetAccessMode() const override
  {
    Announce(m_eAccessKind);
    return m_pNode->GetAccessMode();
  }

protected:
  CObservedNode(GenApi::INode *pNode, TInterface &inner, const NodeAccessHook &fnHook, std::string strLogName,
                EKind eAccessKind)
    : m_inner(inner), m_fnHook(fnHook), m_pNode(pNode), m_strLogName(std::move(strLogName)), m_eAccessKind(eAccessKind)
  {
  }

  void Announce(EKind eKind, const std::string &strValue = {}, int64_t nLength = 0) const
  {
    m_fnHook({eKind, m_strLogName, strValue, nLength});
  }

  // Announces first, so that a call reads "Inner(kind).Access()".
  TInterface &Inner(EKind eKind, const std::string &strValue = {}, int64_t nLength = 0) const
  {
    Announce(eKind, strValue, nLength);
    return m_inner;
  }

  TInterface &m_inner;
  const NodeAccessHook &m_fnHook;

private:
  GenApi::INode *m_pNode;
  std::string m_strLogName;
  EKind m_eAccessKind;
};

// Adds the text form.
template <class TInterface, EKind READ = EKind::Read, EKind WRITE = EKind::Write>
class CObservedValue : public CObservedNode<TInterface> {
public:
  using CObservedNode<TInterface>::CObservedNode;

  GenApi::INode *GetNode() override { return this; }
  gcstring ToString(bool bVerify = false, bool bIgnoreCache = false) override
  {
    return this->Inner(READ).ToString(bVerify, bIgnoreCache);
  }
  void FromString(const gcstring &strValue, bool bVerify = true) override
  {
    this->Inner(WRITE, strValue.c_str()).FromString(strValue, bVerify);
  }
};

// Adds value, range and increment.
template <class TInterface, class TValue>
class CObservedNumber : public CObservedValue<TInterface> {
public:
  using CObservedValue<TInterface>::CObservedValue;

  void SetValue(TValue value, bool bVerify = true) override
  {
    this->Inner(EKind::Write, FormatValue(value)).SetValue(value, bVerify);
  }
  TValue GetValue(bool bVerify = false, bool bIgnoreCache = false) override
  {
    return this->Inner(EKind::Read).GetValue(bVerify, bIgnoreCache);
  }
  TValue GetMin() override { return this->Inner(EKind::Limit).GetMin(); }
  TValue GetMax() override { return this->Inner(EKind::Limit).GetMax(); }
  TValue GetInc() override { return this->Inner(EKind::Limit).GetInc(); }
};

using CObservedInteger = CObservedNumber<GenApi::IInteger, int64_t>;

class CObservedFloat final : public CObservedNumber<GenApi::IFloat, double> {
public:
  using CObservedNumber::CObservedNumber;
  bool HasInc() override { return Inner(EKind::Limit).HasInc(); }
};

class CObservedBoolean final : public CObservedValue<GenApi::IBoolean> {
public:
  using CObservedValue::CObservedValue;

  void SetValue(bool bValue, bool bVerify = true) override
  {
    Inner(EKind::Write, FormatValue(bValue)).SetValue(bValue, bVerify);
  }
  bool GetValue(bool bVerify = false, bool bIgnoreCache = false) const override
  {
    return Inner(EKind::Read).GetValue(bVerify, bIgnoreCache);
  }
};

class CObservedString final : public CObservedValue<GenApi::IString> {
public:
  using CObservedValue::CObservedValue;

  void SetValue(const gcstring &strValue, bool bVerify = true) override
  {
    Inner(EKind::Write, strValue.c_str()).SetValue(strValue, bVerify);
  }
  gcstring GetValue(bool bVerify = false, bool bIgnoreCache = false) override
  {
    return Inner(EKind::Read).GetValue(bVerify, bIgnoreCache);
  }
  int64_t GetMaxLength() override { return Inner(EKind::Limit).GetMaxLength(); }
};

class CObservedRegister final : public CObservedValue<GenApi::IRegister> {
public:
  using CObservedValue::CObservedValue;

  void Set(const uint8_t *pBuffer, int64_t nLength, bool bVerify = true) override
  {
    Inner(EKind::RegisterWrite, {}, nLength).Set(pBuffer, nLength, bVerify);
  }
  void Get(uint8_t *pBuffer, int64_t nLength, bool bVerify = false, bool bIgnoreCache = false) override
  {
    Inner(EKind::RegisterRead, {}, nLength).Get(pBuffer, nLength, bVerify, bIgnoreCache);
  }
  int64_t GetLength(bool bVerify = false) override { return Inner(EKind::RegisterLength).GetLength(bVerify); }
  int64_t GetAddress(bool bVerify = false) override { return Inner(EKind::RegisterLength).GetAddress(bVerify); }
};

class CObservedCommand final : public CObservedValue<GenApi::ICommand, EKind::IsDone, EKind::Execute> {
public:
  using CObservedValue::CObservedValue;

  void Execute(bool bVerify = true) override { Inner(EKind::Execute).Execute(bVerify); }
  bool IsDone(bool bVerify = true) override { return Inner(EKind::IsDone).IsDone(bVerify); }
};

class CObservedEntry final : public CObservedValue<GenApi::IEnumEntry, EKind::EntryValue> {
public:
  CObservedEntry(GenApi::IEnumEntry &inner, const NodeAccessHook &fnHook, const std::string &strEnumeration)
    : CObservedValue(inner.GetNode(), inner, fnHook, strEnumeration + "." + inner.GetSymbolic().c_str(),
                     EKind::EntryAccessMode)
  {
  }

  int64_t GetValue() override { return Inner(EKind::EntryValue).GetValue(); }
  gcstring GetSymbolic() const override { return m_inner.GetSymbolic(); } // a name, no access
};

class CObservedEnumeration final : public CObservedValue<GenApi::IEnumeration> {
public:
  using CObservedValue::CObservedValue;

  void GetEntries(GenApi::NodeList_t &listEntries) override
  {
    GenApi::NodeList_t listInner;
    Inner(EKind::Entries).GetEntries(listInner);
    for (GenApi::INode *pEntry : listInner) {
      listEntries.push_back(Wrap(dynamic_cast<GenApi::IEnumEntry *>(pEntry)));
    }
  }
  void SetIntValue(int64_t nValue, bool bVerify = true) override
  {
    Inner(EKind::Write, FormatValue(nValue)).SetIntValue(nValue, bVerify);
  }
  int64_t GetIntValue(bool bVerify = false, bool bIgnoreCache = false) override
  {
    return Inner(EKind::Read).GetIntValue(bVerify, bIgnoreCache);
  }
  GenApi::IEnumEntry *GetEntryByName(const gcstring &strSymbolic) override
  {
    return Wrap(Inner(EKind::Entries).GetEntryByName(strSymbolic));
  }
  GenApi::IEnumEntry *GetEntry(const int64_t nValue) override { return Wrap(Inner(EKind::Entries).GetEntry(nValue)); }
  GenApi::IEnumEntry *GetCurrentEntry(bool bVerify = false, bool bIgnoreCache = false) override
  {
    return Wrap(Inner(EKind::CurrentEntry).GetCurrentEntry(bVerify, bIgnoreCache));
  }

private:
  // The same stand-in for the same entry every time.
  CObservedEntry *Wrap(GenApi::IEnumEntry *pEntry)
  {
    if (pEntry == nullptr) {
      return nullptr;
    }
    const std::lock_guard lock(m_mutex);
    auto &pObserved = m_mapEntries[pEntry];
    if (!pObserved) {
      pObserved = std::make_unique<CObservedEntry>(*pEntry, m_fnHook, GetName().c_str());
    }
    return pObserved.get();
  }

  std::mutex m_mutex;
  std::map<GenApi::IEnumEntry *, std::unique_ptr<CObservedEntry>> m_mapEntries;
};

// A node without a value, such as a category.
class CObservedPlainNode final : public GenApi::INode {
public:
  CObservedPlainNode(GenApi::INode &inner, const NodeAccessHook &fnHook) : m_inner(inner), m_fnHook(fnHook) {}

  gcstring GetName(bool bFullQualified = false) const override { return m_inner.GetName(bFullQualified); }
  GenApi::EAccessMode GetAccessMode() const override
  {
    m_fnHook({EKind::AccessMode, GetName().c_str(), {}, 0});
    return m_inner.GetAccessMode();
  }

private:
  GenApi::INode &m_inner;
  const NodeAccessHook &m_fnHook;
};

template <class TObserved, class TInterface>
bool Observe(GenApi::INode *pNode, const NodeAccessHook &fnHook, std::unique_ptr<GenApi::INode> *ppObserved)
{
  auto *pInner = dynamic_cast<TInterface *>(pNode);
  if (pInner != nullptr) {
    *ppObserved = std::make_unique<TObserved>(pNode, *pInner, fnHook);
  }
  return pInner != nullptr;
}

} // namespace

std::unique_ptr<GenApi::INode> MakeObservedNode(GenApi::INode *pNode, const NodeAccessHook &fnHook)
{
  std::unique_ptr<GenApi::INode> pObserved;
  if (Observe<CObservedInteger, GenApi::IInteger>(pNode, fnHook, &pObserved) ||
      Observe<CObservedFloat, GenApi::IFloat>(pNode, fnHook, &pObserved) ||
      Observe<CObservedBoolean, GenApi::IBoolean>(pNode, fnHook, &pObserved) ||
      Observe<CObservedEnumeration, GenApi::IEnumeration>(pNode, fnHook, &pObserved) ||
      Observe<CObservedString, GenApi::IString>(pNode, fnHook, &pObserved) ||
      Observe<CObservedRegister, GenApi::IRegister>(pNode, fnHook, &pObserved) ||
      Observe<CObservedCommand, GenApi::ICommand>(pNode, fnHook, &pObserved)) {
    return pObserved;
  }
  return std::make_unique<CObservedPlainNode>(*pNode, fnHook);
}

} // namespace ffc::genapi
