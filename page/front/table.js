// The table: only the rows that are seen exist. Heights that a browser cannot scroll are scaled down.

const ROW_HEIGHT = 32;
const MOST_PIXELS = 8000000;
const BLOCK = 100;  // rows that are asked for at a time

// Widths are in rem; what `needs` an analysis is left out where the project has no result of it, and what is `spare` where
// all others take the room, the first one first.
const COLUMNS = [
  { field: "label", title: "Site", order: 2, width: 6.8, grows: 3 },
  { field: "kind", title: "Kind", order: 1, width: 4.6, spare: 1 },
  { field: "where", title: "Where", order: 0, width: 7.1, grows: 1.5 },
  { field: "time", title: "Time", order: 3, right: true, width: 4.6 },
  { field: "share", title: "Share", right: true, hint: "Part of the whole time", width: 4.2 },
  { field: "own", title: "Own", right: true, hint: "Share without what lies within", width: 3.8, spare: 2 },
  { field: "gain", title: "Gain", order: 11, right: true, hint: "How much faster the program could be", needs: 2, width: 3.6 },
  { field: "vectorised", title: "Vector", order: 8, hint: "Sorts by the priority of loops", needs: 1, width: 3.5 },
  { field: "races", title: "Races", order: 12, needs: 3, width: 4.7 },
  { field: "stride", title: "Stride", hint: "The stride that matters", needs: 4, width: 6.9 },
  { field: "word", title: "Match", hint: "What is stale", width: 5.4 },
];

function element(name, values = {}, ...children) {
  const made = document.createElement(name);
  for (const [key, value] of Object.entries(values)) {
    if (key === "class") made.className = value;
    else if (key === "text") made.textContent = value;
    else if (value !== null && value !== undefined) made.setAttribute(key, value);
  }
  made.append(...children);
  return made;
}

class Table {
  constructor(source, take) {
    this.source = source;
    this.take = take;  // called with a row that is chosen
    this.query = null;
    this.blocks = new Map();
    this.total = 0;
    this.chosen = "";
    this.focus = 0;
    this.scroll = document.getElementById("scroll");
    this.space = document.getElementById("space");
    this.body = document.getElementById("rows");
    this.scroll.addEventListener("scroll", () => this.later());
    this.scroll.addEventListener("keydown", (event) => this.key(event));
    new ResizeObserver(() => this.fit()).observe(this.scroll);
  }

  /** Which columns there may be; times of another unit than seconds take more room. */
  shape(program) {
    this.possible = COLUMNS.filter((column) => (column.field === "word" ? program.annotated : column.needs === undefined || program.analyses[column.needs]));
    this.width = (column) => (column.field === "time" ? Math.max(column.width, .55 * program.wholeText.length + 1.2) : column.width);
    this.columns = [];
    this.fit();
  }

  /** Which of them there are: those that have room. */
  fit() {
    if (!this.possible) return;
    const grid = document.getElementById("grid");
    const rem = parseFloat(getComputedStyle(document.documentElement).fontSize);
    const least = (columns) => columns.reduce((all, column) => all + this.width(column), 0);
    let columns = this.possible;
    for (const spare of [1, 2]) {
      if ((least(columns) + 1) * rem > grid.clientWidth) columns = columns.filter((column) => column.spare !== spare);
    }
    if (columns.length !== this.columns.length) {
      this.columns = columns;
      grid.style.setProperty("--columns", columns.map((column) => (column.grows ? `minmax(${this.width(column)}rem, ${column.grows}fr)` : this.width(column) + "rem")).join(" "));
      grid.style.setProperty("--least", least(columns) + "rem");
      if (this.order) this.head(this.query, this.order);
    }
    this.later();
  }

  head(query, order) {
    this.order = order;
    const head = document.getElementById("head");
    const had = document.activeElement?.dataset?.order;
    head.replaceChildren(...this.columns.map((column, at) => {
      if (column.order === undefined) {
        return element("div", { role: "columnheader", "aria-colindex": at + 1, class: column.right ? "right" : "", title: column.hint, text: column.title });
      }
      const button = element("button", { type: "button", text: column.title, title: column.hint, "data-order": column.order });
      button.addEventListener("click", () => order(column.order));
      const mine = column.order === query.sort;
      if (mine) button.append(query.reverse ? " \u25b4" : " \u25be");
      return element("div", { role: "columnheader", "aria-colindex": at + 1, class: column.right ? "right" : "",
        "aria-sort": mine ? (query.reverse ? "ascending" : "descending") : "none" }, button);
    }));
    if (had !== undefined) head.querySelector(`[data-order="${had}"]`)?.focus();
  }

  async show(query) {
    this.query = query;
    this.blocks = new Map();
    this.scroll.scrollTop = 0;
    this.focus = 0;
    await this.load(0);
    document.getElementById("grid").setAttribute("aria-rowcount", this.total + 1);
    this.space.style.height = Math.min(this.total * ROW_HEIGHT, MOST_PIXELS) + "px";
    this.scroll.style.height = Math.max(3, Math.min(12, this.total)) * ROW_HEIGHT + "px";
    this.draw();
  }

  async load(block) {
    if (block < 0) return;
    if (!this.blocks.has(block)) this.blocks.set(block, { rows: [], come: this.ask(block, this.blocks) });
    await this.blocks.get(block).come;
  }

  async ask(block, blocks) {
    try {
      const answer = await this.source.rows(this.query, block * BLOCK, BLOCK);
      if (blocks !== this.blocks) return;  // another query meanwhile
      blocks.get(block).rows = answer.rows;
      this.total = answer.total;
    } catch (error) {
      blocks.delete(block);
      throw error;
    }
  }

  at(index) {
    return this.blocks.get(Math.floor(index / BLOCK))?.rows[index % BLOCK];
  }

  // Which row is at the top, and where that begins. Scaled, the last row is still reached.
  window() {
    const height = this.scroll.clientHeight || 1;
    const pixels = this.total * ROW_HEIGHT;
    const top = this.scroll.scrollTop;
    if (pixels <= MOST_PIXELS) return { first: Math.floor(top / ROW_HEIGHT), shift: top - (top % ROW_HEIGHT) };
    const reach = Math.max(1, MOST_PIXELS - height);
    const first = Math.round(Math.min(1, top / reach) * Math.max(0, this.total - Math.floor(height / ROW_HEIGHT)));
    return { first, shift: top };
  }

  later() {
    if (this.waiting) return;
    this.waiting = requestAnimationFrame(() => { this.waiting = 0; this.draw(); });
  }

  draw() {
    if (!this.query) return;
    const { first, shift } = this.window();
    const seen = Math.ceil(this.scroll.clientHeight / ROW_HEIGHT) + 1;
    const begin = Math.max(0, first - 5);
    const end = Math.min(this.total, first + seen + 5);
    const drawn = [];
    for (let index = begin; index < end; ++index) {
      drawn.push(this.rowElement(index, shift + (index - first) * ROW_HEIGHT));
    }
    this.body.replaceChildren(...drawn);
    this.scroll.setAttribute("aria-activedescendant", "row" + this.focus);
    this.fetchAround(begin, end);
  }

  async fetchAround(begin, end) {
    const wanted = [];
    for (let block = Math.floor(begin / BLOCK); block <= Math.floor((end + BLOCK / 2) / BLOCK); ++block) {
      if (block * BLOCK < this.total && !this.blocks.has(block)) wanted.push(block);
    }
    if (wanted.length === 0) return;
    await Promise.all(wanted.map((block) => this.load(block)));
    this.later();
  }

  rowElement(index, top) {
    const row = this.at(index);
    const line = element("div", { role: "row", id: "row" + index, class: row ? "row" : "row waiting", "aria-rowindex": index + 2,
      "aria-selected": row && row.key === this.chosen ? "true" : "false" });
    line.style.top = top + "px";
    if (!row) {
      line.append(element("div", { role: "gridcell", text: "\u2026" }));
      return line;
    }
    this.columns.forEach((column, at) => line.append(this.cell(row, column, at)));
    line.addEventListener("click", () => { this.focus = index; this.choose(row); });
    return line;
  }

  cell(row, column, at) {
    const value = row[column.field];
    const cell = element("div", { role: "gridcell", "aria-colindex": at + 1, class: column.right ? "right number" : "" });
    cell.textContent = value.length > 300 ? value.slice(0, 300) + "\u2026" : value;
    if (column.field === "label") {
      cell.classList.add("label");
      // No indentation: the row above is another site's in most orders.
      if (row.depth > 0) cell.classList.add("within");
      if (!value) cell.textContent = "(no label)";
      const number = value.length < 300 && value.search(/ \d{1,4}$/);
      if (number > 0) this.keepEnd(cell, value, number);  // names that a scan gives often differ in it alone
    } else if (column.field === "share" && row.part > 0) {
      cell.classList.add("share");
      const bar = element("i", { "aria-hidden": "true" });
      bar.style.width = Math.min(100, 100 * row.part) * .86 + "%";
      cell.append(bar);
    } else if (column.field === "where") {
      cell.classList.add("soft");
      this.keepEnd(cell, value, value.lastIndexOf(":"));
    } else if (column.field === "races" && row.raceCount > 0) cell.classList.add("bad");
    else if (column.field === "vectorised" && value === "yes") cell.classList.add("good");
    else if (column.field === "vectorised" && value === "no" && row.part >= .1) cell.classList.add("warn");
    else if (column.field === "word") cell.classList.add("warn");
    else if (column.field === "kind") cell.classList.add("soft");
    return cell;
  }

  /** What is behind `at` is never cut off, what is before may be. */
  keepEnd(cell, text, at) {
    cell.classList.add("parted");
    cell.replaceChildren(element("span", { text: text.slice(0, at).slice(0, 300) }), element("span", { text: text.slice(at) }));
  }

  choose(row) {
    this.mark(row.key);
    this.take(row);
  }

  mark(key) {
    this.chosen = key;
    this.draw();
  }

  move(index) {
    this.focus = Math.max(0, Math.min(this.total - 1, index));
    const pixels = this.total * ROW_HEIGHT;
    const height = this.scroll.clientHeight;
    if (pixels <= MOST_PIXELS) {
      const top = this.focus * ROW_HEIGHT;
      if (top < this.scroll.scrollTop) this.scroll.scrollTop = top;
      if (top + ROW_HEIGHT > this.scroll.scrollTop + height) this.scroll.scrollTop = top + ROW_HEIGHT - height;
    } else {
      const { first } = this.window();
      const seen = Math.floor(height / ROW_HEIGHT);
      const wanted = this.focus < first ? this.focus : this.focus >= first + seen ? this.focus - seen + 1 : first;
      if (wanted !== first) this.scroll.scrollTop = wanted / Math.max(1, this.total - seen) * (MOST_PIXELS - height);
    }
    const row = this.at(this.focus);
    if (row) this.choose(row);
    else this.load(Math.floor(this.focus / BLOCK)).then(() => { const there = this.at(this.focus); if (there) this.choose(there); });
  }

  key(event) {
    const page = Math.max(1, Math.floor(this.scroll.clientHeight / ROW_HEIGHT) - 1);
    const steps = { ArrowDown: 1, ArrowUp: -1, PageDown: page, PageUp: -page, Home: -Infinity, End: Infinity };
    if (event.key === "Enter" && this.chosen) {
      document.getElementById("detail").focus();
    } else if (event.key in steps && !event.altKey && !event.ctrlKey && !event.metaKey) {
      this.move(this.chosen ? this.focus + steps[event.key] : 0);
    } else {
      return;
    }
    event.preventDefault();
  }
}
