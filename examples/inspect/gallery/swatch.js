// Drawing a style. The looks of its properties say what is what, see Looks.h.

const SVG = "http://www.w3.org/2000/svg";
const PIXELS = { mm: 6, cm: 60, m: 6000, in: 152.4, pt: 2.1167, pc: 25.4, px: 1.5 }; // a length is drawn enlarged
const HAIRLINE = 0.75;
const TILE = 18;
const INK = "#33363c";

/** Where in a drawing a style belongs that is only a part of one. */
const HOMES = {
  gradient: "fill.gradient",
  hatch: "fill.hatch",
  stops: "fill.gradient.stops[0]",
  dash: "line.dash",
  arrow: "line.end",
  fonts: "text.fonts[0]",
  tabs: "paragraph.tabs[0]",
};

function draw(name, attributes, parent) {
  const element = document.createElementNS(SVG, name);
  for (const [key, value] of Object.entries(attributes)) {
    element.setAttribute(key, value);
  }
  parent?.append(element);
  return element;
}

/** The values of a style by their looks: { fill: { color: { text, unit, tiles }, gradient: { ... } }, ... }. */
function modelOf(style) {
  const model = Object.create(null);
  const look = categories[styles[style].category].look;
  const home = look === "" ? "" : (HOMES[look] ?? look);
  if (look === "" && styles[style].category !== 0) {
    return model;
  }
  if (home !== "") {
    enter(model, home);
  }
  for (const row of rowsOf(style)) {
    if (row.look === null) {
      continue;
    }
    const [, outer, name] = /^(?:(.*)\.)?([^.]*)$/.exec(row.look);
    const node = enter(model, [home, outer].filter(Boolean).join("."));
    if (node === null) {
      continue; // in a style that is not there
    }
    if (isPlain(row.value)) {
      node[name] = { text: row.value, unit: row.unit, tiles: row.tiles, isDefault: row.isDefault };
    } else if (isStyle(row.value)) {
      node[name] = row.value === null ? null : Object.create(null);
    } else if (isList(row.value)) {
      node[name] = Array.from({ length: Math.min(row.value, 64) }, () => Object.create(null));
    }
  }
  return model;
}

/** The part of a model at a path, made where it is missing; null where the style says that there is none. */
function enter(model, path) {
  let node = model;
  for (const step of path === "" ? [] : path.split(".")) {
    const [, name, index] = /^([^[]*)(?:\[(\d+)\])?$/.exec(step);
    node[name] ??= node[name] === null ? null : index === undefined ? Object.create(null) : [];
    node = node[name];
    if (node !== null && index !== undefined) {
      if (Number(index) >= 64) {
        return null;
      }
      node = node[index] ??= Object.create(null);
    }
    if (node === null || typeof node !== "object") {
      return null;
    }
  }
  return node;
}

const textOf = (value, otherwise = "") => (value === undefined || value === null ? otherwise : value.text);

function numberOf(value, otherwise) {
  const number = parseFloat(textOf(value));
  if (!Number.isFinite(number)) {
    return otherwise;
  }
  return value.unit === "%" || /%\s*$/.test(value.text) ? number / 100 : number;
}

/** A length in pixels of the swatch. The unit stands in the text or in the schema; "%" is of `whole`. */
function lengthOf(value, otherwise, whole = 1) {
  const [, digits, unit] = /^\s*([-+.\deE]+)\s*([a-z%]*)\s*$/i.exec(textOf(value)) ?? [];
  const number = parseFloat(digits);
  if (!Number.isFinite(number)) {
    return otherwise;
  }
  const factor = unit || value.unit;
  return factor === "%" ? (number / 100) * whole : number * (PIXELS[factor] ?? (factor === "" ? whole : 1));
}

/** Only what is a colour and nothing else: a paint could fetch something. */
function colorOf(value, otherwise) {
  const text = textOf(value).trim();
  return text !== "" && CSS.supports("color", text) && !/^(currentcolor|inherit|initial|unset|revert.*)$/i.test(text) &&
    !text.includes("(--")
    ? text
    : otherwise;
}

const isOn = (value) => !["", "0", "false", "none", "hidden", "no", "normal"].includes(textOf(value).toLowerCase());
const oneOf = (value, words, otherwise) => (words.includes(textOf(value)) ? textOf(value) : otherwise);
const clamp = (number, least, most) => Math.min(Math.max(number, least), most);

let lastId = 0;

/** Puts a definition into the drawing and gives what refers to it. */
function define(svg, name, attributes) {
  const id = `paint-${++lastId}`;
  const definitions = svg.querySelector("defs") ?? svg.insertBefore(draw("defs", {}), svg.firstChild);
  return [draw(name, { id, ...attributes }, definitions), `url(#${id})`];
}

/** The stops of a gradient: { offset, color, opacity }, none where it has no colours. */
function stopsOf(gradient) {
  if (gradient.stops?.length > 0) {
    return gradient.stops
      .map((stop) => ({
        offset: clamp(numberOf(stop.position, 0), 0, 1),
        color: colorOf(stop.color, "#000000"),
        opacity: clamp(numberOf(stop.opacity, 1), 0, 1),
      }))
      .sort((one, other) => one.offset - other.offset);
  }
  const start = colorOf(gradient.startColor);
  const end = colorOf(gradient.endColor);
  if (start === undefined || end === undefined) {
    return [];
  }
  const border = clamp(numberOf(gradient.border, 0), 0, 1);
  const inner = { offset: border, color: start, opacity: 1 };
  const outer = { offset: 1, color: end, opacity: 1 };
  return textOf(gradient.kind) === "axial"
    ? [{ ...outer, offset: 0 }, { ...inner, offset: 0.5 }, outer]
    : [inner, outer];
}

function gradientPaint(svg, gradient) {
  const stops = stopsOf(gradient);
  if (stops.length === 0) {
    return undefined;
  }
  const isLinear = ["", "linear", "axial"].includes(textOf(gradient.kind));
  const x = numberOf(gradient.x, 0.5);
  const y = numberOf(gradient.y, 0.5);
  const [element, paint] = define(
    svg,
    isLinear ? "linearGradient" : "radialGradient",
    isLinear
      ? { gradientTransform: `rotate(${numberOf(gradient.angle, 0)} 0.5 0.5)` }
      : { cx: x, cy: y, r: 0.6, fx: x, fy: y },
  );
  for (const stop of stops) {
    draw("stop", { offset: stop.offset, "stop-color": stop.color, "stop-opacity": stop.opacity }, element);
  }
  return paint;
}

/** Lines for a pattern that nobody has told the look of, different for different numbers. */
function unknownTile(text) {
  let hash = 7;
  for (const character of text) {
    hash = (hash * 31 + character.codePointAt(0)) % 997;
  }
  return ["M0 4h8", "M4 0v8", "M0 8L8 0", "M0 0L8 8", "M0 4h8M4 0v8", "M0 8L8 0M0 0L8 8"][hash % 6];
}

function patternPaint(svg, fill, ground) {
  const hatch = fill.hatch;
  const isHatch = hatch && (textOf(fill.mode) === "hatch" || (fill.mode === undefined && isOn(hatch.distance)));
  const pattern = fill.pattern;
  const path = isHatch ? "M0 4h8" : pattern && (pattern.tiles?.[pattern.text] ?? (pattern.isDefault ? "" : unknownTile(pattern.text)));
  if (!path) {
    return undefined;
  }
  const source = isHatch ? hatch : fill;
  const scale = (value) => (clamp(Math.abs(numberOf(value, 1)) || 1, 0.1, 20) * TILE) / 8;
  const distance = isHatch ? clamp(lengthOf(hatch.distance, TILE), 2, 80) / 8 : 0;
  const [xScale, yScale] = isHatch ? [distance, distance] : [scale(fill.xScale), scale(fill.yScale)];
  const [element, paint] = define(svg, "pattern", {
    width: 8,
    height: 8,
    patternUnits: "userSpaceOnUse",
    patternTransform:
      `rotate(${numberOf(source.angle, 0)}) skewX(${clamp(numberOf(source.skew, 0), -85, 85)}) scale(${xScale} ${yScale})`,
  });
  draw("path", {
    d: path,
    fill: "none",
    stroke: isHatch ? colorOf(hatch.color, INK) : isDark(ground) ? "#ffffff" : "#000000",
    "stroke-opacity": isHatch ? 1 : 0.5,
    "stroke-width": clamp(8 / TILE / Math.sqrt((xScale * yScale * 64) / TILE / TILE), 0.2, 3),
    "stroke-linecap": "round",
  }, element);
  return paint;
}

/** Whether white is better to be seen on a colour than black. */
function isDark(color) {
  const canvas = (isDark.canvas ??= document.createElement("canvas").getContext("2d"));
  canvas.fillStyle = "#ffffff";
  canvas.fillStyle = color;
  const [, red, green, blue] = /^#(..)(..)(..)/.exec(canvas.fillStyle) ?? [0, "ff", "ff", "ff"];
  return parseInt(red, 16) * 0.3 + parseInt(green, 16) * 0.59 + parseInt(blue, 16) * 0.11 < 110;
}

/** The paints of a fill, one over the other. */
function paintsOf(svg, fill) {
  if (!fill || textOf(fill.mode) === "none" || numberOf(fill.opacity, 1) <= 0) {
    return [];
  }
  const mode = textOf(fill.mode);
  const ground = colorOf(fill.color);
  const gradient = fill.gradient && (fill.mode === undefined || mode === "gradient") ? gradientPaint(svg, fill.gradient) : undefined;
  return [gradient ?? ground, patternPaint(svg, fill, ground ?? "#ffffff")].filter((paint) => paint !== undefined);
}

function dashesOf(dash, width, cap) {
  const unit = Math.max(width, 1);
  let dashes = [];
  if (isOn(dash.pattern)) {
    dashes = textOf(dash.pattern).trim().split(/[\s,]+/).map((text) => lengthOf({ text, unit: dash.pattern.unit }, NaN, unit));
  } else if (dash.gap !== undefined) {
    const gap = lengthOf(dash.gap, unit, unit);
    for (const [count, length] of [[dash.count1, dash.length1], [dash.count2, dash.length2]]) {
      for (let dot = 0; dot < clamp(numberOf(count, 0), 0, 8); ++dot) {
        dashes.push(lengthOf(length, unit, unit), gap);
      }
    }
  }
  if (dashes.length === 0 || dashes.some((length) => !(length >= 0)) || dashes.every((length) => length === 0)) {
    return {};
  }
  // A dot with flat ends would have nothing to be seen.
  const seen = dashes.map((length, index) => (index % 2 === 0 && cap === "butt" ? Math.max(length, unit) : length));
  return { "stroke-dasharray": seen.join(" "), "stroke-dashoffset": lengthOf(dash.phase, 0) };
}

/** The attributes of a line; undefined for none. */
function strokeOf(line) {
  if (!line || textOf(line.mode) === "none") {
    return undefined;
  }
  const given = lengthOf(line.width, 3);
  if (given <= 0 && line.mode === undefined) {
    return undefined;
  }
  const width = clamp(given, HAIRLINE, 24);
  const cap = oneOf(line.cap, ["butt", "round", "square"], "butt");
  const isDashed = line.dash && (line.mode === undefined || textOf(line.mode) === "dash");
  return {
    stroke: colorOf(line.color, INK),
    "stroke-width": width,
    "stroke-opacity": clamp(numberOf(line.opacity, 1), 0, 1),
    "stroke-linejoin": oneOf(line.join, ["miter", "round", "bevel"], "miter"),
    "stroke-linecap": cap,
    ...(isDashed ? dashesOf(line.dash, width, cap) : {}),
  };
}

/** The shapes of arrowheads that have a name: the tip is at the origin and points up, the width is 2. */
const ARROWS = {
  triangle: { path: "M0 0L1 2.2H-1Z", depth: 2.2 },
  arrow: { path: "M0 0L1 2.2L0 1.6L-1 2.2Z", depth: 1.6 },
  circle: { path: "M0 0A1 1 0 0 1 0 2A1 1 0 0 1 0 0Z", depth: 2 },
  diamond: { path: "M0 0L1 1.2L0 2.4L-1 1.2Z", depth: 2.4 },
  square: { path: "M-1 0H1V2H-1Z", depth: 2 },
  tick: { path: "M-1 0.9L0.8 -0.9L1 -0.7L-0.8 1.1Z", depth: 0 },
};

const hasArrow = (arrow) => Boolean(arrow && (isOn(arrow.path) || isOn(arrow.shape)));

/** The head of a line whose tip is at the origin and points up; `depth` is how far it reaches back. */
function arrowHead(arrow, width, stroke) {
  if (!hasArrow(arrow)) {
    return { depth: 0 };
  }
  const size = clamp(width || numberOf(arrow.size, 1) * (5 + 2 * stroke["stroke-width"]), 5, 44);
  const box = textOf(arrow.box).trim().split(/[\s,]+/).map(Number);
  if (isOn(arrow.path) && box.length === 4 && box.every(Number.isFinite) && box[2] > 0 && box[3] > 0) {
    const scale = size / Math.max(box[2], box[3] * 0.6);
    const transform = `scale(${scale}) translate(${-box[0] - box[2] / 2} ${-box[1]})`;
    return { path: arrow.path.text, transform, depth: box[3] * scale };
  }
  const shape = ARROWS[textOf(arrow.shape)] ?? ARROWS.arrow;
  return { path: shape.path, transform: `scale(${size / 2})`, depth: (shape.depth * size) / 2 };
}

function drawLine(svg, line, y, [left, right]) {
  const stroke = strokeOf(line);
  if (stroke === undefined) {
    return;
  }
  const isAlone = line.width === undefined; // a head without a line around it
  const start = arrowHead(line.start, lengthOf(line.startWidth), stroke);
  const end = arrowHead(line.end, isAlone ? 26 : lengthOf(line.endWidth), stroke);
  draw("path", { d: `M${left + start.depth * 0.95} ${y}H${right - end.depth * 0.95}`, fill: "none", ...stroke }, svg);
  for (const [head, x, turn] of [[start, left, -90], [end, right, 90]]) {
    if (head.path !== undefined) {
      draw("path", {
        d: head.path,
        fill: stroke.stroke,
        "fill-rule": "evenodd",
        transform: `translate(${x} ${y}) rotate(${turn}) ${head.transform}`,
      }, svg);
    }
  }
}

function drawArea(svg, model, area) {
  const paints = paintsOf(svg, model.fill);
  const stroke = strokeOf(model.line);
  const opacity = clamp(numberOf(model.fill?.opacity, 1), 0, 1);
  const shadow = model.shadow;
  if (shadow && isOn(shadow.visible) && (paints.length > 0 || stroke)) {
    const [filter, blurred] = define(svg, "filter", { x: "-30%", y: "-30%", width: "160%", height: "160%" });
    draw("feGaussianBlur", { stdDeviation: clamp(lengthOf(shadow.blur, 0) / 2, 0, 12) }, filter);
    draw("rect", {
      ...area,
      x: area.x + clamp(lengthOf(shadow.xOffset, 3), -14, 14),
      y: area.y + clamp(lengthOf(shadow.yOffset, 3), -14, 14),
      fill: colorOf(shadow.color, "#00000060"),
      filter: blurred,
    }, svg);
  }
  const outline = () => stroke && draw("rect", { ...area, fill: "none", ...stroke }, svg);
  const isBehind = isOn(model.line?.behind);
  if (isBehind) {
    outline();
  }
  for (const paint of paints) {
    draw("rect", { ...area, fill: paint, "fill-opacity": opacity }, svg);
  }
  if (!isBehind) {
    outline();
  }
  if (paints.length === 0 && !stroke) {
    draw("rect", { ...area, fill: "none", stroke: "#b9b6ae", "stroke-dasharray": "1 3" }, svg);
  }
}

function drawText(svg, model, area, lines) {
  const { text, paragraph } = model;
  if (!text) {
    return;
  }
  const longest = Math.max(...lines.map((line) => line.length));
  const widest = (area.width - 16) / (longest * 0.68); // about what fits
  const size = clamp(lengthOf(text.size, 22, 25), 5, Math.min(area.height * 0.72, widest));
  const align = oneOf(paragraph?.align, ["start", "center", "end"], lines.length > 1 || paragraph?.align ? "start" : "center");
  const x = { start: area.x + 8, center: area.x + area.width / 2, end: area.x + area.width - 8 }[align];
  const spacing = size * clamp(numberOf(paragraph?.lineSpacing, 1.2) || 1.2, 0.5, 3);
  const top = area.y + area.height / 2 + size * 0.35 - (spacing * (lines.length - 1)) / 2;
  const element = draw("text", {
    "font-size": size,
    "font-weight": oneOf(text.weight, ["bold", "bolder", "lighter"], String(clamp(numberOf(text.weight, 400), 1, 1000))),
    "font-style": isOn(text.italic) ? "italic" : "normal",
    "letter-spacing": clamp((numberOf(text.tracking, 0) / 1000) * size, -20, 20),
    "text-decoration": [isOn(text.underline) ? "underline" : "", isOn(text.strike) ? "line-through" : ""].join(" ").trim() || "none",
    "text-anchor": { start: "start", center: "middle", end: "end" }[align],
  }, svg);
  const family = textOf(text.font) || textOf(text.fonts?.find((font) => font && isOn(font.font))?.font);
  if (family !== "") {
    element.style.fontFamily = `${JSON.stringify(family)}, ${/serif|roman|times|georgia/i.test(family) && !/sans/i.test(family) ? "serif" : "sans-serif"}`;
  }
  const ink = text.fill ? paintsOf(svg, text.fill)[0] : undefined;
  element.setAttribute("fill", ink ?? colorOf(text.color, "#16181c"));
  lines.forEach((line, index) => {
    const indent = index === 0 && align === "start" ? clamp(lengthOf(paragraph?.indent, 0), -30, 60) : 0;
    draw("tspan", { x: x + indent, y: top + index * spacing }, element).textContent = line;
  });
}

/** A drawing of a style: small for the grid, large for the details. */
function swatchOf(style, isLarge = false) {
  const [width, height] = isLarge ? [336, 190] : [168, 108];
  const svg = draw("svg", { viewBox: `0 0 ${width} ${height}`, "aria-hidden": "true", focusable: "false" });
  const model = modelOf(style);
  const margin = isLarge ? 30 : 20;
  const area = { x: margin, y: margin - 2, width: width - 2 * margin, height: height - 2 * margin + 4 };
  const hasArrows = model.line && (hasArrow(model.line.start) || hasArrow(model.line.end));
  if (model.fill) {
    if (hasArrows) {
      area.height -= 22;
      drawLine(svg, model.line, height - margin + 2, [margin, width - margin]);
    }
    drawArea(svg, model, area);
  } else if (model.line) {
    drawLine(svg, model.line, height / 2, [margin, width - margin]);
  }
  drawText(svg, model, area, isLarge ? ["The quick brown fox", "jumps over 13 dogs"] : ["Ag"]);
  if (svg.childElementCount === 0) {
    draw("path", { d: `M${width / 2 - 12} ${height / 2}h24`, stroke: "#b9b6ae", "stroke-width": 2 }, svg);
  }
  return svg;
}
