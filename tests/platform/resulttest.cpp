#include "platform/result.h"

#include <memory>

#include <gtest/gtest.h>

namespace {

using ffc::Failure;
using ffc::Result;

// As the toolkit's texts: not a std::string, but one can be made of it.
struct SForeignText {
  std::string toStdString() const { return "grün"; }
};

struct SBase {
  virtual ~SBase() = default;
};
struct SDerived : SBase {};

Result<std::unique_ptr<SBase>> Make(bool bFail)
{
  if (bFail) {
    return Failure("no room");
  }
  return std::make_unique<SDerived>();
}

} // namespace

TEST(Result, HoldsAValue)
{
  Result<int> result = 7;
  ASSERT_TRUE(result.IsOk());
  EXPECT_TRUE(static_cast<bool>(result));
  EXPECT_EQ(result.GetValue(), 7);
  EXPECT_EQ(result.GetError(), "");
  result.GetValue() = 8;
  EXPECT_EQ(std::as_const(result).GetValue(), 8);
}

TEST(Result, HoldsWhyThereIsNoValue)
{
  const Result<int> result = Failure("it is not there");
  EXPECT_FALSE(result.IsOk());
  EXPECT_EQ(result.GetError(), "it is not there");
}

TEST(Result, AFailureWithoutWordsIsNoSuccess)
{
  EXPECT_FALSE(Result<int>(Failure("")).IsOk());
  EXPECT_FALSE(Result<>(Failure("")).IsOk());
}

TEST(Result, AValueThatIsATextIsNoFailure)
{
  const Result<std::string> result = std::string("Mono12");
  ASSERT_TRUE(result.IsOk());
  EXPECT_EQ(result.GetValue(), "Mono12");
}

TEST(Result, TakesAForeignText)
{
  EXPECT_EQ(Failure(SForeignText()).GetText(), "grün");
}

TEST(Result, HandsOutAValueThatCannotBeCopied)
{
  const std::unique_ptr<SBase> pMade = Make(false).GetValue();
  EXPECT_NE(dynamic_cast<SDerived *>(pMade.get()), nullptr);
  EXPECT_EQ(Make(true).GetError(), "no room");
}

TEST(Result, AFailureIsHandedOnToAnotherKindOfResult)
{
  const Result<std::unique_ptr<SBase>> inner = Make(true);
  const Result<> outer = inner.GetFailure();
  EXPECT_EQ(outer.GetError(), "no room");
}

TEST(Result, WithoutAValueIsASuccessUnlessItSaysOtherwise)
{
  EXPECT_TRUE(Result<>().IsOk());
  EXPECT_EQ(Result<>().GetError(), "");
  EXPECT_EQ(Result<>(Failure("broken")).GetError(), "broken");
}

TEST(Result, StepsStopAtTheFirstFailureWithItsTextAsItIs)
{
  int nRun = 0;
  const auto step = [&nRun](const char *pError) {
    return [&nRun, pError]() -> Result<> {
      ++nRun;
      return *pError == '\0' ? Result<>() : Failure(pError);
    };
  };
  EXPECT_EQ(ffc::RunUntilFailure(step(""), step("no"), step("never")).GetError(), "no");
  EXPECT_EQ(nRun, 2);
  EXPECT_TRUE(ffc::RunUntilFailure(step("")).IsOk());
}
