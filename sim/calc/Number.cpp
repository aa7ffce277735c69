// Decimal arithmetic over GMP's integers.
#include "calc/Number.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <memory>
#include <utility>

#include "calc/Unicode.h"

namespace calc {
namespace {

constexpr int kMaxDigits = 400;
constexpr int kMaxExponent = 400;
// Enough for every number in range, few enough to compute with.
constexpr int kPlacesLimit = 2 * kMaxExponent;
constexpr int kIrrationalDigits = 16;
constexpr long long kExponentLimit = 1'000'000;

mpz_class PowerOfTen(long long exponent) {
  mpz_class result;
  mpz_ui_pow_ui(result.get_mpz_t(), 10, static_cast<unsigned long>(std::max(0LL, exponent)));
  return result;
}

int CompareSizes(const mpz_class& a, const mpz_class& b) { return mpz_cmpabs(a.get_mpz_t(), b.get_mpz_t()); }

long long CountDigits(const mpz_class& digits) {
  const auto count = static_cast<long long>(mpz_sizeinbase(digits.get_mpz_t(), 10));
  return count > 1 && CompareSizes(digits, PowerOfTen(count - 1)) < 0 ? count - 1 : count;
}

mpz_class DivideRounding(const mpz_class& dividend, const mpz_class& divisor) {
  mpz_class quotient, rest;
  mpz_tdiv_qr(quotient.get_mpz_t(), rest.get_mpz_t(), dividend.get_mpz_t(), divisor.get_mpz_t());
  rest *= 2;
  if (CompareSizes(rest, divisor) >= 0) quotient += sgn(dividend) * sgn(divisor);
  return quotient;
}

// `digits` of 10^-scale as an integer count of 10^-places; for places below scale the rest is cut by `divide`.
template <typename Divide>
mpz_class Rescale(const mpz_class& digits, int scale, int places, Divide divide) {
  if (places >= scale) return digits * PowerOfTen(places - scale);
  return divide(digits, PowerOfTen(scale - places));
}

int ClampPlaces(int places) { return std::clamp(places, -kPlacesLimit, kPlacesLimit); }

// Moves the digits at the start of `text` to `digits`; returns how many there were.
size_t TakeDigits(std::u16string_view& text, std::string& digits) {
  size_t count = 0;
  while (count < text.size() && IsDigit(text[count])) digits += static_cast<char>(text[count++]);
  text.remove_prefix(count);
  return count;
}

// The exponent at the start of `text`, if there is one; out-of-range exponents only need to stay out of range.
std::optional<long long> TakeExponent(std::u16string_view text) {
  if (text.empty()) return 0;
  if (text[0] != u'e' && text[0] != u'E') return std::nullopt;
  text.remove_prefix(1);
  const bool negative = !text.empty() && text[0] == u'-';
  if (!text.empty() && (text[0] == u'-' || text[0] == u'+')) text.remove_prefix(1);
  std::string digits;
  if (TakeDigits(text, digits) == 0 || !text.empty()) return std::nullopt;
  long long value = kExponentLimit;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
  if (error != std::errc()) value = kExponentLimit;
  value = std::min(value, kExponentLimit);
  return negative ? -value : value;
}

Number ParseAscii(const char* begin, const char* end) {
  return Number::Parse(std::u16string(begin, end)).value_or(Number());
}

}  // namespace

// A number for MPFR, with a few bits more than FileMaker's digits need.
class Number::Real {
 public:
  Real() { mpfr_init2(value_, kBits); }
  explicit Real(const Number& number) : Real() {
    const std::string text = number.digits_.get_str() + "e" + std::to_string(-number.scale_);
    mpfr_set_str(value_, text.c_str(), 10, MPFR_RNDN);
  }
  ~Real() {
    mpfr_clear(value_);
    mpfr_free_cache();  // the cache is per thread and is not freed when the thread ends
  }
  Real(const Real&) = delete;
  Real& operator=(const Real&) = delete;

  mpfr_ptr value() { return value_; }

  // nullopt for NaN and infinity.
  std::optional<Number> ToNumber() const {
    if (mpfr_number_p(value_) == 0) return std::nullopt;
    mpfr_exp_t exponent = 0;
    const std::unique_ptr<char, void (*)(char*)> digits(
        mpfr_get_str(nullptr, &exponent, 10, kMaxDigits, value_, MPFR_RNDN), mpfr_free_str);
    return Number(mpz_class(digits.get(), 10), kMaxDigits - exponent).RoundedToSignificant(kIrrationalDigits);
  }

 private:
  static constexpr mpfr_prec_t kBits = 1400;  // 421 digits

  mpfr_t value_;
};

Number::Number(long long value) : Number(mpz_class(static_cast<long>(value)), 0) {
  static_assert(sizeof(long) == sizeof(long long));
}

Number::Number(mpz_class digits, long long scale) : digits_(std::move(digits)) {
  if (digits_ == 0) return;
  if (const long long excess = CountDigits(digits_) - kMaxDigits; excess > 0) {
    digits_ = DivideRounding(digits_, PowerOfTen(excess));
    scale -= excess;
  }
  static const mpz_class ten = 10;
  scale -= static_cast<long long>(mpz_remove(digits_.get_mpz_t(), digits_.get_mpz_t(), ten.get_mpz_t()));
  const long long exponent = CountDigits(digits_) - scale;  // the value is below 10^exponent
  if (exponent <= -kMaxExponent) {
    digits_ = 0;
  } else if (exponent > kMaxExponent) {
    digits_ = sgn(digits_);
    scale_ = -kMaxExponent;
  } else {
    scale_ = static_cast<int>(scale);
  }
}

bool Number::InRange() const { return scale_ > -kMaxExponent; }

Number Number::FromDouble(double value) {
  if (!std::isfinite(value)) return {};
  const double absolute = std::fabs(value);
  std::array<char, 32> text;
  for (const int digits : {15, 16, 17}) {  // the fewest digits that round-trip
    std::snprintf(text.data(), text.size(), "%.*e", digits - 1, absolute);
    if (std::strtod(text.data(), nullptr) == absolute) break;
  }
  const Number result = ParseAscii(text.data(), text.data() + std::strlen(text.data()));
  return std::signbit(value) ? -result : result;
}

std::optional<Number> Number::Parse(std::u16string_view literal) {
  std::string digits;
  const size_t whole = TakeDigits(literal, digits);
  size_t fraction = 0;
  if (!literal.empty() && literal[0] == u'.') {
    literal.remove_prefix(1);
    fraction = TakeDigits(literal, digits);
    if (fraction == 0) return std::nullopt;
  }
  const auto exponent = TakeExponent(literal);
  if (whole + fraction == 0 || !exponent) return std::nullopt;

  auto scale = static_cast<long long>(fraction) - *exponent;
  digits.erase(0, std::min(digits.find_first_not_of('0'), digits.size()));
  if (digits.size() > kPlacesLimit) {
    scale -= static_cast<long long>(digits.size()) - kPlacesLimit;
    digits.resize(kPlacesLimit);
  }
  return Number(digits.empty() ? mpz_class() : mpz_class(digits, 10), scale);
}

std::u16string Number::ToText() const {
  std::string text = mpz_class(abs(digits_)).get_str();
  if (scale_ <= 0) {
    text.append(-scale_, '0');
  } else {
    const auto places = static_cast<size_t>(scale_);
    if (text.size() < places) text.insert(0, places - text.size(), '0');
    text.insert(text.size() - places, 1, '.');
  }
  if (Sign() < 0) text.insert(0, 1, '-');
  return {text.begin(), text.end()};
}

double Number::ToDouble() const { return mpfr_get_d(Real(*this).value(), MPFR_RNDN); }

long long Number::ToInteger() const {
  const mpz_class whole =
      Rescale(digits_, scale_, 0, [](const mpz_class& a, const mpz_class& b) -> mpz_class { return a / b; });
  if (whole.fits_slong_p()) return whole.get_si();
  return Sign() < 0 ? std::numeric_limits<long long>::min() : std::numeric_limits<long long>::max();
}

Number Number::operator-() const { return Number(mpz_class(-digits_), scale_); }

Number Number::operator+(const Number& other) const {
  const int scale = std::max(scale_, other.scale_);
  return Number(digits_ * PowerOfTen(scale - scale_) + other.digits_ * PowerOfTen(scale - other.scale_), scale);
}

Number Number::operator-(const Number& other) const { return *this + -other; }

Number Number::operator*(const Number& other) const {
  return Number(mpz_class(digits_ * other.digits_), static_cast<long long>(scale_) + other.scale_);
}

std::optional<Number> Number::DividedBy(const Number& divisor, int places) const {
  if (divisor.Sign() == 0) return std::nullopt;
  // digits / divisor.digits counts 10^-(scale - divisor.scale); one side is lengthened so that it counts 10^-places.
  const int shift = ClampPlaces(places) - (scale_ - divisor.scale_);
  return Number(DivideRounding(digits_ * PowerOfTen(shift), divisor.digits_ * PowerOfTen(-shift)), ClampPlaces(places));
}

std::optional<Number> Number::FloorDividedBy(const Number& divisor) const {
  if (divisor.Sign() == 0) return std::nullopt;
  const mpz_class dividend = digits_ * PowerOfTen(divisor.scale_ - scale_);
  const mpz_class by = divisor.digits_ * PowerOfTen(scale_ - divisor.scale_);
  mpz_class quotient;
  mpz_fdiv_q(quotient.get_mpz_t(), dividend.get_mpz_t(), by.get_mpz_t());
  return Number(std::move(quotient), 0);
}

std::optional<Number> Number::Apply(RealFunction function) const {
  Real result;
  function(result.value(), Real(*this).value(), MPFR_RNDN);
  return result.ToNumber();
}

std::optional<Number> Number::IntegerPower(const Number& exponent) const {
  const mpz_class count = abs(Rescale(exponent.digits_, exponent.scale_, 0, DivideRounding));
  Number result = 1;
  for (size_t bit = mpz_sizeinbase(count.get_mpz_t(), 2); bit-- > 0;) {
    result = result * result;
    if (mpz_tstbit(count.get_mpz_t(), bit) != 0) result = result * *this;
    if (!result.InRange()) return exponent.Sign() < 0 ? std::optional<Number>(0) : std::nullopt;
  }
  if (exponent.Sign() >= 0) return result;
  const auto inverse = Number(1).DividedBy(result, kPlacesLimit);
  if (!inverse || !inverse->InRange()) return std::nullopt;
  return inverse->RoundedToSignificant(kIrrationalDigits);
}

std::optional<Number> Number::Power(const Number& exponent) const {
  if (Sign() == 0) return exponent.Sign() < 0 ? std::nullopt : std::optional<Number>(exponent.Sign() == 0 ? 1 : 0);
  if (exponent.IsInteger()) return IntegerPower(exponent);
  if (Sign() < 0) return std::nullopt;
  Real power;
  mpfr_pow(power.value(), Real(*this).value(), Real(exponent).value(), MPFR_RNDN);
  const auto result = power.ToNumber();
  return result && result->InRange() ? result : std::nullopt;
}

Number Number::Rounded(int places) const {
  places = ClampPlaces(places);
  if (places >= scale_) return *this;
  return Number(Rescale(digits_, scale_, places, DivideRounding), places);
}

Number Number::RoundedToSignificant(int count) const {
  const auto exponent = static_cast<int>(CountDigits(digits_)) - scale_;
  return Rounded(std::max(count, count - exponent));
}

Number Number::Truncated(int places) const {
  places = ClampPlaces(places);
  if (places >= scale_) return *this;
  return Number(mpz_class(digits_ / PowerOfTen(scale_ - places)), places);
}

Number Number::Floor() const {
  const Number truncated = Truncated(0);
  return Sign() < 0 && truncated != *this ? truncated - 1 : truncated;
}

Number Number::Ceiling() const { return -(-*this).Floor(); }

std::strong_ordering Number::operator<=>(const Number& other) const {
  if (Sign() != other.Sign()) return Sign() <=> other.Sign();
  const mpz_class mine = digits_ * PowerOfTen(other.scale_ - scale_);
  const mpz_class others = other.digits_ * PowerOfTen(scale_ - other.scale_);
  return cmp(mine, others) <=> 0;
}

bool Number::operator==(const Number& other) const { return scale_ == other.scale_ && digits_ == other.digits_; }

}  // namespace calc
