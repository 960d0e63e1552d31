// The numbers of one column of a block of records, as narrow as their values allow: whole numbers
// counted from the smallest, decimals as whole numbers of a power of ten, else 64-bit floats. Each
// number comes out exact to the bit.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <variant>
#include <vector>

namespace veltrona {

class PackedColumn {
public:
    PackedColumn() = default;
    static PackedColumn ofCodes(std::span<const std::uint32_t> codes);
    static PackedColumn ofNumbers(std::span<const double> numbers);

    /// Every number has at most 15 significant digits, so that its decimal text gives it back.
    bool isShort() const { return !std::holds_alternative<std::vector<double>>(m_values); }
    /// The codes from place `first` on.
    void codes(std::size_t first, std::span<std::uint32_t> out) const;
    /// The numbers at some places; `out` has as many.
    void numbers(std::span<const std::uint32_t> places, double *out) const;
    /// The power of ten that makes all numbers of a short column whole.
    double scale() const { return m_scale; }
    /// What the numbers of a short column come to, times its scale; none if one is below zero.
    std::optional<double> wholeTotal() const { return m_wholeTotal; }
    /// The numbers at some places times `scale`, which is `scale()` or a larger power of ten.
    void wholes(std::span<const std::uint32_t> places, double scale, double *out) const;
    /// What the column holds beside itself.
    std::size_t bytes() const;

private:
    /// The whole numbers less the base; nothing at all where they are the same.
    template<class Whole>
    void pack(std::span<const Whole> numbers);
    void unpack(std::span<const std::uint32_t> places, double *out) const;
    template<class Narrow, class Whole>
    void packAs(std::span<const Whole> numbers);

    std::variant<std::monostate, std::vector<std::uint8_t>, std::vector<std::uint16_t>,
                 std::vector<std::uint32_t>, std::vector<std::uint64_t>, std::vector<double>>
        m_values;
    std::int64_t m_base = 0;
    double m_scale = 1; // the power of ten that the whole numbers count
    std::optional<double> m_wholeTotal;
};

} // namespace veltrona
