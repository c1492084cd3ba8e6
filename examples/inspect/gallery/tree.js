// Who inherits from whom, as a tree that is walked with the arrow keys.

/** Lines do not move to the right for ever. */
const DEEPEST_INDENT = 10;

/** The nodes from top to bottom: categories, and in them styles, each before those that inherit from it. */
const treeNodes = [];
const nodeOfStyle = new Map();
const roots = [];

function addNode(node) {
  node.children = [];
  node.isOpen = true;
  node.level = node.parent === null ? 1 : node.parent.level + 1;
  node.siblings = node.parent === null ? roots : node.parent.children;
  node.position = node.siblings.push(node);
  treeNodes.push(node);
  if (node.style !== undefined) {
    nodeOfStyle.set(node.style, node);
  }
  return node;
}

/** A style and all that inherit from it; a loop, since a chain may be as long as a sheet. */
function addStyles(root, parent) {
  const open = [[root, parent]];
  while (open.length > 0) {
    const [style, above] = open.pop();
    if (nodeOfStyle.has(style)) {
      continue; // a closed chain
    }
    const node = addNode({ style, parent: above });
    for (const heir of [...heirs[style]].reverse()) {
      open.push([heir, node]);
    }
  }
}

/** The styles that end in one without a parent; all others are in closed chains, or inherit from one. */
const rooted = new Set(styles.keys());
for (const style of rooted) {
  if (styles[style].parent !== undefined) {
    rooted.delete(style);
  }
}
for (const style of rooted) {
  heirs[style].forEach((heir) => rooted.add(heir)); // walked to as well
}

categories.forEach((category, number) => {
  const members = [...styles.keys()].filter((style) => styles[style].category === number);
  const tops = members.filter((style) => styles[style].parent === undefined);
  const closed = members.filter((style) => !rooted.has(style));
  if (tops.length + closed.length > 0) {
    const node = addNode({ category: number, parent: null });
    [...tops, ...closed].forEach((style) => addStyles(style, node));
  }
});

const tree = document.getElementById("tree");
let focusedNode = null;

function labelOf(node) {
  if (node.style === undefined) {
    return [categories[node.category].label];
  }
  const above = node.parent.style === undefined ? node.parent.category : styles[node.parent.style].category;
  const category = styles[node.style].category;
  const parts = [nameOf(node.style)];
  if (category !== above) {
    parts.push(make("span", { class: "note" }, ` ${categories[category].label}`));
  }
  if (node.parent.style === undefined && styles[node.style].parent !== undefined) {
    parts.push(make("span", { class: "note" }, " in a closed chain"));
  }
  return parts;
}

function buildTree() {
  for (const node of treeNodes) {
    node.element = make("div", {
      role: "treeitem",
      tabindex: "-1",
      class: node.style === undefined ? "category" : "style",
      "aria-level": node.level,
      "aria-setsize": node.siblings.length,
      "aria-posinset": node.position,
      "aria-expanded": node.children.length > 0 ? "true" : undefined,
      "aria-selected": node.style === undefined ? undefined : "false",
    }, make("span", { class: "twisty", "aria-hidden": "true" }), make("span", { class: "name" }, ...labelOf(node)));
    node.element.style.setProperty("--level", Math.min(node.level - 1, DEEPEST_INDENT));
    node.element.node = node;
  }
  tree.replaceChildren(...treeNodes.map((node) => node.element));
  if (treeNodes.length > 0) {
    setTreeFocus(treeNodes[0], false);
  }
}

/** Shows what is open, and what the search has found with what that inherits from. */
function updateTree(matches) {
  const wanted = new Set();
  for (const style of matches ?? []) {
    for (let node = nodeOfStyle.get(style); node && !wanted.has(node); node = node.parent) {
      wanted.add(node);
    }
  }
  for (const node of treeNodes) {
    const isSearched = matches !== null;
    node.isShown = isSearched ? wanted.has(node) : node.parent === null || (node.parent.isShown && node.parent.isOpen);
    node.element.hidden = !node.isShown;
    node.element.classList.toggle("context", isSearched && node.style !== undefined && !matches.has(node.style));
    if (node.children.length > 0) {
      node.element.setAttribute("aria-expanded", String(isSearched || node.isOpen));
    }
  }
  if (focusedNode !== null && !focusedNode.isShown) {
    const shown = treeNodes.find((node) => node.isShown);
    if (shown !== undefined) {
      setTreeFocus(shown, false);
    }
  }
}

function setTreeFocus(node, takesFocus = true) {
  focusedNode?.element.setAttribute("tabindex", "-1");
  focusedNode = node;
  node.element.setAttribute("tabindex", "0");
  if (takesFocus) {
    node.element.focus();
  }
}

/** Opens what a style is inside of, and marks it. */
function markInTree(style, previous) {
  nodeOfStyle.get(previous)?.element.setAttribute("aria-selected", "false");
  const node = nodeOfStyle.get(style);
  let wasClosed = false;
  for (let above = node.parent; above !== null; above = above.parent) {
    wasClosed ||= !above.isOpen;
    above.isOpen = true;
  }
  if (wasClosed) {
    updateTree(currentMatches);
  }
  node.element.setAttribute("aria-selected", "true");
  if (node.isShown) {
    setTreeFocus(node, false);
    scrollInto(node.element);
  }
}

function toggle(node, isOpen) {
  node.isOpen = isOpen;
  updateTree(currentMatches);
}

function goTo(node) {
  if (node === undefined || node === null) {
    return;
  }
  setTreeFocus(node);
  if (node.style !== undefined) {
    select(node.style, "tree");
  }
}

/** The next node that begins with what is typed, from the focused one on and around. */
function typeAhead(character) {
  const shown = treeNodes.filter((node) => node.isShown);
  const start = shown.indexOf(focusedNode) + 1;
  const wanted = character.toLocaleLowerCase();
  const textOfNode = (node) => (node.style === undefined ? categories[node.category].label : styles[node.style].name);
  goTo([...shown.slice(start), ...shown.slice(0, start)]
    .find((node) => textOfNode(node).toLocaleLowerCase().startsWith(wanted)));
}

tree.addEventListener("keydown", (event) => {
  if (event.ctrlKey || event.metaKey || event.altKey || focusedNode === null) {
    return;
  }
  const shown = treeNodes.filter((node) => node.isShown);
  const at = shown.indexOf(focusedNode);
  const isSearched = currentMatches !== null;
  const keys = {
    ArrowDown: () => goTo(shown[at + 1]),
    ArrowUp: () => goTo(shown[at - 1]),
    Home: () => goTo(shown[0]),
    End: () => goTo(shown.at(-1)),
    ArrowRight: () => {
      if (focusedNode.children.length > 0 && !focusedNode.isOpen && !isSearched) {
        toggle(focusedNode, true);
      } else {
        goTo(focusedNode.children.find((node) => node.isShown));
      }
    },
    ArrowLeft: () => {
      if (focusedNode.children.length > 0 && focusedNode.isOpen && !isSearched) {
        toggle(focusedNode, false);
      } else {
        goTo(focusedNode.parent);
      }
    },
    Enter: () => (focusedNode.style === undefined ? toggle(focusedNode, !focusedNode.isOpen) : goTo(focusedNode)),
    " ": () => keys.Enter(),
    "*": () => {
      focusedNode.siblings.forEach((node) => (node.isOpen = true));
      updateTree(currentMatches);
    },
  };
  if (keys[event.key]) {
    keys[event.key]();
    event.preventDefault();
  } else if (event.key.length === 1 && event.key !== "/") {
    typeAhead(event.key);
  }
});

tree.addEventListener("click", (event) => {
  const node = event.target.closest("[role=treeitem]")?.node;
  if (node === undefined) {
    return;
  }
  if (event.target.closest(".twisty") !== null || node.style === undefined) {
    setTreeFocus(node);
    toggle(node, !node.isOpen);
  } else {
    goTo(node);
  }
});
