// The two pictures: a tree map of time by file and site, and time against gain.

/** Cuts a rectangle into parts of the given sizes, rows of parts that are as square as they get. */
function squares(parts, x, y, width, height, place) {
  let rest = parts.filter((part) => part.time > 0);
  let sum = rest.reduce((all, part) => all + part.time, 0);
  while (rest.length > 0 && width > 0 && height > 0) {
    const side = Math.min(width, height);
    const scale = width * height / sum;
    let count = 1;
    let best = Infinity;
    let taken = 0;
    for (let size = 0, at = 0; at < rest.length; ++at) {
      size += rest[at].time * scale;
      const long = size / side;
      const worst = Math.max(...[rest[0], rest[at]].map((part) => {
        const other = part.time * scale / long;
        return Math.max(long / other, other / long);
      }));
      if (worst > best) break;
      best = worst;
      count = at + 1;
      taken = size;
    }
    const long = taken / side;
    let along = 0;
    for (const part of rest.slice(0, count)) {
      const other = part.time * scale / long;
      if (width >= height) place(part, x, y + along, long, other);
      else place(part, x + along, y, other, long);
      along += other;
      sum -= part.time;
    }
    if (width >= height) { x += long; width -= long; } else { y += long; height -= long; }
    rest = rest.slice(count);
  }
}

/** From 0 on, steps of 1, 2 or 5 times a power of ten, of which at most five lie up to `most`; and the digits they take. */
function steps(most) {
  const power = 10 ** Math.floor(Math.log10(most / 5));
  const step = [1, 2, 5, 10].map((one) => one * power).find((one) => most / one <= 5) ?? most;
  return { values: [0, 1, 2, 3, 4, 5].map((at) => at * step).filter((value) => value <= most), digits: Math.max(0, -Math.floor(Math.log10(step * 1.0001))) };
}

function leaf(path) {
  return path.slice(path.lastIndexOf("/") + 1);
}

class Pictures {
  constructor(choose) {
    this.choose = choose;
    this.tree = document.getElementById("tree");
    this.plot = document.getElementById("plot");
    new ResizeObserver(() => { if (this.drawn) this.drawTree(); }).observe(this.tree);
    new ResizeObserver(() => { if (this.drawn && this.plot.clientWidth !== this.wide) this.drawPlot(); }).observe(this.plot);
    this.plot.addEventListener("keydown", (event) => {
      if ((event.key === "Enter" || event.key === " ") && event.target.dataset.key) {
        this.choose(event.target.dataset.key);
        event.preventDefault();
      }
    });
  }

  show(drawn, findings) {
    this.drawn = drawn;
    this.begin = findings.find((finding) => finding.rule === "begin")?.key;
    this.drawTree();
    this.drawPlot();
  }

  mark(key) {
    for (const one of document.querySelectorAll("#tree [data-key], #plot [data-key]")) {
      one.setAttribute("aria-pressed", one.dataset.key === key ? "true" : "false");
    }
  }

  drawTree() {
    this.tree.replaceChildren();
    const twice = document.getElementById("tree-twice");
    twice.hidden = !this.drawn.treeTwice;
    twice.textContent = `Up to ${this.drawn.treeTwice} of this may be in two boxes: in a site, and in a function elsewhere that it calls.`;
    const { clientWidth: width, clientHeight: height } = this.tree;
    if (this.drawn.tree.length === 0) this.tree.append(element("p", { class: "soft", text: "Nothing was timed." }));
    squares(this.drawn.tree, 0, 0, width, height, (file, x, y, w, h) => {
      if (w < 3 || h < 3) return;
      const name = element("div", { class: "box file", role: "listitem", title: file.file + ": " + file.text });
      const said = leaf(file.file) + "\u2002" + file.text;
      if (h > 26 && w > 26) name.append(element("span", { text: w > 14 + 7 * said.length ? said : leaf(file.file) }));
      this.put(name, x, y, w, h);
      const top = h > 60 ? 20 : 0;
      squares(file.within, x + 2, y + top, w - 4, h - top - 2, (node, ...where) => this.node(node, file, where, false));
    });
    for (const one of document.querySelectorAll(".legend span")) one.hidden = !this.tree.querySelector("." + one.dataset.of);
    this.mark(this.chosen ?? "");
  }

  node(node, file, [x, y, w, h], inner) {
    if (w < 3 || h < 3) return;
    const said = `${node.label}, ${node.text}${node.own ? ", " + node.own + " of it its own" : ""}${node.races ? ", races" : ""}, ${file.file}`;
    const sort = (inner ? " inner" : "") + (node.key === this.begin ? " first" : node.races ? " races" : "");
    const box = element("button", { type: "button", class: "box" + sort, "data-key": node.key, title: said, "aria-label": said,
      "aria-pressed": "false" });
    const tall = h > (node.within ? 74 : 38);  // what lies within begins below the name
    if (w > 40 && h > 20) box.append(element("b", { text: node.label.slice(0, 200) }));
    if (w > 40 && w > 14 + 7 * node.text.length && tall) box.append(node.text);  // a number is whole, or not there
    box.addEventListener("click", () => this.choose(node.key));
    this.put(box, x, y, w, h);
    this.within(node, file, x, y, w, h);
  }

  // What lies within takes its part of the area below the name; what is left is the time of the outer one alone.
  within(node, file, x, y, w, h) {
    const nested = node.within ?? [];
    const top = h > 74 ? 38 : 20;
    if (nested.length === 0 || h < top + 16) return;
    const part = Math.min(1, nested.reduce((all, one) => all + one.time, 0) / node.time);
    const [wide, high] = [w - 8, h - top - 4];
    if (w > h * 1.6) squares(nested, x + 4 + wide * (1 - part), y + top, wide * part, high, (one, ...where) => this.node(one, file, where, true));
    else squares(nested, x + 4, y + top + high * (1 - part), wide, high * part, (one, ...where) => this.node(one, file, where, true));
  }

  put(box, x, y, w, h) {
    box.style.left = x + "px";
    box.style.top = y + "px";
    box.style.width = w + "px";
    box.style.height = h + "px";
    if (w < 16 || h < 12) box.style.padding = 0;  // else it is as large as that at least
    this.tree.append(box);
  }

  // The best place is the upper right: much time, much gain. The one to begin with has a ring and its name.
  drawPlot() {
    const points = this.drawn.points;
    this.plot.replaceChildren();
    if (points.length === 0) {
      this.plot.append(element("p", { class: "soft", text: "No suitability analysis says what a site would gain." }));
      return;
    }
    this.wide = this.plot.clientWidth;
    const [width, height, left, bottom, top, right] = [Math.max(280, this.wide), 260, 46, 36, 18, 14];
    const svg = this.svg("svg", { viewBox: `0 0 ${width} ${height}`, role: "group", "aria-label": "Time against gain, a point for each site" });
    this.plot.append(svg);
    const most = Math.max(.05, ...points.map((point) => point.share)) * 1.08;
    const high = Math.max(1.1, ...points.map((point) => point.gain)) * 1.05 - 1;
    const x = (share) => left + share / most * (width - left - right);
    const y = (gain) => height - bottom - Math.max(0, gain - 1) / high * (height - bottom - top);
    const [shares, gains] = [steps(100 * most), steps(high)];
    for (const more of gains.values) {
      svg.append(this.svg("line", { class: "grid", x1: left, x2: width - right, y1: y(1 + more), y2: y(1 + more) }),
        this.svg("text", { x: left - 6, y: y(1 + more) + 4, "text-anchor": "end" }, (1 + more).toFixed(gains.digits) + "x"));
    }
    for (const share of shares.values) {
      svg.append(this.svg("line", { class: "grid", x1: x(share / 100), x2: x(share / 100), y1: height - bottom, y2: height - bottom + 4 }),
        this.svg("text", { x: x(share / 100), y: height - bottom + 16, "text-anchor": "middle" }, share.toFixed(shares.digits) + "%"));
    }
    svg.append(this.svg("text", { x: (left + width) / 2, y: height - 4, "text-anchor": "middle" }, "share of the time"),
      this.svg("text", { x: left, y: top - 7, "text-anchor": "start" }, "gain of the program"));
    // The one to begin with is drawn last, over all others, and named first, where it likes.
    const inOrder = [...points].sort((a, b) => (a.key === this.begin) - (b.key === this.begin));
    for (const point of inOrder) svg.append(this.point(point, x(point.share), y(point.gain)));
    const named = [...points].sort((a, b) => (b.key === this.begin) - (a.key === this.begin) || b.gain - a.gain).slice(0, 5);
    const taken = [];
    for (const point of named) this.name(svg, point, x(point.share), y(point.gain), left, width, taken);
    this.mark(this.chosen ?? "");
  }

  point(point, x, y) {
    const first = point.key === this.begin;
    const dot = this.svg("circle", { class: "point" + (point.races > 0 ? " races" : "") + (first ? " first" : ""), cx: x, cy: y,
      r: first ? 9 : 5.5, tabindex: 0, role: "button", "data-key": point.key, "aria-pressed": "false",
      "aria-label": `${point.label}, ${point.text}${first ? ", begin here" : ""}${point.races > 0 ? ", races" : ""}` });
    dot.append(this.svg("title", {}, `${point.label}: ${point.text}`));
    dot.addEventListener("click", () => this.choose(point.key));
    return dot;
  }

  // To the right of its point, else to the left, where it hides no other name; else not at all.
  name(svg, point, x, y, left, width, taken) {
    const first = point.key === this.begin;
    const label = point.label.length > 28 ? point.label.slice(0, 27) + "\u2026" : point.label;
    const text = this.svg("text", { class: first ? "name first" : "name", y: y + 4 }, first ? label + ": begin here" : label);
    svg.append(text);
    const long = text.getComputedTextLength();
    const free = (from) => from >= left && from + long <= width && !taken.some(([begin, end, other]) => from < end && from + long > begin && Math.abs(other - y) < 16);
    const from = [x + 14, x - 14 - long].find(free);
    if (from === undefined && !first) return text.remove();
    const begin = from ?? Math.max(left, Math.min(x + 14, width - long));
    text.setAttribute("x", begin);
    taken.push([begin, begin + long, y]);
  }

  svg(name, values, text = "") {
    const made = document.createElementNS("http://www.w3.org/2000/svg", name);
    for (const [key, value] of Object.entries(values)) made.setAttribute(key, value);
    if (text) made.textContent = text;
    return made;
  }
}
