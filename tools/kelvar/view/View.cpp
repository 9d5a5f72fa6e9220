#include "View.h"

#include <sys/stat.h>

#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <system_error>

#include "Browser.h"
#include "Loading.h"
#include "Messages.h"
#include "Names.h"
#include "Options.h"
#include "Output.h"
#include "PageHtml.h"
#include "PageModel.h"
#include "ProjectOptions.h"
#include "ViewServer.h"
#include "compare/ComparePage.h"
#include "compare/CompareRuns.h"

namespace kelvar_tool {

namespace {

struct Request {
  ProjectRequest project;
  std::uint16_t port = 0;
  std::string sourceRoot = ".";
  std::string with;
  bool noOpen = false;
};

constexpr const char* kExamples =
    "Examples:\n"
    "  kelvar view my-project                       opens the page in the browser; Ctrl-C ends it\n"
    "  kelvar view my-project --source-root ~/code  with the sources below ~/code\n"
    "  kelvar view my-project --no-open --port 8080 only prints the address\n"
    "  kelvar view p/runs/monday --with p/runs/tuesday\n"
    "                                               and what changed from one run to the other\n"
    "\n"
    "Only a browser that knows the address gets an answer, and only on this machine. The page updates when results\n"
    "change.";

std::uint16_t portIn(const std::string& text) {
  const auto port = decimal(text, std::numeric_limits<std::uint16_t>::max());
  if (!port) throw UsageError("--port: expected a number up to 65535, not " + inQuotes(text));
  return static_cast<std::uint16_t>(*port);
}

/// A hash that changes when any file of the project is written or replaced.
std::uint64_t versionOf(const Pieces& pieces) {
  std::uint64_t version = 1469598103934665603U;
  const auto mix = [&](std::uint64_t value) { version = (version ^ value) * 1099511628211U; };
  const auto look = [&](const std::string& path) {
    struct stat status {};
    if (path.empty() || ::stat(path.c_str(), &status) != 0) return mix(0);
    mix(static_cast<std::uint64_t>(status.st_ino));
    mix(static_cast<std::uint64_t>(status.st_size));
    mix(static_cast<std::uint64_t>(status.st_mtim.tv_sec) * 1000000000U +
        static_cast<std::uint64_t>(status.st_mtim.tv_nsec));
  };
  look(pieces.annotations);
  for (const std::string& result : pieces.results) {
    for (const char* const file : {"/collection.json", "/result.json", "/evidence.jsonl"}) {
      look(result.empty() ? result : result + file);
    }
  }
  return version;
}

void requireComparable(const Request& request) {
  if (!request.project.project || !request.project.named.none()) {
    throw UsageError("--with: expected a PROJECT, and no option that gives a piece another path");
  }
  if (!isDirectory(request.with)) throw UsageError("--with: expected a directory, not " + inQuotes(request.with));
  if (piecesIn(request.with).none()) throw UsageError("no annotations or results in " + inQuotes(request.with));
}

ExitStatus view(const Request& request) {
  const Pieces pieces = piecesOf(request.project);
  const bool compares = !request.with.empty();
  if (compares) requireComparable(request);
  std::optional<kelvar_page::ViewServer> server;
  try {
    server.emplace(request.port);
  } catch (const std::system_error& error) {
    say("port " + std::to_string(request.port) + ": expected one that is free (" + error.code().message() + ")");
    return kUnreadable;
  }
  const std::string token = kelvar_page::unguessable();
  bool complete = true;
  const auto loadModel = [&] {
    const Pieces now = piecesOf(request.project);
    const Loaded loaded = load(now);
    for (const std::string& complaint : loaded.complaints) say(complaint);
    auto model = modelOf(loaded, now, request.sourceRoot);
    complete = model->complaints.empty();
    return model;
  };
  const auto compare = [&] {
    const ComparedSides sides = compareRuns({*request.project.project}, {request.with}, std::nullopt);
    complete = complete && sides.complaints.empty();
    return comparePage(sides);
  };
  const auto version = [&] {
    const std::uint64_t own = versionOf(piecesOf(request.project));
    return compares ? own * 31 + versionOf(piecesIn(request.with)) : own;
  };
  kelvar_page::ViewPages pages({.load = loadModel,
                                .version = version,
                                .project = titleOf(request.project),
                                .annotations = pieces.annotations,
                                .comparison = compares ? compare : std::function<std::string()>()},
                               server->port(), token);
  const std::string address = "http://127.0.0.1:" + std::to_string(server->port()) + "/?token=" + token;
  print(address + "\n");
  std::optional<Browser> browser;
  if (!request.noOpen) browser.emplace(address);
  server->run(pages);
  return complete ? kDone : kUnreadable;
}

}  // namespace

void addView(CLI::App& kelvar, Action& chosen) {
  CLI::App& app = addSubcommand(kelvar, "view", "Show a project in the browser");
  const auto request = std::make_shared<Request>();
  addPieces(app, request->project);
  addText(app, "--port", "The port to serve on; a free one if not given", [=](const std::string& text) {
    request->port = portIn(text);
  }).value("N");
  addPath(app, "--source-root", "DIR", "Where the sources are; the working directory if not given",
          request->sourceRoot);
  addPath(app, "--with", "OTHER", "Another project or run: the page also shows what changed from PROJECT to it",
          request->with);
  addFlag(app, "--no-open", request->noOpen, "Only print the address");
  setWork(
      app, kExamples, [request] { return view(*request); }, chosen);
}

}  // namespace kelvar_tool
