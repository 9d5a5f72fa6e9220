// What changed from this project to the one that it is compared with: two tables of texts.

class Comparison {
  constructor(go) {
    this.go = go;  // called with the key of a row that is chosen
  }

  show(compared) {
    document.getElementById("compare").hidden = !compared;
    if (!compared) return;
    document.getElementById("compare-lines").replaceChildren(...compared.lines.map((text) => element("li", { text })));
    this.table("compare-changed", compared.changed);
    this.table("compare-alone", compared.alone);
  }

  table(id, { columns, rows, more }) {
    const used = columns.map((_, at) => rows.some((row) => row.cells[at].text));
    const shown = (_, at) => used[at];
    const place = document.getElementById(id);
    place.hidden = rows.length === 0;
    place.querySelector("thead").replaceChildren(element("tr", {}, ...columns.map((column) =>
      element("th", { scope: "col", class: column.right ? "right" : "", text: column.title })).filter(shown)));
    place.querySelector("tbody").replaceChildren(...rows.map((row) => element("tr", {}, ...row.cells.map((cell, at) =>
      this.cell(cell, columns[at], row.key)).filter(shown))));
    place.querySelector(".more").textContent = more;
  }

  cell({ text, tone }, column, key) {
    const made = element("td", { class: (column.right ? "right " : "") + tone });
    if (column.title !== "Site" || !key) {
      made.textContent = text;
      return made;
    }
    const button = element("button", { type: "button", class: "link", text });
    button.addEventListener("click", () => this.go(key));
    made.append(button);
    return made;
  }
}
