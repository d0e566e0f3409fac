"""Plots as SVG: bars side by side, and lines over a logarithmic axis.

SPDX-License-Identifier: Apache-2.0
"""
import math
from xml.sax.saxutils import escape

COLOURS = ["#2f6f9f", "#d08a2e", "#6b9f4b", "#9a5fa8"]
WIDTH = 760


def _text(x, y, words, anchor="start", size=12):
    return (f'<text x="{x:.1f}" y="{y:.1f}" text-anchor="{anchor}" font-size="{size}">{escape(str(words))}</text>')


def _page(height, parts):
    head = (f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {WIDTH} {height}" '
            f'font-family="sans-serif" fill="#333">')
    return "\n".join([head, f'<rect width="{WIDTH}" height="{height}" fill="white"/>', *parts, "</svg>", ""])


def _legend(series, y):
    parts = []
    x = 20
    for colour, name in zip(COLOURS, series):
        parts.append(f'<rect x="{x}" y="{y - 10}" width="12" height="12" fill="{colour}"/>')
        parts.append(_text(x + 18, y, name))
        x += 40 + 8 * len(name)
    return parts


def bars(title, unit, series, rows):
    """Horizontal bars: rows of (label, a value for each of the series)."""
    left, thick, gap = 230, 14, 12
    room = WIDTH - left - 80
    most = max(value for _, values in rows for value in values)
    parts = [_text(20, 24, f"{title}, {unit}", size=15)]
    if len(series) > 1:
        parts += _legend(series, 46)
    y = 60
    for label, values in rows:
        parts.append(_text(left - 10, y + thick * len(values) / 2 + 4, label, "end"))
        for colour, value in zip(COLOURS, values):
            long = room * value / most
            parts.append(f'<rect x="{left}" y="{y}" width="{long:.1f}" height="{thick - 2}" fill="{colour}"/>')
            parts.append(_text(left + long + 6, y + thick - 4, f"{value:.4g}", size=11))
            y += thick
        y += gap
    return _page(y + 6, parts)


def tick_step(most):
    """The distance of at least four ticks up to a value: 1, 2 or 5, times a power of ten."""
    power = 10 ** math.floor(math.log10(most / 4))
    return max(factor * power for factor in (1, 2, 5) if factor * power <= most / 4)


def lines(title, x_name, y_name, series):
    """Lines over a logarithmic x axis: series of (name, [(x, y), ...]); the y axis begins at 0."""
    left, right, top, bottom = 90, 60, 60, 330
    xs = [x for _, points in series for x, _ in points]
    step = tick_step(max(y for _, points in series for _, y in points))
    ticks = math.ceil(max(y for _, points in series for _, y in points) / step)
    most = ticks * step
    low, high = math.log10(min(xs)), math.log10(max(xs))
    span = high - low or 1

    def at(x, y):
        return (left + (WIDTH - left - right) * (math.log10(x) - low) / span, bottom - (bottom - top) * y / most)

    parts = [_text(20, 24, title, size=15), *_legend([name for name, _ in series], 46)]
    for i in range(ticks + 1):
        value = step * i
        _, y = at(min(xs), value)
        parts.append(f'<line x1="{left}" x2="{WIDTH - right}" y1="{y:.1f}" y2="{y:.1f}" stroke="#ddd"/>')
        parts.append(_text(left - 8, y + 4, f"{value:g}", "end", 11))
    for x in sorted(set(xs)):
        parts.append(_text(at(x, 0)[0], bottom + 18, f"{x:,}".replace(",", " "), "middle", 11))
    parts.append(_text((left + WIDTH - right) / 2, bottom + 38, x_name, "middle"))
    parts.append(f'<text x="24" y="{(top + bottom) / 2}" font-size="12" text-anchor="middle" '
                 f'transform="rotate(-90 24 {(top + bottom) / 2})">{escape(y_name)}</text>')
    for colour, (_, points) in zip(COLOURS, series):
        path = " ".join(f"{x:.1f},{y:.1f}" for x, y in (at(*point) for point in points))
        parts.append(f'<polyline points="{path}" fill="none" stroke="{colour}" stroke-width="2"/>')
        for x, y in (at(*point) for point in points):
            parts.append(f'<circle cx="{x:.1f}" cy="{y:.1f}" r="3" fill="{colour}"/>')
    return _page(bottom + 50, parts)
