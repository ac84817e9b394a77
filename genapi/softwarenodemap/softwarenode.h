/// \file
/// What all kinds of software nodes have in common.
#pragma once

#include <functional>
#include <string>
#include <type_traits>
#include <utility>

#include <GenApi/GenApi.h>

#include "genapi/softwarenodemap/nodeguard.h"

namespace ffc::genapi {

/// A node with one GenApi interface. TNode is the concrete class, so that declarations chain.
template <class TNode, class TInterface>
class CSoftwareNode : public GenApi::INode, public TInterface {
public:
  GenICam::gcstring GetName(bool = false) const override { return m_guard.GetName().c_str(); }
  GenApi::INode *GetNode() override { return this; }

  /// Fixed, or asked at every access. Undeclared: RW, RO for a node with a read callback only, WO for
  /// a command.
  TNode &Access(CValueOrCallback<GenApi::EAccessMode> access)
  {
    m_guard.SetAccess(std::move(access));
    return static_cast<TNode &>(*this);
  }

  /// Read only as long as another node of this map, such as TLParamsLocked, is not zero.
  template <class TLockNode>
  TNode &LockedWhile(const TLockNode &lockNode)
  {
    return Access([&lockNode] { return lockNode.Peek() != 0 ? GenApi::RO : GenApi::RW; });
  }

protected:
  CSoftwareNode(std::string strName, std::recursive_mutex &mutex) : m_guard(std::move(strName), mutex) {}

  CNodeGuard m_guard;
};

/// A node with a value of one type: stored, or behind callbacks.
///
/// Callbacks run with the map's lock held; what they throw reaches the caller.
template <class TNode, class TInterface, class TValue>
class CSoftwareValueNode : public CSoftwareNode<TNode, TInterface> {
public:
  using ReadCallback = std::function<TValue()>;
  using WriteCallback = std::function<void(const TValue &)>;

  /// The value comes from the callback instead of the store. Without OnWrite the node cannot be written.
  TNode &OnRead(ReadCallback fnRead)
  {
    m_fnRead = std::move(fnRead);
    return static_cast<TNode &>(*this);
  }

  /// Called with each written value before it is stored; when it throws nothing is stored.
  TNode &OnWrite(WriteCallback fnWrite)
  {
    m_fnWrite = std::move(fnWrite);
    return static_cast<TNode &>(*this);
  }

  /// Verifies every write, also one that asks not to: for values that would do harm.
  TNode &Strict(bool bStrict = true)
  {
    m_bStrict = bStrict;
    return static_cast<TNode &>(*this);
  }

  /// The owner's view of the value: no access mode is asked.
  TValue Peek() const
  {
    const auto lock = this->m_guard.Acquire();
    return m_fnRead ? m_fnRead() : m_value;
  }

  /// The owner's write into the store: no check, no callback.
  TNode &Poke(TValue value)
  {
    const auto lock = this->m_guard.Acquire();
    m_value = std::move(value);
    return static_cast<TNode &>(*this);
  }

  GenApi::EAccessMode GetAccessMode() const override
  {
    const auto lock = this->m_guard.Acquire();
    return this->m_guard.GetAccess(HasWritePath() ? GenApi::RW : GenApi::RO);
  }

protected:
  using CSoftwareNode<TNode, TInterface>::CSoftwareNode;

  void CheckAvailable() const { this->m_guard.CheckAvailable(GetAccessMode()); }

  /// \return whether the value has to be verified too
  bool CheckWritable(bool bVerify) const
  {
    this->m_guard.CheckWritable(GetAccessMode(), bVerify || m_bStrict, HasWritePath());
    return bVerify || m_bStrict;
  }

  /// Only with the lock held, like Write().
  TValue Read(bool bVerify) const
  {
    this->m_guard.CheckReadable(GetAccessMode(), bVerify);
    return Peek();
  }

  /// Only after CheckWritable() and the kind's own verification.
  void Write(const TValue &value)
  {
    if (m_fnWrite) {
      m_fnWrite(value);
    }
    m_value = value;
  }

private:
  bool HasWritePath() const { return m_fnWrite || !m_fnRead; }

  TValue m_value{};
  bool m_bStrict = false;
  ReadCallback m_fnRead;
  WriteCallback m_fnWrite;
};

} // namespace ffc::genapi
