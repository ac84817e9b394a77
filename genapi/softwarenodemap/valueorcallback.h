/// \file
/// A setting of a node that is either fixed or asked for at every use.
#pragma once

#include <functional>
#include <type_traits>
#include <utility>

namespace ffc::genapi {

/// Converts implicitly from a value and from anything callable that returns one, so that a
/// declaration reads the same for both: Access(GenApi::RO), Access([&] { return ...; }).
template <class TValue>
class CValueOrCallback {
public:
  template <class TSource, class = std::enable_if_t<!std::is_same_v<std::decay_t<TSource>, CValueOrCallback>>>
  CValueOrCallback(TSource source) // NOLINT(google-explicit-constructor): conversion is the purpose
  {
    if constexpr (std::is_invocable_r_v<TValue, TSource &>) {
      m_fnValue = std::move(source);
    } else {
      m_value = static_cast<TValue>(source);
    }
  }

  TValue Get() const { return m_fnValue ? m_fnValue() : m_value; }

private:
  TValue m_value{};
  std::function<TValue()> m_fnValue;
};

} // namespace ffc::genapi
