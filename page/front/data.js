// Where rows come from. Either source answers the same questions, so the page does not know whether it is served or a
// file of its own.

// All orderings of the library, by their number. Some are of a figure that has a column, and sort by a click on it too.
const ORDERS = ["Place", "Kind", "Label", "Survey time", "Survey priority", "Survey id", "Loop time, own", "Loop time, all",
  "Loop priority", "Suitability time", "Gain of the site", "Gain of the program", "Races", "Other findings",
  "General kind, place"];
const ANALYSES = ["survey", "vectorization", "suitability", "dependencies", "memory access"];
const MATCHES = { all: "all", exact: "exact", moved: "moved", none: "none" };

/** A row as an object, from the list of its values. */
function rowOf(fields, values) {
  const row = {};
  fields.forEach((name, at) => { row[name] = values[at]; });
  return row;
}

/**
 * What a file holds: all rows at once, and the place of each in every order. Rows stay the lists that they are until
 * they are shown: objects of twenty thousand take longer than all else that the page does before it is seen.
 */
class Embedded {
  constructor(data) {
    this.program = data;
    this.all = data.embedded;
    this.at = rowOf(data.fields, data.fields.map((_, at) => at));  // where each field is in a row
    this.query = "";
    this.left = [];
  }

  select(query) {
    const asked = JSON.stringify(query);
    if (asked === this.query) return;
    this.query = asked;
    const text = query.text.toLowerCase();
    const files = text ? this.program.texts.map((one) => one.toLowerCase().includes(text)) : [];
    const order = this.program.orders[query.sort];
    this.left = order.filter((place) => this.wanted(this.all[place], query, text, files));
    if (query.reverse) this.left.reverse();
  }

  wanted(row, query, text, files) {
    const { at } = this;
    if (query.kind === "site" ? row[at.sort] !== 0 : query.kind !== "all" && row[at.kind] !== query.kind) return false;
    const match = row[at.match];
    if (query.analysis >= 0 && match[query.analysis] === "0") return false;
    const exact = match.includes("4");
    const moved = match.includes("3");
    if (query.match === "exact" && (!exact || moved)) return false;
    if (query.match === "moved" && !moved) return false;
    if (query.match === "none" && (exact || moved)) return false;
    return !text || files[row[at.file]] || row[at.label].toLowerCase().includes(text);
  }

  whole(values) {
    const row = rowOf(this.program.fields, values);
    const text = (place) => this.program.texts[place];
    for (const name of this.program.shared) row[name] = Array.isArray(row[name]) ? row[name].map(text) : text(row[name]);
    return row;
  }

  async rows(query, from, count) {
    this.select(query);
    return { total: this.left.length, rows: this.left.slice(from, from + count).map((place) => this.whole(this.all[place])) };
  }

  async row(key) {
    const found = this.all.find((values) => values[this.at.key] === key);
    return found ? this.whole(found) : null;
  }

  async site(key) {
    return this.program.sites[key] ?? { evidence: [], edits: [] };
  }

  async source(file) {
    return this.program.sources[file] ?? null;
  }

  async pictures() {
    return this.program;
  }

  async comparison() {
    return null;
  }
}

/** What `kelvar view` answers. */
class Served {
  constructor(token) {
    this.token = token;
    this.program = null;
  }

  async ask(path, values = {}) {
    const answer = await fetch(path + "?" + new URLSearchParams(values),
      { headers: { "X-Kelvar-Token": this.token }, cache: "no-store" });
    if (answer.status === 404) return null;
    if (!answer.ok) throw new Error((await answer.text()).trim() || "the server answered " + answer.status);
    return answer.json();
  }

  async open() {
    this.program = await this.ask("data/program");
  }

  async version() {
    return (await this.ask("data/version")).version;
  }

  async rows(query, from, count) {
    const answer = await this.ask("data/rows", { ...query, reverse: query.reverse ? 1 : 0, from, count });
    return { total: answer.total, rows: answer.rows.map((values) => rowOf(this.program.fields, values)) };
  }

  async row(key) {
    const values = await this.ask("data/row", { key });
    return values && rowOf(this.program.fields, values);
  }

  async site(key) {
    return (await this.ask("data/site", { key })) ?? { evidence: [], edits: [] };
  }

  async source(file) {
    if (file.length > 4000) return null;  // no file has such a name
    return this.ask("data/source", { file });
  }

  /** Where time goes, and time against gain. The server takes a walk over all rows for them, so rows are asked for first. */
  async pictures() {
    return this.ask("data/pictures");
  }

  /** What changed to the project that it is compared with; null where there is none. */
  async comparison() {
    return this.ask("data/comparison");
  }
}
