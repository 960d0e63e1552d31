#include "core/database/packedColumn.h"

#include "core/base/numberGrammar.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>
#include <numeric>
#include <type_traits>

namespace veltrona {

namespace {

constexpr std::size_t maxDecimals = 14;

bool isSame(double a, double b) {
    return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b);
}

/// The nearest whole number.
std::int64_t wholeOf(double scaled) {
    return static_cast<std::int64_t>(scaled + (scaled < 0 ? -0.5 : 0.5));
}

/// Whether the number is restored exactly from a whole number of 1 / scale; a negative zero isn't.
bool isWhole(double number, double scale) {
    const double scaled = number * scale;
    return std::abs(scaled) < fifteenDigitLimit - 1 &&
           isSame(static_cast<double>(wholeOf(scaled)) / scale, number);
}

/// The smallest power of ten that makes all numbers whole, within 15 digits; 0 if there is none.
double scaleOf(std::span<const double> numbers) {
    std::size_t decimals = 0;
    for (const double number : numbers) {
        while (!isWhole(number, powersOfTen[decimals])) {
            if (++decimals > maxDecimals)
                return 0;
        }
    }
    // Earlier numbers must stay within 15 digits at the scale of later ones.
    const double scale = powersOfTen[decimals];
    return std::all_of(numbers.begin(), numbers.end(),
                       [scale](double number) { return isWhole(number, scale); })
               ? scale
               : 0;
}

} // namespace

PackedColumn PackedColumn::ofCodes(std::span<const std::uint32_t> codes) {
    PackedColumn column;
    column.pack(codes);
    return column;
}

PackedColumn PackedColumn::ofNumbers(std::span<const double> numbers) {
    PackedColumn column;
    const double scale = scaleOf(numbers);
    if (scale == 0) {
        column.m_values.emplace<std::vector<double>>(numbers.begin(), numbers.end());
        return column;
    }
    std::vector<std::int64_t> whole(numbers.size());
    std::transform(numbers.begin(), numbers.end(), whole.begin(),
                   [scale](double number) { return wholeOf(number * scale); });
    column.m_scale = scale;
    // A block is far too small for the sum to overflow 64 bits.
    if (std::none_of(whole.begin(), whole.end(), [](std::int64_t number) { return number < 0; }))
        column.m_scaledTotal =
            static_cast<double>(std::accumulate(whole.begin(), whole.end(), std::int64_t(0)));
    column.pack(std::span<const std::int64_t>(whole));
    return column;
}

template<class Whole>
void PackedColumn::pack(std::span<const Whole> numbers) {
    if (numbers.empty())
        return;
    const auto [least, most] = std::minmax_element(numbers.begin(), numbers.end());
    m_base = static_cast<std::int64_t>(*least);
    const auto range = static_cast<std::uint64_t>(static_cast<std::int64_t>(*most) - m_base);
    if (range == 0)
        return;
    const auto packAs = [&]<class Narrow>(Narrow max) {
        if (range > max)
            return false;
        std::vector<Narrow> narrow(numbers.size());
        std::ranges::transform(numbers, narrow.begin(), [this](Whole number) {
            return static_cast<Narrow>(static_cast<std::int64_t>(number) - m_base);
        });
        m_values = std::move(narrow);
        return true;
    };
    if (!packAs(std::numeric_limits<std::uint8_t>::max()) &&
        !packAs(std::numeric_limits<std::uint16_t>::max()) &&
        !packAs(std::numeric_limits<std::uint32_t>::max()))
        packAs(std::numeric_limits<std::uint64_t>::max());
}

void PackedColumn::codes(std::size_t first, std::span<std::uint32_t> out) const {
    const auto base = static_cast<std::uint32_t>(m_base);
    std::visit(
        [&]<class Values>(const Values &values) {
            if constexpr (std::is_same_v<Values, std::monostate>) {
                std::fill(out.begin(), out.end(), base);
            } else {
                for (std::size_t i = 0; i < out.size(); ++i)
                    out[i] = base + static_cast<std::uint32_t>(values[first + i]);
            }
        },
        m_values);
}

void PackedColumn::unpack(std::span<const std::uint32_t> places, double *out) const {
    std::visit(
        [&]<class Values>(const Values &values) {
            if constexpr (std::is_same_v<Values, std::monostate>) {
                std::fill_n(out, places.size(), static_cast<double>(m_base));
            } else if constexpr (std::is_same_v<Values, std::vector<double>>) {
                for (const std::uint32_t place : places)
                    *out++ = values[place];
            } else {
                for (const std::uint32_t place : places)
                    *out++ = static_cast<double>(m_base + static_cast<std::int64_t>(values[place]));
            }
        },
        m_values);
}

void PackedColumn::numbers(std::span<const std::uint32_t> places, double *out) const {
    unpack(places, out);
    // Only a division is exact, not a factor of 0.1 and the like.
    if (m_scale != 1)
        std::transform(out, out + places.size(), out, [this](double n) { return n / m_scale; });
}

void PackedColumn::scaledNumbers(std::span<const std::uint32_t> places, double scale,
                                 double *out) const {
    unpack(places, out);
    if (m_scale != scale)
        std::transform(out, out + places.size(), out,
                       [factor = scale / m_scale](double n) { return n * factor; });
}

std::size_t PackedColumn::bytes() const {
    return std::visit(
        []<class Values>(const Values &values) -> std::size_t {
            if constexpr (std::is_same_v<Values, std::monostate>)
                return 0;
            else
                return values.capacity() * sizeof(values.front());
        },
        m_values);
}

} // namespace veltrona
