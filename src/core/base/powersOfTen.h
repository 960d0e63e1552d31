// The powers of ten that are exact as 64-bit floats, by exponent.
#pragma once

namespace veltrona {

inline constexpr double powersOfTen[] = {1E0,  1E1,  1E2,  1E3,  1E4,  1E5,  1E6,  1E7,
                                         1E8,  1E9,  1E10, 1E11, 1E12, 1E13, 1E14, 1E15,
                                         1E16, 1E17, 1E18, 1E19, 1E20, 1E21, 1E22};

} // namespace veltrona
