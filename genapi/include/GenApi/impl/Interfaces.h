/// \file
/// The node interfaces. Casts between them are dynamic_casts; ownership stays with the node map.
///
/// Every access may throw a GenICam::GenericException: AccessException when the node is not available
/// or, verified, not readable or writable; OutOfRangeException for a verified value outside range or
/// increment; InvalidArgumentException for an unknown entry or a text that does not parse.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "GenApi/impl/GCString.h"
#include "GenApi/impl/Types.h"

namespace GenApi_3_0 {

using GenICam_3_0::gcstring;

struct INode;

/// What every interface derives from, virtually.
struct IBase {
  virtual ~IBase() = default;
  virtual EAccessMode GetAccessMode() const = 0;
};

inline bool IsImplemented(const IBase *pBase)
{
  return pBase != nullptr && IsImplemented(pBase->GetAccessMode());
}
inline bool IsAvailable(const IBase *pBase)
{
  return pBase != nullptr && IsAvailable(pBase->GetAccessMode());
}
inline bool IsReadable(const IBase *pBase)
{
  return pBase != nullptr && IsReadable(pBase->GetAccessMode());
}
inline bool IsWritable(const IBase *pBase)
{
  return pBase != nullptr && IsWritable(pBase->GetAccessMode());
}

/// A node of any kind.
struct INode : virtual public IBase {
  virtual gcstring GetName(bool FullQualified = false) const = 0;
};

/// A list of nodes, not owned.
class NodeList_t {
public:
  using iterator = std::vector<INode *>::iterator;
  using const_iterator = std::vector<INode *>::const_iterator;

  std::size_t size() const { return m_listNodes.size(); }
  bool empty() const { return m_listNodes.empty(); }
  void clear() { m_listNodes.clear(); }
  void push_back(INode *const &pNode) { m_listNodes.push_back(pNode); }
  INode *&operator[](std::size_t nIndex) { return m_listNodes[nIndex]; }
  INode *const &operator[](std::size_t nIndex) const { return m_listNodes[nIndex]; }
  iterator begin() { return m_listNodes.begin(); }
  iterator end() { return m_listNodes.end(); }
  const_iterator begin() const { return m_listNodes.begin(); }
  const_iterator end() const { return m_listNodes.end(); }

private:
  std::vector<INode *> m_listNodes;
};

/// A node with a value that has a text form.
struct IValue : virtual public IBase {
  virtual INode *GetNode() = 0;
  virtual gcstring ToString(bool Verify = false, bool IgnoreCache = false) = 0;
  virtual void FromString(const gcstring &ValueStr, bool Verify = true) = 0;
};

struct IInteger : virtual public IValue {
  virtual void SetValue(int64_t Value, bool Verify = true) = 0;
  virtual int64_t GetValue(bool Verify = false, bool IgnoreCache = false) = 0;
  virtual int64_t GetMin() = 0;
  virtual int64_t GetMax() = 0;
  virtual int64_t GetInc() = 0;
};

struct IFloat : virtual public IValue {
  virtual void SetValue(double Value, bool Verify = true) = 0;
  virtual double GetValue(bool Verify = false, bool IgnoreCache = false) = 0;
  virtual double GetMin() = 0;
  virtual double GetMax() = 0;
  virtual bool HasInc() = 0;
  virtual double GetInc() = 0;
};

struct IBoolean : virtual public IValue {
  virtual void SetValue(bool Value, bool Verify = true) = 0;
  virtual bool GetValue(bool Verify = false, bool IgnoreCache = false) const = 0;
};

struct IString : virtual public IValue {
  virtual void SetValue(const gcstring &Value, bool Verify = true) = 0;
  virtual gcstring GetValue(bool Verify = false, bool IgnoreCache = false) = 0;
  virtual int64_t GetMaxLength() = 0;
};

struct ICommand : virtual public IValue {
  virtual void Execute(bool Verify = true) = 0;
  virtual bool IsDone(bool Verify = true) = 0;
};

struct IRegister : virtual public IValue {
  virtual void Set(const uint8_t *pBuffer, int64_t Length, bool Verify = true) = 0;
  virtual void Get(uint8_t *pBuffer, int64_t Length, bool Verify = false, bool IgnoreCache = false) = 0;
  virtual int64_t GetLength(bool Verify = false) = 0;
  virtual int64_t GetAddress(bool Verify = false) = 0;
};

struct IEnumEntry : virtual public IValue {
  virtual int64_t GetValue() = 0;
  virtual gcstring GetSymbolic() const = 0;
};

struct IEnumeration : virtual public IValue {
  virtual void GetEntries(NodeList_t &Entries) = 0;
  virtual void SetIntValue(int64_t Value, bool Verify = true) = 0;
  virtual int64_t GetIntValue(bool Verify = false, bool IgnoreCache = false) = 0;
  virtual IEnumEntry *GetEntryByName(const gcstring &Symbolic) = 0;
  virtual IEnumEntry *GetEntry(const int64_t IntValue) = 0;
  /// Null when the current value belongs to no entry.
  virtual IEnumEntry *GetCurrentEntry(bool Verify = false, bool IgnoreCache = false) = 0;
};

/// The nodes of one device, stream or host object, by name.
struct INodeMap {
  virtual ~INodeMap() = default;
  /// Null when there is no such node. The node lives as long as the map.
  virtual INode *GetNode(const gcstring &Name) const = 0;
  virtual void GetNodes(NodeList_t &Nodes) const = 0;
};

} // namespace GenApi_3_0

namespace GenApi = GenApi_3_0;
