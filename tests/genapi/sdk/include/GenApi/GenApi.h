/// \file
/// Stand-in for the GenICam SDK's node interfaces: a versioned namespace, a macro where others have a keyword, more
/// operations than this project uses, in another order than its own headers have them.
#pragma once

#include <Base/GCBase.h>

#define GENAPI_NAMESPACE GenApi_3_7
#define GENAPI_DECL __attribute__((visibility("default")))
#ifndef interface
#define interface struct
#endif

namespace GENAPI_NAMESPACE {

typedef enum _EAccessMode { NI, NA, WO, RO, RW, _UndefinedAccesMode, _CycleDetectAccesMode } EAccessMode;
typedef enum _EVisibility { Beginner = 0, Expert = 1, Guru = 2, Invisible = 3, _UndefinedVisibility = 99 } EVisibility;
typedef enum _ECachingMode { NoCache, WriteThrough, WriteAround, _UndefinedCachingMode } ECachingMode;

inline bool IsImplemented(EAccessMode AccessMode)
{
  return AccessMode != NI;
}
inline bool IsAvailable(EAccessMode AccessMode)
{
  return !(AccessMode == NA || AccessMode == NI);
}
inline bool IsReadable(EAccessMode AccessMode)
{
  return AccessMode == RW || AccessMode == RO;
}
inline bool IsWritable(EAccessMode AccessMode)
{
  return AccessMode == RW || AccessMode == WO;
}

interface INode;
interface INodeMap;
interface IEnumEntry;

interface GENAPI_DECL IBase
{
  virtual EAccessMode GetAccessMode() const = 0;
  virtual ~IBase() {}
};

inline bool IsImplemented(const IBase *p)
{
  return p != 0 && IsImplemented(p->GetAccessMode());
}
inline bool IsWritable(const IBase *p)
{
  return p != 0 && IsWritable(p->GetAccessMode());
}

class GENAPI_DECL node_vector {
public:
  class GENAPI_DECL iterator {
  public:
    explicit iterator(INode **pn);
    INode *&operator*() const;
    iterator &operator++();
    bool operator!=(const iterator &rhs) const;
    bool operator==(const iterator &rhs) const;

  private:
    INode **_pn;
  };

  node_vector();
  virtual ~node_vector();
  virtual iterator begin();
  virtual iterator end();
  virtual INode *&operator[](size_t uiIndex);
  virtual size_t size() const;
  virtual bool empty() const;
  virtual void push_back(INode *const &pNode);

private:
  node_vector(const node_vector &);
  node_vector &operator=(const node_vector &);
  void *_pv;
};
typedef node_vector NodeList_t;

interface GENAPI_DECL INode : virtual public IBase
{
  virtual GENICAM_NAMESPACE::gcstring GetName(bool FullQualified = false) const = 0;
  virtual EVisibility GetVisibility() const = 0;
  virtual void InvalidateNode() = 0;
  virtual bool IsCachable() const = 0;
  virtual ECachingMode GetCachingMode() const = 0;
  virtual INodeMap *GetNodeMap() const = 0;
};

interface GENAPI_DECL IValue : virtual public IBase
{
  virtual INode *GetNode() = 0;
  virtual GENICAM_NAMESPACE::gcstring ToString(bool Verify = false, bool IgnoreCache = false) = 0;
  virtual void FromString(const GENICAM_NAMESPACE::gcstring &ValueStr, bool Verify = true) = 0;
  virtual bool IsValueCacheValid() const = 0;
};

interface GENAPI_DECL IInteger : virtual public IValue
{
  virtual void SetValue(int64_t Value, bool Verify = true) = 0;
  virtual IInteger &operator=(int64_t Value) = 0;
  virtual int64_t GetValue(bool Verify = false, bool IgnoreCache = false) = 0;
  virtual int64_t operator()() = 0;
  virtual int64_t GetMin() = 0;
  virtual int64_t GetMax() = 0;
  virtual int64_t GetInc() = 0;
};

interface GENAPI_DECL IFloat : virtual public IValue
{
  virtual void SetValue(double Value, bool Verify = true) = 0;
  virtual IFloat &operator=(double Value) = 0;
  virtual double GetValue(bool Verify = false, bool IgnoreCache = false) = 0;
  virtual double operator()() = 0;
  virtual double GetMin() = 0;
  virtual double GetMax() = 0;
  virtual bool HasInc() = 0;
  virtual double GetInc() = 0;
};

interface GENAPI_DECL IBoolean : virtual public IValue
{
  virtual void SetValue(bool Value, bool Verify = true) = 0;
  virtual IBoolean &operator=(bool Value) = 0;
  virtual bool GetValue(bool Verify = false, bool IgnoreCache = false) const = 0;
  virtual bool operator()() const = 0;
};

interface GENAPI_DECL IString : virtual public IValue
{
  virtual IString &operator=(const GENICAM_NAMESPACE::gcstring &Value) = 0;
  virtual void SetValue(const GENICAM_NAMESPACE::gcstring &Value, bool Verify = true) = 0;
  virtual GENICAM_NAMESPACE::gcstring GetValue(bool Verify = false, bool IgnoreCache = false) = 0;
  virtual int64_t GetMaxLength() = 0;
};

interface GENAPI_DECL ICommand : virtual public IValue
{
  virtual void Execute(bool Verify = true) = 0;
  virtual void operator()() = 0;
  virtual bool IsDone(bool Verify = true) = 0;
};

interface GENAPI_DECL IRegister : virtual public IValue
{
  virtual void Set(const uint8_t *pBuffer, int64_t Length, bool Verify = true) = 0;
  virtual void Get(uint8_t *pBuffer, int64_t Length, bool Verify = false, bool IgnoreCache = false) = 0;
  virtual int64_t GetLength(bool Verify = false) = 0;
  virtual int64_t GetAddress(bool Verify = false) = 0;
};

interface GENAPI_DECL IEnumEntry : virtual public IValue
{
  virtual int64_t GetValue() = 0;
  virtual GENICAM_NAMESPACE::gcstring GetSymbolic() const = 0;
  virtual double GetNumericValue() = 0;
  virtual bool IsSelfClearing() = 0;
};

interface GENAPI_DECL IEnumeration : virtual public IValue
{
  virtual void GetEntries(NodeList_t &Entries) = 0;
  virtual IEnumeration &operator=(const GENICAM_NAMESPACE::gcstring &ValueStr) = 0;
  virtual void SetIntValue(int64_t Value, bool Verify = true) = 0;
  virtual int64_t GetIntValue(bool Verify = false, bool IgnoreCache = false) = 0;
  virtual IEnumEntry *GetEntryByName(const GENICAM_NAMESPACE::gcstring &Symbolic) = 0;
  virtual IEnumEntry *GetEntry(const int64_t IntValue) = 0;
  virtual IEnumEntry *GetCurrentEntry(bool Verify = false, bool IgnoreCache = false) = 0;
};

interface GENAPI_DECL INodeMap
{
  virtual void GetNodes(NodeList_t &Nodes) const = 0;
  virtual INode *GetNode(const GENICAM_NAMESPACE::gcstring &Name) const = 0;
  virtual void InvalidateNodes() const = 0;
  virtual bool Connect(void *pPort, const GENICAM_NAMESPACE::gcstring &PortName) const = 0;
  virtual GENICAM_NAMESPACE::gcstring GetDeviceName() const = 0;
  virtual void Poll(int64_t ElapsedTime) = 0;
  virtual ~INodeMap() {}
};

} // namespace GENAPI_NAMESPACE

namespace GenApi = GENAPI_NAMESPACE;
