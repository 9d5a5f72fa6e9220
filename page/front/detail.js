// The chosen site: its figures, why each analysis matched or not, what they rest on, and its source.

const FACTS = [
  [["time", "surveyTime"], ["share of the program", "share"], ["own share", "own"]],
  [["vectorised", "reason"]],
  [["time", "suitabilityTime"], ["program as a whole", "gain"], ["site by itself", "siteGain"], ["cores", "cores"]],
  [["races", "raceCount"], ["lock orders", "lockOrders"], ["other findings", "others"]],
  [["unit steps", "unit"], ["constant steps", "constant"], ["varying steps", "varying"]],
];
const LONGEST = 20000;  // characters of one text

class Detail {
  constructor(source) {
    this.source = source;
    this.title = document.getElementById("detail-title");
    this.facts = document.getElementById("facts");
    this.code = document.getElementById("source");
    this.file = "";
  }

  clear() {
    this.row = null;
    this.file = "";
    this.title.textContent = "No site is chosen";
    this.head("", "");
    this.facts.replaceChildren(element("p", { text: "Choose a row, a box or a point." }));
    this.code.replaceChildren();
    document.getElementById("code").hidden = true;
  }

  async show(row) {
    this.row = row;
    this.title.textContent = (row.label || "(no label)").slice(0, LONGEST);
    this.facts.replaceChildren(...this.figures(row));
    const [site, source] = await Promise.all([this.source.site(row.key), this.source.source(row.file)]);
    if (this.row !== row) return;
    this.facts.append(...this.evidence(site.evidence), ...this.edits(site.edits));
    this.showSource(row, source);
  }

  head(place, stale) {
    document.getElementById("place").textContent = place;
    document.getElementById("staleness").textContent = stale;
    document.getElementById("staleness").hidden = !stale;
  }

  figures(row) {
    this.head(`${row.kind}${row.handle ? ", site " + row.handle : ""}, ${row.file.slice(0, LONGEST)}:${row.line}`, row.word && `${row.mark} ${row.word}`);
    const parts = [];
    const { analyses } = this.source.program;
    ANALYSES.forEach((name, at) => {
      if (!analyses[at]) return;
      parts.push(element("h3", { text: name }));
      parts.push(element("p", { class: "soft", text: row.why[at] || "says nothing of this site" }));
      if (!row.why[at]) return;
      const list = element("dl");
      for (const [label, field] of FACTS[at]) {
        const value = String(row[field]);
        if (value) list.append(element("dt", { text: label }), element("dd", { text: value.slice(0, LONGEST) }));
      }
      parts.push(list);
    });
    const missing = ANALYSES.filter((_, at) => !analyses[at]);
    if (missing.length > 0) parts.push(element("p", { class: "soft missing", text: "No result of: " + missing.join(", ") }));
    return parts;
  }

  evidence(lines) {
    if (lines.length === 0) return [];
    const parts = [element("h3", { text: "Evidence" })];
    for (const line of lines) {
      const count = line.count ? `, ${line.count}` : "";
      parts.push(element("p", { class: "ground", text: `${line.kind}: ${line.text}${line.object ? ", on " + line.object : ""}${count}` }));
      const list = element("ul", { class: "places" });
      for (const place of line.places) {
        const role = place.role ? place.role + " at " : "";
        list.append(element("li", { class: "soft", text: `${role}${place.file}${place.line ? ":" + place.line : ""}${place.function ? " in " + place.function : ""}` }));
      }
      parts.push(list);
    }
    return parts;
  }

  edits(lines) {
    if (lines.length === 0) return [];
    return [element("h3", { text: "Edits" }), element("ul", {}, ...lines.map((line) => element("li", { class: "soft", text: line })))];
  }

  showSource(row, source) {
    document.getElementById("code").hidden = false;
    document.getElementById("code-title").textContent = row.file.slice(0, LONGEST);
    if (!source) {
      this.file = "";
      this.code.replaceChildren(element("p", { class: "soft", text: "The source is not below the folder that --source-root names." }));
      return;
    }
    if (this.file !== row.file) this.build(row.file, source);
    for (const line of this.code.querySelectorAll(".chosen")) line.classList.remove("chosen");
    const chosen = this.code.querySelector(`[data-line="${row.line}"]`);
    chosen?.classList.add("chosen");
    if (chosen) this.code.scrollTop = chosen.offsetTop - this.code.clientHeight / 3;
  }

  build(file, source) {
    this.file = file;
    const body = element("tbody");
    source.lines.forEach((text, at) => {
      const [time, share, own, ...notes] = source.margin[at + 1] ?? ["", "", ""];
      const race = notes.some((note) => note.startsWith("race"));
      body.append(element("tr", { "data-line": at + 1 },
        element("td", { class: "figure", text: time, title: time && "with all that runs within" }), element("td", { class: "figure", text: share }),
        element("td", { class: "figure line", text: own, title: own && "on this line alone" }),
        element("td", { class: "number", text: at + 1 }), element("td", { text: text.slice(0, 2000) }),
        element("td", { class: race ? "note race" : "note", text: notes.join("; "), title: notes.length > 0 ? notes.join("; ") : null })));
    });
    const head = element("thead", { class: "hidden" }, element("tr", {},
      ...["Time", "Share", "On line", "Line", "Source", "What is known"].map((text) => element("th", { scope: "col", text }))));
    this.code.replaceChildren(element("table", { "aria-label": leaf(file) }, head, body));
  }
}
