// Decimal arithmetic.
#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <random>
#include <string>

#include "sim/calc/Number.h"
#include "tests/calc/TestEnvironment.h"

namespace {

using calc::Number;

Number Of(const char* literal) { return Number::Parse(calc::ToUtf16(literal)).value(); }
std::string Text(const Number& number) { return calc::ToUtf8(number.ToText()); }

TEST(CalcNumber, AreDecimalWithSixteenDigitsAfterThePoint) {
  ExpectAll({
      {"0.250 & (-0.5) & 1e-20 & (0.1 + 0.2)", ".25-.5.00000000000000000001.3"},
      {"123456789012345678901234567890 + 987654321098765432109876543210", "1111111110111111111011111111100"},
      {"123456789012345678901234567890 - 987654321098765432109876543210", "-864197532086419753208641975320"},
      {"123456789012345678901234567890 * 987654321098765432109876543210",
       "121932631137021795226185032733622923332237463801111263526900"},
      {"2 / -3 & 1e20 / 3", "-.666666666666666733333333333333333333.3333333333333333"},
      {"3 ^ 100 & \",\" & 0.5 ^ 1e30 & (-1) ^ (1e300 + 1)", "515377520732011331036461129765621272702107522001,0-1"},
      {"2 ^ .5", "1.414213562373095"},  // ...950|488, not ...95|05 rounded again
      {"10 ^ -20 & 3 ^ -1", ".00000000000000000001.3333333333333333"},
      {"Round ( 49 ; -2 ) & \",\" & Round ( -2.345 ; 2 ) & Ceiling ( -2.9 )", "0,-2.35-2"},
  });
  ExpectEach("error 1200", {"(-8) ^ 0.5", "10 ^ 400", "0.1 ^ -400"});
}

TEST(CalcNumber, IsNotReadFromOtherText) {
  for (const char16_t* bad : {u"", u".", u"5.", u"1.2.3", u"1e", u"e5", u"-1", u" 1", u"1 "}) {
    EXPECT_FALSE(Number::Parse(bad)) << calc::ToUtf8(bad);
  }
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
