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

  // A record of a table has its row, or the text of the row until it is shown: that of a long table is in a <noscript>,
  // which costs no time when the page is opened.
  function makeTable(table) {
    const body = table.tBodies[0];
    const rest = table.parentElement.nextElementSibling;
    const records = [...body.rows].map((row) => ({row}));
    if (rest?.tagName === "NOSCRIPT")
      for (const [html] of rest.textContent.matchAll(/<tr id[^]*?<\/tr>/g)) records.push({html});
    const own = {table, body, records, found: records, step: records.length > body.rows.length ? MOST : Infinity};
    own.most = own.step;
    records.forEach((record, place) => {
      record.place = place;
      if (record.row) prepare(record);
    });
    [...table.tHead.rows[0].cells].forEach((head, column) => {
      const button = element("button", {type: "button"}, ...head.childNodes);
      if (head.title) button.title = head.title;
      head.append(button);
      button.addEventListener("click", () => sort(own, head, column));
    });
    own.more = element("button", {type: "button", class: "more", hidden: ""});
    own.more.addEventListener("click", () => {
      const first = own.found[own.most]; // of those that come in
      own.most += own.step;
      show(own);
      first.row.cells[0].querySelector("a")?.focus();
    });
    table.parentElement.after(own.more);
    if (records.length > body.rows.length) show(own);
    return own;
  }

  function prepare(record) {
    record.row.record = record;
    const link = record.row.cells[0].querySelector("a");
    link?.setAttribute("role", "button");
    link?.setAttribute("aria-expanded", "false");
  }

  function rowOf(record) {
    if (record.row) return record.row;
    const template = element("template", {});
    template.innerHTML = record.html;
    record.row = template.content.firstElementChild;
    prepare(record);
    return record.row;
  }

  const idOf = (record) => record.row ? record.row.id : /id="([^"]*)"/.exec(record.html)[1];

  // The characters that stand for themselves nowhere in a page.
  function decoded(html) {
    const characters = {lt: "<", gt: ">", quot: '"', amp: "&"};
    return html.replace(/<[^>]*>/g, " ").replace(/&(\w+);/g, (all, name) => characters[name] ?? all);
  }

  const textOf = (record) =>
    (record.row ? [...record.row.cells].map((cell) => cell.textContent).join(" ") : decoded(record.html)).toLowerCase();

  // What a cell is sorted by: its number, or its text.
  function key(record, column) {
    if (record.row) {
      const cell = record.row.cells[column];
      if (cell.className === "n") return Number(cell.dataset.n ?? cell.textContent);
      return (column === 0 ? cell.firstChild : cell).textContent;
    }
    const cell = record.html.split(/<t[hd]/, column + 2)[column + 1];
    const number = /^(?: data-n="([^"]*)")? class="n">([^<]*)/.exec(cell);
    if (number) return Number(number[1] ?? number[2]);
    return decoded(/>([^<]+)/.exec(cell)?.[1] ?? "");
  }

  function compare(a, b) {
    if (typeof a === "number" && typeof b === "number") return a - b;
    if (typeof a === "number") return -1;
    return typeof b === "number" ? 1 : collator.compare(a, b);
  }

  function sort(own, head, column) {
    const down = head.getAttribute("aria-sort") === "ascending";
    for (const other of head.parentElement.cells) other.removeAttribute("aria-sort");
    head.setAttribute("aria-sort", down ? "descending" : "ascending");
    for (const record of own.records) close(record);
    const keys = new Map(own.records.map((record) => [record, key(record, column)]));
    const order = (a, b) => compare(keys.get(a), keys.get(b)) * (down ? -1 : 1) || a.place - b.place;
    own.records.sort(order);
    filter(own, own.words ?? []);
  }

  function filter(own, words) {
    own.words = words;
    own.found = own.records.filter((record) => {
      record.text ??= textOf(record);
      return words.every((word) => record.text.includes(word));
    });
    own.most = own.step;
    show(own);
    return own.found.length;
  }

  function show(own) {
    const shown = own.found.slice(0, own.most);
    const rows = document.createDocumentFragment();
    for (const record of shown) {
      rows.append(rowOf(record));
      if (record.opened) rows.append(record.opened);
    }
    own.body.replaceChildren(rows);
    own.more.hidden = shown.length === own.found.length;
    const next = Math.min(own.step, own.found.length - shown.length);
    own.more.textContent = `Show ${next} more (${shown.length} of ${own.found.length.toLocaleString("en")} are shown)`;
    own.table.parentElement.hidden = own.found.length === 0 && own.records.length > 0;
  }

  function close(record) {
    if (!record.opened) return;
    record.opened.remove();
    record.opened = null;
    record.row.classList.remove("open");
    record.row.cells[0].querySelector("a").setAttribute("aria-expanded", "false");
  }

  // What a row opens to: it stands in the page, or in a pack of many.
  async function detailOf(own, record) {
    const per = own.table.dataset.per;
    if (!per) return document.getElementById(`${record.row.id}-d`).querySelector(".detail").cloneNode(true);
    const pack = document.getElementById(`${own.table.id}-p${Math.floor(record.place / per)}`);
    own.packs ??= new Map();
    if (!own.packs.has(pack)) {
      const bytes = Uint8Array.from(atob(pack.textContent), (digit) => digit.charCodeAt(0));
      const stream = new Blob([bytes]).stream().pipeThrough(new DecompressionStream("gzip"));
      own.packs.set(pack, (await new Response(stream).text()).split("\x1e"));
    }
    const detail = element("div", {class: "detail"});
    detail.innerHTML = own.packs.get(pack)[record.place % per];
    return detail;
  }

  async function open(own, record) {
    if (record.opened) return;
    const cell = element("td", {colspan: record.row.cells.length});
    record.opened = element("tr", {class: "detail"}, cell);
    record.row.after(record.opened);
    record.row.classList.add("open");
    record.row.cells[0].querySelector("a").setAttribute("aria-expanded", "true");
    cell.append(await detailOf(own, record));
  }

  for (const own of tables) {
    own.body.addEventListener("click", (event) => {
      const link = event.target.closest("th > a[role=button]");
      if (!link) return;
      event.preventDefault();
      const {record} = link.closest("tr");
      if (record.opened) close(record); else open(own, record);
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
    const title = [...block.querySelectorAll("h3")].at(-1)?.textContent ?? "";
    const field = element("input", {type: "search", id, autocomplete: "off", spellcheck: "false"});
    const answer = element("output", {for: id});
    const form = element("div", {class: "filter", role: "search"}, element("label", {for: id}, "Search"), field, answer);
    field.setAttribute("aria-label", `Search in ${title}`);
    inside[0].table.parentElement.before(form);
    for (const own of inside) own.field = field;
    field.addEventListener("input", () => {
      const words = field.value.toLowerCase().split(/\s+/).filter(Boolean);
      const found = inside.reduce((sum, own) => sum + filter(own, words), 0);
      answer.textContent = words.length === 0 ? "" : `${found.toLocaleString("en")} found`;
    });
  }

  // A link to a row shows and opens it, and one to a closed part of the page opens that.
  function reveal() {
    const id = decodeURIComponent(location.hash.slice(1));
    if (!id) return;
    for (const own of tables) {
      const record = own.records.find((one) => idOf(one) === id);
      if (!record) continue;
      if (!own.found.includes(record)) {
        own.field.value = "";
        own.field.dispatchEvent(new Event("input"));
      }
      const row = rowOf(record);
      if (!row.isConnected) own.body.append(row);
      const link = row.cells[0].querySelector("a");
      if (link) open(own, record);
      row.scrollIntoView();
      link?.focus({preventScroll: true});
      return;
    }
    const target = document.getElementById(id);
    if (target?.matches("details")) target.open = true;
  }
  addEventListener("hashchange", reveal);
  // A link that was followed before changes nothing in the address.
  document.addEventListener("click", (event) => {
    const link = event.target.closest("a[href^='#']");
    if (link && !event.defaultPrevented && link.hash === location.hash) reveal();
  });
  reveal();

  // On paper nothing can be opened: what is short enough is there in full.
  const MOST_ON_PAPER = 2000; // rows of a table
  let opened = [];
  addEventListener("beforeprint", () => {
    for (const own of tables) {
      if (own.found.length <= own.most || own.found.length > MOST_ON_PAPER) continue;
      own.before = own.most;
      own.most = MOST_ON_PAPER;
      show(own);
    }
    opened = [...document.querySelectorAll("details.scheme:not([open]), details.all-findings:not([open])")];
    for (const details of opened) details.open = true;
  });
  addEventListener("afterprint", () => {
    for (const details of opened) details.open = false;
    for (const own of tables) {
      if (!own.before) continue;
      own.most = own.before;
      own.before = null;
      show(own);
    }
  });
});
