#include "Annotate.h"

#include <cstdint>
#include <filesystem>
#include <limits>
#include <memory>
#include <optional>
#include <string>

#include "Annotations.h"
#include "Messages.h"
#include "Names.h"
#include "Options.h"
#include "Output.h"
#include "Place.h"
#include "SiteDoubts.h"
#include "scan/Scan.h"
#include "text/JsonText.h"

namespace kelvar_tool {

namespace {

using kelvar_platform::AnnotationEditor;
using kelvar_platform::Site;

/// The arguments of one edit; each subcommand reads those that it takes.
struct Edit {
  std::string database;
  std::int64_t sequence = 0;
  sitenotes::annotation_t::kind_t kind = sitenotes::annotation_t::parallel;
  std::string label;
  std::optional<Place> place;
  std::optional<int> lines;  // to move by
  std::string result;
  bool all = false;
  bool json = false;
};

/// One line, separated by tabs: sequence, kind, label, place and, if any, the marks.
std::string lineOf(const Site& site) {
  const std::string& kind = annotationKindNames()[static_cast<std::size_t>(site.kind)];
  const Place place{.file = site.file, .line = site.line, .column = site.column};
  std::string line =
      std::to_string(site.sequence) + '\t' + kind + '\t' + escaped(site.label) + '\t' + escaped(text(place));
  if (site.disabled) line += "\tdisabled";
  if (!site.alive) line += site.disabled ? ",removed" : "\tremoved";
  return line + '\n';
}

std::string jsonOf(const std::vector<Site>& sites) {
  std::string text;
  JsonText json(text);
  json.beginObject("");
  json.beginList("sites");
  for (const Site& site : sites) {
    json.beginObject("");
    json.value("sequence", site.sequence);
    json.value("kind", annotationKindNames()[static_cast<std::size_t>(site.kind)]);
    json.value("label", site.label);
    json.value("file", site.file);
    json.value("line", std::int64_t{site.line});
    json.value("column", std::int64_t{site.column});
    json.value("disabled", site.disabled);
    json.value("removed", !site.alive);
    json.endObject();
  }
  json.endList();
  json.endObject();
  return text + '\n';
}

void list(AnnotationEditor& editor, const Edit& edit) {
  if (edit.json) return print(jsonOf(editor.list(edit.all)));
  std::string lines;
  for (const Site& site : editor.list(edit.all)) lines += lineOf(site);
  print(lines);
}

void add(AnnotationEditor& editor, const Edit& edit) {
  const Place& at = *edit.place;
  std::error_code error;
  const Site site{.kind = edit.kind, .label = edit.label, .file = at.file, .line = at.line, .column = at.column};
  const bool there = std::filesystem::exists(edit.database, error);
  for (const std::string& doubt : doubtsOf(site, there ? editor.list(false) : std::vector<Site>())) say(doubt);
  // Printed before the commit: otherwise a site could be added whose number was never printed.
  editor.add(edit.kind, edit.label, at.file, at.line, at.column,
             [](std::int64_t sequence) { print(std::to_string(sequence) + '\n'); });
}

void move(AnnotationEditor& editor, const Edit& edit) {
  if (edit.lines) return editor.moveBy(edit.sequence, *edit.lines);
  if (!edit.place) throw UsageError("move: expected --at FILE:LINE, or --by LINES");
  editor.move(edit.sequence, edit.place->file, edit.place->line, edit.place->column);
}

void relabel(AnnotationEditor& editor, const Edit& edit) {
  editor.relabel(edit.sequence, edit.label);
}

void disable(AnnotationEditor& editor, const Edit& edit) {
  editor.setDisabled(edit.sequence, true);
}

void enable(AnnotationEditor& editor, const Edit& edit) {
  editor.setDisabled(edit.sequence, false);
}

void remove(AnnotationEditor& editor, const Edit& edit) {
  editor.remove(edit.sequence);
}

void snapshot(AnnotationEditor& editor, const Edit& edit) {
  editor.snapshot(edit.result);
}

void takeSequence(CLI::App& app, Edit& edit) {
  addText(app, "SEQUENCE", "The site's number, as add and list print it", [&](const std::string& text) {
    const auto sequence = decimal(text, std::numeric_limits<std::int64_t>::max());
    if (!sequence || *sequence == 0) throw UsageError("SEQUENCE: expected a site's number, not " + inQuotes(text));
    edit.sequence = *sequence;
  }).required();
}

Option takePlace(CLI::App& app, Edit& edit) {
  return addText(app, "--at", "Where the site is: --at src/solver.cpp:120 or --at src/solver.cpp:120:5",
                 [&](const std::string& text) { edit.place = placeIn("--at", text); })
      .value("FILE:LINE[:COLUMN]");
}

void takeSite(CLI::App& app, Edit& edit) {
  addText(app, "--kind", "Kind of the annotation, by name or number:" + numbered(annotationKindNames()),
          [&](const std::string& text) { edit.kind = annotationKindNamed("--kind", text); })
      .value("KIND")
      .required();
  addText(app, "--label", "Name of the site, by which reports show it",
          [&](const std::string& text) { edit.label = text; })
      .value("TEXT")
      .required();
  takePlace(app, edit).required();
}

void takeSequenceAndPlace(CLI::App& app, Edit& edit) {
  takeSequence(app, edit);
  const Option at = takePlace(app, edit);
  addText(app, "--by", "How many lines further down; up with a minus: --by=-3",
          [&](const std::string& text) {
            const bool up = text.starts_with('-');
            const auto lines = decimal(std::string_view(text).substr(up ? 1 : 0), std::numeric_limits<int>::max());
            if (!lines) throw UsageError("--by: expected a count of lines, not " + inQuotes(text));
            edit.lines = static_cast<int>(up ? -*lines : *lines);
          })
      .value("LINES")
      .excludes(at);
}

void takeSequenceAndLabel(CLI::App& app, Edit& edit) {
  takeSequence(app, edit);
  addText(app, "TEXT", "The new name of the site", [&](const std::string& text) { edit.label = text; }).required();
}

void takeAll(CLI::App& app, Edit& edit) {
  addFlag(app, "--all", edit.all, "List removed sites too");
  addJson(app, edit.json);
}

void takeResult(CLI::App& app, Edit& edit) {
  addPath(app, "RESULT_PATH", "", "The result directory, or its surveyvectorization sub-result", edit.result)
      .required();
}

struct EditCommand {
  const char* name;
  const char* help;
  const char* examples;
  AnnotationEditor::Open open;
  void (*take)(CLI::App& app, Edit& edit);
  void (*apply)(AnnotationEditor& editor, const Edit& edit);
};
constexpr auto kExisting = AnnotationEditor::Open::existing;
constexpr EditCommand kEditCommands[] = {
    {"add", "Annotate a site and print its sequence; creates the database if it does not exist",
     "Example:\n  kelvar annotate annotations.db add --kind parallel --label solver --at src/solver.cpp:120:5",
     AnnotationEditor::Open::createIfMissing, takeSite, add},
    {"move", "Give a site a new place",
     "Examples:\n  kelvar annotate annotations.db move 7 --at src/solver.cpp:124\n"
     "  kelvar annotate annotations.db move 7 --by 4",
     kExisting, takeSequenceAndPlace, move},
    {"relabel", "Give a site a new name",
     "Examples:\n  kelvar annotate annotations.db relabel 7 'inner solver'\n"
     "  kelvar annotate annotations.db relabel -- 7 -O3   a name that begins with a dash",
     kExisting, takeSequenceAndLabel, relabel},
    {"disable", "Keep a site out of reports", "Example:\n  kelvar annotate annotations.db disable 7", kExisting,
     takeSequence, disable},
    {"enable", "Show a disabled site in reports again", "Example:\n  kelvar annotate annotations.db enable 7",
     kExisting, takeSequence, enable},
    {"remove", "Remove a site", "Example:\n  kelvar annotate annotations.db remove 7", kExisting, takeSequence, remove},
    {"list", "Print a line for each living site",
     "Example:\n  kelvar annotate annotations.db list --all\n"
     "The fields of a line are separated by tabs: sequence, kind, label, FILE:LINE[:COLUMN], and disabled, removed\n"
     "or both, with a comma, if the site is so. In labels and files \\t, \\n, \\r, \\\\ and \\xHH are escapes of\n"
     "bytes that would break the line.",
     kExisting, takeAll, list},
    {"snapshot", "Record that a result was collected on the annotations as they are now",
     "Example:\n  kelvar annotate annotations.db snapshot my-project/survey", kExisting, takeResult, snapshot},
};

constexpr const char* kExamples =
    "Examples:\n"
    "  kelvar annotate annotations.db add --kind parallel --label solver --at src/solver.cpp:120\n"
    "  kelvar annotate annotations.db list\n"
    "  kelvar annotate annotations.db disable 7\n"
    "  kelvar annotate annotations.db move --help    explains move, as for every subcommand\n"
    "\n"
    "Exit status: 0 done; 1 the database or standard output could not be written, or the database not be read: it\n"
    "is unchanged, a new one empty; 2 a usage error; 3 out of memory, or the system failed.";

void addEditCommand(CLI::App& annotate, const EditCommand& command, const std::shared_ptr<Edit>& edit, Action& chosen) {
  CLI::App& app = addSubcommand(annotate, command.name, command.help);
  command.take(app, *edit);
  const Action apply = [&command, edit] {
    AnnotationEditor editor(edit->database, command.open);
    command.apply(editor, *edit);
    return kDone;
  };
  setWork(app, command.examples, apply, chosen);
}

}  // namespace

void addAnnotate(CLI::App& kelvar, Action& chosen) {
  CLI::App& app = addSubcommand(kelvar, "annotate", "Edit an annotation database");
  const auto edit = std::make_shared<Edit>();
  addPath(app, "DATABASE", "", "The annotation database, a file", edit->database).required();
  expectSubcommand(app, kExamples);
  for (const EditCommand& command : kEditCommands) addEditCommand(app, command, edit, chosen);
  addScan(app, edit->database, chosen);  // the other callbacks keep `edit` as long as the parser lives
}

}  // namespace kelvar_tool
