"use strict";
// Search, zoom, bytes that light up, and arrow keys. All else is there without it.

const byId = (id) => document.getElementById(id);

for (const bar of document.querySelectorAll(".zoom")) {
  const picture = byId(bar.dataset.for);
  let zoom = 1;
  const set = (value) => {
    const middle = (picture.scrollLeft + picture.clientWidth / 2) / picture.scrollWidth;
    zoom = Math.min(16, Math.max(picture.classList.contains("timeline") ? 0.25 : 1, value));
    picture.style.setProperty("--zoom", zoom);
    picture.scrollLeft = middle * picture.scrollWidth - picture.clientWidth / 2;
  };
  const name = picture.getAttribute("aria-label");
  for (const [text, label, change] of [
    ["−", "Zoom out", () => set(zoom / 2)],
    ["+", "Zoom in", () => set(zoom * 2)],
    ["Reset", "Reset zoom", () => set(1)],
  ]) {
    const button = document.createElement("button");
    button.type = "button";
    button.textContent = text;
    button.setAttribute("aria-label", `${label}: ${name}`);
    button.addEventListener("click", change);
    bar.append(button);
  }
  bar.hidden = false;
}

// One event of a time line is reached by Tab, the others from there by arrow keys.
for (const line of document.querySelectorAll(".timeline")) {
  const rows = [...line.querySelectorAll("ol")].map((list) => [...list.querySelectorAll("button")]);
  const all = rows.flat();
  const now = line.querySelector(".now");
  for (const button of all) button.tabIndex = -1;
  (line.querySelector("button.on") || all[0]).tabIndex = 0;
  if (now) line.scrollLeft = now.offsetLeft - line.clientWidth / 3;
  line.addEventListener("keydown", (event) => {
    const row = rows.findIndex((buttons) => buttons.includes(event.target));
    if (row < 0) return;
    const column = rows[row].indexOf(event.target);
    const nearest = (buttons) =>
      buttons && buttons.reduce((a, b) =>
        Math.abs(a.offsetLeft - event.target.offsetLeft) <= Math.abs(b.offsetLeft - event.target.offsetLeft) ? a : b);
    const next = {
      ArrowLeft: () => rows[row][column - 1],
      ArrowRight: () => rows[row][column + 1],
      ArrowUp: () => nearest(rows[row - 1]),
      ArrowDown: () => nearest(rows[row + 1]),
    }[event.key]?.();
    if (!next) return;
    event.preventDefault();
    event.target.tabIndex = -1;
    next.tabIndex = 0;
    next.focus();
  });
}

// The bytes of a field, each of which takes three letters of the dump.
const light = (field) => {
  const section = field.closest(".section");
  const place = field.closest("[data-b]");
  const dump = section.querySelector("pre");
  const bytes = dump.textContent;
  for (const lit of section.querySelectorAll(".lit")) lit.classList.remove("lit");
  dump.textContent = bytes;
  field.classList.add("lit");
  if (!place || !section.contains(place)) return;
  const [begin, size] = place.dataset.b.split(" ").map(Number);
  const mark = document.createElement("mark");
  mark.textContent = bytes.slice(begin * 3, (begin + size) * 3 - 1);
  dump.replaceChildren(bytes.slice(0, begin * 3), mark, bytes.slice((begin + size) * 3 - 1));
  const top = mark.offsetTop - dump.offsetTop;
  if (top < dump.scrollTop || top > dump.scrollTop + dump.clientHeight - 20) dump.scrollTop = top - 20;
};

for (const list of document.querySelectorAll(".groups")) {
  list.addEventListener("pointerover", (event) => {
    const field = event.target.closest(".tree li");
    if (field) light(field);
  });
  list.addEventListener("toggle", (event) => {
    const first = event.target.matches(".section[open]") && event.target.querySelector(".tree li");
    if (first && !event.target.querySelector('.tree li[tabindex="0"]')) first.tabIndex = 0;
  }, true);
  list.addEventListener("focusin", (event) => {
    if (event.target.matches(".tree li")) light(event.target);
  });
  list.addEventListener("keydown", (event) => {
    if (!event.target.matches(".tree li") || !["ArrowUp", "ArrowDown", "Home", "End"].includes(event.key)) return;
    const fields = [...event.target.closest(".tree").querySelectorAll("li")];
    const at = fields.indexOf(event.target);
    const next = { ArrowUp: fields[at - 1], ArrowDown: fields[at + 1], Home: fields[0], End: fields.at(-1) }[event.key];
    event.preventDefault();
    if (!next) return;
    event.target.tabIndex = -1;
    next.tabIndex = 0;
    next.focus();
  });
}

for (const bar of document.querySelectorAll(".search")) {
  const list = byId(bar.dataset.for);
  const input = bar.querySelector("input");
  const output = bar.querySelector("output");
  const sections = [...list.querySelectorAll(".section")];
  const opened = new Set();
  let texts;
  let timer;
  const search = () => {
    texts ||= sections.map((section) => section.textContent.toLowerCase());
    const wanted = input.value.trim().toLowerCase();
    for (const details of opened) details.open = false;
    opened.clear();
    for (const hit of list.querySelectorAll(".hit")) hit.classList.remove("hit");
    const found = sections.filter((section, i) => {
      section.hidden = wanted !== "" && !texts[i].includes(wanted);
      return !section.hidden;
    });
    for (const group of list.querySelectorAll(".group"))
      group.hidden = wanted !== "" && !group.querySelector(".section:not([hidden])");
    output.textContent = wanted === "" ? "" : `${found.length} of ${sections.length} sections`;
    if (wanted === "") return;
    const open = (details) => {
      if (details.open) return;
      details.open = true;
      opened.add(details);
    };
    for (const section of found) {
      open(section.closest(".group"));
      if (found.length > 20) continue;
      open(section);
      for (const field of section.querySelectorAll(".tree li"))
        if ([...field.childNodes].some((part) => part.nodeName !== "UL" && part.textContent.toLowerCase().includes(wanted)))
          field.classList.add("hit");
    }
  };
  input.addEventListener("input", () => {
    clearTimeout(timer);
    timer = setTimeout(search, 120);
  });
  bar.hidden = false;
}
