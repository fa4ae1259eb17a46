"""The pictures of the benchmarks' documentation, as SVG."""

import math

from figures import LINES, seconds, time


def text(x, y, content, anchor="middle", size=12):
    return (f'<text x="{x:.1f}" y="{y:.1f}" text-anchor="{anchor}" font-size="{size}">'
            f'{content}</text>')


def stroke(x1, y1, x2, y2, style='stroke="#ddd"'):
    return f'<line x1="{x1}" x2="{x2}" y1="{y1:.1f}" y2="{y2:.1f}" {style}/>'


def bar(y, width, style):
    return f'<rect x="235" y="{y}" width="{width:.1f}" height="28" {style}/>'


def svg(width, height, parts):
    return (f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {width} {height}" '
            'font-family="sans-serif" fill="#222">'
            f'<rect width="{width}" height="{height}" fill="white"/>\n'
            + "\n".join(parts) + "\n</svg>\n")


def line_chart(results):
    """Cost a line against the lines of the receipt, both axes from the figures."""
    left, top, right, bottom = 70, 50, 620, 330
    series = [("order, plugin", "orderPayload", "ours", "#1b6ca8", ""),
              ("order, by hand", "orderPayload", "floor", "#1b6ca8", "5 4"),
              ("status, plugin", "statusPayload", "ours", "#c0562b", ""),
              ("status, by hand", "statusPayload", "floor", "#c0562b", "5 4")]
    points = {label: [(n, time(results, f"{kind}/{n}", side) / n * 1e6) for n in LINES]
              for label, kind, side, _, _ in series}
    top_value = max(v for values in points.values() for _, v in values) * 1.1
    x = lambda n: left + (right - left) * math.log10(n) / math.log10(LINES[-1])
    y = lambda v: bottom - (bottom - top) * v / top_value
    parts = [text(345, 25, "Cost a line of the payload, to the bytes", size=15),
             text(345, 372, "lines of the receipt"), text(62, 40, "µs a line", "end")]
    step = 10 ** math.floor(math.log10(top_value / 2))
    step *= 5 if top_value / step > 20 else 2 if top_value / step > 8 else 1
    for i in range(int(top_value / step) + 1):
        parts += [stroke(left, y(i * step), right, y(i * step)),
                  text(left - 8, y(i * step) + 4, f"{i * step:g}", "end")]
    parts += [text(x(n), bottom + 20, f"{n:,}") for n in LINES]
    for i, (label, _, _, colour, dash) in enumerate(series):
        path = " ".join(f"{x(n):.1f},{y(v):.1f}" for n, v in points[label])
        style = f'fill="none" stroke="{colour}" stroke-width="2" stroke-dasharray="{dash}"'
        height = 64 + 18 * i
        parts += [f'<polyline points="{path}" {style}/>', stroke(440, height, 480, height, style),
                  text(488, height + 4, label, "start")]
    return svg(660, 385, parts)


def bar_chart(results):
    """Latency of the exchange alone and of what the plugin makes of it."""
    bars = [("bare exchange", "getCustomer/client", "floor"),
            ("client: look-up", "getCustomer/client", "ours"),
            ("plugin: identify, without e-mail", "identify/withoutEmail", "ours"),
            ("both bare exchanges", "identify/withEmailBothExchanges", "floor"),
            ("plugin: identify, with e-mail", "identify/withEmailBothExchanges", "ours")]
    longest = max(results[name][field + "_p99"] for _, name, field in bars)
    width = lambda value: 340 * value / longest
    parts = [text(345, 25, "Latency with and without the plugin", size=15),
             text(345, 45, "dark: median, light: 99th percentile")]
    for i, (label, name, field) in enumerate(bars):
        median, p99, y = results[name][field], results[name][field + "_p99"], 62 + 44 * i
        colour = "#1b6ca8" if field == "ours" else "#777"
        parts += [text(225, y + 19, label, "end"),
                  bar(y, width(p99), f'fill="{colour}" opacity="0.35"'),
                  bar(y, width(median), f'fill="{colour}"'),
                  text(241 + width(p99), y + 19, f"{seconds(median)} / {seconds(p99)}", "start")]
    return svg(700, 72 + 44 * len(bars), parts)
