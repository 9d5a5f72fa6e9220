#include "Machine.h"

#include <sys/utsname.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <thread>

#include "Diagnosis.h"

namespace kelvar_tool {

namespace {

bool isExecutable(const std::string& path) {
  std::error_code error;
  return ::access(path.c_str(), X_OK) == 0 && std::filesystem::is_regular_file(path, error);
}

std::string whyNoPerf(const std::string& folder, const Guard& guard, Interrupts& interrupts) {
  if (foundAs("perf").empty()) return "perf is not installed (Debian's package linux-perf)";
  const std::string file = folder + "/probe.data";
  const Child::Start start{.command = {"perf", "record", "-q", "-N", "-e", "cpu-clock:u", "-o", file, "--", "true"},
                           .environment = {}};
  const ChildEnd end = Child(start, guard, interrupts).wait();
  std::error_code error;
  std::filesystem::remove(file, error);
  if (end.status == 0) return {};
  int paranoid = 0;
  std::ifstream("/proc/sys/kernel/perf_event_paranoid") >> paranoid;
  if (paranoid > 2) {
    return "perf may not count (perf_event_paranoid is " + std::to_string(paranoid) +
           "; 'sysctl kernel.perf_event_paranoid=2' allows it)";
  }
  return "perf cannot count here ('perf record -e cpu-clock:u true' says why)";
}

}  // namespace

std::string foundAs(const std::string& name) {
  if (name.find('/') != std::string::npos) return isExecutable(name) ? name : std::string();
  const char* const path = std::getenv("PATH");
  std::string rest = path ? path : "/bin:/usr/bin";
  rest += ':';
  for (std::size_t begin = 0, end = 0; (end = rest.find(':', begin)) != std::string::npos; begin = end + 1) {
    const std::string folder = rest.substr(begin, end - begin);
    std::string file = (folder.empty() ? "." : folder) + "/" + name;
    if (isExecutable(file)) return file;
  }
  return {};
}

Machine thisMachine(const std::string& folder, const Guard& guard, Interrupts& interrupts) {
  return {.noPerf = whyNoPerf(folder, guard, interrupts),
          .hasValgrind = !foundAs("valgrind").empty(),
          .hasCoz = !foundAs("coz").empty()};
}

kelvar_platform::RunRecord hostRecord() {
  kelvar_platform::RunRecord run;
  utsname names{};
  if (::uname(&names) == 0) {
    run.hostName = names.nodename;
    run.operatingSystem = std::string(names.sysname) + " " + names.release;
  }
  run.cpuCount = static_cast<std::int32_t>(std::thread::hardware_concurrency());
  return run;
}

}  // namespace kelvar_tool
