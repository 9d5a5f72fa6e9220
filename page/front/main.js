// Ties the parts together. What is shown is what the fragment of the address says, so a link shows what its sender saw.

const DEFAULTS = { sort: 3, reverse: false, kind: "site", analysis: -1, match: "all", text: "" };

class Page {
  constructor(source) {
    this.source = source;
    this.query = { ...DEFAULTS };
    this.site = "";
    this.table = new Table(source, (row) => this.chose(row));
    this.detail = new Detail(source);
    this.pictures = new Pictures((key) => this.go({ site: key }));
    this.comparison = new Comparison((key) => this.go({ site: key }));
  }

  async start() {
    this.fill();
    this.bind();
    addEventListener("hashchange", () => this.follow());
    await this.follow();
    return this.rest();
  }

  /** What is shown beside the rows. */
  async rest() {
    this.comparison.show(await this.source.comparison());
    this.pictures.show(await this.source.pictures(), this.source.program.findings);
  }

  // ---- what the address says

  read() {
    const said = new URLSearchParams(location.hash.slice(1));
    const number = (key, least, most) => {
      const value = said.has(key) ? Number(said.get(key)) : DEFAULTS[key];
      return Number.isInteger(value) && value >= least && value <= most ? value : DEFAULTS[key];
    };
    const known = (key, values) => (values.includes(said.get(key)) ? said.get(key) : values.includes(DEFAULTS[key]) ? DEFAULTS[key] : values[0]);
    const kind = said.has("kind") ? known("kind", this.kinds()) : this.source.program.annotated || !this.source.program.rows ? "site" : "all";
    return {
      query: { sort: number("sort", 0, ORDERS.length - 1), reverse: said.get("reverse") === "1", kind, analysis: number("analysis", -1, ANALYSES.length - 1),
        match: known("match", Object.keys(MATCHES)), text: (said.get("text") ?? "").slice(0, 200) },
      site: said.get("site") ?? "",
    };
  }

  go(change) {
    const { site = this.site, ...query } = change;
    const wanted = { ...this.query, ...query };
    const said = new URLSearchParams();
    for (const [key, value] of Object.entries(wanted)) {
      const text = value === true ? "1" : value === false ? "0" : String(value);
      if (key === "kind" || value !== DEFAULTS[key]) said.set(key, text);
    }
    if (site) said.set("site", site);
    const hash = "#" + said;
    if (hash !== location.hash) history.pushState(null, "", location.pathname + location.search + hash);
    return this.follow();
  }

  async follow() {
    const { query, site } = this.read();
    try {
      if (JSON.stringify(query) !== JSON.stringify(this.query) || !this.table.query) {
        this.query = query;
        this.controls();
        await this.table.show(query);
        this.count();
      }
      if (site !== this.site || this.stale) await this.open(site);
      this.stale = false;
    } catch (error) {
      this.fail(error);
    }
  }

  async open(key) {
    this.site = key;
    this.table.mark(key);
    this.pictures.chosen = key;
    this.pictures.mark(key);
    const row = key ? await this.source.row(key) : null;
    if (this.site !== key) return;
    if (row) await this.detail.show(row);
    else this.detail.clear();
  }

  chose(row) {
    if (row.key !== this.site) this.go({ site: row.key });
  }

  // ---- what is on the page once

  kinds() {
    return ["all", "site", ...this.source.program.kinds, "function", "loop"];
  }

  fill() {
    const { program } = this.source;
    document.title = program.project + " - kelvar";
    document.getElementById("project").textContent = program.project;
    const summary = [program.wholeText && program.wholeText + " in all", program.gainText && "up to " + program.gainText + " as fast",
      program.leftOut > 0 && `the first ${program.embedded.length} of ${program.rows} rows: ${program.leftOut} are left out`, program.timeSource];
    const missing = ANALYSES.filter((_, at) => !program.analyses[at]);
    document.getElementById("summary").textContent = summary.filter(Boolean).join(", ") + (missing.length % ANALYSES.length ? "; no result of " + missing.join(", ") : "");
    this.table.shape(program);
    this.findings(program);
    const complaints = document.getElementById("complaints");
    complaints.hidden = program.complaints.length === 0;
    complaints.replaceChildren(...program.complaints.map((text) => element("li", { text })));
    const names = { all: "all", site: "annotated sites", function: "functions", loop: "loops" };
    this.options("kind", this.kinds().map((kind) => [kind, names[kind] ?? kind]));
    this.options("analysis", [[-1, "any"], ...ANALYSES.map((name, at) => [at, name])]);
    this.options("match", Object.entries(MATCHES));
    this.options("sort", ORDERS.map((name, at) => [at, name]));
  }

  findings(program) {
    const names = { begin: "begin here", race: "race", scalar: "not vector", conflict: "conflict", stale: "stale" };
    const list = document.getElementById("finding-list");
    list.replaceChildren(...program.findings.map((finding) => {
      const button = element("button", { type: "button" }, element("span", { class: "rule " + finding.rule, text: names[finding.rule] ?? finding.rule }),
        element("span", { class: "sentence", text: finding.sentence.slice(0, 4000) }));
      button.addEventListener("click", () => this.go({ site: finding.key }));
      return element("li", {}, button);
    }));
    if (program.findings.length === 0) list.append(element("li", { class: "soft", text: "Nothing." }));
  }

  options(id, values) {
    document.getElementById(id).replaceChildren(...values.map(([value, text]) => element("option", { value, text })));
  }

  bind() {
    const on = (id, event, read) => document.getElementById(id).addEventListener(event, (happened) => this.go(read(happened.target)));
    for (const id of ["kind", "match"]) on(id, "change", (field) => ({ [id]: field.value }));
    for (const id of ["analysis", "sort"]) on(id, "change", (field) => ({ [id]: Number(field.value) }));
    on("reverse", "change", (field) => ({ reverse: field.checked }));
    document.getElementById("text").addEventListener("input", (happened) => {
      clearTimeout(this.typing);
      this.typing = setTimeout(() => this.go({ text: happened.target.value }), 120);
    });
    document.getElementById("filters").addEventListener("submit", (event) => event.preventDefault());
  }

  controls() {
    for (const id of ["kind", "analysis", "match", "sort"]) document.getElementById(id).value = String(this.query[id]);
    document.getElementById("reverse").checked = this.query.reverse;
    const text = document.getElementById("text");
    if (text.value !== this.query.text) text.value = this.query.text;
    this.table.head(this.query, (order) => this.go(order === this.query.sort ? { reverse: !this.query.reverse } : { sort: order, reverse: false }));
  }

  count() {
    const total = this.table.total;
    document.getElementById("count").textContent = `${total.toLocaleString("en")} ${total === 1 ? "row" : "rows"}`;
  }

  fail(error) {
    const complaints = document.getElementById("complaints");
    complaints.hidden = false;
    complaints.replaceChildren(element("li", { text: "The page lost its data: " + error.message }));
  }

  // ---- when results change

  async watch() {
    let known = await this.source.version();
    for (;;) {
      await new Promise((done) => setTimeout(done, 2000));
      if (document.hidden) continue;
      try {
        const version = await this.source.version();
        if (version === known) continue;
        known = version;
        await this.source.open();
        this.fill();
        this.table.query = null;
        this.stale = true;
        await this.follow();
        await this.rest();
      } catch (error) {
        this.fail(error);
      }
    }
  }
}

async function begin() {
  const data = document.getElementById("data").textContent;
  if (data) return new Page(new Embedded(JSON.parse(data))).start();
  const source = new Served(new URLSearchParams(location.search).get("token") ?? "");
  await source.open();
  const page = new Page(source);
  await page.start();
  page.watch();
}

begin().catch((error) => {
  document.getElementById("summary").textContent = "Cannot show this: " + error.message;
}).finally(() => { document.documentElement.dataset.ready = "1"; });
