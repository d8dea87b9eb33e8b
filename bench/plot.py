"""Line charts as SVG, readable on light and on dark pages."""
import math

WIDTH, HEIGHT = 640, 380
LEFT, RIGHT, TOP, BOTTOM = 64, 170, 40, 52

STYLE = """
text { font: 13px sans-serif; fill: #24292f; }
.title { font-weight: bold; font-size: 15px; }
.frame { stroke: #57606a; fill: none; }
.grid { stroke: #57606a; stroke-opacity: 0.25; fill: none; }
.s0 { stroke: #0550ae; fill: #0550ae; } .s1 { stroke: #bc4c00; fill: #bc4c00; }
.s2 { stroke: #1a7f37; fill: #1a7f37; } .s3 { stroke: #8250df; fill: #8250df; }
.s4 { stroke: #6e7781; fill: #6e7781; }
polyline { stroke-width: 2; fill: none !important; }
text.s0, text.s1, text.s2, text.s3, text.s4 { stroke: none; }
@media (prefers-color-scheme: dark) {
text { fill: #e6edf3; } .frame, .grid { stroke: #8d96a0; }
.s0 { stroke: #79c0ff; fill: #79c0ff; } .s1 { stroke: #ffa657; fill: #ffa657; }
.s2 { stroke: #7ee787; fill: #7ee787; } .s3 { stroke: #d2a8ff; fill: #d2a8ff; }
.s4 { stroke: #b1bac4; fill: #b1bac4; }
}
"""


class Axis:
    """Maps values to positions between two ends, on a linear or logarithmic scale."""

    def __init__(self, values, begin, end, logarithmic):
        self.logarithmic = logarithmic
        self.begin, self.end = begin, end
        if logarithmic:
            self.low = 10 ** math.floor(math.log10(min(values)) + 1e-9)
            self.high = 10 ** math.ceil(math.log10(max(values)) - 1e-9)
            decades = round(math.log10(self.high / self.low))
            self.ticks = [self.low * 10 ** i for i in range(decades + 1)]
        else:
            step = 10 ** math.floor(math.log10(max(values)))
            step /= next(part for part in (1, 2, 5, 10) if max(values) / (step / part) >= 4)
            self.low, self.high = 0, step * math.ceil(max(values) / step)
            self.ticks = [step * i for i in range(round(self.high / step) + 1)]

    def place(self, value):
        scale = math.log if self.logarithmic else float
        low = scale(self.low)
        return self.begin + (scale(value) - low) / (scale(self.high) - low) * (self.end - self.begin)


def number(value):
    """Formats a number for readers: 12 000, 0.5."""
    return f"{value:,.0f}".replace(",", "\u2009") if value >= 1000 else f"{value:g}"


def spread_labels(places, distance=15):
    """Moves overlapping labels apart. Takes and returns positions from the top."""
    order = sorted(range(len(places)), key=lambda i: places[i])
    moved = list(places)
    for above, below in zip(order, order[1:]):
        moved[below] = max(moved[below], moved[above] + distance)
    return moved


def axes(x, y, x_label, y_label):
    right, bottom, middle = WIDTH - RIGHT, HEIGHT - BOTTOM, (TOP + HEIGHT - BOTTOM) / 2
    parts = []
    for tick in x.ticks:
        at = x.place(tick)
        parts.append(f'<path class="grid" d="M{at:.1f} {TOP}V{bottom}"/>'
                     f'<text x="{at:.1f}" y="{bottom + 18}" text-anchor="middle">{number(tick)}</text>')
    for tick in y.ticks:
        at = y.place(tick)
        parts.append(f'<path class="grid" d="M{LEFT} {at:.1f}H{right}"/>'
                     f'<text x="{LEFT - 8}" y="{at + 4:.1f}" text-anchor="end">{number(tick)}</text>')
    parts.append(f'<path class="frame" d="M{LEFT} {TOP}V{bottom}H{right}"/>'
                 f'<text x="{(LEFT + right) / 2}" y="{HEIGHT - 12}" text-anchor="middle">{x_label}</text>'
                 f'<text transform="translate(16 {middle}) rotate(-90)" text-anchor="middle">{y_label}</text>')
    return parts


def draw(path, title, x_label, y_label, series, log_x=False, log_y=False):
    """Draws a list of series (name, [(x, y), ...]); a line's name follows its last point."""
    x = Axis([point[0] for _, points in series for point in points], LEFT, WIDTH - RIGHT, log_x)
    y = Axis([point[1] for _, points in series for point in points], HEIGHT - BOTTOM, TOP, log_y)
    parts = [f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {WIDTH} {HEIGHT}" width="{WIDTH}" '
             f'height="{HEIGHT}" role="img"><title>{title}</title><style>{STYLE}</style>'
             f'<text class="title" x="{LEFT}" y="22">{title}</text>']
    parts += axes(x, y, x_label, y_label)
    labels = spread_labels([y.place(points[-1][1]) for _, points in series])
    for i, (name, points) in enumerate(series):
        places = [(x.place(a), y.place(b)) for a, b in points]
        line = " ".join(f"{a:.1f},{b:.1f}" for a, b in places)
        dots = "".join(f'<circle class="s{i}" cx="{a:.1f}" cy="{b:.1f}" r="3"/>' for a, b in places)
        parts.append(f'<polyline class="s{i}" points="{line}"/>{dots}'
                     f'<text class="s{i}" x="{places[-1][0] + 10:.1f}" y="{labels[i] + 4:.1f}">{name}</text>')
    path.write_text("\n".join(parts) + "\n</svg>\n")
