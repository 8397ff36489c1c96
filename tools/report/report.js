"use strict";
document.documentElement.classList.add("scripted");

document.addEventListener("DOMContentLoaded", () => {
  const MOST = 200; // rows of a long table that are shown at once
  const collator = new Intl.Collator(undefined, {numeric: true, sensitivity: "base"});
  const tables = [...document.querySelectorAll("table.records")].map(makeTable);

  function element(tag, attributes, ...inside) {
    const made = document.createElement(tag);
    for (const [name, value] of Object.entries(attributes)) made.setAttribute(name, value);
    made.append(...inside);
    return made;
  }

  // What a cell is sorted by: its number, or its text.
  function key(row, column) {
    const cell = row.cells[column];
    if (cell.className === "n") return Number(cell.dataset.n ?? cell.textContent);
    return column === 0 ? cell.firstChild.textContent : cell.textContent;
  }

  function compare(a, b) {
    if (typeof a === "number" && typeof b === "number") return a - b;
    if (typeof a === "number") return -1;
    return typeof b === "number" ? 1 : collator.compare(a, b);
  }

  function makeTable(table) {
    const body = table.tBodies[0];
    const rows = [...body.rows];
    rows.forEach((row, index) => { row.place = index; });
    const own = {table, body, rows, found: rows, all: false, texts: null};
    [...table.tHead.rows[0].cells].forEach((head, column) => {
      const button = element("button", {type: "button"}, ...head.childNodes);
      if (head.title) button.title = head.title;
      head.append(button);
      button.addEventListener("click", () => sort(own, head, column));
    });
    if (table.classList.contains("long")) {
      own.more = element("button", {type: "button", class: "more"});
      own.more.addEventListener("click", () => { own.all = true; show(own); });
      table.parentElement.after(own.more);
    }
    show(own);
    return own;
  }

  function sort(own, head, column) {
    const down = head.getAttribute("aria-sort") === "ascending";
    for (const other of head.parentElement.cells) other.removeAttribute("aria-sort");
    head.setAttribute("aria-sort", down ? "descending" : "ascending");
    own.rows.forEach(close);
    const keys = new Map(own.rows.map((row) => [row, key(row, column)]));
    const order = (a, b) => compare(keys.get(a), keys.get(b)) * (down ? -1 : 1) || a.place - b.place;
    own.rows.sort(order);
    own.texts = null;
    own.body.append(...own.rows);
    filter(own, own.words ?? []);
  }

  function filter(own, words) {
    own.words = words;
    own.texts ??= own.rows.map((row) => row.textContent.toLowerCase());
    own.found = own.rows.filter((row, index) => words.every((word) => own.texts[index].includes(word)));
    show(own);
    return own.found.length;
  }

  function show(own) {
    const shown = new Set(own.more && !own.all ? own.found.slice(0, MOST) : own.found);
    for (const row of own.rows) {
      if (own.more) row.classList.toggle("on", shown.has(row)); else row.hidden = !shown.has(row);
      if (row.opened) row.opened.hidden = !shown.has(row);
    }
    if (own.more) {
      own.more.hidden = shown.size === own.found.length;
      own.more.textContent = `Show all ${own.found.length.toLocaleString("en")} (${shown.size} are shown)`;
    }
    const none = own.found.length === 0 && own.rows.length > 0;
    own.table.hidden = none;
  }

  function close(row) {
    row.opened?.remove();
    row.opened = null;
    row.classList.remove("open");
    row.cells[0].querySelector("a")?.setAttribute("aria-expanded", "false");
  }

  // What a row opens to: it stands in the page, or in a pack of many.
  async function detailOf(row) {
    const table = row.closest("table");
    if (!table.dataset.per) return document.getElementById(`${row.id}-d`).querySelector(".detail").cloneNode(true);
    const own = tables.find((other) => other.table === table);
    const pack = document.getElementById(`${table.id}-p${Math.floor(row.place / table.dataset.per)}`);
    own.packs ??= new Map();
    if (!own.packs.has(pack)) {
      const bytes = Uint8Array.from(atob(pack.textContent), (digit) => digit.charCodeAt(0));
      const stream = new Blob([bytes]).stream().pipeThrough(new DecompressionStream("gzip"));
      own.packs.set(pack, (await new Response(stream).text()).split("\x1e"));
    }
    const detail = element("div", {class: "detail"});
    detail.innerHTML = own.packs.get(pack)[row.place % table.dataset.per];
    return detail;
  }

  async function open(row) {
    if (row.opened) return;
    const cell = element("td", {colspan: row.cells.length});
    row.opened = element("tr", {class: "detail on"}, cell);
    row.after(row.opened);
    row.classList.add("open");
    row.cells[0].querySelector("a").setAttribute("aria-expanded", "true");
    cell.append(await detailOf(row));
  }

  for (const own of tables) {
    for (const row of own.rows) {
      const link = row.cells[0].querySelector("a");
      link?.setAttribute("role", "button");
      link?.setAttribute("aria-expanded", "false");
    }
    own.body.addEventListener("click", (event) => {
      const link = event.target.closest("th > a[role=button]");
      if (!link) return;
      event.preventDefault();
      const row = link.closest("tr");
      if (row.opened) close(row); else open(row);
    });
    own.body.addEventListener("keydown", (event) => {
      if (event.key !== " " || !event.target.matches("th > a[role=button]")) return;
      event.preventDefault();
      event.target.click();
    });
  }

  // One search field for the tables of a collection.
  let number = 0;
  for (const block of document.querySelectorAll(".collection")) {
    const inside = tables.filter((own) => block.contains(own.table));
    if (inside.length === 0) continue;
    const id = `search${++number}`;
    const field = element("input", {type: "search", id, autocomplete: "off", spellcheck: "false"});
    const answer = element("output", {for: id});
    const form = element("div", {class: "filter", role: "search"}, element("label", {for: id}, "Search"), field, answer);
    inside[0].table.parentElement.before(form);
    field.addEventListener("input", () => {
      const words = field.value.toLowerCase().split(/\s+/).filter(Boolean);
      const found = inside.reduce((sum, own) => sum + filter(own, words), 0);
      answer.textContent = words.length === 0 ? "" : `${found.toLocaleString("en")} found`;
    });
  }

  // A link to a row opens it, and one to a closed part of the page opens that.
  function reveal() {
    const id = decodeURIComponent(location.hash.slice(1));
    const target = id && document.getElementById(id);
    if (!target) return;
    if (target.matches("details")) target.open = true;
    if (!target.matches("table.records > tbody > tr")) return;
    target.hidden = false;
    target.classList.add("on");
    if (target.cells[0].querySelector("a")) open(target);
    target.scrollIntoView();
  }
  addEventListener("hashchange", reveal);
  reveal();

  // On paper nothing can be opened: what is short enough is open there.
  let opened = [];
  addEventListener("beforeprint", () => {
    opened = [...document.querySelectorAll("details.scheme:not([open]), details.all-findings:not([open])")];
    for (const details of opened) details.open = true;
  });
  addEventListener("afterprint", () => { for (const details of opened) details.open = false; });
});
