#include <array>

#include "Rules.h"

namespace kelvar_sources {

namespace {

/// One row of the list. The columns are texts as in a file of rules.
struct Row {
  const char* name;
  const char* pattern;
  int kind;
  const char* label;
  const char* end;
  bool onRequest = false;
};

using K = sitenotes::annotation_t;
constexpr int kNoKind = -1;

constexpr Row kRows[] = {
    {"omp-parallel", "#pragma omp parallel", K::parallel, "none", "statement"},
    {"omp-teams", "#pragma omp teams", K::teams, "none", "none"},
    {"omp-task", "#pragma omp task", K::task, "none", "statement"},
    {"omp-taskloop", "#pragma omp taskloop", K::taskloop, "none", "statement"},
    {"omp-critical", "#pragma omp critical", K::critical, "brackets", "statement"},
    {"omp-atomic", "#pragma omp atomic", K::atomic, "none", "none"},
    {"omp-barrier", "#pragma omp barrier", K::barrier, "none", "none"},
    {"omp-taskwait", "#pragma omp taskwait", K::taskwait, "none", "none"},
    {"omp-flush", "#pragma omp flush", K::flush, "none", "none"},
    {"omp-ordered", "#pragma omp ordered", K::ordered, "none", "none"},
    {"acc-parallel", "#pragma acc parallel", K::parallel, "none", "statement"},
    {"acc-kernels", "#pragma acc kernels", K::parallel, "none", "statement"},
    {"acc-atomic", "#pragma acc atomic", K::atomic, "none", "none"},
    {"acc-wait", "#pragma acc wait", K::taskwait, "none", "none"},
    {"kokkos-for", "Kokkos::parallel_for(", K::parallel, "literal 1", "call"},
    {"kokkos-reduce", "Kokkos::parallel_reduce(", K::parallel, "literal 1", "call"},
    {"kokkos-scan", "Kokkos::parallel_scan(", K::parallel, "literal 1", "call"},
    {"kokkos-region", "Kokkos::Profiling::pushRegion(", K::parallel, "argument 1",
     "until Kokkos::Profiling::popRegion"},
    {"kokkos-scoped", "Kokkos::Profiling::ScopedRegion", K::parallel, "argument 1", "block"},
    {"raja-forall", "RAJA::forall(", K::parallel, "none", "call"},
    {"raja-kernel", "RAJA::kernel(", K::parallel, "none", "call"},
    {"raja-kernel-param", "RAJA::kernel_param(", K::parallel, "none", "call"},
    {"raja-launch", "RAJA::launch(", K::parallel, "literal 2", "call"},
    {"tbb-for", "tbb::parallel_for(", K::parallel, "none", "call"},
    {"tbb-for-each", "tbb::parallel_for_each(", K::parallel, "none", "call"},
    {"tbb-do", "tbb::parallel_do(", K::parallel, "none", "call"},
    {"tbb-reduce", "tbb::parallel_reduce(", K::parallel, "none", "call"},
    {"tbb-deterministic-reduce", "tbb::parallel_deterministic_reduce(", K::parallel, "none", "call"},
    {"tbb-scan", "tbb::parallel_scan(", K::parallel, "none", "call"},
    {"tbb-sort", "tbb::parallel_sort(", K::parallel, "none", "call"},
    {"tbb-invoke", "tbb::parallel_invoke(", K::parallel, "none", "call"},
    {"tbb-pipeline", "tbb::parallel_pipeline(", K::parallel, "none", "call"},
    {"std-par", "argument std::execution::par", K::parallel, "none", "call"},
    {"std-par-unseq", "argument std::execution::par_unseq", K::parallel, "none", "call"},
    {"std-unseq", "argument std::execution::unseq", kNoKind, "none", "call"},
    {"cali-function", "CALI_CXX_MARK_FUNCTION", K::parallel, "none", "block"},
    {"cali-scope", "CALI_CXX_MARK_SCOPE(", K::parallel, "argument 1", "block"},
    {"cali-cxx-loop", "CALI_CXX_MARK_LOOP_BEGIN(", K::parallel, "literal 2", "handle CALI_CXX_MARK_LOOP_END"},
    {"cali-loop", "CALI_MARK_LOOP_BEGIN(", K::parallel, "literal 2", "handle CALI_MARK_LOOP_END"},
    {"cali-function-begin", "CALI_MARK_FUNCTION_BEGIN", K::parallel, "none", "until CALI_MARK_FUNCTION_END"},
    {"cali-mark", "CALI_MARK_BEGIN(", K::parallel, "argument 1", "until CALI_MARK_END"},
    {"cali-region", "cali_begin_region(", K::parallel, "argument 1", "until cali_end_region"},
    {"likwid-marker", "LIKWID_MARKER_START(", K::parallel, "argument 1", "until LIKWID_MARKER_STOP"},
    {"likwid-region", "likwid_markerStartRegion(", K::parallel, "argument 1", "until likwid_markerStopRegion"},
    {"scorep-region", "SCOREP_USER_REGION_BEGIN(", K::parallel, "literal 2", "handle SCOREP_USER_REGION_END"},
    {"scorep-scope", "SCOREP_USER_REGION(", K::parallel, "argument 1", "block"},
    {"scorep-function", "SCOREP_USER_FUNC_BEGIN(", K::parallel, "none", "until SCOREP_USER_FUNC_END"},
    {"scorep-off", "SCOREP_RECORDING_OFF(", K::pause, "none", "none"},
    {"scorep-on", "SCOREP_RECORDING_ON(", K::resume, "none", "none"},
    {"tau-timer", "TAU_PROFILE_START(", K::parallel, "argument 1", "handle TAU_PROFILE_STOP"},
    {"tau-start", "TAU_START(", K::parallel, "argument 1", "until TAU_STOP"},
    {"tau-scope", "TAU_PROFILE(", K::parallel, "argument 1", "block"},
    {"tau-off", "TAU_DISABLE_INSTRUMENTATION(", K::pause, "none", "none"},
    {"tau-on", "TAU_ENABLE_INSTRUMENTATION(", K::resume, "none", "none"},
    {"nvtx-push", "nvtxRangePush(", K::parallel, "argument 1", "until nvtxRangePop"},
    {"nvtx-push-a", "nvtxRangePushA(", K::parallel, "argument 1", "until nvtxRangePop"},
    {"nvtx-start", "nvtxStartRange(", K::parallel, "argument 1", "until nvtxEndRange"},
    {"nvtx-scope", "nvtx3::scoped_range", K::parallel, "argument 1", "block"},
    {"nvtx-function", "NVTX3_FUNC_RANGE(", K::parallel, "none", "block"},
    {"roctx-push", "roctxRangePush(", K::parallel, "argument 1", "until roctxRangePop"},
    {"roctx-push-a", "roctxRangePushA(", K::parallel, "argument 1", "until roctxRangePop"},
    {"papi-region", "PAPI_hl_region_begin(", K::parallel, "argument 1", "until PAPI_hl_region_end"},
    {"callgrind-stop", "CALLGRIND_STOP_INSTRUMENTATION", K::pause, "none", "none"},
    {"callgrind-start", "CALLGRIND_START_INSTRUMENTATION", K::resume, "none", "none"},
    {"callgrind-toggle", "CALLGRIND_TOGGLE_COLLECT", kNoKind, "none", "none"},
    {"tracy-zone", "ZoneScoped", K::parallel, "none", "block", true},
    {"tracy-named", "ZoneScopedN(", K::parallel, "argument 1", "block", true},
    {"perfetto-scope", "TRACE_EVENT(", K::parallel, "argument 2", "block", true},
    {"perfetto-begin", "TRACE_EVENT_BEGIN(", K::parallel, "argument 2", "until TRACE_EVENT_END", true},
    {"kelvar-parallel", "// kelvar: parallel", K::parallel, "argument 1", "block"},
    {"kelvar-task", "// kelvar: task", K::task, "argument 1", "block"},
    {"kelvar-critical", "// kelvar: critical", K::critical, "argument 1", "block"},
};

Rule ruleOf(const Row& row) {
  Rule rule{.name = row.name, .pattern = {}, .kind = {}, .label = {}, .end = {}, .onRequest = row.onRequest};
  if (row.kind != kNoKind) rule.kind = static_cast<Kind>(row.kind);
  static_cast<void>(setPattern(rule, row.pattern));
  static_cast<void>(setLabel(rule, row.label));
  static_cast<void>(setEnd(rule, row.end));
  return rule;
}

}  // namespace

const std::vector<Rule>& builtInRules() {
  static const std::vector<Rule> rules = [] {
    std::vector<Rule> made;
    for (const Row& row : kRows) made.push_back(ruleOf(row));
    return made;
  }();
  return rules;
}

}  // namespace kelvar_sources
