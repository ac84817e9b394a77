/// \file
/// What a fallible operation answers: its value, or why there is none.
#pragma once

#include <functional>
#include <initializer_list>
#include <string>
#include <type_traits>
#include <utility>
#include <variant>

namespace ffc {

/// Why something failed: one line for a person, UTF-8.
class Failure {
public:
  explicit Failure(std::string strText) : m_strText(std::move(strText)) {}
  /// \param text of a type that turns itself into UTF-8, such as the toolkit's
  template <class TText, class = decltype(std::declval<const TText &>().toStdString())>
  explicit Failure(const TText &text) : m_strText(text.toStdString())
  {
  }

  const std::string &GetText() const { return m_strText; }

private:
  std::string m_strText;
};

/// A value, or a failure with its text. Either is returned as it is:
///
///     Result<int> Read() { return bThere ? Result<int>(7) : Failure("there is nothing"); }
///
/// A failure stays one with an empty text. Used by one thread at a time.
template <class TValue = void>
class [[nodiscard]] Result {
public:
  template <class TSource, class = std::enable_if_t<std::is_convertible_v<TSource, TValue>>>
  Result(TSource &&value) : m_content(std::in_place_index<0>, std::forward<TSource>(value))
  {
  }
  Result(Failure failure) : m_content(std::in_place_index<1>, std::move(failure)) {}

  bool IsOk() const { return m_content.index() == 0; }
  explicit operator bool() const { return IsOk(); }

  /// Only on success.
  TValue &GetValue() & { return *std::get_if<0>(&m_content); }
  const TValue &GetValue() const & { return *std::get_if<0>(&m_content); }
  TValue &&GetValue() && { return std::move(*std::get_if<0>(&m_content)); }

  /// Why it failed, to be handed on. Only on failure.
  const Failure &GetFailure() const { return *std::get_if<1>(&m_content); }
  /// The text of the failure; empty on success.
  std::string GetError() const { return IsOk() ? std::string() : GetFailure().GetText(); }

private:
  std::variant<TValue, Failure> m_content;
};

/// Success without a value, or a failure: `return {};` or `return Failure("why");`.
template <>
class [[nodiscard]] Result<void> {
public:
  Result() = default;
  Result(Failure failure) : m_content(std::in_place_index<1>, std::move(failure)) {}

  bool IsOk() const { return m_content.index() == 0; }
  explicit operator bool() const { return IsOk(); }
  const Failure &GetFailure() const { return *std::get_if<1>(&m_content); }
  std::string GetError() const { return IsOk() ? std::string() : GetFailure().GetText(); }

private:
  std::variant<std::monostate, Failure> m_content;
};

/// \return the first failure, if any; no step runs after it
inline Result<> RunStepsUntilFailure(std::initializer_list<std::function<Result<>()>> listSteps)
{
  for (const auto &fnStep : listSteps) {
    Result<> result = fnStep();
    if (!result) {
      return result;
    }
  }
  return {};
}

/// Runs steps one after the other, up to the first that fails.
/// \param steps callables without parameters that answer Result<>
/// \return the first failure, if any
template <class... TSteps>
Result<> RunUntilFailure(TSteps &&...steps)
{
  return RunStepsUntilFailure({std::ref(steps)...});
}

} // namespace ffc
