#pragma once

#include <algorithm>

constexpr int kShades = 64;
constexpr float kBrightest = kShades - 1;

inline float clamped(float shade, float least, float most) {
  if (shade < least) return least;
  return shade > most ? most : shade;
}

inline float toUnit(float shade) {
  return clamped(shade / kBrightest, 0, 1);
}

inline float toScale(float unit) {
  return clamped(unit * kBrightest, 0, kBrightest);
}
