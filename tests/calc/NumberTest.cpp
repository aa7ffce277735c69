// Decimal arithmetic.
#include "sim/calc/Number.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <random>

#include "tests/calc/TestEnvironment.h"

namespace {

using calc::Number;

TEST(CalcNumber, IsDecimalWithSixteenDigitsAfterThePoint) {
  ExpectAll({
      {"0.250 & (-0.5) & 1e-20 & (0.1 + 0.2)", ".25-.5.00000000000000000001.3"},
      {"123456789012345678901234567890 + 987654321098765432109876543210", "1111111110111111111011111111100"},
      {"123456789012345678901234567890 - 987654321098765432109876543210", "-864197532086419753208641975320"},
      {"123456789012345678901234567890 * 987654321098765432109876543210",
       "121932631137021795226185032733622923332237463801111263526900"},
      {"2 / -3 & 3 ^ -1 & 1e20 / 3", "-.6666666666666667.333333333333333333333333333333333333.3333333333333333"},
      {"3 ^ 100 & \",\" & 0.5 ^ 1e30 & (-1) ^ (1e300 + 1)", "515377520732011331036461129765621272702107522001,0-1"},
      {"2 ^ .5", "1.414213562373095"},  // ...950|488, not ...95|05 rounded again
  });
}

TEST(CalcNumber, AgreesWithMachineNumbers) {
  constexpr long long kLowest = std::numeric_limits<long long>::min(), kHighest = std::numeric_limits<long long>::max();
  std::mt19937_64 random(1);
  for (int i = 0; i < 20000; ++i) {
    const auto a = static_cast<long long>(random()) >> (random() % 63);
    const auto b = static_cast<long long>(random()) >> (random() % 63);
    ASSERT_EQ(Number(a) <=> Number(b), a <=> b);
    ASSERT_EQ(Number(a) + Number(b) - Number(b), Number(a));
    const auto product = std::clamp<__int128>(static_cast<__int128>(a) * b, kLowest, kHighest);
    ASSERT_EQ((Number(a) * Number(b)).ToInteger(), static_cast<long long>(product));
    if (b == 0) continue;
    const __int128 quotient = static_cast<__int128>(a) / b;
    const bool lower = static_cast<__int128>(a) % b != 0 && (a < 0) != (b < 0);
    ASSERT_EQ(Number(a).FloorDividedBy(b).value() + (lower ? 1 : 0), Number(static_cast<long long>(quotient)));
  }
  EXPECT_EQ(Number::FromDouble(-0.1).ToDouble(), -0.1);
  EXPECT_EQ(Number::FromDouble(std::numeric_limits<double>::quiet_NaN()).ToText(), u"0");
}

}  // namespace
