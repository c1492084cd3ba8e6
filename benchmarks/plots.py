"""Plots as SVG, for a light page and a dark one: lines with marks, both axes logarithmic."""

import html
import math

WIDTH, HEIGHT = 860, 420
LEFT, RIGHT, TOP, BOTTOM = 76, 300, 48, 56  # what the axes leave free; the legend stands at the right

LIGHT = ("#0b62c4", "#b3541e", "#2c7a3f", "#8a3fa0", "#946a00", "#c02a4e", "#5b6b7f")
DARK = ("#6db3ff", "#ffa163", "#7fd391", "#d69aee", "#e6c04d", "#ff8fa8", "#a9b8c8")
MARKS = (
    '<circle cx="{x}" cy="{y}" r="4.5"/>',
    '<rect x="{x0}" y="{y0}" width="8" height="8"/>',
    '<path d="M{x} {y0}l5 9h-10z"/>',
    '<path d="M{x} {y0}l5 5-5 5-5-5z"/>',
    '<path d="M{x0} {y0}l8 8m0-8l-8 8" class="open"/>',
    '<path d="M{x} {y1}l5-9h-10z"/>',
    '<path d="M{x0} {y}h9m-4.5-4.5v9" class="open"/>',
)


def style():
    def colours(names):
        return "".join(f".s{i} {{ stroke: {name}; fill: {name}; }} " for i, name in enumerate(names))

    return f"""<style>
  .page {{ fill: #ffffff; }} .text {{ fill: #1c2733; }} .note {{ fill: #5b6b7f; }}
  .grid {{ stroke: #d5dce4; stroke-width: 1; }} .axis {{ stroke: #5b6b7f; stroke-width: 1.5; }}
  {colours(LIGHT)}
  .line {{ fill: none; stroke-width: 2; }} .ours {{ stroke-width: 4; }} .open {{ fill: none; stroke-width: 2; }}
  .limit {{ stroke-dasharray: 3 4; }}
  @media (prefers-color-scheme: dark) {{
    .page {{ fill: #12171d; }} .text {{ fill: #e8eef5; }} .note {{ fill: #a9b8c8; }}
    .grid {{ stroke: #2b3743; }} .axis {{ stroke: #8fa1b5; }}
    {colours(DARK)}
    .line {{ fill: none; }}
  }}
</style>"""


def mark(index, x, y):
    shape = MARKS[index % len(MARKS)].format(x=f"{x:.1f}", y=f"{y:.1f}", x0=f"{x - 4:.1f}", y0=f"{y - 4:.1f}",
                                             y1=f"{y + 4:.1f}")
    return f'<g class="s{index % len(MARKS)}">{shape}</g>'


def decades(low, high):
    """The 1, 2 and 5 of the decades that reach from below `low` to above `high`."""
    steps = [factor * 10.0 ** power for power in range(-3, 13) for factor in (1, 2, 5)]
    first = max(i for i, step in enumerate(steps) if step <= low)
    last = min(i for i, step in enumerate(steps) if step >= high)
    return steps[first:last + 1]


def label(value):
    return f"{value:,.0f}" if value >= 1 else f"{value:g}"


def plot(title, x_title, y_title, series):
    """`series` is {name: [(x, y), ...]}; an x may be 0. The first is drawn boldest, those named limit are dotted."""
    xs = sorted({x for points in series.values() for x, _ in points})
    ys = [y for points in series.values() for _, y in points]
    ticks = decades(min(ys), max(ys))
    shift = 1 if xs[0] == 0 else 0  # zero has no logarithm

    def place_x(x):
        low, high = math.log(xs[0] + shift), math.log(xs[-1] + shift)
        return LEFT + (WIDTH - LEFT - RIGHT) * (math.log(x + shift) - low) / (high - low or 1)

    def place_y(y):
        low, high = math.log(ticks[0]), math.log(ticks[-1])
        return HEIGHT - BOTTOM - (HEIGHT - TOP - BOTTOM) * (math.log(y) - low) / (high - low or 1)

    out = [f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {WIDTH} {HEIGHT}" width="{WIDTH}" '
           f'height="{HEIGHT}" role="img" aria-labelledby="title" font-size="13" '
           'font-family="system-ui, \'Segoe UI\', \'DejaVu Sans\', sans-serif">',
           f'<title id="title">{html.escape(title)}</title>', style(),
           f'<rect class="page" width="{WIDTH}" height="{HEIGHT}"/>',
           f'<text class="text" x="{LEFT}" y="26" font-size="16" font-weight="600">{html.escape(title)}</text>']
    for tick in ticks:
        y = place_y(tick)
        out.append(f'<path class="grid" d="M{LEFT} {y:.1f}H{WIDTH - RIGHT}"/>'
                   f'<text class="note" x="{LEFT - 8}" y="{y + 4:.1f}" text-anchor="end">{label(tick)}</text>')
    for x in xs:
        out.append(f'<path class="grid" d="M{place_x(x):.1f} {TOP}V{HEIGHT - BOTTOM}"/>'
                   f'<text class="note" x="{place_x(x):.1f}" y="{HEIGHT - BOTTOM + 18}" text-anchor="middle">'
                   f'{label(x) if x else 0}</text>')
    middle = TOP + (HEIGHT - TOP - BOTTOM) / 2
    out.append(f'<path class="axis" fill="none" d="M{LEFT} {TOP}V{HEIGHT - BOTTOM}H{WIDTH - RIGHT}"/>'
               f'<text class="text" x="{(LEFT + WIDTH - RIGHT) / 2}" y="{HEIGHT - 14}" text-anchor="middle">'
               f'{html.escape(x_title)}</text><text class="text" transform="translate(18 {middle}) rotate(-90)" '
               f'text-anchor="middle">{html.escape(y_title)}</text>')
    for index, (name, points) in enumerate(series.items()):
        kind = f"s{index % len(MARKS)} line" + (" ours" if index == 0 else "") \
            + (" limit" if name.startswith("limit") else "")
        way = "L".join(f"{place_x(x):.1f} {place_y(y):.1f}" for x, y in points)
        legend = TOP + 12 + 24 * index
        marks = "".join(mark(index, place_x(x), place_y(y)) for x, y in points)
        out.append(f'<path class="{kind}" d="M{way}"/>{marks}'
                   f'<path class="{kind}" d="M{WIDTH - RIGHT + 20} {legend}h30"/>'
                   + mark(index, WIDTH - RIGHT + 35, legend)
                   + f'<text class="text" x="{WIDTH - RIGHT + 58}" y="{legend + 4}">{html.escape(name)}</text>')
    return "\n".join([*out, "</svg>", ""])
