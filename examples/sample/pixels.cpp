// A small image pipeline on threads, built to be analysed: each stage walks the same picture, and each has
// something to tell. Comments mark the stages, for `kelvar annotate DATABASE scan`; what the tools wrote names lines.
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <thread>
#include <vector>

#include "shade.h"

namespace {

constexpr int kThreads = 4;

struct Picture {
  int width = 0, height = 0;
  std::vector<float> pixels;  // row by row
};

/// Runs `work(begin, end)` on equal parts of 0 to `count`, one thread for each.
void inParallel(int count, const std::function<void(int, int)>& work) {
  std::vector<std::thread> threads;
  for (int part = 0; part < kThreads; ++part) {
    threads.emplace_back(work, count * part / kThreads, count * (part + 1) / kThreads);
  }
  for (std::thread& thread : threads) thread.join();
}

/// Every pixel on its own: nothing keeps the compiler from doing several at once.
[[gnu::noinline]] void brighten(const float* from, float* to, int count, float gain, float bias) {
  for (int i = 0; i < count; ++i) {  // kelvar: parallel "brighten"
    to[i] = from[i] * gain + bias;
  }
}

/// Each pixel waits for the one before it, so the loop stays scalar.
[[gnu::noinline]] void smooth(float* row, int width) {
  float carried = row[0];
  for (int x = 0; x < width; ++x) {  // kelvar: parallel "smooth"
    carried = 0.75F * carried + 0.25F * row[x];
    row[x] = carried;
  }
}

/// Down a column of a picture that lies row by row: every step is a row long.
[[gnu::noinline]] float columnMean(const float* pixels, int width, int height, int column) {
  float sum = 0;
  for (int y = 0; y < height; ++y) {  // kelvar: parallel "column mean"
    sum += pixels[y * width + column];
  }
  return sum / static_cast<float>(height);
}

/// All threads count into the same bins, and nothing orders them: the race.
[[gnu::noinline]] void countShades(const float* from, int count, int* bins) {
  for (int i = 0; i < count; ++i) {  // kelvar: parallel "count shades"
    /* kelvar: task "one pixel" */ ++bins[static_cast<int>(from[i]) % kShades];
  }
}

/// Light is not felt as it is counted. The work is a function object's, and the loop is the library's.
[[gnu::noinline]] void correct(float* pixels, int count) {  // kelvar: parallel "correct"
  const auto gamma = [](float shade) { return shade < 0.5F ? 2 * shade * shade : 1 - 2 * (1 - shade) * (1 - shade); };
  std::transform(pixels, pixels + count, pixels, [&](float shade) { return toScale(gamma(toUnit(shade))); });
}

/// Each pixel with its neighbours on both sides; what is done with them is a parameter of the template.
template <class Combine>
void acrossRow(const float* from, float* to, int width, Combine combine) {
  for (int x = 1; x + 1 < width; ++x) to[x] = combine(from[x - 1], from[x], from[x + 1]);
}
[[gnu::noinline]] void sharpen(const float* from, float* to, int width) {
  acrossRow(from, to, width, [](float left, float here, float right) {  // kelvar: parallel "sharpen"
    const float sharp = 2 * here - 0.5F * (left + right);
    return clamped(sharp, 0, static_cast<float>(kShades - 1));
  });
}

Picture drawn(int width, int height) {
  Picture picture{width, height, std::vector<float>(static_cast<std::size_t>(width) * height)};
  unsigned state = 1;
  for (float& pixel : picture.pixels) {
    state = state * 1664525U + 1013904223U;
    pixel = static_cast<float>(state >> 26);
  }
  return picture;
}

}  // namespace

int main(int argc, char** argv) {
  const int side = argc > 1 ? std::atoi(argv[1]) : 512;
  const int rounds = argc > 2 ? std::atoi(argv[2]) : 50;
  Picture picture = drawn(side, side);
  float* const pixels = picture.pixels.data();
  std::vector<float> means(static_cast<std::size_t>(side));
  std::vector<int> bins(kShades);
  std::vector<float> sharpened(picture.pixels.size());
  const auto at = [side](int row) { return static_cast<std::ptrdiff_t>(row) * side; };
  for (int round = 0; round < rounds; ++round) {
    inParallel(side, [&](int begin, int end) {
      brighten(pixels + at(begin), pixels + at(begin), (end - begin) * side, 0.98F, 1);
    });
    inParallel(side, [&](int begin, int end) {
      for (int row = begin; row < end; ++row) smooth(pixels + at(row), side);
    });
    inParallel(side, [&](int begin, int end) {
      for (int column = begin; column < end; ++column) means[column] = columnMean(pixels, side, side, column);
    });
    inParallel(side, [&](int begin, int end) { correct(pixels + at(begin), (end - begin) * side); });
    inParallel(side, [&](int begin, int end) {
      for (int row = begin; row < end; ++row) sharpen(pixels + at(row), sharpened.data() + at(row), side);
    });
    inParallel(side, [&](int begin, int end) { countShades(pixels + at(begin), (end - begin) * side, bins.data()); });
  }
  int counted = 0;
  for (const int bin : bins) counted += bin;
  std::printf("first mean %.2f, %d of %d pixels counted\n", static_cast<double>(means[0]), counted,
              side * side * rounds);
}
