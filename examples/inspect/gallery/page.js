// The grid of swatches, the search, and what is selected.

const grid = document.getElementById("grid");
const search = document.getElementById("search");
const tiles = []; // by style

/** The styles that the search has found; null when nothing is searched. */
let currentMatches = null;
let selected = null;

function scrollInto(element) {
  element.scrollIntoView({ block: "nearest", inline: "nearest" });
}

const styleOf = (tile) => Number(tile.dataset.style);

/** Swatches are drawn when they are about to be seen. */
const drawer = new IntersectionObserver((entries) => {
  for (const entry of entries) {
    if (entry.isIntersecting) {
      drawer.unobserve(entry.target);
      entry.target.querySelector(".paper").append(swatchOf(styleOf(entry.target)));
    }
  }
}, { rootMargin: "300px" });

function buildTile(style) {
  const { name, parent } = styles[style];
  const tile = make("div", {
    role: "option",
    "data-style": style,
    tabindex: "-1",
    "aria-selected": "false",
    "aria-label": (name || "(no name)") + (parent === undefined ? "" : `, inherits ${styles[parent].name}`),
    class: "tile",
  },
    make("div", { class: "paper" }),
    make("div", { class: "name", dir: "auto", title: name }, name || "(no name)"),
    make("div", { class: "parent" }, ...(parent === undefined ? [] : ["inherits ", nameOf(parent)])));
  tiles[style] = tile;
  drawer.observe(tile);
  return tile;
}

function buildGrid() {
  categories.forEach((category, number) => {
    const members = [...styles.keys()].filter((style) => styles[style].category === number);
    if (members.length === 0) {
      return;
    }
    const heading = make("h2", { id: `category-${number}` }, category.label, make("span", { class: "count" }, ` ${members.length}`));
    const list = make("div", { role: "listbox", class: "tiles", "aria-labelledby": heading.id });
    list.append(...members.map(buildTile));
    list.firstChild.tabIndex = 0;
    grid.append(make("section", { "aria-labelledby": heading.id }, heading, list));
  });
}

/** Makes a tile the one that the Tab key leads to in its list. */
function setTabStop(tile) {
  tile.parentElement.querySelector("[tabindex='0']")?.setAttribute("tabindex", "-1");
  tile.setAttribute("tabindex", "0");
}

/** Selects a style. `source` is where that came from: "tree", "grid", "link" or "start". */
function select(style, source) {
  const previous = selected;
  selected = style;
  if (previous !== null) {
    tiles[previous].setAttribute("aria-selected", "false");
  }
  if (currentMatches !== null && !currentMatches.has(style)) {
    search.value = "";
    find();
  }
  const tile = tiles[style];
  tile.setAttribute("aria-selected", "true");
  setTabStop(tile);
  if (source !== "grid") {
    scrollInto(tile);
  }
  markInTree(style, previous);
  showDetails(style);
  if (source === "link") {
    document.getElementById("details").focus({ preventScroll: true });
  }
  if (source === "tree" || source === "grid") {
    history.replaceState(null, "", addressOf(style));
  }
}

/** The tile that an arrow key leads to from a tile. */
function neighbourOf(tile, key) {
  const shown = [...grid.querySelectorAll("[role=option]")].filter((other) => !other.hidden);
  const at = shown.indexOf(tile);
  const list = shown.filter((other) => other.parentElement === tile.parentElement);
  switch (key) {
    case "ArrowRight":
      return shown[at + 1];
    case "ArrowLeft":
      return shown[at - 1];
    case "Home":
      return list[0];
    case "End":
      return list.at(-1);
    default:
      break;
  }
  if (key !== "ArrowDown" && key !== "ArrowUp") {
    return undefined;
  }
  const box = tile.getBoundingClientRect();
  const isBeyond = (other) => {
    const { top } = other.getBoundingClientRect();
    return key === "ArrowDown" ? top > box.top + 1 : top < box.top - 1;
  };
  const beyond = (key === "ArrowDown" ? shown.slice(at + 1) : shown.slice(0, at).reverse()).filter(isBeyond);
  const row = beyond.filter((other) => Math.abs(other.getBoundingClientRect().top - beyond[0].getBoundingClientRect().top) < 1);
  const distanceOf = (other) => Math.abs(other.getBoundingClientRect().left - box.left);
  return row.sort((one, other) => distanceOf(one) - distanceOf(other))[0];
}

grid.addEventListener("keydown", (event) => {
  const tile = event.target.closest("[role=option]");
  if (tile === null || event.ctrlKey || event.metaKey || event.altKey) {
    return;
  }
  const next = event.key === "Enter" || event.key === " " ? tile : neighbourOf(tile, event.key);
  if (next !== undefined) {
    event.preventDefault();
    select(styleOf(next), "grid");
    next.focus();
    scrollInto(next);
  }
});

grid.addEventListener("click", (event) => {
  const tile = event.target.closest("[role=option]");
  if (tile !== null) {
    select(styleOf(tile), "grid");
    tile.focus({ preventScroll: true });
  }
});

/** Shows the styles whose names or values have what is searched. */
function find() {
  const wanted = search.value.trim().toLocaleLowerCase();
  currentMatches = wanted === "" ? null
    : new Set([...styles.keys()].filter((style) => searchTexts[style].includes(wanted)));
  tiles.forEach((tile, style) => {
    tile.hidden = currentMatches !== null && !currentMatches.has(style);
  });
  for (const section of grid.children) {
    const shown = [...section.querySelectorAll("[role=option]")].filter((tile) => !tile.hidden);
    section.hidden = shown.length === 0;
    section.querySelector(".count").textContent = ` ${shown.length}`;
    if (shown.length > 0 && !shown.some((tile) => tile.tabIndex === 0)) {
      setTabStop(shown[0]);
    }
  }
  updateTree(currentMatches);
  const count = currentMatches?.size ?? styles.length;
  document.getElementById("nothing").hidden = count > 0 || styles.length === 0;
  document.getElementById("found").textContent = currentMatches === null ? "" : `${count} of ${styles.length}`;
}

search.addEventListener("input", find);
search.addEventListener("keydown", (event) => {
  if (event.key === "Escape") {
    search.value = "";
    find();
  } else if (event.key === "ArrowDown" || event.key === "Enter") {
    const first = grid.querySelector("[role=option]:not([hidden])");
    if (first !== null) {
      event.preventDefault();
      select(styleOf(first), "grid");
      first.focus();
      scrollInto(first);
    }
  }
});

document.addEventListener("keydown", (event) => {
  if (event.key === "/" && event.target !== search && !event.ctrlKey && !event.metaKey && !event.altKey) {
    event.preventDefault();
    search.focus();
    search.select();
  }
});

addEventListener("hashchange", () => {
  const style = styleInAddress();
  if (style >= 0 && style !== selected) {
    select(style, "link");
  }
});

document.getElementById("title").append(make("bdi", {}, data.sheet));
document.getElementById("summary").textContent = `${counted(styles.length, "style")}, version ${data.version}`;
buildTree();
buildGrid();
find();
if (styles.length > 0) {
  select(Math.max(styleInAddress(), 0), "start");
} else {
  document.getElementById("details").append(make("h2", { id: "details-heading" }, "No styles"));
}
