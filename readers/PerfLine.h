#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

/// Parses lines of `perf script`, whichever fields were requested. The texts in the results point into the line.
namespace kelvar_readers {

/// `COMM PID/TID [CPU] TIME: PERIOD EVENT: ...`; any field but the event may be missing.
struct PerfSample {
  long process = -1;  ///< -1: unknown
  std::optional<double> period = {};
  std::string_view event = {};
  std::string_view rest = {};  ///< after the event: the sample's only frame, or nothing
};
[[nodiscard]] std::optional<PerfSample> takePerfSample(std::string_view line);

/// `ADDRESS SYMBOL+0xOFFSET (OBJECT)`; any field but the address may be missing.
struct PerfFrame {
  std::uint64_t address = 0;
  std::string_view symbol = {};  ///< empty when perf knows none
  std::optional<std::uint64_t> offset = {};
  std::string_view object = {};  ///< empty when missing
  bool isInlined = false;        ///< perf's own line for a call that was inlined into the next frame
};
[[nodiscard]] std::optional<PerfFrame> takePerfFrame(std::string_view line);

/// `PERF_RECORD_MMAP2 PID/TID: [0xSTART(0xSIZE) @ 0xOFFSET ...]: r-xp PATH`; `...` may be `<BUILD-ID>`
struct PerfMapping {
  long process = 0;
  std::uint64_t start = 0;
  std::uint64_t size = 0;
  std::uint64_t offset = 0;
  std::string_view path = {};
  std::string_view buildId = {};  ///< empty when missing
};
[[nodiscard]] std::optional<PerfMapping> takePerfMapping(std::string_view line);

/// `PERF_RECORD_FORK(PID:TID):(PARENT:THREAD)`
struct PerfFork {
  long process = 0;
  long parent = 0;
};
[[nodiscard]] std::optional<PerfFork> takePerfFork(std::string_view line);

}  // namespace kelvar_readers
