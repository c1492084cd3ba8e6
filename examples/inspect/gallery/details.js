// The selected style: what it looks like, what it inherits from, and each of its values with where it comes from.

const UNITS = { degree: "°", "%": " %", "": "" };

/** A link to a style. */
function linkTo(style, path = "") {
  const link = make("a", { href: addressOf(style), class: "link" }, nameOf(style));
  if (path !== "") {
    link.append(make("span", { class: "path" }, ` ${path}`));
  }
  return link;
}

/** A value as people read it. */
function valueElement(row, value) {
  if (isPlain(value)) {
    if (value === "") {
      return make("span", { class: "muted" }, "empty");
    }
    const unit = /^[-+.\deE]+$/.test(value) ? (UNITS[row.unit] ?? ` ${row.unit}`) : "";
    const element = make("span", { class: "value" }, make("bdi", {}, value), unit);
    const color = /color$/i.test(row.look ?? "") ? colorOf({ text: value }) : undefined;
    if (color !== undefined) {
      const chip = make("span", { class: "chip", "aria-hidden": "true" });
      chip.style.setProperty("--color", color);
      element.prepend(chip);
    }
    return element;
  }
  if (isList(value)) {
    return make("span", { class: "value" }, counted(value, "element"));
  }
  if (value === null) {
    return make("span", { class: "muted" }, "none");
  }
  return make("span", { class: "muted" }, Array.isArray(value) ? categories[value[0]].label : value.text);
}

/** Where a value stands; the path is told where it is not the end of the one here. */
function placeElement(place, path) {
  switch (place.kind) {
    case "own":
      return make("span", { class: "badge" }, "own");
    case "default":
      return make("span", { class: "muted" }, "default");
    case "outside":
      return make("span", { class: "muted" }, "outside of the sheet");
    default:
      return linkTo(place.style, `.${path}`.endsWith(`.${place.path}`) ? "" : place.path);
  }
}

function hiddenElement(row) {
  const { entries, more } = row.hidden;
  if (entries.length === 0) {
    return "";
  }
  const element = make("div", { class: "overrides" }, "overrides ");
  entries.forEach((entry, index) => {
    element.append(index > 0 ? ", " : "", valueElement(row, entry.value), " (", placeElement(entry.place, row.path), ")");
  });
  if (more > 0) {
    element.append(`, and ${counted(more, "more value")}`);
  }
  return element;
}

/** The rows by what they are inside of: the style's own plain values first, then a group for each style inside. */
function groupsOf(style) {
  const groups = new Map([["", { head: null, rows: [] }]]);
  let defaults = 0;
  for (const row of rowsOf(style)) {
    const point = row.path.lastIndexOf(".");
    const outer = point < 0 ? "" : row.path.slice(0, point);
    if (!groups.has(outer)) {
      groups.set(outer, { head: null, rows: [] }); // an element of a list
    }
    if (isStyle(row.value)) {
      groups.set(row.path, { head: row, rows: [] });
    } else {
      groups.get(outer).rows.push(row);
      defaults += row.isDefault ? 1 : 0;
    }
  }
  return { groups, defaults };
}

function groupHeading(path, head) {
  const cell = make("th", { colspan: 3, scope: "rowgroup" });
  path.split(".").forEach((step, index, steps) => {
    cell.append(make("span", { class: index + 1 < steps.length ? "muted" : "" }, step), index + 1 < steps.length ? " › " : "");
  });
  const parent = head !== null && Array.isArray(head.value) && head.value[1] !== OWN ? placeOf(head.value[1]) : null;
  if (parent !== null) {
    cell.append(make("span", { class: "note" }, " inherits from ", placeElement(parent, "")));
  }
  return make("tr", { class: "group" }, cell);
}

function rowElement(row, outer) {
  const name = row.path.slice(row.path.lastIndexOf(".") + 1);
  const isNowhere = row.place.kind === "outside" && row.value?.text !== undefined;
  const from = make("td", {}, isNowhere ? "" : placeElement(row.place, row.path));
  if (row.through !== undefined && row.through !== outer) { // else the heading says it
    from.append(make("span", { class: "note" }, ` through the parent of ${row.through}`));
  }
  from.append(hiddenElement(row));
  return make("tr", { class: row.place.kind, "data-path": row.path },
    make("th", { scope: "row" }, name), make("td", {}, valueElement(row, row.value)), from);
}

function valueTable(style, groups, showDefaults) {
  const table = make("table", {}, make("caption", {}, "Values of ", nameOf(style)));
  const head = ["Property", "Value", "Comes from"].map((text) => make("th", { scope: "col" }, text));
  table.append(make("thead", {}, make("tr", {}, ...head)));
  for (const [path, group] of groups) {
    const rows = group.rows.filter((row) => showDefaults || !row.isDefault);
    const hasOwnParent = group.head !== null && group.head.place.kind === "own" && group.head.value?.[1] >= 0;
    if (rows.length > 0 || hasOwnParent) {
      const body = make("tbody", {});
      if (path !== "") {
        body.append(groupHeading(path, group.head));
      }
      body.append(...rows.map((row) => rowElement(row, path)));
      table.append(body);
    }
  }
  return table;
}

function listOfLinks(label, list) {
  const most = 24;
  const line = make("p", { class: "relatives" }, make("span", { class: "label" }, label), " ");
  list.slice(0, most).forEach((style, index) => line.append(index > 0 ? ", " : "", linkTo(style)));
  if (list.length > most) {
    line.append(` and ${counted(list.length - most, "more style")}`);
  }
  return line;
}

function relatives(style) {
  const lines = [];
  const ancestors = ancestorsOf(style);
  if (ancestors.length > 0) {
    const isLong = ancestors.length > 12;
    const line = make("p", { class: "relatives" }, make("span", { class: "label" }, "Inherits from"), " ");
    ancestors.slice(0, 12).forEach((ancestor, index) => {
      line.append(index > 0 ? make("span", { class: "muted" }, " ‹ ") : "", linkTo(ancestor));
    });
    line.append(isLong ? ` and ${counted(ancestors.length - 12, "more style")}` : "");
    lines.push(line);
  }
  if (heirs[style].length > 0) {
    lines.push(listOfLinks("Inherited by", heirs[style]));
  }
  if (users[style].length > 0) {
    lines.push(listOfLinks("Used in", users[style]));
  }
  return lines;
}

let showsDefaults = false;

/** Shows a style in the column of the details. */
function showDetails(style) {
  const { name, category, id, original, cut } = styles[style];
  const panel = document.getElementById("details");
  const heading = make("h2", { id: "details-heading" }, make("bdi", {}, name || "(no name)"));
  const kind = make("p", { class: "kind" }, categories[category].label);
  if (original || id) {
    kind.append(" · elsewhere ", make("bdi", {}, original ?? ""), original && id ? " " : "", make("bdi", { class: "path" }, id ?? ""));
  }
  const { groups, defaults } = groupsOf(style);
  let table = valueTable(style, groups, showsDefaults);
  const box = make("input", { type: "checkbox", id: "defaults" });
  box.checked = showsDefaults;
  box.addEventListener("change", () => {
    showsDefaults = box.checked;
    const next = valueTable(style, groups, showsDefaults);
    table.replaceWith(next);
    table = next;
  });
  const preview = make("div", { class: "preview" });
  preview.append(swatchOf(style, true));
  const choice = make("label", { class: "defaults", for: "defaults" }, box, ` Show ${counted(defaults, "default")} too`);
  panel.replaceChildren(heading, kind, preview, ...relatives(style), choice, table);
  if (cut) {
    panel.append(make("p", { class: "note" }, "And more: the style contains itself, or too much to be told."));
  }
  panel.scrollTop = 0;
}
