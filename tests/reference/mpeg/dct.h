// Models of the 8x8 and the 2-4-8 DCT: the exact transforms in double precision, and the integer transforms as their
// arithmetic is defined, each output from the whole sum.
#pragma once

#include <cstdint>

namespace reference::mpeg {

// The kind of transform in the vertical direction; horizontally it is always the eight-point DCT.
enum class Dct { EightEight, TwoFourEight };

void exactForward(Dct kind, const double* samples, double* coefficients);
void exactInverse(Dct kind, const double* coefficients, double* samples);
double rounded(double x);  // to the nearest integer, halves up

void integerForward(Dct kind, const std::int16_t* samples, std::int16_t* coefficients);
void integerInverse(Dct kind, const std::int16_t* coefficients, std::int16_t* samples);

}  // namespace reference::mpeg
