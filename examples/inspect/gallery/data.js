// The data of the page, see GalleryData.h, and what can be asked of it.

const data = JSON.parse(document.getElementById("data").textContent);
const { styles, categories, slots, values, places } = data;

const OWN = -1;
const OUTSIDE = -2;
const FIRST_DEFAULT = -3;

/** Where a value comes from: { kind: "own" | "outside" | "default" | "style", ... }. */
function placeOf(number) {
  if (number === OWN) {
    return { kind: "own" };
  }
  if (number === OUTSIDE) {
    return { kind: "outside" };
  }
  if (number <= FIRST_DEFAULT) {
    return { kind: "default", category: FIRST_DEFAULT - number };
  }
  const [style, path] = places[number];
  return { kind: "style", style, path };
}

/** What a style hides with a value, from near to far. */
function hiddenOf(list) {
  const hidden = { entries: [], more: 0 };
  for (let index = 0; list && index < list.length; index += 2) {
    if (index + 1 === list.length) {
      hidden.more = list[index];
    } else {
      hidden.entries.push({ place: placeOf(list[index]), value: values[list[index + 1]] });
    }
  }
  return hidden;
}

/** The effective values of a style, what holds others before them. */
function* rowsOf(style) {
  for (const row of styles[style].rows) {
    const isDefault = typeof row === "number";
    const [path, look, unit, category, defaultValue, tiles] = slots[isDefault ? row : row[0]];
    yield {
      path,
      look,
      unit,
      category,
      tiles: tiles === null ? null : data.tiles[tiles],
      value: values[isDefault ? defaultValue : row[1]],
      place: isDefault ? { kind: "default", category } : placeOf(row[2]),
      hidden: isDefault ? hiddenOf(0) : hiddenOf(row[3]),
      through: isDefault ? undefined : row[4],
      isDefault,
    };
  }
}

const isPlain = (value) => typeof value === "string";
const isList = (value) => typeof value === "number";
const isStyle = (value) => value === null || Array.isArray(value);

/** The styles that inherit from each style. */
const heirs = styles.map(() => []);
styles.forEach((style, index) => {
  if (style.parent !== undefined) {
    heirs[style.parent].push(index);
  }
});

/** The styles from the parent upwards; a chain that is closed ends before it repeats. */
function ancestorsOf(style) {
  const ancestors = [];
  const met = new Set([style]);
  for (let parent = styles[style].parent; parent !== undefined && !met.has(parent); parent = styles[parent].parent) {
    ancestors.push(parent);
    met.add(parent);
  }
  return ancestors;
}

/** The styles with a style inside that inherits from each style. */
const users = (() => {
  const found = styles.map(() => new Set());
  styles.forEach((style, index) => {
    for (const row of style.rows) {
      if (typeof row !== "number" && row[2] === OWN && Array.isArray(values[row[1]]) && values[row[1]][1] >= 0) {
        const parent = places[values[row[1]][1]][0];
        if (parent !== index) {
          found[parent].add(index);
        }
      }
    }
  });
  return found.map((set) => [...set]);
})();

/** What the search looks through: the names of a style, and the plain values that it says itself. */
const searchTexts = styles.map((style) => {
  const texts = [style.name, style.id ?? "", style.original ?? ""];
  for (const row of style.rows) {
    if (typeof row !== "number" && row[2] === OWN && isPlain(values[row[1]])) {
      texts.push(values[row[1]]);
    }
  }
  return texts.join("\n").toLocaleLowerCase();
});

/** An element with attributes and children; texts become text, never markup. */
function make(name, attributes = {}, ...children) {
  const element = document.createElement(name);
  for (const [key, value] of Object.entries(attributes)) {
    if (value !== undefined) {
      element.setAttribute(key, value);
    }
  }
  element.append(...children);
  return element;
}

/** A name of the sheet, which may be written in any direction and does not change that of what is around it. */
function nameOf(style) {
  return make("bdi", {}, styles[style].name || "(no name)");
}

/** What stands behind the address of the page when a style is selected. */
const addressOf = (style) => `#style=${encodeURIComponent(styles[style].name)}`;

/** The style that the address of the page names; -1 for none. */
function styleInAddress() {
  try {
    const name = decodeURIComponent(/^#style=(.*)$/.exec(location.hash)?.[1]);
    return styles.findIndex((style) => style.name === name);
  } catch {
    return -1; // somebody's own signs of percent
  }
}

const counted = (count, noun) => `${count.toLocaleString("en")} ${noun}${count === 1 ? "" : "s"}`;
