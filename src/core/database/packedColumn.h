// The numbers of one column of a block of records, packed as narrow as their values allow: offsets
// from the smallest, decimals as whole numbers times a power of ten, else 64-bit floats. Each
// number is restored exactly, bit by bit.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <variant>
#include <vector>

namespace veltrona {

/// Smaller whole numbers have at most 15 digits.
inline constexpr double fifteenDigitLimit = 1E15;

class PackedColumn {
public:
    PackedColumn() = default;
    static PackedColumn ofCodes(std::span<const std::uint32_t> codes);
    static PackedColumn ofNumbers(std::span<const double> numbers);

    /// Whether every number has at most 15 significant digits: its decimal text gives it back.
    bool fitsFifteenDigits() const {
        return !std::holds_alternative<std::vector<double>>(m_values);
    }
    /// The codes beginning at place `first`.
    void codes(std::size_t first, std::span<std::uint32_t> out) const;
    /// The numbers at `places`; `out` has as many.
    void numbers(std::span<const std::uint32_t> places, double *out) const;
    /// The power of ten that makes all numbers whole; 1 unless they fit 15 digits.
    double scale() const { return m_scale; }
    /// The sum of all numbers times the scale; none if one is negative or doesn't fit 15 digits.
    std::optional<double> scaledTotal() const { return m_scaledTotal; }
    /// The numbers at `places` times `scale`, which is `scale()` or a larger power of ten.
    void scaledNumbers(std::span<const std::uint32_t> places, double scale, double *out) const;
    /// Allocated in addition to the object itself.
    std::size_t bytes() const;

private:
    /// The offsets from the smallest number; nothing if all are the same.
    template<class Whole>
    void pack(std::span<const Whole> numbers);
    void unpack(std::span<const std::uint32_t> places, double *out) const;

    std::variant<std::monostate, std::vector<std::uint8_t>, std::vector<std::uint16_t>,
                 std::vector<std::uint32_t>, std::vector<std::uint64_t>, std::vector<double>>
        m_values;
    std::int64_t m_base = 0;
    double m_scale = 1;
    std::optional<double> m_scaledTotal;
};

} // namespace veltrona
