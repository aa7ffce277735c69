// Decimal arithmetic.
#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <random>
#include <string>

#include "sim/calc/Number.h"
#include "sim/calc/Unicode.h"

namespace {

using calc::Number;

Number Of(const char* literal) { return Number::Parse(calc::ToUtf16(literal)).value(); }
std::string Text(const Number& number) { return calc::ToUtf8(number.ToText()); }

TEST(CalcNumber, TextHasNoNeedlessDigits) {
  EXPECT_EQ(Text(Of("0.250")), ".25");
  EXPECT_EQ(Text(-Of("0.5")), "-.5");
  EXPECT_EQ(Text(Of("000")), "0");
  EXPECT_EQ(Text(Of("1e3")), "1000");
  EXPECT_EQ(Text(Of("1e-20")), ".00000000000000000001");
  for (const char16_t* bad : {u"", u".", u"5.", u"1.2.3", u"1e", u"e5", u"-1", u" 1", u"1 "}) {
    EXPECT_FALSE(Number::Parse(bad)) << calc::ToUtf8(bad);
  }
}

TEST(CalcNumber, LongIntegersAreExact) {
  const Number a = Of("123456789012345678901234567890");
  const Number b = Of("987654321098765432109876543210");
  EXPECT_EQ(Text(a + b), "1111111110111111111011111111100");
  EXPECT_EQ(Text(a - b), "-864197532086419753208641975320");
  EXPECT_EQ(Text(a * b), "121932631137021795226185032733622923332237463801111263526900");
  EXPECT_EQ(Text(Of("3").Power(100).value()), "515377520732011331036461129765621272702107522001");
  EXPECT_EQ(Text(Of("0.1") + Of("0.2")), ".3");
}

TEST(CalcNumber, QuotientsHaveSixteenDigitsAfterThePoint) {
  EXPECT_EQ(Text(Number(1).DividedBy(3).value()), ".3333333333333333");
  EXPECT_EQ(Text(Number(2).DividedBy(-3).value()), "-.6666666666666667");
  EXPECT_EQ(Text(Of("1e20").DividedBy(3).value()), "33333333333333333333.3333333333333333");
  EXPECT_EQ(Text(Number(1).DividedBy(3, 2).value()), ".33");
  EXPECT_FALSE(Number(1).DividedBy(0));
}

TEST(CalcNumber, PowersExistOrDoNot) {
  EXPECT_EQ(Text(Number(2).Power(Of("0.5")).value()), "1.414213562373095");  // ...950|488, not ...95|05 rounded again
  EXPECT_EQ(Text(Number(10).Power(-20).value()), ".00000000000000000001");
  EXPECT_EQ(Text(Number(3).Power(-1).value()), ".3333333333333333");
  EXPECT_EQ(Text(Of("0.5").Power(Of("1e30")).value()), "0");
  EXPECT_EQ(Text(Number(-1).Power(Of("1e300") + 1).value()), "-1");
  EXPECT_FALSE(Number(0).Power(-1));
  EXPECT_FALSE(Number(-8).Power(Of("0.5")));
  EXPECT_FALSE(Number(10).Power(400));
  EXPECT_FALSE(Of("0.1").Power(-400));
}

TEST(CalcNumber, RoundsHalvesAwayFromZero) {
  EXPECT_EQ(Text(Of("2.345").Rounded(2)), "2.35");
  EXPECT_EQ(Text((-Of("2.345")).Rounded(2)), "-2.35");
  EXPECT_EQ(Text(Of("150").Rounded(-2)), "200");
  EXPECT_EQ(Text(Of("49").Rounded(-2)), "0");
  EXPECT_EQ(Text(Of("2.349").Truncated(2)), "2.34");
  EXPECT_EQ(Text((-Of("2.1")).Floor()), "-3");
  EXPECT_EQ(Text((-Of("2.9")).Ceiling()), "-2");
}

TEST(CalcNumber, ConvertsToMachineNumbers) {
  EXPECT_EQ(Of("1e30").ToInteger(), std::numeric_limits<long long>::max());
  EXPECT_EQ((-Of("1e30")).ToInteger(), std::numeric_limits<long long>::min());
  EXPECT_EQ((-Of("7.9")).ToInteger(), -7);
  EXPECT_EQ(Of("0.1").ToDouble(), 0.1);
  EXPECT_EQ(Text(Number::FromDouble(0.1)), ".1");
  EXPECT_EQ(Text(Number::FromDouble(-1.5e21)), "-1500000000000000000000");
  EXPECT_EQ(Text(Number::FromDouble(std::numeric_limits<double>::quiet_NaN())), "0");
}

TEST(CalcNumber, AgreesWithIntegerArithmetic) {
  std::mt19937_64 random(1);
  for (int i = 0; i < 20000; ++i) {
    const auto a = static_cast<long long>(random()) >> (random() % 63);
    const auto b = static_cast<long long>(random()) >> (random() % 63);
    ASSERT_EQ(Number(a) <=> Number(b), a <=> b);
    ASSERT_EQ(Number(a) + Number(b) - Number(b), Number(a));
    const auto product = std::clamp<__int128>(static_cast<__int128>(a) * b, std::numeric_limits<long long>::min(),
                                              std::numeric_limits<long long>::max());
    ASSERT_EQ((Number(a) * Number(b)).ToInteger(), static_cast<long long>(product));
    if (b == 0) continue;
    const __int128 quotient = static_cast<__int128>(a) / b;
    const bool lower = static_cast<__int128>(a) % b != 0 && (a < 0) != (b < 0);
    ASSERT_EQ(Number(a).FloorDividedBy(b).value() + (lower ? 1 : 0), Number(static_cast<long long>(quotient)));
  }
}

}  // namespace
